#pragma once

#include "tests/planner/twin/NetworkDraft.h"

/// What a network with a planted plan is like.
struct PlantedStyle {
    enum Shape { Line, Ring, Star, Tree, Mesh };
    enum Windows {
        Wide,  ///< as wide as the period, for talker and listeners
        Tight, ///< the planted slots and so many on either side of them
        Mixed  ///< each window the one or the other
    };

    Shape shape = Tree;
    Windows windows = Wide;
    int switches = 4;
    int hosts = 8;
    int flows = 20;                                     ///< at most
    std::vector<quint32> periods = {4000, 8000, 16000}; ///< microseconds
    int buffers = 4;
    int multicastPercent = 0; ///< of the flows have two to four listeners
    int reach = 5;            ///< slots on either side of a planted one
    int waitPercent = 30;     ///< of the hops wait although they could go on
    int farthest = 0;         ///< switches on a way at most; 0 for any number
    int loadPercent = 100;    ///< flows are added until a port is loaded so much
};

/// A network that has a plan: one was made first, and the windows around it.
///
/// The plan gives each hop of each transmission a slot of its own on its port, the cycle repeating,
/// one to buffers slots behind the hop before. Windows hold at least the planted slots.
struct PlantedNetwork {
    NetworkDraft draft;
    int busiestPercent = 0; ///< load of the busiest port in the planted plan
};

/// The same on every machine for a seed.
PlantedNetwork plantedNetwork(const PlantedStyle& style, quint64 seed);
