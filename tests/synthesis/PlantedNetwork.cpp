#include "tests/synthesis/PlantedNetwork.h"

#include "tests/planner/twin/RandomTopology.h"
#include "tests/support/RandomSource.h"

#include <algorithm>
#include <map>
#include <numeric>

namespace
{

constexpr int slot_us = 200;
constexpr int triesPerFlow = 60;

/// Nodes of a way from a talker to a listener, both included.
using Way = std::vector<int>;

class Planter
{
public:
    Planter(const PlantedStyle& style, quint64 seed)
        : m_style(style),
          m_random(seed),
          m_topology(m_random, m_network.draft)
    {
        quint64 cycle = 1;
        for (const quint32 period : style.periods)
            cycle = std::lcm(cycle, quint64(period));
        m_cycle = static_cast<int>(cycle / slot_us);
    }

    PlantedNetwork take()
    {
        grow();
        int failures = 0;
        while (static_cast<int>(m_network.draft.flows.size()) < m_style.flows && failures < 300 &&
               m_network.busiestPercent < m_style.loadPercent)
            failures += plantFlow() ? 0 : 1;
        return m_network;
    }

private:
    void grow()
    {
        for (int i = 0; i < m_style.switches; ++i) {
            m_topology.addNode(true);
            const int parents[] = {i - 1, i - 1, 0, m_random.below(std::max(1, i)),
                                   m_random.below(std::max(1, i))};
            if (i > 0)
                link(parents[m_style.shape], i);
        }
        if (m_style.shape == PlantedStyle::Ring && m_style.switches > 2)
            link(m_style.switches - 1, 0);
        for (int i = 0; m_style.shape == PlantedStyle::Mesh && i < m_style.switches; ++i) {
            const int a = m_random.below(m_style.switches);
            const int b = m_random.below(m_style.switches);
            if (a != b && !isLinked(a, b))
                link(a, b);
        }
        for (int i = 0; i < m_style.hosts; ++i) {
            const int host = m_topology.addNode(false);
            link(m_random.below(m_style.switches), host);
        }
        int number = 0;
        for (DraftNode& node : m_network.draft.nodes) {
            node.nodeID = number++;
            node.buffernum = m_style.buffers;
        }
    }

    bool isLinked(int a, int b) const
    {
        const std::vector<int>& known = m_neighbours[static_cast<size_t>(a)];
        return std::find(known.begin(), known.end(), b) != known.end();
    }

    void link(int a, int b)
    {
        m_topology.addLink(a, b);
        m_neighbours.resize(std::max(m_neighbours.size(), m_network.draft.nodes.size()));
        m_neighbours[static_cast<size_t>(a)].push_back(b);
        m_neighbours[static_cast<size_t>(b)].push_back(a);
    }

    /// The shortest ways from a talker, as the node before each node; of equal ones any.
    std::vector<int> waysFrom(int talker)
    {
        std::vector<int> before(m_neighbours.size(), -1);
        std::vector<int> reached{talker};
        before[static_cast<size_t>(talker)] = talker;
        for (size_t i = 0; i < reached.size(); ++i) {
            const int node = reached[i];
            if (node != talker && !m_network.draft.nodes[static_cast<size_t>(node)].isSwitch)
                continue;
            std::vector<int> next = m_neighbours[static_cast<size_t>(node)];
            m_random.shuffle(next);
            for (const int other : next) {
                if (before[static_cast<size_t>(other)] < 0) {
                    before[static_cast<size_t>(other)] = node;
                    reached.push_back(other);
                }
            }
        }
        return before;
    }

    static Way wayTo(int listener, const std::vector<int>& before)
    {
        Way way{listener};
        while (before[static_cast<size_t>(way.back())] != way.back())
            way.push_back(before[static_cast<size_t>(way.back())]);
        std::reverse(way.begin(), way.end());
        return way;
    }

    bool isNear(int listener, const std::vector<int>& before) const
    {
        return m_style.farthest == 0 ||
               static_cast<int>(wayTo(listener, before).size()) - 2 <= m_style.farthest;
    }

    std::vector<int> pickListeners(int talker, const std::vector<int>& before)
    {
        const bool isMulticast = m_random.chance(m_style.multicastPercent);
        const int wanted = isMulticast ? m_random.between(2, 4) : 1;
        std::vector<int> others;
        for (const int host : m_topology.hosts()) {
            if (host != talker && isNear(host, before))
                others.push_back(host);
        }
        m_random.shuffle(others);
        others.resize(std::min(others.size(), static_cast<size_t>(wanted)));
        return others;
    }

    bool isFree(int from, int to, int slot, int period)
    {
        std::vector<bool>& port = m_taken[{from, to}];
        port.resize(static_cast<size_t>(m_cycle));
        for (int at = slot; at < slot + m_cycle; at += period) {
            if (port[static_cast<size_t>(at % m_cycle)])
                return false;
        }
        return true;
    }

