#pragma once

#include "planner/passes/PortGroups.h"

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
    PortDegrees() = default;
    /// Takes up ports, all of them touched.
    explicit PortDegrees(quint32 ports);

    /// Notes that a window at the port has changed.
    void touch(PortIndex port);

    /// Measures the degrees of all touched ports and returns the worst port of all.
    WorstPort measure(const PortGroups& groups);

    /// As last measured, 0 before.
    quint32 degreeOf(PortIndex port) const { return m_degrees[port.value()]; }

private:
    quint32 count() const { return static_cast<quint32>(m_degrees.size()); }
    void playMatch(std::size_t match);
    void playMatchesOf(PortIndex port);

    std::vector<quint32> m_degrees;
    std::vector<bool> m_isTouched;
    std::vector<PortIndex> m_touched;
    /// The winners of the matches from 1 on, match i between the winners of 2i and 2i + 1, then
    /// every port for itself.
    std::vector<PortIndex> m_winners;
};

} // namespace planner
