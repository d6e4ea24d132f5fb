#pragma once

#include <verification/PlanRecords.h>

#include <vector>

// Gate control lists of a plan, as data: when each sending port lets the scheduled traffic pass.

/// One entry of a list: the gate of the scheduled class is open, or those of all others are.
struct GateEntry {
    bool isOpen = false;
    qint64 interval_ns = 0;
};

/// The list of one port; its entries fill the cycle.
struct GateList {
    int node = 0; ///< nodeID
    int port = 0;
    std::vector<GateEntry> entries;
};

/// Longest interval that an entry can hold: 32 bits of nanoseconds, cut to whole microseconds.
constexpr qint64 longestInterval_ns = 4294967000;

/// A list for each port that sends, by node and port.
///
/// The slot of each transmission opens the gate, slots that follow one another together. A slot
/// that reaches over the end of the cycle goes on at its beginning, since the list repeats.
std::vector<GateList> gateListsOf(const verification::Schedule& schedule);
