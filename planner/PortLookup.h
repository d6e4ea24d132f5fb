#pragma once

#include "planner/PlanningModel.h"

#include <algorithm>

// Where an instance meets a sending port (nodeID, outport).
namespace planner
{

/// Whether the talker of the path sends on the port.
inline bool talksOn(const VirtualLinkPath& path, quint16 nodeID, quint16 outport)
{
    return path.talkerNodeID == nodeID && path.talkerOutport == outport;
}

/// Whether the switch sends on the port.
inline bool forwardsOn(const BridgeHop& hop, quint16 nodeID, quint16 outport)
{
    return hop.nodeID == nodeID && hop.outport == outport;
}

/// Iterator to the first of the bridges that sends on the port, or the end.
template <typename Bridges>
auto findHop(Bridges& bridges, quint16 nodeID, quint16 outport)
{
    return std::find_if(bridges.begin(), bridges.end(),
                        [=](const BridgeHop& hop) { return forwardsOn(hop, nodeID, outport); });
}

/// The port in nodeList, owned by the planner; null when no instance uses it.
inline NodeOutport* findPort(TTPlanner& planner, quint16 nodeID, quint16 outport)
{
    for (Node& node : planner.nodeList) {
        if (node.nodeID != nodeID)
            continue;
        for (NodeOutport& port : node.outports) {
            if (port.outport == outport)
                return &port;
        }
    }
    return nullptr;
}

} // namespace planner