    void take(int from, int to, int slot, int period)
    {
        std::vector<bool>& port = m_taken[{from, to}];
        for (int at = slot; at < slot + m_cycle; at += period)
            port[static_cast<size_t>(at % m_cycle)] = true;
        const auto taken = std::count(port.begin(), port.end(), true);
        m_network.busiestPercent =
            std::max(m_network.busiestPercent, static_cast<int>(100 * taken / m_cycle));
    }

    /// Slots for the hops of a tree, by its links; empty when this start leads nowhere.
    std::map<std::pair<int, int>, int> tryStart(const std::vector<Way>& ways, int start, int period)
    {
        std::map<std::pair<int, int>, int> slots;
        for (const Way& way : ways) {
            int previous = start - 1;
            for (size_t i = 0; i + 1 < way.size(); ++i) {
                const std::pair<int, int> hop{way[i], way[i + 1]};
                if (slots.count(hop) == 0) {
                    const int slot = slotFor(hop, previous, i == 0, period);
                    if (slot < 0)
                        return {};
                    slots[hop] = slot;
                }
                previous = slots[hop];
            }
        }
        return slots;
    }

    int slotFor(const std::pair<int, int>& hop, int previous, bool isTalker, int period)
    {
        int slot = previous + 1;
        if (!isTalker && m_random.chance(m_style.waitPercent))
            slot += m_random.below(m_style.buffers);
        const int last = isTalker ? slot : previous + m_style.buffers;
        while (slot <= last && !isFree(hop.first, hop.second, slot, period))
            ++slot;
        return slot <= last ? slot : -1;
    }

    bool plantFlow()
    {
        const int talker = m_random.pick(m_topology.hosts());
        const std::vector<int> before = waysFrom(talker);
        std::vector<Way> ways;
        for (const int listener : pickListeners(talker, before))
            ways.push_back(wayTo(listener, before));
        if (ways.empty())
            return false;
        const quint32 period_us = m_random.pick(m_style.periods);
        const int period = static_cast<int>(period_us) / slot_us;
        for (int i = 0; i < triesPerFlow; ++i) {
            const auto slots = tryStart(ways, m_random.below(period), period);
            const bool fits =
                !slots.empty() && std::all_of(slots.begin(), slots.end(), [&](const auto& hop) {
                    return m_style.windows == PlantedStyle::Tight || hop.second < period;
                });
            if (!fits)
                continue;
            for (const auto& hop : slots)
                take(hop.first.first, hop.first.second, hop.second, period);
            addFlow(ways, slots, period_us);
            return true;
        }
        return false;
    }

    QString windowAround(int slot, quint32 period_us)
    {
        const bool isWide = m_style.windows == PlantedStyle::Wide ||
                            (m_style.windows == PlantedStyle::Mixed && m_random.chance(50));
        const int low = isWide ? 0 : std::max(0, slot - m_style.reach) * slot_us;
        const int high =
            isWide ? static_cast<int>(period_us) : (slot + m_style.reach + 1) * slot_us;
        return QStringLiteral(u"[%1,%2]").arg(QString::number(low), QString::number(high));
    }

    void addFlow(const std::vector<Way>& ways, const std::map<std::pair<int, int>, int>& slots,
                 quint32 period_us)
    {
        DraftVirtualLink virtualLink;
        DraftFlow flow;
        flow.flowID = flow.vlid = virtualLink.vlid =
            static_cast<int>(m_network.draft.flows.size()) + 1;
        flow.period = period_us;
        flow.size = m_random.between(46, 1500);
        flow.talker = m_topology.name(ways.front().front());
        flow.txwin = windowAround(slots.at({ways.front()[0], ways.front()[1]}), period_us);
        for (const Way& way : ways) {
            QStringList names;
            for (const int node : way)
                names.append(m_topology.name(node));
            virtualLink.paths.push_back(names);
            flow.listeners.push_back(
                {names.last(),
                 windowAround(slots.at({way[way.size() - 2], way.back()}), period_us)});
        }
        m_network.draft.virtualLinks.push_back(virtualLink);
        m_network.draft.flows.push_back(flow);
    }

    const PlantedStyle m_style;
    RandomSource m_random;
    PlantedNetwork m_network;
    RandomTopology m_topology;
    std::vector<std::vector<int>> m_neighbours;               ///< by node
    std::map<std::pair<int, int>, std::vector<bool>> m_taken; ///< slots of the cycle, by link
    int m_cycle = 0;                                          ///< slots
};

} // namespace

PlantedNetwork plantedNetwork(const PlantedStyle& style, quint64 seed)
{
    return Planter(style, seed).take();
}
