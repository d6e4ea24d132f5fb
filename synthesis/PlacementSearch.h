#pragma once

#include "synthesis/PortTable.h"
#include "synthesis/RandomSequence.h"
#include "synthesis/SearchBudget.h"

#include <set>
#include <tuple>

namespace synthesis
{

/// Where a flow stands: a pattern and the send slot it begins with.
struct Placement {
    static constexpr quint32 none = 0xFFFFFFFFU;

    quint32 pattern = none; ///< in SearchFlow::patterns
    qint32 slot = 0;

    bool isSet() const { return pattern != none; }
};

/// Places flow after flow, and moves out of the way what is lighter.
///
/// The flow with the fewest choices comes first, and one that was moved behind those that were not.
/// It takes its first free place; without one, that
/// with the least weight in its way, and what was there has to find another place and becomes
/// heavier. So flows that are hard to place settle first. Placed flows never share a cell.
class PlacementSearch
{
public:
    /// Refers to both; adds patterns with waiting to flows that are hard to place.
    PlacementSearch(SearchModel& model, SearchBudget& budget);

    /// Goes on until all flows are placed, true, or for so many steps without getting better.
    ///
    /// A flow without any pattern stays missing; the others are placed all the same.
    bool run(quint64 patience);

    /// By number in the model; the state in which the fewest were missing.
    const std::vector<Placement>& best() const { return m_best; }
    std::size_t missing() const { return m_bestMissing; }

private:
    struct Candidate {
        Placement placement;
        quint64 cost = 0;
    };

    Candidate cheapest(quint32 flow);
    void place(quint32 flow, const Placement& placement);
    void remove(quint32 flow);
    void enqueue(quint32 flow);
    void settle(quint32 flow);
    void keepBest();

    SearchModel& m_model;
    SearchBudget& m_budget;
    PortTable m_table;
    RandomSequence m_random;
    std::vector<Placement> m_placements;
    std::vector<quint32> m_weights;
    std::vector<quint32> m_turns; ///< how often each flow was taken up
    /// By turns, number of choices, number.
    std::set<std::tuple<quint32, quint32, quint32>> m_waiting;
    std::vector<quint64> m_costs;
    std::vector<quint32> m_occupants;
    std::vector<Placement> m_best;
    std::size_t m_bestMissing;
    quint64 m_lastImprovement = 0; ///< steps
    std::size_t m_unplaceable = 0; ///< flows without a pattern
};

} // namespace synthesis
