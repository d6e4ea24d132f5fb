#include "synthesis/PlacementSearch.h"

namespace synthesis
{

/// A flow this heavy is allowed to wait in switches.
static constexpr quint32 weightToWait = 4;
/// What it costs beside the looks to take up a flow.
static constexpr quint64 stepsPerFlow = 40;
/// So that the weights of all flows of a network fit into a cell.
static constexpr quint32 heaviest = 30000;

PlacementSearch::PlacementSearch(SearchModel& model, SearchBudget& budget)
    : m_model(model),
      m_budget(budget),
      m_table(model),
      m_random(1),
      m_placements(model.flows().size()),
      m_weights(model.flows().size(), 1),
      m_turns(model.flows().size(), 0),
      m_best(m_placements),
      m_bestMissing(m_placements.size())
{
    for (quint32 flow = 0; flow < m_placements.size(); ++flow) {
        if (model.flows()[flow].patterns.empty())
            ++m_unplaceable;
        else
            enqueue(flow);
    }
}

void PlacementSearch::enqueue(quint32 flow)
{
    const SearchFlow& record = m_model.flows()[flow];
    m_waiting.emplace(m_turns[flow]++, record.patterns.front().choices(record.ringSlots), flow);
}

PlacementSearch::Candidate PlacementSearch::cheapest(quint32 flow)
{
    const SearchFlow& record = m_model.flows()[flow];
    Candidate best;
    quint32 ties = 0;
    for (quint32 number = 0; number < record.patterns.size(); ++number) {
        const Pattern& pattern = record.patterns[number];
        m_costs.assign(pattern.choices(record.ringSlots), 0);
        m_budget.spend(m_table.addCosts(record, pattern, m_costs));
        for (std::size_t choice = 0; choice < m_costs.size(); ++choice) {
            const quint64 cost = m_costs[choice];
            if (best.placement.isSet() && cost > best.cost)
                continue;
            if (best.placement.isSet() && cost == best.cost) {
                if (m_random.below(++ties) != 0)
                    continue;
            } else {
                ties = 1;
            }
            best = {{number, pattern.first + static_cast<qint32>(choice)}, cost};
            if (cost == 0)
                return best;
        }
    }
    return best;
}

void PlacementSearch::place(quint32 flow, const Placement& placement)
{
    const Pattern& pattern = m_model.flows()[flow].patterns[placement.pattern];
    m_table.occupy(flow, pattern, placement.slot, m_weights[flow]);
    m_placements[flow] = placement;
}

void PlacementSearch::remove(quint32 flow)
{
    const Pattern& pattern = m_model.flows()[flow].patterns[m_placements[flow].pattern];
    m_table.release(flow, pattern, m_weights[flow]);
    m_placements[flow] = Placement();
}

/// Places the flow, and lets those in its way wait again.
void PlacementSearch::settle(quint32 flow)
{
    const Candidate candidate = cheapest(flow);
    const SearchFlow& record = m_model.flows()[flow];
    if (candidate.cost > 0) {
        m_occupants.clear();
        m_table.findOccupants(record, record.patterns[candidate.placement.pattern],
                              candidate.placement.slot, m_occupants);
        for (const quint32 other : m_occupants) {
            remove(other);
            m_weights[other] = std::min(m_weights[other] + 1, heaviest);
            if (m_weights[other] >= weightToWait)
                m_model.addWaitingPatterns(other);
            enqueue(other);
        }
    }
    place(flow, candidate.placement);
}

void PlacementSearch::keepBest()
{
    m_best = m_placements;
    m_bestMissing = m_waiting.size() + m_unplaceable;
    m_lastImprovement = m_budget.steps();
    m_budget.setPlaced(m_placements.size() - m_bestMissing);
}

bool PlacementSearch::run(quint64 patience)
{
    m_lastImprovement = m_budget.steps();
    while (!m_waiting.empty()) {
        if (m_waiting.size() + m_unplaceable < m_bestMissing)
            keepBest();
        if (!m_budget.spend(stepsPerFlow) || m_budget.steps() - m_lastImprovement > patience)
            return false;
        const quint32 flow = std::get<2>(*m_waiting.begin());
        m_waiting.erase(m_waiting.begin());
        settle(flow);
    }
    keepBest();
    return m_unplaceable == 0;
}

} // namespace synthesis
