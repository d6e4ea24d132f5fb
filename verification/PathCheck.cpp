#include "verification/PathCheck.h"

#include <algorithm>

namespace verification
{

PathCheck::PathCheck(const Network& network, FindingList& findings) : m_findings(findings)
{
    for (const NetworkNode& node : network.nodes) {
        if (node.isSwitch)
            m_buffers.emplace(node.nodeID, node.buffers);
    }
}

int PathCheck::buffersOf(int node) const
{
    const auto found = m_buffers.find(node);
    return found != m_buffers.end() ? found->second : noSwitch;
}

void PathCheck::add(const FindingMaker& maker)
{
    m_findings.push_back(FindingMaker(maker).of(m_transmission));
}

void PathCheck::examine(const ScheduledTransmission& transmission, const HopSlots& hops,
                        qint64 number)
{
    m_transmission = {transmission.flowID, transmission.seq};
    m_shift = number * hops.flow().periodSlots();
    checkStrays(hops);
    checkPresence(hops);
    checkTalkers(hops);
    for (const FlowStep& step : hops.flow().steps)
        checkStep(hops, step);
    for (const FlowEnd& end : hops.flow().ends)
        checkEnd(hops, end);
}

void PathCheck::checkTalkers(const HopSlots& hops)
{
    const NetworkFlow& flow = hops.flow();
    const SlotRange window = flow.sendWindow.shiftedBy(m_shift);
    for (size_t i = 0; i < flow.hops.size(); ++i) {
        const FlowHop& hop = flow.hops[i];
        const HopSlots::Entry& entry = hops.hops()[i];
        if (hop.isTalker() && entry.known && !window.contains(entry.send))
            add(FindingMaker(Kind::SendWindow)
                    .at(hop.node, hop.outport, entry.send)
                    .numbers(entry.send, window.first, window.last));
    }
}

void PathCheck::checkStep(const HopSlots& hops, const FlowStep& step)
{
    const HopSlots::Entry& before = hops.hops()[static_cast<size_t>(step.from)];
    const HopSlots::Entry& now = hops.hops()[static_cast<size_t>(step.to)];
    if (!before.known || !now.known)
        return;
    if (now.receive != before.send)
        checkReceiveSlot(hops, step);
    checkOrder(hops.flow().hops[static_cast<size_t>(step.to)], before.send, now.send);
}

// A sender that several paths share has the one row of the first of them, and the switches behind
// it still expect the frame in the slots of their own paths. The rules know no better; the frame
// itself moves on in order.
void PathCheck::checkReceiveSlot(const HopSlots& hops, const FlowStep& step)
{
    const FlowHop& sender = hops.flow().hops[static_cast<size_t>(step.from)];
    const FlowHop& hop = hops.flow().hops[static_cast<size_t>(step.to)];
    const HopSlots::Entry& now = hops.hops()[static_cast<size_t>(step.to)];
    const qint64 sent = hops.hops()[static_cast<size_t>(step.from)].send;
    const bool byTheRules = sender.paths > 1 && now.receive < now.send;
    add(FindingMaker(Kind::ReceiveSlot)
            .as(byTheRules ? Severity::Remark : Severity::Fault)
            .at(hop.node, hop.inport, now.receive)
            .numbers(now.receive, sent, sent));
}

void PathCheck::checkOrder(const FlowHop& hop, qint64 sentBefore, qint64 send)
{
    const int buffers = buffersOf(hop.node);
    const qint64 wait = send - sentBefore;
    if (wait <= 0)
        add(FindingMaker(Kind::HopOrder)
                .at(hop.node, hop.outport, send)
                .numbers(send, sentBefore + 1, sentBefore + std::max(1, buffers)));
    else if (buffers != noSwitch && wait > buffers)
        add(FindingMaker(Kind::LongWait).at(hop.node, hop.outport, send).numbers(wait, 1, buffers));
}

void PathCheck::checkEnd(const HopSlots& hops, const FlowEnd& end)
{
    const HopSlots::Entry& last = hops.hops()[static_cast<size_t>(end.from)];
    const HopSlots::Arrival& arrival = hops.arrivals()[static_cast<size_t>(end.listener)];
    const FlowListener& listener = hops.flow().listeners[static_cast<size_t>(end.listener)];
    const bool differs = arrival.known && last.known && arrival.slot != last.send;
    if (differs)
        checkListenerSlot(hops, end);
    if (arrival.known)
        checkReceiveWindow(listener, arrival.slot);
    if (last.known && (differs || !arrival.known))
        checkReceiveWindow(listener, last.send);
}

// The rules take a listener's slot from the start of its window, before which nothing may come;
// that the frame comes later is no harm to it.
void PathCheck::checkListenerSlot(const HopSlots& hops, const FlowEnd& end)
{
    const FlowListener& listener = hops.flow().listeners[static_cast<size_t>(end.listener)];
    const qint64 expected = hops.arrivals()[static_cast<size_t>(end.listener)].slot;
    const qint64 sent = hops.hops()[static_cast<size_t>(end.from)].send;
    const bool shared = hops.flow().hops[static_cast<size_t>(end.from)].paths > 1;
    add(FindingMaker(Kind::ListenerSlot)
            .as(expected < sent || shared ? Severity::Remark : Severity::Fault)
            .at(listener.node, listener.inport, expected)
            .numbers(expected, sent, sent));
}

void PathCheck::checkReceiveWindow(const FlowListener& listener, qint64 slot)
{
    const SlotRange window = listener.window.shiftedBy(m_shift);
    if (listener.hasWindow && !window.contains(slot))
        add(FindingMaker(Kind::ReceiveWindow)
                .at(listener.node, listener.inport, slot)
                .numbers(slot, window.first, window.last));
}

void PathCheck::checkPresence(const HopSlots& hops)
{
    const NetworkFlow& flow = hops.flow();
    for (size_t i = 0; i < flow.hops.size(); ++i) {
        if (!hops.hops()[i].known)
            add(FindingMaker(Kind::MissingHop).at(flow.hops[i].node, flow.hops[i].outport));
    }
    for (size_t i = 0; i < flow.listeners.size(); ++i) {
        if (!hops.arrivals()[i].known)
            add(FindingMaker(Kind::MissingHop)
                    .at(flow.listeners[i].node, flow.listeners[i].inport));
    }
}

void PathCheck::checkStrays(const HopSlots& hops)
{
    const NetworkFlow& flow = hops.flow();
    for (const ScheduledHop* stray : hops.strayHops()) {
        const bool onPath =
            std::any_of(flow.hops.begin(), flow.hops.end(), [&](const FlowHop& hop) {
                return hop.node == stray->node &&
                       hop.isTalker() == (stray->inport == FlowHop::noPort);
            });
        add(FindingMaker(onPath ? Kind::WrongPort : Kind::HopOffPath)
                .at(stray->node, stray->outport, stray->sendSlot));
    }
    for (const ScheduledListener* stray : hops.strayListeners()) {
        const bool onPath =
            std::any_of(flow.listeners.begin(), flow.listeners.end(),
                        [&](const FlowListener& own) { return own.node == stray->node; });
        add(FindingMaker(onPath ? Kind::WrongPort : Kind::HopOffPath)
                .at(stray->node, stray->inport, stray->slot));
    }
}

} // namespace verification
