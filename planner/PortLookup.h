#pragma once

#include "planner/PlanningModel.h"

#include <algorithm>

// Where an instance meets a sending port (nodeID, outport).
namespace planner
{

/// Two 16-bit numbers as one key.
inline quint32 pairKey(quint16 a, quint16 b)
{
    return quint32(a) << 16 | b;
}

/// What tells instances apart; two records may share it.
inline quint32 instanceKey(const TTStreamInstance& instance)
{
    return pairKey(instance.flowID, instance.seq);
}

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

/// Calls visit(nodeID, outport, window) for each sender of the instance: path by path, the talker,
/// then the switches.
template <typename Visit>
void forEachSender(const TTStreamInstance& instance, const Visit& visit)
{
    for (const VirtualLinkPath& path : instance.paths) {
        visit(path.talkerNodeID, path.talkerOutport, path.schedtxwin);
        for (const BridgeHop& hop : path.bridges)
            visit(hop.nodeID, hop.outport, hop.schedtxwin);
    }
}

/// Iterator to the first of the bridges that sends on the port, or the end.
template <typename Bridges>
auto findHop(Bridges& bridges, quint16 nodeID, quint16 outport)
{
    return std::find_if(bridges.begin(), bridges.end(),
                        [=](const BridgeHop& hop) { return forwardsOn(hop, nodeID, outport); });
}

} // namespace planner
