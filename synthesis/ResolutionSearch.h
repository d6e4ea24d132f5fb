#pragma once

#include "synthesis/PlacementSearch.h"
#include "synthesis/PortClauses.h"

#include <functional>
#include <map>
#include <optional>

namespace synthesis
{

/// Looks for windows that overlap a little, so that the second stage can resolve the overlaps.
///
/// A frame that waits gets windows of several slots, of which it uses one. Here such windows may
/// overlap as long as each hop can have a slot of its own inside its window, in order along the
/// path. The rules decide otherwise now and then, so each answer is tried; one that fails is
/// forbidden for the flows that overlapped. As few flows as possible are let overlap.
class ResolutionSearch
{
public:
    /// What the second stage makes of placements.
    struct Verdict {
        bool isFaultless = false;
        std::optional<quint32> failedPort; ///< that was not resolved, see planner::pairKey()
    };
    using Trial = std::function<Verdict(const std::vector<Placement>&)>;

    /// Refers to both. The flows must have all their patterns; see PortClauses::areFeasible().
    ResolutionSearch(const SearchModel& model, SearchBudget& budget);

    /// Placements that have passed the trial; none when so many steps were not enough.
    std::vector<Placement> run(quint64 steps, const Trial& trial);

private:
    struct Choice {
        Placement placement;
        int variable;
    };
    /// The variables of the slots in which a flow may use a port.
    using Slots = std::map<qint32, int>;

    bool mayOverlap(quint32 flow) const;
    void addFlow(quint32 flow);
    void addReserved(quint32 flow, const Pattern& pattern, const Choice& choice);
    void addUsed(quint32 flow, const std::vector<PortWindow>& windows, const Choice& choice);
    void addOrder(quint32 flow);
    void keepOrder(const Slots& before, const Slots& after, qint32 longestWait);
    bool solve(quint64 steps);
    bool solveWithFewest(quint64 steps);
    std::vector<int> assumptions() const;
    const Choice& chosen(quint32 flow) const;
    std::vector<Placement> placements() const;
    bool meetsOn(quint32 port, quint32 flow) const;
    void forbid(const std::optional<quint32>& port);

    const SearchModel& m_model;
    SearchBudget& m_budget;
    ClauseSolver m_solver;
    PortClauses m_ports;
    std::vector<std::vector<Choice>> m_choices;    ///< by flow
    std::vector<std::map<quint32, Slots>> m_slots; ///< by flow, then port key
    std::optional<PortTable> m_table;              ///< with the windows of the last answer
    std::vector<int> m_alone;                      ///< by flow: its windows overlap no other
    std::vector<bool> m_isLoose;                   ///< by flow: m_alone is not assumed
};

} // namespace synthesis
