#include "planner/ConflictAnalysis.h"

#include "planner/ConflictResolution.h"
#include "planner/PlanningLog.h"
#include "planner/WindowRevision.h"
#include "planner/passes/Passes.h"
#include "planner/passes/PortCopies.h"
#include "planner/passes/PortSlots.h"

#include <algorithm>
#include <unordered_map>

namespace planner
{

namespace
{

/// Logs the beginning of a revision, and its end when it goes.
class RevisionLines
{
public:
    RevisionLines() { qCDebug(planningLog) << "flowStatusRevise-----"; }
    ~RevisionLines() { qCDebug(planningLog) << "flowStatusRevise end-----"; }
    RevisionLines(const RevisionLines&) = delete;
    RevisionLines& operator=(const RevisionLines&) = delete;
};

/// The steps of a pass on the records as they stand.
class RecordSteps
{
public:
    explicit RecordSteps(TTPlanner& planner) : m_planner(planner) {}

    WorstPort measure()
    {
        for (Node& node : m_planner.nodeList) {
            for (NodeOutport& port : node.outports) {
                std::vector<SlotWindow> windows = collectPortWindows(node, port);
                port.degree = 2 * countWindowOverlaps(windows);
            }
        }
        return worstPort(m_planner.nodeList);
    }

    qint32 resolve(const WorstPort& port)
    {
        return conflictResolve(m_planner, port.nodeID, port.outport);
    }

    void revise(const WorstPort& port) { flowStatusRevise(m_planner, port.nodeID, port.outport); }

    void renew() { m_planner.nodeList = convertInstancesToNodes(m_planner.TTStreamInstanceList); }

private:
    TTPlanner& m_planner;
};

/// The same steps on what Passes holds.
class HeldSteps
{
public:
    explicit HeldSteps(Passes& passes) : m_passes(passes) {}

    WorstPort measure() { return m_passes.measure(); }

    qint32 resolve(const WorstPort& port)
    {
        const PortView view = m_passes.view(port);
        const PortSlots found = findSlots(view, m_passes.maxRxSlot());
        if (found.code == code::ok)
            assignSlots(view, found.slotsGiven);
        else
            m_passes.leaveUnresolved(port, found.slotsGiven);
        return found.code;
    }

    void revise(const WorstPort& port)
    {
        const RevisionLines lines;
        const PortView view = m_passes.view(port);
        m_passes.reviseEach(view, [&](InstanceIndex instance) {
            reviseInstance(view.board, instance, view.port, m_passes.hopBufferNum());
        });
        m_passes.overwriteDuplicates();
    }

    void renew() { m_passes.renew(); }

private:
    Passes& m_passes;
};

template <typename Steps>
qint32 runPass(Steps steps, const StageListener& listener)
{
    qCDebug(planningLog) << "Conflict Degree Calculating----------";
    const WorstPort worst = steps.measure();
    qCDebug(planningLog) << "Conflict Degree Calculating End----------";
    qCDebug(planningLog) << "maxDegree:" << worst.maxDegree << "node:" << worst.nodeID
                         << "outport:" << worst.outport;
    tell(listener, StagePart::Degrees);
    if (worst.maxDegree == 0)
        return 0;
    const qint32 result = steps.resolve(worst);
    qCDebug(planningLog) << "Resolve:" << result;
    tell(listener, StagePart::Resolve);
    if (result != code::ok)
        return result;
    steps.revise(worst);
    steps.renew();
    tell(listener, StagePart::Revise);
    return static_cast<qint32>(worst.maxDegree);
}

/// The window of the instance's first hop at the port; null when it has none.
const SlotWindow* sendWindowAt(const TTStreamInstance& instance, quint16 nodeID, quint16 outport)
{
    for (const VirtualLinkPath& path : instance.paths) {
        if (path.talkerNodeID == nodeID && path.talkerOutport == outport)
            return &path.schedtxwin;
        for (const BridgeHop& hop : path.bridges) {
            if (hop.nodeID == nodeID && hop.outport == outport)
                return &hop.schedtxwin;
        }
    }
    return nullptr;
}

} // namespace

std::list<Node> convertInstancesToNodes(const std::list<TTStreamInstance>& instanceList)
{
    return nodesOf(groupByPort(instanceList), instanceList);
}

void addInstanceToPort(std::list<Node>& nodeList, const InstanceCopy& instance, quint16 nodeID,
                       quint16 outport)
{
    const auto node = std::find_if(nodeList.begin(), nodeList.end(),
                                   [&](const Node& known) { return known.nodeID == nodeID; });
    if (node == nodeList.end()) {
        nodeList.push_back({nodeID, {{outport, {instance}, 0}}});
        return;
    }
    const auto port =
        std::find_if(node->outports.begin(), node->outports.end(),
                     [&](const NodeOutport& known) { return known.outport == outport; });
    if (port == node->outports.end()) {
        node->outports.push_back({outport, {instance}, 0});
        return;
    }
    const bool isKnown =
        std::any_of(port->instances.begin(), port->instances.end(), [&](const InstanceCopy& known) {
            return instanceKey(*known) == instanceKey(*instance);
        });
    if (!isKnown)
        port->instances.push_back(instance);
}

std::vector<SlotWindow> collectPortWindows(const Node& node, const NodeOutport& port)
{
    std::vector<SlotWindow> windows;
    for (const InstanceCopy& instance : port.instances) {
        if (const SlotWindow* window = sendWindowAt(*instance, node.nodeID, port.outport))
            windows.push_back(*window);
    }
    return windows;
}

WorstPort worstPort(const std::list<Node>& nodeList)
{
    WorstPort worst;
    for (const Node& node : nodeList) {
        for (const NodeOutport& port : node.outports) {
            if (worst.maxDegree < port.degree)
                worst = {port.degree, node.nodeID, port.outport};
        }
    }
    return worst;
}

qint32 calculateConflictDegree(TTPlanner& planner)
{
    if (planner.nodeList.empty() && !planner.TTStreamInstanceList.empty())
        planner.nodeList = convertInstancesToNodes(planner.TTStreamInstanceList);
    return runPass(RecordSteps(planner), {});
}

qint32 calculateConflictDegree(Passes& passes, const StageListener& listener)
{
    passes.begin();
    return runPass(HeldSteps(passes), listener);
}

void flowStatusRevise(TTPlanner& planner, quint16 nodeID, quint16 outport)
{
    const RevisionLines lines;
    NodeOutport* port = findPort(planner.nodeList, nodeID, outport);
    if (!port)
        return;
    std::unordered_map<quint32, InstanceCopy> revisedByKey;
    for (InstanceCopy& copy : port->instances) {
        TTStreamInstance revised = *copy;
        reviseWindows(planner, nodeID, outport, revised);
        copy = std::make_shared<const TTStreamInstance>(std::move(revised));
        revisedByKey[instanceKey(*copy)] = copy;
    }
    for (TTStreamInstance& record : planner.TTStreamInstanceList) {
        const auto found = revisedByKey.find(instanceKey(record));
        if (found != revisedByKey.end())
            record = *found->second;
    }
}

qint32 reviseWindows(const TTPlanner& planner, quint16 nodeID, quint16 outport,
                     TTStreamInstance& instance)
{
    WindowBoard board;
    addForPort(board, instance, nodeID, outport);
    reviseInstance(board, InstanceIndex(), onlyPort, planner.hopBufferNum);
    board.giveBack(InstanceIndex(), instance);
    return code::ok;
}

} // namespace planner
