#include "planner/WindowRevision.h"

#include "planner/PlanningLog.h"
#include "planner/PortLookup.h"

#include <algorithm>

namespace planner
{

namespace
{

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

/// Touches the ports at which an instance has other windows than before.
class ChangeWatch
{
public:
    explicit ChangeWatch(PortIndex& ports) : m_ports(ports) {}

    void remember(const TTStreamInstance& instance)
    {
        m_before.clear();
        forEachSender(instance, [this](quint16, quint16, const SlotWindow& window) {
            m_before.push_back(window);
        });
    }

    void touchChanged(const TTStreamInstance& instance)
    {
        auto before = m_before.begin();
        forEachSender(instance, [&](quint16 nodeID, quint16 outport, const SlotWindow& window) {
            if (!(window == *before++))
                m_ports.touch(nodeID, outport);
        });
    }

private:
    PortIndex& m_ports;
    std::vector<SlotWindow> m_before; ///< in the order of forEachSender()
};

/// Overwrites the other records of a revised instance; whether there are any.
bool overwriteDuplicates(TTPlanner& planner, const TTStreamInstance& revised)
{
    const DuplicateInstances::Records& records = planner.duplicates.recordsOf(revised);
    for (const NumberedInstance& record : records) {
        if (record.instance == &revised)
            continue;
        *record.instance = revised;
        planner.revised.push_back(record);
    }
    return !records.empty();
}

} // namespace

void flowStatusRevise(TTPlanner& planner, quint16 nodeID, quint16 outport)
{
    qCDebug(planningLog) << "flowStatusRevise-----";
    planner.ports.touch(nodeID, outport);
    bool groupingIsOld = false;
    if (NodeOutport* port = planner.ports.find(nodeID, outport)) {
        ChangeWatch watch(planner.ports);
        for (const PortInstance& entry : port->instances) {
            watch.remember(*entry.instance);
            reviseWindows(planner, nodeID, outport, *entry.instance);
            watch.touchChanged(*entry.instance);
            planner.revised.push_back({entry.instance, entry.number});
            groupingIsOld = overwriteDuplicates(planner, *entry.instance) || groupingIsOld;
        }
    }
    if (groupingIsOld)
        planner.ports.setOutdated();
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
