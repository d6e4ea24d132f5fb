#include "synthesis/IntervalProof.h"

#include "synthesis/HopWindows.h"

#include "planner/PreProcess.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

namespace synthesis
{

using namespace planner;

namespace
{

/// Ports with more transmissions in a cycle are not searched interval by interval.
constexpr std::size_t mostTransmissions = 3000;

/// What it costs to look at a transmission for one start of intervals.
constexpr quint64 stepsPerDemand = 4;

/// A transmission that must fall between two slots.
struct Demand {
    qint64 start;
    qint64 end;
    std::size_t flow; ///< place
};

/// What has been found so far.
struct Best {
    std::optional<Overfull> proof;

    void offer(const Overfull& found)
    {
        if (!proof || sizeOf(found) < sizeOf(*proof))
            proof = found;
    }

private:
    static std::tuple<std::size_t, std::size_t, qint64> sizeOf(const Overfull& proof)
    {
        return {proof.flows.size(), proof.transmissions, proof.interval.start};
    }
};

/// The demands on one port.
class PortDemands
{
public:
    PortDemands(quint32 port, std::vector<Demand> demands, qint64 cycleSlots)
        : m_port(port),
          m_demands(std::move(demands)),
          m_cycleSlots(cycleSlots)
    {
    }

    void countAll(Best& best) const
    {
        if (m_cycleSlots == 0 || m_demands.size() <= static_cast<std::size_t>(m_cycleSlots))
            return;
        best.offer(proofFor(0, m_cycleSlots - 1, m_demands));
    }

    void searchIntervals(Best& best, SearchBudget& budget)
    {
        if (m_demands.size() > mostTransmissions)
            return;
        repeatOverCycle();
        std::sort(m_demands.begin(), m_demands.end(), [](const Demand& a, const Demand& b) {
            return std::tie(a.start, a.end, a.flow) < std::tie(b.start, b.end, b.flow);
        });
        for (std::size_t first = 0; first < m_demands.size(); ++first) {
            const qint64 start = m_demands[first].start;
            if (m_cycleSlots > 0 && start >= m_cycleSlots)
                continue; // the repetition
            if (first > 0 && m_demands[first - 1].start == start)
                continue;
            if (!budget.spend(stepsPerDemand * m_demands.size()))
                return;
            searchFrom(first, best);
        }
    }

private:
    /// Begins each demand inside the cycle, and adds it again a cycle later.
    void repeatOverCycle()
    {
        if (m_cycleSlots == 0)
            return;
        const std::size_t count = m_demands.size();
        for (std::size_t i = 0; i < count; ++i) {
            Demand& demand = m_demands[i];
            const qint64 rest = demand.start % m_cycleSlots;
            const qint64 moved = (rest < 0 ? rest + m_cycleSlots : rest) - demand.start;
            demand.start += moved;
            demand.end += moved;
            m_demands.push_back(
                {demand.start + m_cycleSlots, demand.end + m_cycleSlots, demand.flow});
        }
    }

    /// Looks at the intervals that begin with this demand: the shortest that holds too many.
    void searchFrom(std::size_t first, Best& best) const
    {
        const qint64 start = m_demands[first].start;
        std::vector<qint64> ends;
        for (std::size_t i = first; i < m_demands.size(); ++i) {
            if (m_cycleSlots == 0 || m_demands[i].end < start + m_cycleSlots)
                ends.push_back(m_demands[i].end);
        }
        std::sort(ends.begin(), ends.end());
        for (std::size_t i = 0; i < ends.size(); ++i) {
            if (static_cast<qint64>(i) > ends[i] - start) {
                offerInterval(start, ends[i], best);
                return;
            }
        }
    }

    void offerInterval(qint64 start, qint64 end, Best& best) const
    {
        std::vector<Demand> inside;
        std::copy_if(
            m_demands.begin(), m_demands.end(), std::back_inserter(inside),
            [=](const Demand& demand) { return demand.start >= start && demand.end <= end; });
        best.offer(proofFor(start, end, inside));
    }

    Overfull proofFor(qint64 start, qint64 end, const std::vector<Demand>& inside) const
    {
        Overfull proof;
        proof.nodeID = static_cast<quint16>(m_port >> 16);
        proof.outport = static_cast<quint16>(m_port);
        proof.interval.start = static_cast<qint32>(start);
        proof.interval.end = static_cast<qint32>(end);
        proof.transmissions = inside.size();
        std::set<std::size_t> flows;
        for (const Demand& demand : inside)
            flows.insert(demand.flow);
        proof.flows.assign(flows.begin(), flows.end());
        return proof;
    }

    quint32 m_port;
    std::vector<Demand> m_demands;
    qint64 m_cycleSlots; ///< 0 when intervals may not reach past the end of the cycle
};

/// All demands by port, the ports by node and number.
std::map<quint32, std::vector<Demand>> collectDemands(const PlanningContext& context,
                                                      const Repetition& repetition,
                                                      const std::vector<std::size_t>& places)
{
    std::map<quint32, std::vector<Demand>> ports;
    auto next = places.begin();
    std::size_t place = 0;
    for (const TTFlow& flow : context.flows) {
        if (next == places.end() || *next != place++)
            continue;
        for (const PortWindow& hop : possibleHopWindows(flow, context.switchBufferNum)) {
            for (quint32 number = 0; number < repetition.transmissions(flow); ++number) {
                const qint64 shift = qint64(number) * periodInSlots(flow);
                ports[hop.port].push_back(
                    {hop.window.start + shift, hop.window.end + shift, *next});
            }
        }
        ++next;
    }
    return ports;
}

} // namespace

std::optional<Overfull> findOverfullInterval(const PlanningContext& context,
                                             const Repetition& repetition,
                                             const std::vector<std::size_t>& places,
                                             SearchBudget& budget)
{
    const qint64 cycleSlots =
        repetition.cycleHoldsWholeSlots() ? repetition.cycle_us() / slotLength_us : 0;
    Best best;
    for (auto& port : collectDemands(context, repetition, places)) {
        PortDemands demands(port.first, std::move(port.second), cycleSlots);
        demands.countAll(best);
        demands.searchIntervals(best, budget);
    }
    return best.proof;
}

} // namespace synthesis
