#pragma once

#include "synthesis/PlacementSearch.h"
#include "synthesis/PortClauses.h"

namespace synthesis
{

/// Searches a pattern and a send slot for each flow completely: a variable for each choice, and at
/// most one flow in each cell of a port.
class PatternSolver
{
public:
    /// Refers to both. The flows must have all their patterns, and at least one each. See
    /// PortClauses::areFeasible().
    PatternSolver(const SearchModel& model, SearchBudget& budget);

    /// Looks for placements of all flows, without waiting beyond the least first.
    ///
    /// Unsatisfiable is a proof that the model's choices hold no plan.
    ClauseSolver::Answer run(quint64 steps);

    /// By number in the model, after Satisfiable.
    std::vector<Placement> placements() const;

private:
    struct Choice {
        Placement placement;
        int variable;
    };

    void addFlow(quint32 flow);
    void addCells(quint32 flow, const Pattern& pattern, const Choice& choice);

    const SearchModel& m_model;
    SearchBudget& m_budget;
    ClauseSolver m_solver;
    PortClauses m_ports;
    int m_noWaiting;                            ///< true forbids all patterns but the first
    std::vector<std::vector<Choice>> m_choices; ///< by flow
};

} // namespace synthesis
