#pragma once

#include "planner/WindowBoard.h"

namespace planner
{

/// The port with the highest conflict degree; all 0 when no port has a conflict.
struct WorstPort {
    quint32 maxDegree = 0;
    quint16 nodeID = 0;
    quint16 outport = 0;
};

/// Keeps the conflict degrees of all ports and measures only those that were touched.
///
/// A degree depends on nothing but the windows at its port, so that of a port that was not touched
/// has not changed. The worst port is the winner of a tournament in which the earlier port wins a
/// draw: what a walk over all ports finds that replaces its best only by a higher degree.
class PortDegrees
{
public:
    /// Takes up all ports, all of them touched.
    void rebuild(const PortIndex& index);

    /// Notes that a window at the port of this place has changed.
    void touch(quint32 place);

    /// Measures the degrees of all touched ports and returns the worst port of all.
    WorstPort measure(const PortIndex& index, const WindowBoard& board);

private:
    void playMatch(const PortIndex& index, std::size_t match);
    void playMatchesOf(const PortIndex& index, quint32 place);

    std::vector<bool> m_isTouched;  ///< by place
    std::vector<quint32> m_touched; ///< places
    /// Places: the winners of the matches from 1 on, match i between the winners of 2i and 2i + 1,
    /// then every place for itself.
    std::vector<quint32> m_winners;
};

} // namespace planner
