#pragma once

#include "planner/passes/PortGroups.h"

// A single port, taken by itself.
namespace planner
{

/// The number of the port on a board on which no other port has one.
constexpr PortIndex onlyPort{0};

/// Appends an instance to such a board.
void addForPort(WindowBoard& board, const TTStreamInstance& instance, quint16 nodeID,
                quint16 outport);

/// The port of the list, or null.
NodeOutport* findPort(std::list<Node>& nodeList, quint16 nodeID, quint16 outport);

/// The copies under one port of a nodeList, with their windows on a board.
///
/// Nothing but these copies is read or changed, whatever the rest of the list holds.
class PortCopies
{
public:
    /// Takes up the copies of the port; none when the list does not have it.
    PortCopies(std::list<Node>& nodeList, quint16 nodeID, quint16 outport);

    /// Lives as long as this.
    PortView view() { return {m_board, onlyPort, m_entries}; }

    /// Puts copies with the windows and slots of the board in place of the old ones.
    void giveBack();

private:
    void enterFirstMeeting(InstanceIndex instance);

    NodeOutport* m_outport; ///< null when the list does not have the port
    WindowBoard m_board;
    std::vector<PortEntry> m_entries;
};

} // namespace planner
