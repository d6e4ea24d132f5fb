#include "planner/TTPlanning.h"

#include "planner/ConflictAnalysis.h"
#include "planner/IntermediateDocument.h"
#include "planner/PlanningLog.h"
#include "planner/passes/Passes.h"

namespace planner
{

namespace
{

qint32 readInstances(TTPlanner& planner)
{
    const qint32 result = readIntermediateDocument(planner);
    if (result == code::unreadable)
        qCDebug(planningLog) << "parse vek_hs.xml failed";
    if (result == code::folderMissing)
        qCDebug(planningLog) << "cannot find vek_hs.xml";
    return result;
}

/// One degree pass; a pass that would be repeated for ever is a failed resolution.
qint32 resolveWorstPort(Passes& passes, const StageListener& listener)
{
    const qint32 result = calculateConflictDegree(passes, listener);
    if (result > 0 && passes.isBack()) {
        qCDebug(planningLog)
            << "planning: after" << passes.count()
            << "passes the windows are as they were before; resolving them would not end";
        return code::refused;
    }
    tell(listener, StagePart::Watch);
    return result;
}

/// Each pass gives the instances of one port slots of their own and only ever narrows windows
/// around them, so that a port without overlap needs no slot to be chosen: what is left of each
/// window will do, its first slot for one. Only a window that a later pass turns inside out breaks
/// this and can bring a port back; the watch of the passes ends a round that has no end.
qint32 resolveAllConflicts(Passes& passes, const StageListener& listener)
{
    qint32 result = resolveWorstPort(passes, listener);
    while (result != 0) {
        qCDebug(planningLog) << "resolve conflict:" << result;
        if (result < 0) {
            qCDebug(planningLog) << "resolve conflict failed";
            return result;
        }
        result = resolveWorstPort(passes, listener);
    }
    return code::ok;
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

} // namespace

qint32 TTPlanning(TTPlanner& planner)
{
    return TTPlanning(planner, {});
}

qint32 TTPlanning(TTPlanner& planner, const StageListener& listener)
{
    planner.reset();
    qCDebug(planningLog) << "TTPlanning start----------";
    const qint32 readResult = readInstances(planner);
    tell(listener, StagePart::ReadWindows);
    if (readResult != code::ok)
        return readResult;
    const qint32 planResult = planInstances(planner, listener);
    if (planResult != code::ok)
        return planResult;
    planner.isCut = !saveOutputDocument(planner);
    tell(listener, StagePart::WriteSchedule);
    qCDebug(planningLog) << "TTPlanning end----------";
    return code::ok;
}

qint32 planInstances(TTPlanner& planner, const StageListener& listener)
{
    const qint32 resolveResult = resolveConflicts(planner, listener);
    if (resolveResult != code::ok)
        return resolveResult;
    finalizeSlots(planner);
    tell(listener, StagePart::Finalise);
    return code::ok;
}

qint32 resolveConflicts(TTPlanner& planner, const StageListener& listener)
{
    qint32 result = code::ok;
    {
        Passes passes(planner);
        tell(listener, StagePart::Group);
        result = resolveAllConflicts(passes, listener);
    }
    tell(listener, StagePart::GiveBack);
    return result;
}

void finalizeSlots(TTPlanner& planner)
{
    for (TTStreamInstance& instance : planner.TTStreamInstanceList) {
        for (VirtualLinkPath& path : instance.paths)
            finalizePath(path);
    }
}

} // namespace planner
