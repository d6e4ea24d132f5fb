#pragma once

#include "synthesis/SearchBudget.h"

#include <memory>
#include <vector>

namespace CaDiCaL
{
class Solver;
}

namespace synthesis
{

/// A set of clauses over numbered variables, and the search for values that satisfy them.
///
/// A literal is the number of a variable, from 1, or its negative.
class ClauseSolver
{
public:
    enum class Answer { Satisfiable, Unsatisfiable, Unknown };

    ClauseSolver();
    ~ClauseSolver();
    ClauseSolver(const ClauseSolver&) = delete;
    ClauseSolver& operator=(const ClauseSolver&) = delete;

    int newVariable() { return ++m_variables; }
    void addClause(const std::vector<int>& literals);
    /// At most one of the literals is true.
    void addAtMostOne(const std::vector<int>& literals);

    /// Solves under the assumptions; Unknown when the steps are spent or it is stopped.
    ///
    /// Takes at most so many steps, and fewer when the budget has fewer left.
    Answer solve(SearchBudget& budget, quint64 steps, const std::vector<int>& assumptions);

    /// The value of a literal after Answer::Satisfiable.
    bool isTrue(int literal) const;

    /// Whether an assumption had a part in Answer::Unsatisfiable.
    bool isToBlame(int assumption) const;

    /// How many literals the clauses have.
    std::size_t size() const { return m_literals; }

private:
    std::unique_ptr<CaDiCaL::Solver> m_solver;
    int m_variables = 0;
    std::size_t m_literals = 0;
};

} // namespace synthesis
