#pragma once

#include "verification/PlanRecords.h"

// What a plan costs the network and its frames, in numbers.
namespace verification
{

/// How much of the cycle a sending port uses.
struct PortLoad {
    int node = 0;
    int port = 0;
    qint64 usedSlots = 0;  ///< distinct slots, modulo the cycle
    qint64 cycleSlots = 0; ///< whole slots in the cycle
};

/// How long the frames of a flow take to one of its listeners.
///
/// A latency counts from the slot in which the talker sends to the slot in which the frame is sent
/// to the listener, both slots' beginnings; the last slot itself comes on top.
struct FlowLatency {
    int flowID = 0;
    int talker = 0;           ///< nodeID
    int listener = 0;         ///< nodeID
    size_t transmissions = 0; ///< that were measured; flows without one are left out
    qint64 smallest = 0;      ///< slots
    qint64 largest = 0;       ///< slots
    SlotRange sendWindow;     ///< of the flow's first transmission, slots
    SlotRange receiveWindow;  ///< the listener's, slots
    bool hasReceiveWindow = false;

    qint64 jitter() const { return largest - smallest; } ///< slots
};

/// How many frames a switch holds at once.
///
/// A frame is held from the slot behind that in which it arrives to that in which it leaves for
/// good; a frame that leaves by several ports is one frame.
struct SwitchOccupancy {
    int node = 0;
    qint64 mostFrames = 0;
    qint64 slot = 0; ///< the first slot of the cycle with so many
    int buffers = 0;
};

struct PlanFigures {
    std::vector<PortLoad> loads;           ///< the fullest first, then by node and port
    std::vector<FlowLatency> latencies;    ///< in the order of the input document
    std::vector<SwitchOccupancy> switches; ///< by node; switches without a frame are left out
};

/// The figures of a plan. Damaged or faulty plans give the figures of what can be followed.
PlanFigures figuresOf(const PlanRecords& plan);

} // namespace verification
