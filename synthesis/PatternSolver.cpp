#include "synthesis/PatternSolver.h"

#include <algorithm>
#include <numeric>
#include <set>

namespace synthesis
{

/// Cells of choices that are written down at most.
static constexpr quint64 mostCells = 3000000;
/// Cells after which all flows of a port recur together, at most.
static constexpr quint64 longestCommonRing = 1 << 16;

/// The cells after which all flows of a port recur, for each port; capped.
static std::vector<quint64> commonRings(const SearchModel& model)
{
    std::vector<quint64> rings(model.portCount(), 1);
    for (const SearchFlow& flow : model.flows()) {
        for (const Pattern& pattern : flow.patterns) {
            for (const Reservation& reservation : pattern.reservations) {
                quint64& ring = rings[reservation.port];
                if (ring <= longestCommonRing)
                    ring = std::lcm(ring, quint64(flow.ring));
            }
        }
    }
    return rings;
}

bool PatternSolver::isFeasible(const SearchModel& model)
{
    quint64 cells = 0;
    for (const SearchFlow& flow : model.flows()) {
        for (const Pattern& pattern : flow.patterns) {
            for (const Reservation& reservation : pattern.reservations)
                cells += quint64(pattern.choices(flow.ringSlots)) * reservation.length;
        }
    }
    const std::vector<quint64> rings = commonRings(model);
    return cells <= mostCells && std::all_of(rings.begin(), rings.end(), [](quint64 ring) {
               return ring <= longestCommonRing;
           });
}

PatternSolver::PatternSolver(const SearchModel& model, SearchBudget& budget)
    : m_model(model),
      m_budget(budget),
      m_noWaiting(m_solver.newVariable()),
      m_choices(model.flows().size()),
      m_cells(model.portCount())
{
    for (quint32 flow = 0; flow < model.flows().size(); ++flow)
        addFlow(flow);
    forbidSharing();
}

void PatternSolver::addFlow(quint32 flow)
{
    const SearchFlow& record = m_model.flows()[flow];
    std::vector<int> any;
    for (quint32 number = 0; number < record.patterns.size(); ++number) {
        const Pattern& pattern = record.patterns[number];
        for (quint32 i = 0; i < pattern.choices(record.ringSlots); ++i) {
            const Choice choice{{number, pattern.first + static_cast<qint32>(i)},
                                m_solver.newVariable()};
            if (number > 0)
                m_solver.addClause({-choice.variable, -m_noWaiting});
            addCells(flow, pattern, choice);
            m_choices[flow].push_back(choice);
            any.push_back(choice.variable);
        }
    }
    m_solver.addClause(any);
}

int PatternSolver::cellVariable(quint32 port, quint32 flow, quint32 cell)
{
    int& variable = m_cells[port][flow][cell];
    if (variable == 0)
        variable = m_solver.newVariable();
    return variable;
}

void PatternSolver::addCells(quint32 flow, const Pattern& pattern, const Choice& choice)
{
    const SearchFlow& record = m_model.flows()[flow];
    for (const Reservation& reservation : pattern.reservations) {
        const quint32 first = m_model.cellOf(record, reservation, choice.placement.slot);
        for (quint32 i = 0; i < reservation.length; ++i) {
            const quint32 cell = (first + i) % record.ring;
            m_solver.addClause({-choice.variable, cellVariable(reservation.port, flow, cell)});
        }
    }
}

void PatternSolver::forbidSharing()
{
    for (const auto& port : m_cells)
        forbidSharingOn(port);
}

void PatternSolver::forbidSharingOn(const std::map<quint32, std::map<quint32, int>>& cellsByFlow)
{
    quint64 ring = 1;
    for (const auto& flow : cellsByFlow)
        ring = std::lcm(ring, quint64(m_model.flows()[flow.first].ring));
    std::set<std::vector<int>> known;
    for (quint32 cell = 0; cell < ring; ++cell) {
        std::vector<int> users;
        for (const auto& flow : cellsByFlow) {
            const auto own = flow.second.find(cell % m_model.flows()[flow.first].ring);
            if (own != flow.second.end())
                users.push_back(own->second);
        }
        if (users.size() > 1 && known.insert(users).second)
            m_solver.addAtMostOne(users);
    }
}

ClauseSolver::Answer PatternSolver::run(quint64 steps)
{
    const ClauseSolver::Answer answer = m_solver.solve(m_budget, steps / 2, m_noWaiting);
    if (answer == ClauseSolver::Answer::Satisfiable)
        return answer;
    return m_solver.solve(m_budget, steps, 0);
}

std::vector<Placement> PatternSolver::placements() const
{
    std::vector<Placement> chosen;
    for (const std::vector<Choice>& choices : m_choices) {
        // Of several that are true the first one waits least; any of them is free.
        const auto first =
            std::find_if(choices.begin(), choices.end(),
                         [this](const Choice& choice) { return m_solver.isTrue(choice.variable); });
        chosen.push_back(first->placement);
    }
    return chosen;
}

} // namespace synthesis
