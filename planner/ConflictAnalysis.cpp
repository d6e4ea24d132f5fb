#include "planner/ConflictAnalysis.h"

#include "planner/ConflictResolution.h"
#include "planner/PlanningLog.h"
#include "planner/PortLookup.h"
#include "planner/WindowRevision.h"

#include <unordered_map>
#include <unordered_set>

namespace planner
{

namespace
{

/// Builds a nodeList and remembers where each node and port stands and what each port holds.
class PortGrouping
{
public:
    void addInstanceToPort(const PortInstance& entry, quint16 nodeID, quint16 outport)
    {
        Port& port = portOf(nodeID, outport);
        std::vector<PortInstance>& instances = port.place->instances;
        if (port.known.insert(instanceKey(*entry.instance)).second)
            instances.push_back(entry);
        else if (instances.back().instance == entry.instance)
            instances.back().meetsOnce = false;
    }

    std::list<Node> take() { return std::move(m_nodes); }

private:
    struct Port {
        NodeOutport* place = nullptr;
        std::unordered_set<quint32> known;
    };

    Port& portOf(quint16 nodeID, quint16 outport)
    {
        Port& port = m_ports[pairKey(nodeID, outport)];
        if (!port.place) {
            Node& node = nodeOf(nodeID);
            node.outports.emplace_back();
            node.outports.back().outport = outport;
            port.place = &node.outports.back();
        }
        return port;
    }

    Node& nodeOf(quint16 nodeID)
    {
        Node*& node = m_nodesById[nodeID];
        if (!node) {
            m_nodes.emplace_back();
            node = &m_nodes.back();
            node->nodeID = nodeID;
        }
        return *node;
    }

    std::list<Node> m_nodes;
    std::unordered_map<quint16, Node*> m_nodesById;
    std::unordered_map<quint32, Port> m_ports;
};

} // namespace

std::list<Node> convertInstancesToNodes(std::list<TTStreamInstance>& instanceList)
{
    qCDebug(planningLog) << "converting Instance to Node----------";
    PortGrouping grouping;
    quint32 number = 0;
    for (TTStreamInstance& instance : instanceList) {
        for (VirtualLinkPath& path : instance.paths) {
            grouping.addInstanceToPort({&instance, number, &path, nullptr, true}, path.talkerNodeID,
                                       path.talkerOutport);
            for (BridgeHop& hop : path.bridges)
                grouping.addInstanceToPort({&instance, number, &path, &hop, true}, hop.nodeID,
                                           hop.outport);
        }
        ++number;
    }
    qCDebug(planningLog) << "converting Instance to Node End----------";
    return grouping.take();
}

void groupByPort(TTPlanner& planner)
{
    planner.nodeList = convertInstancesToNodes(planner.TTStreamInstanceList);
    planner.ports.rebuild(planner.nodeList);
    planner.duplicates.rebuild(planner.TTStreamInstanceList);
}

// The ports refer to the master list, so that a revision reaches them at once; the log tells of the
// renewed grouping all the same.
static void renewGrouping(TTPlanner& planner)
{
    if (planner.ports.isOutdated()) {
        groupByPort(planner);
        return;
    }
    qCDebug(planningLog) << "converting Instance to Node----------";
    qCDebug(planningLog) << "converting Instance to Node End----------";
}

qint32 calculateConflictDegree(TTPlanner& planner)
{
    planner.revised.clear();
    qCDebug(planningLog) << "Conflict Degree Calculating----------";
    const WorstPort worst = planner.ports.measure();
    qCDebug(planningLog) << "Conflict Degree Calculating End----------";
    qCDebug(planningLog) << "maxDegree:" << worst.maxDegree << "node:" << worst.nodeID
                         << "outport:" << worst.outport;
    if (worst.maxDegree == 0)
        return 0;
    const qint32 result = conflictResolve(planner, worst.nodeID, worst.outport);
    qCDebug(planningLog) << "Resolve:" << result;
    if (result != code::ok)
        return result;
    flowStatusRevise(planner, worst.nodeID, worst.outport);
    renewGrouping(planner);
    return static_cast<qint32>(worst.maxDegree);
}

} // namespace planner
