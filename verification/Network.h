#pragma once

#include <QString>

#include <vector>

// The input document as a plan is judged by it.
namespace verification
{

/// Length of one slot in microseconds; windows are counted in it, whatever a document says.
constexpr qint64 slotLength_us = 200;

/// Slots from first to last, both included; empty when last is before first.
struct SlotRange {
    qint64 first = 0;
    qint64 last = 0;

    bool contains(qint64 slot) const { return first <= slot && slot <= last; }
    SlotRange shiftedBy(qint64 count) const { return {first + count, last + count}; }
};

struct NetworkNode {
    QString name; ///< without quote characters
    int nodeID = 0;
    bool isSwitch = false;
    int buffers = 0; ///< frames, and slots that a frame may wait
};

/// A sender on the paths of a flow: a talker, which has inport noPort, or a switch.
struct FlowHop {
    int node = 0;
    int inport = 0;
    int outport = 0;
    int paths = 0; ///< how many paths of the flow lead through it

    static constexpr int noPort = -1;

    bool isTalker() const { return inport == noPort; }
};

/// A listener of a flow with the window in which it wants the frame.
struct FlowListener {
    int node = 0;
    int inport = 0;
    SlotRange window;       ///< of the flow's first transmission, slots
    bool hasWindow = false; ///< false when the flow names no window for it
};

/// The frame goes from one sender of a flow to the next; both are places in its hops.
struct FlowStep {
    int from = 0;
    int to = 0;
};

/// The frame goes from a sender, a place in hops, to a listener, a place in listeners.
struct FlowEnd {
    int from = 0;
    int listener = 0;
    int talker = 0; ///< the sender that the path begins with, a place in hops
};

/// Two neighbours on a path that no link joins; nodeID of both.
struct LinkGap {
    int from = 0;
    int to = 0;
};

/// Whether the rules take a flow into the plan.
enum class FlowState {
    Taken,
    LeadingNumberZero,
    Disagrees,
    BehindDisagreeing,
    NoVirtualLink,
    NoPeriod
};

/// One TT flow with the tree of its ways through the network.
///
/// Paths that share a sender, with the same ports, share its entry; entries are in the order in
/// which the paths meet them, so that hops[0] is the talker of the first path.
struct NetworkFlow {
    int flowID = 0;
    int vlid = 0;
    qint64 period_us = 0;
    int size = 0; ///< bytes
    FlowState state = FlowState::Taken;
    SlotRange sendWindow; ///< of the first transmission, slots
    std::vector<FlowHop> hops;
    std::vector<FlowStep> steps;
    std::vector<FlowListener> listeners;
    std::vector<FlowEnd> ends;
    std::vector<LinkGap> gaps;
    qint64 slowestLink_Mbps = 0; ///< on its paths; 0 when no link names a bandwidth

    /// Slots by which a transmission is later than the one before it.
    qint64 periodSlots() const { return period_us / slotLength_us; }
};

/// Nodes and TT flows of an input document, in document order.
struct Network {
    std::vector<NetworkNode> nodes; ///< hosts before switches
    std::vector<NetworkFlow> flows; ///< also those that the rules drop
};

} // namespace verification
