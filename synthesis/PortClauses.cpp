#include "synthesis/PortClauses.h"

#include <algorithm>
#include <numeric>
#include <set>

namespace synthesis
{

/// Cells of choices that are written down at most.
static constexpr quint64 mostCells = 3000000;
/// What it costs to look a cell up.
static constexpr quint64 stepsPerCell = 10;
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

bool PortClauses::areFeasible(const SearchModel& model)
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

PortClauses::PortClauses(const SearchModel& model, ClauseSolver& solver, SearchBudget& budget)
    : m_model(model),
      m_solver(solver),
      m_budget(budget),
      m_cells(model.portCount())
{
}

int PortClauses::cell(quint32 port, quint32 flow, quint32 cell)
{
    m_budget.spend(stepsPerCell);
    int& variable = m_cells[port][flow][cell];
    if (variable == 0)
        variable = m_solver.newVariable();
    return variable;
}

void PortClauses::forbidSharing()
{
    for (const CellsByFlow& port : m_cells)
        forbidSharingOn(port);
}

void PortClauses::forbidSharingOn(const CellsByFlow& cells)
{
    quint64 ring = 1;
    for (const auto& flow : cells)
        ring = std::lcm(ring, quint64(m_model.flows()[flow.first].ring));
    std::set<std::vector<int>> known;
    for (quint32 cell = 0; cell < ring && m_budget.spend(cells.size() * stepsPerCell); ++cell) {
        std::vector<int> users;
        for (const auto& flow : cells) {
            const auto own = flow.second.find(cell % m_model.flows()[flow.first].ring);
            if (own != flow.second.end())
                users.push_back(own->second);
        }
        if (users.size() > 1 && known.insert(users).second)
            m_solver.addAtMostOne(users);
    }
}

} // namespace synthesis
