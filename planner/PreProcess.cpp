#include "planner/PreProcess.h"

#include "planner/DebugDump.h"
#include "planner/InputDocument.h"
#include "planner/IntermediateDocument.h"
#include "planner/PlanningLog.h"

#include <algorithm>
#include <limits>

namespace planner
{

namespace
{

/// Slots that a switch's window may end behind that of the switch before it, whatever its buffers.
constexpr qint32 bridgeWindowGrowth = 4;

quint32 greatestCommonDivisor(quint32 a, quint32 b)
{
    while (b != 0) {
        const quint32 remainder = a % b;
        a = b;
        b = remainder;
    }
    return a;
}

/// Equal periods that follow each other.
struct PeriodRun {
    quint32 period; ///< microseconds
    size_t count;
};

void append(std::vector<PeriodRun>& runs, const PeriodRun& run)
{
    if (!runs.empty() && runs.back().period == run.period)
        runs.back().count += run.count;
    else if (run.count > 0)
        runs.push_back(run);
}

/// One round: each period combined with the next one. Equal ones stay what they are, so that a
/// round costs the number of runs and not that of flows.
std::vector<PeriodRun> combineNeighbours(quint64& cycle, const std::vector<PeriodRun>& runs)
{
    std::vector<PeriodRun> combined;
    for (size_t i = 0; i < runs.size(); ++i) {
        const quint32 a = runs[i].period;
        append(combined, {a, runs[i].count - 1});
        if (i + 1 == runs.size())
            break;
        const quint32 b = runs[i + 1].period;
        cycle = quint64(a) * b / greatestCommonDivisor(a, b);
        append(combined, {static_cast<quint32>(cycle), 1});
    }
    return combined;
}

/// Logs the periods one by one, in the form in which the log shows a vector.
///
/// With tens of thousands of flows these are as many long lines, so equal periods are put in at
/// once.
void logPeriods(const std::vector<PeriodRun>& runs)
{
    if (!planningLog().isDebugEnabled())
        return;
    const QString separator = QStringLiteral(", ");
    QString text;
    for (const PeriodRun& run : runs)
        text += (separator + QString::number(run.period)).repeated(static_cast<int>(run.count));
    qCDebug(planningLog).noquote()
        << QStringLiteral("std::vector(") + text.mid(separator.size()) + QLatin1Char(')');
}

/// Combines the periods round by round, calling afterRound with what is left; see lcmReduce().
template <typename AfterRound>
void reducePeriods(quint64& cycle, const std::vector<quint32>& periods, AfterRound afterRound)
{
    std::vector<PeriodRun> runs;
    for (const quint32 period : periods)
        append(runs, {period, 1});
    afterRound(runs);
    for (size_t left = periods.size(); left > 1; --left) {
        runs = combineNeighbours(cycle, runs);
        afterRound(runs);
    }
    // A single value is the cycle, in the 32 bits that the rounds work with.
    if (!runs.empty())
        cycle = runs.front().period;
}

std::vector<quint32> periodsOf(const PlanningContext& context)
{
    std::vector<quint32> periods;
    for (const TTFlow& flow : context.flows)
        periods.push_back(flow.period);
    return periods;
}

qint32 hopCount(const VirtualLinkPath& path)
{
    return static_cast<qint32>(path.bridges.size());
}

void deriveBridgeWindowsOfPath(VirtualLinkPath& path, qint32 bufferNum)
{
    qint32 hopsAfter = hopCount(path) - 1;
    qint32 earliest = addSlots(path.schedtxwin.start, 1);
    qint32 latest = addSlots(path.schedtxwin.end, bufferNum);
    for (BridgeHop& hop : path.bridges) {
        const qint32 longestWait = multiplySlots(bufferNum, hopsAfter);
        hop.schedtxwin.start =
            std::max(earliest, subtractSlots(path.schedrxwin.start, longestWait));
        hop.schedtxwin.end = std::min(latest, subtractSlots(path.schedrxwin.end, hopsAfter));
        earliest = addSlots(hop.schedtxwin.start, 1);
        latest = addSlots(hop.schedtxwin.end, bridgeWindowGrowth);
        --hopsAfter;
    }
}

bool sendOnSamePort(const BridgeHop& a, const BridgeHop& b)
{
    return a.nodeID == b.nodeID && a.outport == b.outport;
}

void narrowToSharedPort(BridgeHop& hop, const VirtualLinkPath& other)
{
    for (const BridgeHop& candidate : other.bridges) {
        if (sendOnSamePort(hop, candidate)) {
            hop.schedtxwin.end = std::min(hop.schedtxwin.end, candidate.schedtxwin.end);
            hop.schedtxwin.start = std::max(hop.schedtxwin.start, candidate.schedtxwin.start);
        }
    }
}

// Looks forward only: the hop of an earlier path is narrowed by later ones, never the reverse.
void joinBranches(TTFlow& flow)
{
    for (auto path = flow.paths.begin(); path != flow.paths.end(); ++path) {
        for (BridgeHop& hop : path->bridges) {
            for (auto other = path; other != flow.paths.end(); ++other)
                narrowToSharedPort(hop, *other);
        }
    }
}

void shift(SlotWindow& window, qint32 offset)
{
    window.end = addSlots(window.end, offset);
    window.start = addSlots(window.start, offset);
}

TTStreamInstance makeInstance(const TTFlow& flow, quint32 number)
{
    TTStreamInstance instance;
    instance.flowID = flow.flowID;
    instance.vlid = flow.vlid;
    instance.period = periodInSlots(flow);
    instance.size = flow.size;
    instance.paths = flow.paths;
    instance.seq = static_cast<quint16>(number);
    const auto offset = static_cast<qint32>(number * instance.period);
    for (VirtualLinkPath& path : instance.paths) {
        shift(path.schedtxwin, offset);
        for (BridgeHop& hop : path.bridges)
            shift(hop.schedtxwin, offset);
        shift(path.schedrxwin, offset);
    }
    return instance;
}

} // namespace

qint32 preProcess(PlanningContext& context)
{
    return preProcess(context, {});
}

qint32 preProcess(PlanningContext& context, const StageListener& listener)
{
    context.reset();
    const qint32 readResult = readInputDocument(context);
    tell(listener, StagePart::ReadInput);
    if (readResult < 0)
        return readResult;
    context.clusterCycle = computeClusterCycle(context);
    qCDebug(planningLog) << "clusterCycle:" << context.clusterCycle;
    const qint32 windowResult = checkTimeWindows(context);
    tell(listener, StagePart::Windows);
    if (windowResult != code::ok)
        return windowResult;
    if (!fitsMemory(context))
        return code::unreadable;
    expandInstances(context);
    tell(listener, StagePart::Expand);
    printTTStreamInstanceList(context.TTStreamInstanceList);
    tell(listener, StagePart::LogInstances);
    context.isCut = !saveHsDocument(context);
    tell(listener, StagePart::WriteWindows);
    return code::ok;
}

quint32 computeClusterCycle(PlanningContext& context)
{
    lcmReduce(context, periodsOf(context));
    return static_cast<quint32>(context.clusterCycle);
}

quint32 clusterCycleOf(const PlanningContext& context)
{
    const std::vector<quint32> periods = periodsOf(context);
    // Each round's values divide the multiple of all: where that fits, none of them is cut.
    quint64 multiple = periods.empty() ? 0 : 1;
    for (const quint32 period : periods) {
        if (multiple <= std::numeric_limits<quint32>::max() && period > 0)
            multiple =
                multiple / greatestCommonDivisor(static_cast<quint32>(multiple), period) * period;
        else
            multiple = std::numeric_limits<quint64>::max();
    }
    if (multiple > std::numeric_limits<quint32>::max())
        reducePeriods(multiple, periods, [](const std::vector<PeriodRun>&) {});
    return static_cast<quint32>(multiple);
}

quint32 lcmReduce(PlanningContext& context, const std::vector<quint32>& periods)
{
    reducePeriods(context.clusterCycle, periods, &logPeriods);
    return static_cast<quint32>(context.clusterCycle);
}

qint32 checkTimeWindows(PlanningContext& context)
{
    limitReceiveWindows(context);
    const qint32 result = limitSendWindows(context);
    if (result != code::ok)
        return result;
    deriveBridgeWindows(context);
    return code::ok;
}

void limitReceiveWindows(PlanningContext& context)
{
    for (TTFlow& flow : context.flows)
        limitReceiveWindows(flow, context.switchBufferNum);
}

void limitReceiveWindows(TTFlow& flow, quint16 switchBufferNum)
{
    for (VirtualLinkPath& path : flow.paths) {
        const qint32 hops = hopCount(path);
        const qint32 longestWait = multiplySlots(switchBufferNum, hops);
        SlotWindow& receive = path.schedrxwin;
        receive.end = std::min(receive.end, addSlots(path.schedtxwin.end, longestWait));
        receive.start = std::max(receive.start, addSlots(path.schedtxwin.start, hops));
    }
}

qint32 limitSendWindows(PlanningContext& context)
{
    for (TTFlow& flow : context.flows) {
        SlotWindow send;
        send.start = std::numeric_limits<qint32>::min();
        send.end = std::numeric_limits<qint32>::max();
        for (const VirtualLinkPath& path : flow.paths) {
            const SlotWindow allowed = sendWindowOf(path, context.switchBufferNum);
            send.start = std::max(send.start, allowed.start);
            send.end = std::min(send.end, allowed.end);
        }
        if (send.end < send.start) {
            qCDebug(planningLog) << send.start << send.end;
            qCDebug(planningLog) << "TIMEWINDOW_UNREASONABLE";
            return code::refused;
        }
        for (VirtualLinkPath& path : flow.paths)
            path.schedtxwin = send;
    }
    return code::ok;
}

SlotWindow sendWindowOf(const VirtualLinkPath& path, quint16 switchBufferNum)
{
    const qint32 hops = hopCount(path);
    const qint32 longestWait = multiplySlots(switchBufferNum, hops);
    SlotWindow send;
    send.start = std::max(path.schedtxwin.start, subtractSlots(path.schedrxwin.start, longestWait));
    send.end = std::min(path.schedtxwin.end, subtractSlots(path.schedrxwin.end, hops));
    return send;
}

void deriveBridgeWindows(PlanningContext& context)
{
    for (TTFlow& flow : context.flows)
        deriveBridgeWindows(flow, context.switchBufferNum);
}

void deriveBridgeWindows(TTFlow& flow, quint16 switchBufferNum)
{
    for (VirtualLinkPath& path : flow.paths)
        deriveBridgeWindowsOfPath(path, switchBufferNum);
    joinBranches(flow);
}

quint32 periodInSlots(const TTFlow& flow)
{
    return flow.period / static_cast<quint32>(slotLength_us);
}

bool fitsMemory(const PlanningContext& context)
{
    quint64 hops = 0;
    for (const TTFlow& flow : context.flows)
        hops += context.clusterCycle / flow.period * hopsOf(flow.paths);
    if (hops <= maxHops)
        return true;
    qCDebug(planningLog) << "planning: the cycle of" << context.clusterCycle << "us holds"
                         << instanceCount(context) << "transmissions with" << hops
                         << "hops, more than the" << maxHops << "that fit"
                         << (memoryLimit_bytes >> 20) << "MiB";
    return false;
}

quint64 instanceCount(const PlanningContext& context)
{
    quint64 count = 0;
    for (const TTFlow& flow : context.flows)
        count += context.clusterCycle / flow.period;
    return count;
}

void expandInstances(PlanningContext& context)
{
    for (const TTFlow& flow : context.flows) {
        const auto count = static_cast<quint32>(context.clusterCycle / flow.period);
        for (quint32 number = 0; number < count; ++number)
            context.TTStreamInstanceList.push_back(makeInstance(flow, number));
    }
}

} // namespace planner
