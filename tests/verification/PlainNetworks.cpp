#include "tests/verification/PlainNetworks.h"

#include "tests/support/RandomSource.h"
#include "tests/support/Text.h"

#include <QSet>

#include <algorithm>

namespace
{

constexpr int slot_us = 200;

class PlainNetworkMaker
{
public:
    explicit PlainNetworkMaker(quint64 seed) : m_random(seed) {}

    NetworkDraft make()
    {
        addNodes();
        linkNodes();
        const bool multicast = m_random.chance(50);
        const int flows = m_random.between(1, 6);
        for (int number = 1; number <= flows; ++number)
            addFlow(number, multicast ? m_random.between(1, 3) : 1);
        return m_draft;
    }

private:
    void addNodes()
    {
        m_hosts = m_random.between(3, 8);
        m_switches = m_random.between(1, 4);
        const int buffers = m_random.between(3, 8);
        for (int i = 0; i < m_hosts; ++i)
            m_draft.nodes.push_back({QStringLiteral(u"H%1").arg(i), false, i, buffers, 0});
        for (int i = 0; i < m_switches; ++i)
            m_draft.nodes.push_back({QStringLiteral(u"S%1").arg(i), true, 100 + i, buffers, 0});
    }

    DraftNode& switchNode(int number)
    {
        return m_draft.nodes[static_cast<size_t>(m_hosts) + static_cast<size_t>(number)];
    }

    void linkNodes()
    {
        m_parents.assign(static_cast<size_t>(m_switches), -1);
        for (int i = 1; i < m_switches; ++i) {
            const int parent = m_random.below(i);
            m_parents[static_cast<size_t>(i)] = parent;
            link(m_hosts + i, m_hosts + parent);
        }
        for (int i = 0; i < m_hosts; ++i) {
            m_homes.push_back(m_random.below(m_switches));
            link(i, m_hosts + m_homes.back());
        }
    }

    void link(int a, int b)
    {
        DraftNode& first = m_draft.nodes[static_cast<size_t>(a)];
        DraftNode& second = m_draft.nodes[static_cast<size_t>(b)];
        m_draft.links.push_back({a, b, first.ports, second.ports});
        ++first.ports;
        ++second.ports;
    }

    /// Switches from one to the root of the tree.
    std::vector<int> rootwards(int number) const
    {
        std::vector<int> way;
        for (; number >= 0; number = m_parents[static_cast<size_t>(number)])
            way.push_back(number);
        return way;
    }

    QStringList pathBetween(int from, int to)
    {
        std::vector<int> up = rootwards(m_homes[static_cast<size_t>(from)]);
        std::vector<int> down = rootwards(m_homes[static_cast<size_t>(to)]);
        while (up.size() > 1 && down.size() > 1 && up[up.size() - 2] == down[down.size() - 2]) {
            up.pop_back();
            down.pop_back();
        }
        QStringList names{m_draft.nodes[static_cast<size_t>(from)].name};
        for (const int number : up)
            names.append(switchNode(number).name);
        for (auto number = std::next(down.rbegin()); number != down.rend(); ++number)
            names.append(switchNode(*number).name);
        names.append(m_draft.nodes[static_cast<size_t>(to)].name);
        return names;
    }

    void addFlow(int number, int listeners)
    {
        DraftVirtualLink virtualLink;
        virtualLink.vlid = number;
        DraftFlow flow;
        flow.flowID = number;
        flow.vlid = number;
        flow.period = m_random.pick({4000U, 8000U, 16000U});
        const int slotCount = static_cast<int>(flow.period) / slot_us;
        const int talker = m_random.below(m_hosts);
        const int firstSend = m_random.below(slotCount / 2);
        flow.talker = m_draft.nodes[static_cast<size_t>(talker)].name;
        flow.txwin = windowText(firstSend, firstSend + m_random.below(6));
        QSet<int> taken{talker};
        for (int i = 0; i < listeners && taken.size() < m_hosts; ++i) {
            int listener = m_random.below(m_hosts);
            while (taken.contains(listener))
                listener = (listener + 1) % m_hosts;
            taken.insert(listener);
            const QStringList path = pathBetween(talker, listener);
            virtualLink.paths.push_back(path);
            const int first = firstSend + path.size() - 2 + m_random.below(4);
            flow.listeners.push_back({m_draft.nodes[static_cast<size_t>(listener)].name,
                                      windowText(first, first + m_random.between(2, 8))});
        }
        m_draft.virtualLinks.push_back(virtualLink);
        m_draft.flows.push_back(flow);
    }

    RandomSource m_random;
    NetworkDraft m_draft;
    int m_hosts = 0;
    int m_switches = 0;
    std::vector<int> m_parents; ///< of each switch; -1 at the root
    std::vector<int> m_homes;   ///< the switch of each host
};

} // namespace

NetworkDraft plainNetwork(quint64 seed)
{
    return PlainNetworkMaker(seed).make();
}
