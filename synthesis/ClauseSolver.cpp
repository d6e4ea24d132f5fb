#include "synthesis/ClauseSolver.h"

#include <cadical.hpp>

#include <algorithm>

namespace synthesis
{

/// Conflicts between two looks at the budget: few at first, since most questions are easy.
static constexpr int conflictsAtFirst = 10;
static constexpr int mostConflicts = 640;

/// Fewer literals than this are forbidden in pairs, which needs no further variables.
static constexpr std::size_t pairwiseUpTo = 6;

/// Lets the caller stop the solver while it works.
class StopWhenAsked : public CaDiCaL::Terminator
{
public:
    explicit StopWhenAsked(SearchBudget& budget) : m_budget(budget) {}

    bool terminate() override
    {
        if (++m_calls % callsBetweenReports == 0)
            m_budget.report();
        return m_budget.isStopped();
    }

private:
    static constexpr int callsBetweenReports = 16;

    SearchBudget& m_budget;
    int m_calls = 0;
};

ClauseSolver::ClauseSolver() : m_solver(std::make_unique<CaDiCaL::Solver>())
{
    m_solver->set("quiet", 1);
}

ClauseSolver::~ClauseSolver() = default;

void ClauseSolver::addClause(const std::vector<int>& literals)
{
    for (const int literal : literals)
        m_solver->add(literal);
    m_solver->add(0);
    m_literals += literals.size();
}

void ClauseSolver::addAtMostOne(const std::vector<int>& literals)
{
    if (literals.size() < pairwiseUpTo) {
        for (std::size_t i = 0; i < literals.size(); ++i) {
            for (std::size_t j = i + 1; j < literals.size(); ++j)
                addClause({-literals[i], -literals[j]});
        }
        return;
    }
    // A chain: each link is true from the literal on that is true.
    int before = newVariable();
    addClause({-literals.front(), before});
    for (std::size_t i = 1; i < literals.size(); ++i) {
        addClause({-before, -literals[i]});
        if (i + 1 == literals.size())
            break;
        const int link = newVariable();
        addClause({-before, link});
        addClause({-literals[i], link});
        before = link;
    }
}

ClauseSolver::Answer ClauseSolver::solve(SearchBudget& budget, quint64 steps,
                                         const std::vector<int>& assumptions)
{
    // The time of a conflict grows with the clauses that are looked through for it.
    const quint64 stepsPerConflict = 500 + quint64(m_literals) / 64;
    StopWhenAsked terminator(budget);
    m_solver->connect_terminator(&terminator);
    int status = 0;
    quint64 used = 0;
    for (int conflicts = conflictsAtFirst; status == 0 && used < steps && budget.mayGoOn();
         conflicts = std::min(2 * conflicts, mostConflicts)) {
        for (const int assumption : assumptions)
            m_solver->assume(assumption);
        m_solver->limit("conflicts", conflicts);
        status = m_solver->solve();
        budget.spend(conflicts * stepsPerConflict);
        used += conflicts * stepsPerConflict;
    }
    m_solver->disconnect_terminator();
    if (status == 0)
        return Answer::Unknown;
    return status == 10 ? Answer::Satisfiable : Answer::Unsatisfiable;
}

bool ClauseSolver::isToBlame(int assumption) const
{
    return m_solver->failed(assumption);
}

bool ClauseSolver::isTrue(int literal) const
{
    return m_solver->val(literal) > 0;
}

} // namespace synthesis
