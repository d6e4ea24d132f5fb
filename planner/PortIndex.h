#pragma once

#include "planner/PlanningModel.h"

#include <unordered_map>
#include <vector>

namespace planner
{

/// The port with the highest conflict degree; all 0 when no port has a conflict.
struct WorstPort {
    quint32 maxDegree = 0;
    quint16 nodeID = 0;
    quint16 outport = 0;
};

/// Finds sending ports by number and keeps their degrees, measuring only those that were touched.
///
/// A degree depends on nothing but the windows at its port, so one that was not touched has not
/// changed. The worst port is the winner of a tournament in which the earlier port wins a draw:
/// what a walk over all ports would find that replaces its best only by a higher degree.
class PortIndex
{
public:
    /// Takes up all ports of the list, all of them touched. The list must stay as it is.
    void rebuild(std::list<Node>& nodeList);

    /// The port, owned by the list; null when no instance uses it.
    NodeOutport* find(quint16 nodeID, quint16 outport) const;

    /// Notes that the list no longer groups the instances as they are and must be built anew.
    void setOutdated() { m_isOutdated = true; }
    bool isOutdated() const { return m_isOutdated; }

    /// Notes that a window at the port has changed.
    void touch(quint16 nodeID, quint16 outport);

    /// Measures the degrees of all touched ports and returns the worst port of all.
    WorstPort measure();

private:
    struct Port {
        Node* node = nullptr;
        NodeOutport* outport = nullptr;
        bool isTouched = false;
    };

    void touchPlace(size_t place);
    size_t worseOf(size_t one, size_t other) const;
    void playMatchesOf(size_t place);

    std::vector<Port> m_ports;                     ///< in the order of the list
    std::unordered_map<quint32, size_t> m_placeOf; ///< places in m_ports by the port's numbers
    std::vector<size_t> m_touched;                 ///< places in m_ports
    /// Places in m_ports: the winners of the matches from 1 on, match i between the winners of 2i
    /// and 2i + 1, then every place for itself.
    std::vector<size_t> m_winners;
    bool m_isOutdated = false;
};

} // namespace planner
