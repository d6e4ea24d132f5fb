#include "synthesis/Proofs.h"

#include "planner/PreProcess.h"

namespace synthesis
{

using namespace planner;

namespace
{

/// The slots in which the talker would have to send, with the paths that demand it.
NoSlot sendBounds(const TTFlow& flow, quint16 switchBufferNum)
{
    NoSlot bounds;
    std::size_t number = 0;
    for (const VirtualLinkPath& path : flow.paths) {
        const SlotWindow send = sendWindowOf(path, switchBufferNum);
        if (number == 0 || send.start > bounds.earliest) {
            bounds.earliest = send.start;
            bounds.earliestPath = number;
        }
        if (number == 0 || send.end < bounds.latest) {
            bounds.latest = send.end;
            bounds.latestPath = number;
        }
        ++number;
    }
    return bounds;
}

bool leaveNone(const NoSlot& bounds)
{
    return bounds.earliest > bounds.latest;
}

/// Looks at one flow whose windows are as they were read.
std::optional<NoSlot> examine(TTFlow flow, quint16 switchBufferNum)
{
    const SlotWindow own = flow.paths.front().schedtxwin;
    NoSlot proof;
    proof.earliest = own.start;
    proof.latest = own.end;
    if (leaveNone(proof))
        return proof;
    proof.side = NoSlot::Receive;
    const TTFlow asGiven = flow;
    limitReceiveWindows(flow, switchBufferNum);
    auto given = asGiven.paths.begin();
    std::size_t number = 0;
    for (const VirtualLinkPath& path : flow.paths) {
        // What the listener itself has is said first; then what it has once the talker is heard.
        const bool isOwn = given->schedrxwin.start > given->schedrxwin.end;
        proof.earliest = isOwn ? given->schedrxwin.start : path.schedrxwin.start;
        proof.latest = isOwn ? given->schedrxwin.end : path.schedrxwin.end;
        proof.earliestPath = number;
        proof.latestPath = number;
        if (leaveNone(proof))
            return proof;
        ++given;
        ++number;
    }
    proof = sendBounds(flow, switchBufferNum);
    return leaveNone(proof) ? std::optional<NoSlot>(proof) : std::nullopt;
}

} // namespace

std::optional<NoSlot> findFlowWithoutSlot(const PlanningContext& context)
{
    std::size_t place = 0;
    for (const TTFlow& flow : context.flows) {
        std::optional<NoSlot> proof = examine(flow, context.switchBufferNum);
        if (proof) {
            proof->flow = place;
            return proof;
        }
        ++place;
    }
    return {};
}

} // namespace synthesis
