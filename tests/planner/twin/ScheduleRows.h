#pragma once

#include <QByteArray>

#include <utility>
#include <vector>

// What the schedule checker takes from the documents of a planning.

struct CheckedWindow {
    qint64 start = 0;
    qint64 end = 0;

    bool inverted() const { return start > end; }
    bool operator==(const CheckedWindow& other) const
    {
        return start == other.start && end == other.end;
    }
};

/// A sender on a path: the talker, which has inport -1, or a switch.
struct CheckedHop {
    int nodeID = 0;
    int inport = -1;
    int outport = 0;
    CheckedWindow window; ///< of a windows document
    qint64 slot = 0;      ///< of a schedule

    bool isTalker() const { return inport < 0; }
    std::pair<int, int> port() const { return {nodeID, outport}; }
    bool sameSender(const CheckedHop& other) const
    {
        return nodeID == other.nodeID && inport == other.inport && outport == other.outport;
    }
};

struct CheckedInstance {
    int flowID = 0;
    int seq = 0;
    std::vector<std::vector<CheckedHop>> paths; ///< of a windows document, the talker first
    std::vector<CheckedHop> senders;            ///< of a schedule, the talker first

    std::pair<int, int> number() const { return {flowID, seq}; }
};

std::vector<CheckedInstance> readWindows(const QByteArray& document);
std::vector<CheckedInstance> readSchedule(const QByteArray& document);
