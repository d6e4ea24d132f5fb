#include "bench/planner/BenchNetwork.h"

#include "tests/support/RandomSource.h"
#include "tests/support/Text.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr int slot_us = 200;
constexpr int spareSlots = 8; ///< that a window has beyond what its flows need

class NetworkMaker
{
public:
    explicit NetworkMaker(const BenchCase& benchCase) : m_case(benchCase), m_random(1) {}

    NetworkDraft make()
    {
        addNodes();
        linkSwitches();
        for (int flow = 0; flow < m_case.flowsPerHost; ++flow) {
            for (int host = 0; host < hostCount(); ++host)
                addFlow(host, flow);
        }
        addCycleFlow();
        return std::move(m_draft);
    }

private:
    int hostCount() const { return m_case.switches * m_case.hostsPerSwitch; }
    int switchOf(int host) const { return host / m_case.hostsPerSwitch; }
    int nodeOfSwitch(int number) const { return hostCount() + number; }
    const QString& nameOfHost(int host) const { return m_draft.nodes[size_t(host)].name; }
    const QString& nameOfSwitch(int number) const
    {
        return m_draft.nodes[size_t(nodeOfSwitch(number))].name;
    }

    // Enough to let all flows that meet pass one after the other.
    int bufferNum() const
    {
        constexpr int most = 65000; // what the document can tell
        if (isCrowded() || m_case.windows == BenchCase::Same)
            return std::min(periodInSlots(), most);
        return 2 * m_case.flowsPerHost + 6;
    }

    bool isCrowded() const
    {
        return m_case.windows == BenchCase::Nested || m_case.windows == BenchCase::Staircase;
    }

    // Slots that a talker has to itself: its flows one after the other, or so many that the receive
    // window never limits the windows on the way.
    int stretch() const
    {
        if (m_case.windows == BenchCase::Disjoint)
            return (m_case.flowsPerHost + 1) * (m_case.reach + 4);
        return m_case.flowsPerHost + spareSlots + (m_case.reach + 2) * bufferNum();
    }

    int periodInSlots() const
    {
        if (isCrowded())
            return 3 * m_case.flowsPerHost + spareSlots;
        return m_case.windows == BenchCase::Same ? 2 * hostCount() * m_case.flowsPerHost
                                                 : hostCount() * stretch();
    }

    void addNodes()
    {
        const int buffers = bufferNum();
        for (int host = 0; host < hostCount(); ++host)
            m_draft.nodes.push_back({QStringLiteral("H%1").arg(host), false, host, buffers, 0});
        for (int i = 0; i < m_case.switches; ++i)
            m_draft.nodes.push_back(
                {QStringLiteral("S%1").arg(i), true, nodeOfSwitch(i), buffers, 0});
        for (int host = 0; host < hostCount(); ++host)
            link(host, nodeOfSwitch(switchOf(host)));
    }

    void link(int a, int b)
    {
        DraftNode& from = m_draft.nodes[size_t(a)];
        DraftNode& to = m_draft.nodes[size_t(b)];
        m_draft.links.push_back({a, b, from.ports++, to.ports++});
    }

    void linkTwoSwitches(int a, int b) { link(nodeOfSwitch(a), nodeOfSwitch(b)); }

    int side() const { return int(std::lround(std::sqrt(m_case.switches))); }

    void linkSwitches()
    {
        for (int i = 1; i < m_case.switches; ++i) {
            if (m_case.shape == BenchCase::Tree)
                linkTwoSwitches((i - 1) / 2, i);
            else if (m_case.shape != BenchCase::Mesh || i % side() != 0)
                linkTwoSwitches(i - 1, i);
            if (m_case.shape == BenchCase::Mesh && i >= side())
                linkTwoSwitches(i - side(), i);
        }
        if (m_case.shape == BenchCase::Ring)
            linkTwoSwitches(m_case.switches - 1, 0);
    }

