#pragma once

#include "synthesis/Obstacle.h"

#include <QByteArray>

#include <functional>
#include <variant>

// Finds, inside the windows that the user gave, the slots of a plan without conflicts.
//
// The planning rules take exactly the plan whose windows they are given when these windows overlap
// nowhere. So a flow is narrowed to one send slot t, and each of its listeners to one receive slot
// r, such that the windows which the rules derive from them for all switches on the way share no
// slot of a sending port with those of another flow, over all transmissions of the cycle and with
// the cycle repeating.
//
// All slots are counted from the start of the cycle, as in the planning model. Flows are named by
// their place in PlanningContext::flows, from 0, because numbers may occur twice.
namespace synthesis
{

/// The narrowed windows of one flow, in slots.
struct FlowWindows {
    planner::SlotWindow send;
    /// By path, in the order of TTFlow::paths; paths to one listener have the same window.
    std::vector<planner::SlotWindow> receive;
    /// Slots that the frame waits in switches, summed over the paths; 0 is the least latency.
    qint64 waiting = 0;
};

/// A plan: each flow's windows lie inside its own, and both planning stages accept them.
struct Found {
    std::vector<FlowWindows> flows; ///< by place; a flow that is left out keeps its windows
    qint64 waiting = 0;             ///< of all flows
    /// The windows overlap somewhere and the second stage was seen to resolve it without a fault.
    /// Otherwise no port has a conflict, and every window is a single slot.
    bool restsOnResolution = false;
};

/// Proof that there is no plan: the windows of one flow leave no slot.
struct NoSlot {
    enum Side {
        Send,   ///< of the slots in which the talker would have to send
        Receive ///< of the slots in which the listener would have to receive
    };
    std::size_t flow = 0;
    Side side = Send;
    qint32 earliest = 0; ///< slot, always behind latest
    qint32 latest = 0;
    /// Places in TTFlow::paths of the listeners that demand earliest and latest; mostly the same.
    std::size_t earliestPath = 0;
    std::size_t latestPath = 0;
};

/// Proof that there is no plan: more transmissions must fall into an interval than it has slots.
struct Overfull {
    quint16 nodeID = 0;
    quint16 outport = 0;
    /// Slots; begins inside the cycle, and may reach beyond its end into the next one.
    planner::SlotWindow interval;
    std::size_t transmissions = 0;  ///< more than the interval has slots
    std::vector<std::size_t> flows; ///< whose transmissions these are, ascending
};

/// No plan was found with the steps allowed, and none of the proofs above either.
struct BudgetSpent {
    std::vector<std::size_t> unplaced; ///< in the best state met, ascending
    /// It is known that no plan without overlap exists; one that rests on resolution still may.
    bool noneWithoutOverlap = false;
};

/// The caller's progress function has answered false; what there was is dropped.
struct Stopped {
};

/// Nothing was searched; see preventsSearch().
struct Refused {
    std::vector<ObstructedFlow> flows; ///< by place in PlanningContext::flows, ascending
};

using Outcome = std::variant<Found, NoSlot, Overfull, BudgetSpent, Stopped, Refused>;

struct Progress {
    std::size_t placed = 0; ///< flows that have their slots at the moment
    std::size_t total = 0;  ///< flows that need some
    quint64 steps = 0;      ///< of the budget
};

struct Options {
    /// Some seconds on an ordinary machine, and more than any network of the tests needs.
    static constexpr quint64 defaultSteps = 500000000;

    /// How much may be searched. A step is about one look at one slot of one port; a number of
    /// steps and not a time, so that the result is the same on every machine.
    quint64 steps = defaultSteps;

    /// Called every few milliseconds from inside the call, by the caller's thread; false stops.
    std::function<bool(const Progress&)> progress;

    /// Judges a plan whose windows overlap somewhere: true when it has no fault.
    ///
    /// Is given the windows and the output document that the second stage makes of them. Without
    /// this function only plans without overlap are looked for.
    std::function<bool(const Found& plan, const QByteArray& outputDocument)> isFaultless;
};

/// Searches a plan for the flows of a context as readInputDocument() leaves it.
///
/// Only flows, with their paths, and the buffer numbers of switches are looked at; the cluster
/// cycle is computed here. Without flows there is an empty plan. Deterministic: the outcome follows
/// from the context and the steps alone, given a judge that answers alike. Throws nothing of its
/// own.
Outcome synthesizeWindows(const planner::PlanningContext& context, const Options& options);

} // namespace synthesis
