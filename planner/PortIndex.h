#pragma once

#include "planner/PlanningModel.h"

#include <limits>
#include <unordered_map>
#include <vector>

namespace planner
{

/// Numbers the sending ports of a nodeList in its order, from 0, and finds them by node and port.
class PortIndex
{
public:
    static constexpr quint32 noPlace = std::numeric_limits<quint32>::max();

    struct Port {
        quint16 nodeID = 0;
        NodeOutport* outport = nullptr; ///< owned by the list
    };

    /// Takes up all ports of the list, which must stay as it is from now on.
    void rebuild(std::list<Node>& nodeList);

    /// Notes that the list no longer groups the instances as they are and must be built anew.
    void setOutdated() { m_isOutdated = true; }
    bool isOutdated() const { return m_isOutdated; }

    /// Place of the port in the list, counted over all nodes; noPlace when no instance uses it.
    quint32 placeOf(quint16 nodeID, quint16 outport) const;

    /// All ports by their places.
    const std::vector<Port>& ports() const { return m_ports; }

private:
    std::vector<Port> m_ports;
    std::unordered_map<quint32, quint32> m_placeOf; ///< by the numbers of node and port
    bool m_isOutdated = false;
};

} // namespace planner