    // Flows of a talker leave it by one way and only get off it at different places. Where ways
    // fork, the planner, which takes slots back from nobody, soon finds no plan among so many
    // conflicts.
    int nextSwitch(int at) const
    {
        const int last = m_case.switches - 1;
        switch (m_case.shape) {
        case BenchCase::Tree:
            return (at - 1) / 2; // towards the root, which stays where it is
        case BenchCase::Ring:
            return at == last ? 0 : at + 1;
        case BenchCase::Mesh:
            return at % side() + 1 < side() ? std::min(at + 1, last) : std::min(at + side(), last);
        default:
            return std::min(at + 1, last);
        }
    }

    /// The switches on the way from the talker's one on.
    std::vector<int> wayFrom(int first) const
    {
        std::vector<int> way{first};
        while (int(way.size()) <= m_case.reach && nextSwitch(way.back()) != way.back())
            way.push_back(nextSwitch(way.back()));
        return way;
    }

    QStringList pathTo(int talker, int listener, const std::vector<int>& way) const
    {
        QStringList path{nameOfHost(talker)};
        for (const int at : way) {
            path.append(nameOfSwitch(at));
            if (at == switchOf(listener))
                break;
        }
        path.append(nameOfHost(listener));
        return path;
    }

    std::vector<int> chooseListeners(const std::vector<int>& way)
    {
        if (m_case.allToOneHost)
            return {hostCount() - 1};
        const int wanted = m_random.chance(m_case.multicastPercent) ? 3 : 1;
        std::vector<int> listeners;
        for (int tries = 0; way.size() > 1 && tries < wanted; ++tries) {
            const int at = way[size_t(m_random.between(1, int(way.size()) - 1))];
            const int host = at * m_case.hostsPerSwitch + m_random.below(m_case.hostsPerSwitch);
            if (std::find(listeners.begin(), listeners.end(), host) == listeners.end())
                listeners.push_back(host);
        }
        return listeners;
    }

    void setWindows(DraftFlow& flow, int host, int number) const
    {
        int first = host * stretch();
        int lastSend = first + m_case.flowsPerHost + spareSlots - 1;
        int last = first + stretch() - 1;
        if (m_case.windows == BenchCase::Disjoint) {
            first += number * (m_case.reach + 4);
            lastSend = first;
            last = first + m_case.reach + 3;
        } else if (m_case.windows == BenchCase::Same) {
            first = 0;
            lastSend = periodInSlots() - 3;
            last = periodInSlots() - 1;
        } else if (isCrowded()) {
            first = m_case.windows == BenchCase::Nested ? 0 : m_case.flowsPerHost - number;
            lastSend = 2 * m_case.flowsPerHost - number;
            last = periodInSlots() - 1;
        }
        flow.txwin = windowText(first, lastSend);
        for (DraftListener& listener : flow.listeners)
            listener.rxwin = windowText(first, last);
    }

    void addFlow(int host, int number)
    {
        const std::vector<int> way = wayFrom(switchOf(host));
        const std::vector<int> listeners = chooseListeners(way);
        if (listeners.empty() || listeners.front() == host)
            return;
        DraftFlow flow;
        flow.flowID = int(m_draft.flows.size()) + 1;
        flow.vlid = flow.flowID;
        flow.period = quint32(periodInSlots() * slot_us);
        flow.talker = nameOfHost(host);
        DraftVirtualLink virtualLink{flow.vlid, {}};
        for (const int listener : listeners) {
            virtualLink.paths.push_back(pathTo(host, listener, way));
            flow.listeners.push_back({nameOfHost(listener), QString()});
        }
        setWindows(flow, host, number);
        m_draft.virtualLinks.push_back(virtualLink);
        m_draft.flows.push_back(flow);
    }

    // One more flow of the first talker, sent once, stretches the cycle to the wanted
    // transmissions.
    void addCycleFlow()
    {
        if (m_case.transmissions == 1)
            return;
        DraftFlow flow = m_draft.flows.front();
        flow.flowID = int(m_draft.flows.size()) + 1;
        flow.period *= quint32(m_case.transmissions);
        setWindows(flow, 0, m_case.flowsPerHost);
        m_draft.flows.push_back(flow);
    }

    const BenchCase& m_case;
    RandomSource m_random;
    NetworkDraft m_draft;
};

} // namespace

NetworkDraft networkOf(const BenchCase& benchCase)
{
    return NetworkMaker(benchCase).make();
}
