#pragma once

#include "planner/ConflictAnalysis.h"

#include "tests/planner/Windows.h"
#include "tests/support/Failure.h"

#include <vector>

// Instances for tests of the second stage, made without a document.

/// Groups the master list into nodeList, as a run does ahead of its passes.
inline void group(planner::TTPlanner& planner)
{
    planner.nodeList = planner::convertInstancesToNodes(planner.TTStreamInstanceList);
}

/// The copies at a port; without it the test fails.
inline const std::list<planner::InstanceCopy>& copiesAt(const planner::TTPlanner& planner,
                                                        quint16 nodeID, quint16 outport)
{
    for (const planner::Node& node : planner.nodeList) {
        for (const planner::NodeOutport& port : node.outports) {
            if (node.nodeID == nodeID && port.outport == outport)
                return port.instances;
        }
    }
    static const std::list<planner::InstanceCopy> none;
    failTest("no such port");
    return none;
}

/// A planner whose instances 1, 2, ... all send on port 1 of node 1, as talkers or as switches.
///
/// The senders on the other side of each path have a node of their own, 50 or 60, and no window.
inline planner::TTPlanner
plannerWithPort(bool asSwitch, const std::vector<planner::SlotWindow>& windows, qint32 maxRxSlot)
{
    planner::TTPlanner planner;
    planner.maxRxSlot = maxRxSlot;
    for (const planner::SlotWindow& sendWindow : windows) {
        planner::TTStreamInstance instance;
        instance.flowID = static_cast<quint16>(planner.TTStreamInstanceList.size() + 1);
        planner::VirtualLinkPath path;
        path.bridges.emplace_back();
        path.talkerNodeID = asSwitch ? 50 : 1;
        path.talkerOutport = 1;
        path.bridges.front().nodeID = asSwitch ? 1 : 60;
        path.bridges.front().outport = 1;
        (asSwitch ? path.bridges.front().schedtxwin : path.schedtxwin) = sendWindow;
        instance.paths.push_back(path);
        planner.TTStreamInstanceList.push_back(instance);
    }
    group(planner);
    return planner;
}
