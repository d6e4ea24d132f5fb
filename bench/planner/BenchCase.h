#pragma once

#include <QString>

#include <vector>

/// Parameters of one measured network.
struct BenchCase {
    enum Shape { Line, Ring, Tree, Mesh };
    enum Windows {
        Disjoint,  ///< each flow has a window of its own: nothing to resolve
        PerTalker, ///< the flows of a host share their window: each port on their ways is resolved
        Same,      ///< all flows share one window
        Nested,    ///< all flows start together, the longest deadline listed first
        Staircase  ///< each flow starts and ends one slot ahead of the one listed before it
    };

    QString name;
    Shape shape = Line;
    Windows windows = PerTalker;
    int switches = 1;
    int hostsPerSwitch = 1;
    int flowsPerHost = 1;
    int transmissions = 1; ///< of each flow in the cycle
    int reach = 5;         ///< most links between the switches of talker and listener
    int multicastPercent = 0;
    bool allToOneHost = false;
    bool isLogged = true;  ///< measured with its log, which tens of thousands of flows make endless
    bool isGrowth = false; ///< belongs to a series of one shape and growing size
};

/// All cases in the order of their report.
const std::vector<BenchCase>& benchCases();
