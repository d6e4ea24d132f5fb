#include "planner/ConflictAnalysis.h"

#include "planner/ConflictResolution.h"
#include "planner/PlanningLog.h"
#include "planner/PortLookup.h"
#include "planner/WindowSort.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace planner
{

namespace
{

quint32 pairKey(quint16 a, quint16 b)
{
    return quint32(a) << 16 | b;
}

quint32 instanceKey(const TTStreamInstance& instance)
{
    return pairKey(instance.flowID, instance.seq);
}

/// Builds a nodeList and remembers where each node and port stands and what each port holds.
class PortGrouping
{
public:
    void addInstanceToPort(const TTStreamInstance& instance, quint16 nodeID, quint16 outport)
    {
        Port& port = portOf(nodeID, outport);
        if (port.known.insert(instanceKey(instance)).second)
            port.place->instances.push_back(instance);
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

/// The window of the first path that passes the port; null when none does.
const SlotWindow* windowAtPort(const TTStreamInstance& instance, quint16 nodeID, quint16 outport)
{
    for (const VirtualLinkPath& path : instance.paths) {
        if (talksOn(path, nodeID, outport))
            return &path.schedtxwin;
        const auto hop = findHop(path.bridges, nodeID, outport);
        if (hop != path.bridges.end())
            return &hop->schedtxwin;
    }
    return nullptr;
}

void narrowStart(SlotWindow& window, qint32 bound)
{
    window.start = std::max(window.start, bound);
}

void narrowEnd(SlotWindow& window, qint32 bound)
{
    window.end = std::min(window.end, bound);
}

using HopIterator = std::list<BridgeHop>::iterator;

// Looking back from a later fixed point, a frame may have waited up to bufferNum slots in each hop
// between (start bound) and has taken at least one slot per hop (end bound). hopsToGo counts the
// hops between the first one given and the fixed point, and falls by one with each hop.
void reviseHops(HopIterator first, HopIterator last, SlotWindow previous,
                const SlotWindow& fixedPoint, qint32 hopsToGo, qint32 bufferNum)
{
    for (HopIterator hop = first; hop != last; ++hop, --hopsToGo) {
        SlotWindow& window = hop->schedtxwin;
        narrowStart(window, addSlots(previous.start, 1));
        narrowStart(window, subtractSlots(fixedPoint.start, multiplySlots(bufferNum, hopsToGo)));
        narrowEnd(window, addSlots(previous.end, bufferNum));
        narrowEnd(window, subtractSlots(fixedPoint.end, hopsToGo));
        previous = window;
    }
}

void limitReceiveWindow(VirtualLinkPath& path, qint32 slot, qint32 hopsAfter, qint32 bufferNum)
{
    narrowStart(path.schedrxwin, addSlots(slot, hopsAfter));
    narrowEnd(path.schedrxwin, addSlots(slot, multiplySlots(bufferNum, hopsAfter)));
}

void reviseBehindTalker(VirtualLinkPath& path, qint32 bufferNum)
{
    const auto hops = static_cast<qint32>(path.bridges.size());
    limitReceiveWindow(path, static_cast<qint32>(path.txslotID), hops, bufferNum);
    reviseHops(path.bridges.begin(), path.bridges.end(), path.schedtxwin, path.schedrxwin, hops - 1,
               bufferNum);
}

void reviseAroundHop(VirtualLinkPath& path, HopIterator fixed, qint32 bufferNum)
{
    const auto slot = static_cast<qint32>(fixed->txslotID);
    const SlotWindow fixedSlot{slot, slot};
    const auto hopsToFixed = static_cast<qint32>(std::distance(path.bridges.begin(), fixed)) + 1;
    const auto hopsAfter = static_cast<qint32>(path.bridges.size()) - hopsToFixed;

    narrowStart(path.schedtxwin, subtractSlots(slot, multiplySlots(bufferNum, hopsToFixed)));
    narrowEnd(path.schedtxwin, subtractSlots(slot, hopsToFixed));
    reviseHops(path.bridges.begin(), fixed, path.schedtxwin, fixedSlot, hopsToFixed - 1, bufferNum);

    limitReceiveWindow(path, slot, hopsAfter, bufferNum);
    reviseHops(std::next(fixed), path.bridges.end(), fixedSlot, path.schedrxwin, hopsAfter - 1,
               bufferNum);
}

/// All records of the master list by flow and number; duplicates stand under one key.
using MasterIndex = std::unordered_multimap<quint32, TTStreamInstance*>;

MasterIndex indexMaster(TTPlanner& planner)
{
    MasterIndex index;
    for (TTStreamInstance& instance : planner.TTStreamInstanceList)
        index.emplace(instanceKey(instance), &instance);
    return index;
}

struct WorstPort {
    quint32 maxDegree = 0;
    quint16 nodeID = 0;
    quint16 outport = 0;
};

// Among equal degrees the port met first stays the worst.
WorstPort measureDegrees(TTPlanner& planner)
{
    WorstPort worst;
    for (Node& node : planner.nodeList) {
        for (NodeOutport& port : node.outports) {
            std::vector<SlotWindow> windows = collectPortWindows(node, port);
            port.degree = 2 * countWindowOverlaps(windows);
            if (worst.maxDegree < port.degree)
                worst = {port.degree, node.nodeID, port.outport};
        }
    }
    return worst;
}

} // namespace

std::list<Node> convertInstancesToNodes(const std::list<TTStreamInstance>& instanceList)
{
    qCDebug(planningLog) << "converting Instance to Node----------";
    PortGrouping grouping;
    for (const TTStreamInstance& instance : instanceList) {
        for (const VirtualLinkPath& path : instance.paths) {
            grouping.addInstanceToPort(instance, path.talkerNodeID, path.talkerOutport);
            for (const BridgeHop& hop : path.bridges)
                grouping.addInstanceToPort(instance, hop.nodeID, hop.outport);
        }
    }
    qCDebug(planningLog) << "converting Instance to Node End----------";
    return grouping.take();
}

std::vector<SlotWindow> collectPortWindows(const Node& node, const NodeOutport& port)
{
    std::vector<SlotWindow> windows;
    windows.reserve(port.instances.size());
    for (const TTStreamInstance& instance : port.instances) {
        if (const SlotWindow* window = windowAtPort(instance, node.nodeID, port.outport))
            windows.push_back(*window);
    }
    return windows;
}

quint32 countWindowOverlaps(std::vector<SlotWindow>& windows)
{
    sortWindowsByStart(windows);
    quint32 count = 0;
    for (size_t i = 1; i < windows.size(); ++i) {
        if (windows[i].start <= windows[i - 1].end)
            ++count;
    }
    return count;
}

qint32 calculateConflictDegree(TTPlanner& planner)
{
    qCDebug(planningLog) << "Conflict Degree Calculating----------";
    const WorstPort worst = measureDegrees(planner);
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
    planner.nodeList = convertInstancesToNodes(planner.TTStreamInstanceList);
    return static_cast<qint32>(worst.maxDegree);
}

void flowStatusRevise(TTPlanner& planner, quint16 nodeID, quint16 outport)
{
    qCDebug(planningLog) << "flowStatusRevise-----";
    if (NodeOutport* port = findPort(planner, nodeID, outport)) {
        const MasterIndex master = indexMaster(planner);
        for (TTStreamInstance& copy : port->instances) {
            reviseWindows(planner, nodeID, outport, copy);
            const auto records = master.equal_range(instanceKey(copy));
            for (auto record = records.first; record != records.second; ++record)
                *record->second = copy;
        }
    }
    qCDebug(planningLog) << "flowStatusRevise end-----";
}

qint32 reviseWindows(const TTPlanner& planner, quint16 nodeID, quint16 outport,
                     TTStreamInstance& instance)
{
    const qint32 bufferNum = planner.hopBufferNum;
    for (VirtualLinkPath& path : instance.paths) {
        if (talksOn(path, nodeID, outport)) {
            reviseBehindTalker(path, bufferNum);
            continue;
        }
        const HopIterator fixed = findHop(path.bridges, nodeID, outport);
        if (fixed != path.bridges.end())
            reviseAroundHop(path, fixed, bufferNum);
    }
    return code::ok;
}

} // namespace planner
