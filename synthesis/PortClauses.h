#pragma once

#include "synthesis/ClauseSolver.h"
#include "synthesis/SearchModel.h"

#include <map>

namespace synthesis
{

/// Clauses that let at most one flow take up each cell of a port.
class PortClauses
{
public:
    /// Refers to all of them. The clauses cost steps: when these are spent, some are missing.
    PortClauses(const SearchModel& model, ClauseSolver& solver, SearchBudget& budget);

    /// Whether the choices of the model are few enough to be written down.
    static bool areFeasible(const SearchModel& model);

    /// The variable that is true when the flow takes up the cell of its ring.
    int cell(quint32 port, quint32 flow, quint32 cell);

    /// Adds the clauses; all cells must have been asked for.
    void forbidSharing();

private:
    using CellsByFlow = std::map<quint32, std::map<quint32, int>>;

    void forbidSharingOn(const CellsByFlow& cells);

    const SearchModel& m_model;
    ClauseSolver& m_solver;
    SearchBudget& m_budget;
    std::vector<CellsByFlow> m_cells; ///< by port
};

} // namespace synthesis
