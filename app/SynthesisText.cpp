#include "app/SynthesisText.h"

#include <QStringList>

#include <iterator>

using namespace synthesis;

static constexpr int mostFlowsNamed = 20;

QString textOf(Obstacle obstacle)
{
    switch (obstacle) {
    case Obstacle::OtherType:
        return QStringLiteral(u"不是 TT 流，不参与规划");
    case Obstacle::WrongTalker:
        return QStringLiteral(u"发送端与虚链路不符，从它起的流都被舍弃");
    case Obstacle::UnknownListener:
        return QStringLiteral(u"接收端与虚链路不符，从它起的流都被舍弃");
    case Obstacle::BehindDisagreement:
        return QStringLiteral(u"排在与虚链路不符的流之后，一并舍弃");
    case Obstacle::LeadingZero:
        return QStringLiteral(u"排在最前、流标识为 0 的流不参与规划");
    case Obstacle::PeriodZero:
        return QStringLiteral(u"周期为 0");
    case Obstacle::NoPath:
        return QStringLiteral(u"没有这条虚链路，或它没有路径");
    case Obstacle::SharedNumber:
        return QStringLiteral(u"流标识重复，规划会把它们混为一条");
    case Obstacle::NoBuffers:
        return QStringLiteral(u"交换机缓冲区为 0，帧无法转发");
    case Obstacle::PeriodBelowSlot:
        return QStringLiteral(u"周期小于一个时隙（%1us）").arg(planner::slotLength_us);
    case Obstacle::CycleTooLong:
        return QStringLiteral(u"各流周期的最小公倍数过大");
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
    for (const std::size_t flow : flows) {
        if (list.size() == mostFlowsNamed)
            return list.join(QStringLiteral(u"、")) +
                   QStringLiteral(u"…共 %1 条").arg(flows.size());
        list.append(QString::number(flowAt(network, flow).flowID));
    }
    return list.join(QStringLiteral(u"、"));
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
    return QStringLiteral(u"节点%1").arg(nodeID);
}

static QString listenerName(const InputNetwork& network, std::size_t flow, std::size_t path)
{
    const auto& paths = flowAt(network, flow).paths;
    return nodeName(network,
                    std::next(paths.begin(), static_cast<std::ptrdiff_t>(path))->listenerNodeID);
}

/// "时隙 2（400us）", with the listener that asks for it if one is given.
static QString slotText(qint32 slot, const QString& listener)
{
    const QString asker = listener.isEmpty() ? QString() : QStringLiteral(u"，接收端 ") + listener;
    return QStringLiteral(u"时隙 %1（%2us%3）")
        .arg(QString::number(slot), QString::number(qint64(slot) * planner::slotLength_us), asker);
}

namespace
{

/// One function for each kind of outcome.
class OutcomeText
{
public:
    explicit OutcomeText(const InputNetwork& network) : m_network(network) {}

    QString operator()(const Found& plan) const
    {
        const QString waiting =
            plan.waiting == 0 ? QStringLiteral(u"帧在交换机中不等待：最小时延，无抖动。")
                              : QStringLiteral(u"帧在交换机中共等待 %1 个时隙。").arg(plan.waiting);
        return QStringLiteral(u"已找到调度。") + waiting +
               (plan.restsOnResolution
                    ? QStringLiteral(u"部分窗口重叠，依靠冲突消解，已检查无故障。")
                    : QStringLiteral(u"各窗口互不重叠，不依靠冲突消解。"));
    }

    QString operator()(const NoSlot& proof) const
    {
        const QString earliest = listenerName(m_network, proof.flow, proof.earliestPath);
        const QString latest = listenerName(m_network, proof.flow, proof.latestPath);
        const bool isOne = proof.earliestPath == proof.latestPath;
        const QString side =
            proof.side == NoSlot::Send ? QStringLiteral(u"发送") : QStringLiteral(u"接收");
        return QStringLiteral(u"已证明无解：流 %1 的窗口没有留下%2时隙。%3最早是%4，最晚是%5。")
            .arg(QString::number(flowAt(m_network, proof.flow).flowID), side,
                 isOne ? QStringLiteral(u"接收端 %1：").arg(earliest) : QString(),
                 slotText(proof.earliest, isOne ? QString() : earliest),
                 slotText(proof.latest, isOne ? QString() : latest));
    }

    QString operator()(const Overfull& proof) const
    {
        const planner::SlotWindow& interval = proof.interval;
        const qint64 slotCount = qint64(interval.end) - interval.start + 1;
        const qint64 end_us = (qint64(interval.end) + 1) * planner::slotLength_us;
        return QStringLiteral(u"已证明无解：%1 的端口%2 在时隙 %3 到 %4（%5us 到 %6us）"
                              u"只有 %7 个时隙，必须发送 %8 次。涉及流 %9。")
            .arg(nodeName(m_network, proof.nodeID), QString::number(proof.outport),
                 QString::number(interval.start), QString::number(interval.end),
                 QString::number(qint64(interval.start) * planner::slotLength_us),
                 QString::number(end_us), QString::number(slotCount),
                 QString::number(proof.transmissions), numbers(m_network, proof.flows));
    }

    QString operator()(const BudgetSpent& spent) const
    {
        const QString known =
            spent.noneWithoutOverlap
                ? QStringLiteral(u"已证明窗口不能互不重叠；依靠冲突消解是否有解，尚不知道。")
                : QStringLiteral(u"是否有解，尚不知道。");
        return QStringLiteral(u"步数用尽，没有找到调度。") + known +
               (spent.unplaced.empty() ? QString()
                                       : QStringLiteral(u"没有位置的流：%1。")
                                             .arg(numbers(m_network, spent.unplaced)));
    }

    QString operator()(const Stopped&) const { return QStringLiteral(u"已取消，没有改动。"); }

    QString operator()(const Refused&) const
    {
        return QStringLiteral(u"无法求解：下列流须先更正。");
    }

private:
    const InputNetwork& m_network;
};

} // namespace

QString summaryOf(const InputNetwork& network, const Outcome& outcome)
{
    return std::visit(OutcomeText(network), outcome);
}

std::vector<std::size_t> flowsInTheWay(const InputNetwork& network, const Outcome& outcome)
{
    std::vector<std::size_t> flows;
    if (const auto* proof = std::get_if<NoSlot>(&outcome))
        flows = {proof->flow};
    else if (const auto* overfull = std::get_if<Overfull>(&outcome))
        flows = overfull->flows;
    else if (const auto* spent = std::get_if<BudgetSpent>(&outcome))
        flows = spent->unplaced;
    else if (const auto* refused = std::get_if<Refused>(&outcome))
        for (const ObstructedFlow& flow : refused->flows)
            flows.push_back(flow.flow);
    for (std::size_t& flow : flows)
        flow = network.places[flow];
    return flows;
}
