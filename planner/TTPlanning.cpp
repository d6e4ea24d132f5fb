#include "planner/TTPlanning.h"

#include "planner/ConflictAnalysis.h"
#include "planner/DocumentWriter.h"
#include "planner/IntermediateDocument.h"
#include "planner/PlanningLog.h"
#include "planner/RepetitionWatch.h"

#include <set>
#include <tuple>

namespace planner
{

namespace
{

using Element = DocumentWriter::Element;

/// One degree pass; a pass that would be repeated for ever is a failed resolution.
qint32 resolveWorstPort(TTPlanner& planner, RepetitionWatch& watch)
{
    watch.beforePass();
    const qint32 result = calculateConflictDegree(planner);
    if (result > 0 && watch.isBack(planner.revised)) {
        qCDebug(planningLog)
            << "planning: after" << watch.passes()
            << "passes the windows are as they were before; resolving them would not end";
        return code::refused;
    }
    return result;
}

qint32 resolveAllConflicts(TTPlanner& planner)
{
    RepetitionWatch watch(planner.board);
    qint32 result = resolveWorstPort(planner, watch);
    while (result != 0) {
        qCDebug(planningLog) << "resolve conflict:" << result;
        if (result < 0) {
            qCDebug(planningLog) << "resolve conflict failed";
            return result;
        }
        result = resolveWorstPort(planner, watch);
    }
    return code::ok;
}

qint32 readInstances(TTPlanner& planner)
{
    const qint32 result = readIntermediateDocument(planner);
    if (result == code::unreadable)
        qCDebug(planningLog) << "parse vek_hs.xml failed";
    if (result == code::folderMissing)
        qCDebug(planningLog) << "cannot find vek_hs.xml";
    return result;
}

void finalizePath(VirtualLinkPath& path)
{
    path.txslotID = static_cast<quint32>(path.schedtxwin.start);
    quint32 previousSend = path.txslotID;
    for (BridgeHop& hop : path.bridges) {
        hop.rxslotID = previousSend;
        hop.txslotID = static_cast<quint32>(hop.schedtxwin.start);
        previousSend = hop.txslotID;
    }
    path.rxslotID = static_cast<quint32>(path.schedrxwin.start);
}

void writeTalker(DocumentWriter& writer, const VirtualLinkPath& path)
{
    const Element talker(writer, "talker");
    writer.leaf("nodeID", qint32(path.talkerNodeID));
    writer.leaf("outport", qint32(path.talkerOutport));
    writer.leaf("txslotID", path.txslotID);
}

void writeBridge(DocumentWriter& writer, const BridgeHop& hop)
{
    const Element bridge(writer, "bridge");
    writer.leaf("nodeID", qint32(hop.nodeID));
    writer.leaf("inport", qint32(hop.inport));
    writer.leaf("rxslotID", hop.rxslotID);
    writer.leaf("outport", qint32(hop.outport));
    writer.leaf("txslotID", hop.txslotID);
}

void writeListener(DocumentWriter& writer, const VirtualLinkPath& path)
{
    const Element listener(writer, "listener");
    writer.leaf("nodeID", qint32(path.listenerNodeID));
    writer.leaf("inport", qint32(path.listenerInport));
    writer.leaf("rxslotID", path.rxslotID);
}

// Branches share hops; the first path that has one supplies its slots.
void writeBridges(DocumentWriter& writer, const TTStreamInstance& instance)
{
    const Element bridges(writer, "bridges");
    std::set<std::tuple<quint16, quint16, quint16>> written;
    for (const VirtualLinkPath& path : instance.paths) {
        for (const BridgeHop& hop : path.bridges) {
            if (written.emplace(hop.nodeID, hop.inport, hop.outport).second)
                writeBridge(writer, hop);
        }
    }
}

void writeListeners(DocumentWriter& writer, const TTStreamInstance& instance)
{
    const Element listeners(writer, "listeners");
    std::set<std::pair<quint16, quint16>> written;
    for (const VirtualLinkPath& path : instance.paths) {
        if (written.emplace(path.listenerNodeID, path.listenerInport).second)
            writeListener(writer, path);
    }
}

void writeInstance(DocumentWriter& writer, const TTStreamInstance& instance)
{
    const Element element(writer, "Instance");
    writer.leaf("flowID", qint32(instance.flowID));
    writer.leaf("seq", qint32(instance.seq));
    const Element pathSlots(writer, "path_slot");
    if (!instance.paths.empty())
        writeTalker(writer, instance.paths.front());
    writeBridges(writer, instance);
    writeListeners(writer, instance);
}

void writeSchedule(DocumentWriter& writer, const TTPlanner& planner)
{
    const Element root(writer, "vek_output");
    writer.attribute("xmlns", "urn:ietf:params:xml:ns:yang:vek_output");
    writer.leaf("schedCycle", planner.schedCycle);
    writer.leaf("slotLen", planner.slotLen);
    writeFlows(writer, planner.TTStreamInstanceList,
               [&writer](const TTStreamInstance& instance) { writeInstance(writer, instance); });
}

} // namespace

qint32 TTPlanning(TTPlanner& planner)
{
    planner.reset();
    qCDebug(planningLog) << "TTPlanning start----------";
    const qint32 readResult = readInstances(planner);
    if (readResult != code::ok)
        return readResult;
    const qint32 planResult = planInstances(planner);
    if (planResult != code::ok)
        return planResult;
    writeOutputDocument(planner);
    qCDebug(planningLog) << "TTPlanning end----------";
    return code::ok;
}

qint32 planInstances(TTPlanner& planner)
{
    groupByPort(planner);
    const qint32 resolveResult = resolveAllConflicts(planner);
    if (resolveResult != code::ok)
        return resolveResult;
    giveBackWindows(planner);
    finalizeSlots(planner);
    return code::ok;
}

void finalizeSlots(TTPlanner& planner)
{
    for (TTStreamInstance& instance : planner.TTStreamInstanceList) {
        for (VirtualLinkPath& path : instance.paths)
            finalizePath(path);
    }
}

void writeOutputDocument(const TTPlanner& planner)
{
    DocumentWriter writer(QStringLiteral("OutputXML"), QStringLiteral("vek_output.xml"));
    writeSchedule(writer, planner);
}

QByteArray outputDocument(const TTPlanner& planner)
{
    DocumentWriter writer;
    writeSchedule(writer, planner);
    return writer.bytes();
}

} // namespace planner
