#pragma once

#include "planner/PlanningModel.h"

#include "synthesis/PatternDerivation.h"
#include "synthesis/Repetition.h"

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <vector>

// The flows as the search sees them.
namespace synthesis
{

/// Cells of a port that a flow takes up when its send slot is 0; later ones move them on.
struct Reservation {
    quint32 port;  ///< number in the model
    quint32 start; ///< cell on the flow's ring
    quint32 length;
};

/// One way in which a frame may travel: how long after its start each listener gets it.
///
/// All windows follow from a send slot by moving them on, because the rules only add and compare.
struct Pattern {
    std::vector<qint32> delays; ///< slots from the send slot to the receive slot, by path
    qint64 waiting = 0;         ///< slots waited in switches, summed over the paths
    qint32 first = 0;           ///< send slots that the windows allow, both included
    qint32 last = -1;
    std::vector<Reservation> reservations; ///< none overlaps another one

    /// Send slots that differ in the cells they take up; the first ones stand for all.
    quint32 choices(quint32 ringSlots) const
    {
        return std::min(quint32(last - first) + 1, ringSlots);
    }
};

/// A flow whose slots are searched.
struct SearchFlow {
    std::size_t place = 0; ///< in PlanningContext::flows
    const planner::TTFlow* flow = nullptr;
    quint32 ring = 1;      ///< cells
    quint32 ringSlots = 1; ///< send slots after which the cells come again
    /// By waiting; at first only those with the least, of which there may be none.
    std::vector<Pattern> patterns;
    bool hasAllPatterns = false; ///< nothing more will be found
    bool isComplete = true;      ///< patterns, once all are found, and their slots leave none out
};

/// All flows that are searched, with their ports numbered.
class SearchModel
{
public:
    /// Refers to the context. Takes the flows with these places.
    SearchModel(const planner::PlanningContext& context, const Repetition& repetition,
                const std::vector<std::size_t>& places);

    const Repetition& repetition() const { return m_repetition; }
    const std::vector<SearchFlow>& flows() const { return m_flows; }
    std::size_t portCount() const { return m_ports.size(); }
    quint16 portNode(quint32 port) const { return static_cast<quint16>(m_ports[port] >> 16); }
    quint16 portOutport(quint32 port) const { return static_cast<quint16>(m_ports[port]); }

    /// The number of a port that some pattern uses, see planner::pairKey().
    quint32 portNumber(quint32 key) const { return m_numbers.at(key); }

    /// The windows of a pattern, for send slot 0.
    std::vector<PortWindow> windowsOf(const SearchFlow& flow, const Pattern& pattern) const;

    /// How many slots a frame may wait in a node on its path.
    qint32 longestWait(const planner::BridgeHop& hop) const
    {
        return PatternDerivation::longestWait(hop, m_switchBufferNum);
    }

    /// The first cell, on the flow's ring, of a reservation moved to a send slot.
    quint32 cellOf(const SearchFlow& flow, const Reservation& reservation, qint32 slot) const
    {
        const qint64 moved = qint64(slot) * m_repetition.cellsPerSlot() + reservation.start;
        const qint64 cell = moved % flow.ring;
        return static_cast<quint32>(cell < 0 ? cell + flow.ring : cell);
    }

    /// Adds the patterns of a flow that wait longer; false when there are none.
    bool addWaitingPatterns(std::size_t flow);

private:
    quint32 numberOfPort(quint32 key);
    void addPattern(SearchFlow& flow, const std::vector<qint32>& delays);
    bool reserve(const SearchFlow& flow, const std::vector<PortWindow>& windows, Pattern& pattern);

    Repetition m_repetition;
    quint16 m_switchBufferNum;
    std::vector<SearchFlow> m_flows;
    std::vector<quint32> m_ports; ///< keys by number
    std::unordered_map<quint32, quint32> m_numbers;
};

} // namespace synthesis
