#include "Report.h"

#include <iterator>

using namespace synthesis;

static QString text(const char* latin1)
{
    return QString::fromLatin1(latin1);
}

static QString reason(Obstacle obstacle)
{
    switch (obstacle) {
    case Obstacle::OtherType:
        return text("is not of type TT");
    case Obstacle::WrongTalker:
        return text("has another talker than its virtual link");
    case Obstacle::UnknownListener:
        return text("has a listener at which no path of its virtual link ends");
    case Obstacle::BehindDisagreement:
        return text("stands behind a flow that disagrees with its virtual link");
    case Obstacle::LeadingZero:
        return text("has number 0 and stands before all others");
    case Obstacle::PeriodZero:
        return text("has period 0");
    case Obstacle::NoPath:
        return text("has a virtual link without a path");
    case Obstacle::SharedNumber:
        return text("has the number of another flow");
    case Obstacle::NoBuffers:
        return text("passes a switch without buffers");
    case Obstacle::PeriodBelowSlot:
        return text("has a period shorter than a slot");
    case Obstacle::CycleTooLong:
        return text("belongs to a cycle that is too long");
    }
    return {};
}

static const planner::TTFlow& flowAt(const InputNetwork& network, std::size_t flow)
{
    return *std::next(network.context.flows.begin(), static_cast<std::ptrdiff_t>(flow));
}

static QString numbers(const InputNetwork& network, const std::vector<std::size_t>& flows)
{
    QStringList list;
    for (const std::size_t flow : flows)
        list.append(QString::number(flowAt(network, flow).flowID));
    return list.join(QStringLiteral(", "));
}

static QString nodeName(const InputNetwork& network, quint16 nodeID)
{
    for (const planner::HostInfo& host : network.context.hosts) {
        if (host.nodeID == nodeID)
            return host.name;
    }
    for (const planner::SwitchInfo& info : network.context.switches) {
        if (info.nodeID == nodeID)
            return info.name;
    }
    return QString::number(nodeID);
}

static QString listenerName(const InputNetwork& network, std::size_t flow, std::size_t path)
{
    const auto& paths = flowAt(network, flow).paths;
    return nodeName(network,
                    std::next(paths.begin(), static_cast<std::ptrdiff_t>(path))->listenerNodeID);
}

/// One function for each kind of outcome.
class OutcomeLines
{
public:
    explicit OutcomeLines(const InputNetwork& network) : m_network(network) {}

    QStringList operator()(const Found& plan) const
    {
        return {QStringLiteral("found: %1 slots of waiting%2")
                    .arg(QString::number(plan.waiting), plan.restsOnResolution
                                                            ? text(", rests on conflict resolution")
                                                            : QString())};
    }

    QStringList operator()(const NoSlot& proof) const
    {
        QString listeners = listenerName(m_network, proof.flow, proof.earliestPath);
        if (proof.latestPath != proof.earliestPath)
            listeners += text(" and ") + listenerName(m_network, proof.flow, proof.latestPath);
        return {QStringLiteral("impossible: flow %1 has no slot to %2 for %3: "
                               "not before %4, not after %5")
                    .arg(QString::number(flowAt(m_network, proof.flow).flowID),
                         text(proof.side == NoSlot::Send ? "send" : "receive"), listeners,
                         QString::number(proof.earliest), QString::number(proof.latest))};
    }

    QStringList operator()(const Overfull& proof) const
    {
        const qint64 slot = planner::slotLength_us;
        const planner::SlotWindow& interval = proof.interval;
        return {QStringLiteral("impossible: %1 transmissions need port %2 of %3 in slots %4 to %5 "
                               "(%6 to %7 us): flows %8")
                    .arg(QString::number(proof.transmissions), QString::number(proof.outport),
                         nodeName(m_network, proof.nodeID), QString::number(interval.start),
                         QString::number(interval.end), QString::number(interval.start * slot),
                         QString::number((interval.end + 1) * slot),
                         numbers(m_network, proof.flows))};
    }

    QStringList operator()(const BudgetSpent& spent) const
    {
        const QString known = spent.noneWithoutOverlap ? text("no plan without overlap exists")
                                                       : text("the steps are spent");
        return {QStringLiteral("not found: %1; not placed: flows %2")
                    .arg(known, numbers(m_network, spent.unplaced))};
    }

    QStringList operator()(const Stopped&) const { return {text("stopped")}; }

    QStringList operator()(const Refused& refused) const
    {
        QStringList lines;
        for (const ObstructedFlow& flow : refused.flows)
            lines.append(QStringLiteral("refused: flow %1 %2")
                             .arg(QString::number(flowAt(m_network, flow.flow).flowID),
                                  reason(flow.obstacle)));
        return lines;
    }

private:
    const InputNetwork& m_network;
};

QStringList linesOf(const InputNetwork& network)
{
    QStringList lines;
    if (!network.damage.isEmpty())
        lines.append(text("refused: ") + network.damage);
    for (const ObstructedFlow& flow : network.obstructed)
        lines.append(QStringLiteral("%1: flow element %2 %3")
                         .arg(text(preventsSearch(flow.obstacle) ? "refused" : "left out"),
                              QString::number(flow.flow + 1), reason(flow.obstacle)));
    return lines;
}

QStringList linesOf(const InputNetwork& network, const Outcome& outcome)
{
    return std::visit(OutcomeLines(network), outcome);
}
