#include "planner/ConflictAnalysis.h"

#include "planner/ConflictResolution.h"
#include "planner/PairKey.h"
#include "planner/PlanningLog.h"
#include "planner/WindowRevision.h"

#include <numeric>
#include <unordered_map>
#include <unordered_set>

namespace planner
{

namespace
{

/// Builds a nodeList and remembers where each node and port stands.
class PortGrouping
{
public:
    explicit PortGrouping(const std::list<TTStreamInstance>& instances)
        : m_repeatedKeys(keysThatRepeat(instances))
    {
    }

    /// Instances come one after the other; key is that of the entry's instance.
    void addInstanceToPort(quint32 key, const PortInstance& entry, quint16 nodeID, quint16 outport)
    {
        const quint32 number = pairKey(nodeID, outport);
        std::vector<PortInstance>& instances = portOf(number, nodeID, outport).instances;
        if (!instances.empty() && instances.back().instance == entry.instance)
            instances.back().meetsOnce = false;
        else if (m_repeatedKeys.empty() || isNewUnderRepeatedKey(key, number))
            instances.push_back(entry);
    }

    std::list<Node> take() { return std::move(m_nodes); }

private:
    // Records that share their key stand once under a port, the first of them.
    bool isNewUnderRepeatedKey(quint32 key, quint32 port)
    {
        return m_repeatedKeys.count(key) == 0 || m_known.insert(quint64(port) << 32 | key).second;
    }

    NodeOutport& portOf(quint32 number, quint16 nodeID, quint16 outport)
    {
        NodeOutport*& port = m_ports[number];
        if (!port) {
            Node& node = nodeOf(nodeID);
            node.outports.emplace_back();
            port = &node.outports.back();
            port->outport = outport;
        }
        return *port;
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

    const std::unordered_set<quint32> m_repeatedKeys;
    std::unordered_set<quint64> m_known; ///< ports with the repeated keys that they hold
    std::list<Node> m_nodes;
    std::unordered_map<quint16, Node*> m_nodesById;
    std::unordered_map<quint32, NodeOutport*> m_ports;
};

} // namespace

std::list<Node> convertInstancesToNodes(const std::list<TTStreamInstance>& instanceList)
{
    qCDebug(planningLog) << "converting Instance to Node----------";
    PortGrouping grouping(instanceList);
    PortInstance entry;
    for (const TTStreamInstance& instance : instanceList) {
        const quint32 key = instanceKey(instance);
        for (const VirtualLinkPath& path : instance.paths) {
            entry.isBridge = false;
            grouping.addInstanceToPort(key, entry, path.talkerNodeID, path.talkerOutport);
            entry.isBridge = true;
            for (const BridgeHop& hop : path.bridges) {
                ++entry.stop;
                grouping.addInstanceToPort(key, entry, hop.nodeID, hop.outport);
            }
            entry.stop += 2; // passes the listener
            ++entry.way;
        }
        ++entry.instance;
    }
    qCDebug(planningLog) << "converting Instance to Node End----------";
    return grouping.take();
}

void groupByPort(TTPlanner& planner)
{
    planner.nodeList = convertInstancesToNodes(planner.TTStreamInstanceList);
    planner.ports.rebuild(planner.nodeList);
    planner.board.rebuild(planner.TTStreamInstanceList, planner.ports);
    planner.degrees.rebuild(planner.ports);
    planner.duplicates.rebuild(planner.TTStreamInstanceList);
}

void giveBackWindows(TTPlanner& planner)
{
    planner.board.giveBack(planner.TTStreamInstanceList);
}

// The ports share one board of windows, so that a revision reaches them at once; the log tells of a
// renewed grouping all the same.
static void renewGrouping(TTPlanner& planner)
{
    if (planner.ports.isOutdated()) {
        groupByPort(planner);
        planner.revised.resize(planner.TTStreamInstanceList.size());
        std::iota(planner.revised.begin(), planner.revised.end(), 0U);
        return;
    }
    qCDebug(planningLog) << "converting Instance to Node----------";
    qCDebug(planningLog) << "converting Instance to Node End----------";
}

qint32 calculateConflictDegree(TTPlanner& planner)
{
    planner.revised.clear();
    qCDebug(planningLog) << "Conflict Degree Calculating----------";
    const WorstPort worst = planner.degrees.measure(planner.ports, planner.board);
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
