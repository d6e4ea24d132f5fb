#pragma once

#include "planner/PlanningModel.h"

#include <vector>

// Instances for tests of the second stage, made without a document.

/// Windows written as in documents: start first.
inline planner::SlotWindow window(qint32 start, qint32 end)
{
    return {end, start};
}

/// A planner whose instances 1, 2, ... all send on port 1 of node 1, as talkers or as switches.
///
/// nodeList is built by hand, so that the tests of the resolution need no grouping.
inline planner::TTPlanner
plannerWithPort(bool asSwitch, const std::vector<planner::SlotWindow>& windows, qint32 maxRxSlot)
{
    planner::TTPlanner planner;
    planner.maxRxSlot = maxRxSlot;
    planner::NodeOutport port;
    port.outport = 1;
    for (const planner::SlotWindow& sendWindow : windows) {
        planner::TTStreamInstance instance;
        instance.flowID = static_cast<quint16>(port.instances.size() + 1);
        planner::VirtualLinkPath path;
        path.bridges.emplace_back();
        path.talkerNodeID = asSwitch ? 50 : 1;
        path.talkerOutport = 1;
        path.bridges.front().nodeID = asSwitch ? 1 : 60;
        path.bridges.front().outport = 1;
        (asSwitch ? path.bridges.front().schedtxwin : path.schedtxwin) = sendWindow;
        instance.paths.push_back(path);
        port.instances.push_back(instance);
    }
    planner.nodeList.push_back({1, {port}});
    return planner;
}

/// The instances on the first port of the first node.
inline std::list<planner::TTStreamInstance>& firstPort(planner::TTPlanner& planner)
{
    return planner.nodeList.front().outports.front().instances;
}
