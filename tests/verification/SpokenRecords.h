#pragma once

#include "verification/PlanRecords.h"

#include <QStringList>

// The records of a plan as lines that name every number, to compare them as a whole.
namespace verification
{

inline QString spoken(const SlotRange& range)
{
    return QStringLiteral("[%1,%2]").arg(range.first).arg(range.last);
}

inline QStringList linesOf(const NetworkFlow& flow)
{
    QStringList lines{QStringLiteral("flow %1 vlid %2 period %3 size %4 state %5 sends %6 link %7")
                          .arg(flow.flowID)
                          .arg(flow.vlid)
                          .arg(flow.period_us)
                          .arg(flow.size)
                          .arg(static_cast<int>(flow.state))
                          .arg(spoken(flow.sendWindow))
                          .arg(flow.slowestLink_Mbps)};
    for (const FlowHop& hop : flow.hops)
        lines.append(QStringLiteral("  hop %1 in %2 out %3 paths %4")
                         .arg(hop.node)
                         .arg(hop.inport)
                         .arg(hop.outport)
                         .arg(hop.paths));
    for (const FlowStep& step : flow.steps)
        lines.append(QStringLiteral("  step %1 to %2").arg(step.from).arg(step.to));
    for (const FlowListener& listener : flow.listeners)
        lines.append(
            QStringLiteral("  listener %1 in %2 wants %3")
                .arg(listener.node)
                .arg(listener.inport)
                .arg(listener.hasWindow ? spoken(listener.window) : QStringLiteral("none")));
    for (const FlowEnd& end : flow.ends)
        lines.append(QStringLiteral("  end %1 to %2 from talker %3")
                         .arg(end.from)
                         .arg(end.listener)
                         .arg(end.talker));
    for (const LinkGap& gap : flow.gaps)
        lines.append(QStringLiteral("  gap %1 to %2").arg(gap.from).arg(gap.to));
    return lines;
}

inline QStringList linesOf(const Network& network)
{
    QStringList lines;
    for (const NetworkNode& node : network.nodes)
        lines.append(
            QStringLiteral("%1 %2 %3 buffers %4")
                .arg(node.isSwitch ? QStringLiteral("switch") : QStringLiteral("host"), node.name)
                .arg(node.nodeID)
                .arg(node.buffers));
    for (const NetworkFlow& flow : network.flows)
        lines.append(linesOf(flow));
    return lines;
}

inline QStringList linesOf(const Schedule& schedule)
{
    QStringList lines{QStringLiteral("cycle %1 slot length %2")
                          .arg(schedule.cycle_us)
                          .arg(schedule.slotLength_us)};
    for (const ScheduledTransmission& transmission : schedule.transmissions)
        lines.append(QStringLiteral("transmission %1-%2 talker %3 hops %4+%5 listeners %6+%7")
                         .arg(transmission.flowID)
                         .arg(transmission.seq)
                         .arg(transmission.hasTalker)
                         .arg(transmission.firstHop)
                         .arg(transmission.hopCount)
                         .arg(transmission.firstListener)
                         .arg(transmission.listenerCount));
    for (const ScheduledHop& hop : schedule.hops)
        lines.append(QStringLiteral("hop %1 in %2 at %3 out %4 at %5")
                         .arg(hop.node)
                         .arg(hop.inport)
                         .arg(hop.receiveSlot)
                         .arg(hop.outport)
                         .arg(hop.sendSlot));
    for (const ScheduledListener& listener : schedule.listeners)
        lines.append(QStringLiteral("listener %1 in %2 at %3")
                         .arg(listener.node)
                         .arg(listener.inport)
                         .arg(listener.slot));
    return lines;
}

inline QStringList linesOf(const std::vector<Finding>& findings)
{
    QStringList lines;
    for (const Finding& finding : findings)
        lines.append(describe(finding));
    return lines;
}

} // namespace verification
