#pragma once

#include "synthesis/ClauseSolver.h"
#include "synthesis/PlacementSearch.h"

#include <map>

namespace synthesis
{

/// Searches a pattern and a send slot for each flow completely: a variable for each choice, and at
/// most one flow in each cell of a port.
class PatternSolver
{
public:
    /// Refers to both. The flows must have all their patterns, and at least one each.
    PatternSolver(const SearchModel& model, SearchBudget& budget);

    /// Whether the choices are few enough to be written down.
    static bool isFeasible(const SearchModel& model);

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
    int cellVariable(quint32 port, quint32 flow, quint32 cell);
    void forbidSharing();
    void forbidSharingOn(const std::map<quint32, std::map<quint32, int>>& cellsByFlow);

    const SearchModel& m_model;
    SearchBudget& m_budget;
    ClauseSolver m_solver;
    int m_noWaiting;                            ///< true forbids all patterns but the first
    std::vector<std::vector<Choice>> m_choices; ///< by flow
    /// The variable of each cell that a flow may take up, by port, flow and cell of its ring.
    std::vector<std::map<quint32, std::map<quint32, int>>> m_cells;
};

} // namespace synthesis
