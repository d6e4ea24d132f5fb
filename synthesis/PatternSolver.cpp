#include "synthesis/PatternSolver.h"

#include <algorithm>

namespace synthesis
{

PatternSolver::PatternSolver(const SearchModel& model, SearchBudget& budget)
    : m_model(model),
      m_budget(budget),
      m_ports(model, m_solver, budget),
      m_noWaiting(m_solver.newVariable()),
      m_choices(model.flows().size())
{
    for (quint32 flow = 0; flow < model.flows().size() && budget.mayGoOn(); ++flow)
        addFlow(flow);
    m_ports.forbidSharing();
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

void PatternSolver::addCells(quint32 flow, const Pattern& pattern, const Choice& choice)
{
    const SearchFlow& record = m_model.flows()[flow];
    for (const Reservation& reservation : pattern.reservations) {
        const quint32 first = m_model.cellOf(record, reservation, choice.placement.slot);
        for (quint32 i = 0; i < reservation.length; ++i) {
            const quint32 cell = (first + i) % record.ring;
            m_solver.addClause({-choice.variable, m_ports.cell(reservation.port, flow, cell)});
        }
    }
}

ClauseSolver::Answer PatternSolver::run(quint64 steps)
{
    const ClauseSolver::Answer answer = m_solver.solve(m_budget, steps / 2, {m_noWaiting});
    if (answer == ClauseSolver::Answer::Satisfiable)
        return answer;
    return m_solver.solve(m_budget, steps, {});
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
