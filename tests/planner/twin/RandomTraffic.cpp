#include "tests/planner/twin/RandomTraffic.h"

#include <numeric>

void RandomTraffic::addVirtualLink(int talker, const std::vector<int>& listeners, int detourPercent,
                                   int wanderPercent)
{
    DraftVirtualLink link;
    link.vlid = static_cast<int>(m_draft.virtualLinks.size()) + 1;
    for (const int listener : listeners) {
        if (m_random.chance(wanderPercent))
            link.paths.push_back(m_topology.wander(talker, listener));
        else
            link.paths.push_back(
                m_topology.route(talker, listener, m_random.chance(detourPercent)));
    }
    m_draft.virtualLinks.push_back(link);
}

/// Microseconds that cover exactly these slots; the bounds lie anywhere the rounding allows.
QString RandomTraffic::windowText(int firstSlot, int lastSlot)
{
    const int low = firstSlot * 200 - m_random.pick({0, 0, 0, m_random.between(1, 199)});
    int high = (lastSlot + 1) * 200;
    if (m_random.chance(20))
        high += m_random.between(1, 29);
    else if (m_random.chance(20))
        high -= m_random.between(1, 170);
    return QStringLiteral(u"[%1,%2]").arg(QString::number(low), QString::number(high));
}

int RandomTraffic::bufferOf(bool isSwitch) const
{
    int last = 0;
    for (const DraftNode& node : m_draft.nodes) {
        if (node.isSwitch == isSwitch)
            last = node.buffernum;
    }
    return last;
}

void RandomTraffic::addFlow(const DraftVirtualLink& link)
{
    DraftFlow flow;
    flow.flowID = static_cast<int>(m_draft.flows.size()) + 1;
    flow.size = m_random.between(46, 1500);
    flow.vlid = link.vlid;
    flow.talker = link.paths.front().first();
    const int buffer = bufferOf(true);
    const int first = m_style.wideSend ? 0 : m_random.below(m_style.firstSlots);
    const int last = m_style.wideSend ? 60 : first + m_random.below(m_style.widest + 1);
    flow.txwin = windowText(first, last);
    for (const QStringList& path : link.paths) {
        const int hops = path.size() - 2;
        const int base = m_style.wideSend ? m_random.below(m_style.firstSlots) : first;
        int rxFirst = base + hops;
        int rxLast = rxFirst + m_random.below(m_style.widest + 1);
        if (m_style.wideReceive) {
            rxLast = last + hops + 10 + m_random.below(40);
        } else if (!m_style.wideSend) {
            // Anywhere between what one slot a hop and full buffers give; now and then out of
            // reach.
            rxFirst += m_random.between(-hops, buffer * hops / 2);
            rxLast = rxFirst + hops + m_random.below(2 * m_style.widest + 2);
        }
        flow.listeners.push_back({path.last(), windowText(rxFirst, rxLast)});
    }
    m_draft.flows.push_back(flow);
}

void RandomTraffic::choosePeriods()
{
    static const std::vector<std::vector<int>> pools = {
        {2000, 4000, 8000}, {1000, 2000, 4000}, {1000, 3000, 2000}, {600, 900, 1200},
        {1500, 2500, 1000}, {300, 700, 2100},   {5000, 10000},      {100, 150, 350},
    };
    const std::vector<int>& pool = m_random.pick(pools);
    quint64 cycle = 1;
    for (DraftFlow& flow : m_draft.flows) {
        flow.period = static_cast<quint32>(m_style.samePeriod ? pool.front() : m_random.pick(pool));
        cycle = std::lcm(cycle, quint64(flow.period));
    }
    quint64 instances = 0;
    for (const DraftFlow& flow : m_draft.flows)
        instances += cycle / flow.period;
    if (instances <= static_cast<quint64>(m_style.mostInstances))
        return;
    for (DraftFlow& flow : m_draft.flows)
        flow.period = static_cast<quint32>(pool.front());
}
