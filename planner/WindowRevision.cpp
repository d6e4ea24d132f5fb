#include "planner/WindowRevision.h"

#include "planner/PlanningLog.h"

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

/// Tightens the windows of one way around a slot that was fixed on it.
class WayRevision
{
public:
    WayRevision(WindowBoard& board, const Way& way, qint32 bufferNum)
        : m_board(board),
          m_way(way),
          m_bufferNum(bufferNum)
    {
    }

    void reviseBehindTalker()
    {
        const auto hops = static_cast<qint32>(m_way.hops);
        const Stop& talker = m_board.stop(m_way.talker);
        limitReceiveWindow(static_cast<qint32>(talker.slot), hops);
        reviseHops(m_way.firstHop(), m_way.listener(), talker.window, receiveWindow(), hops - 1);
    }

    void reviseAroundHop(quint32 fixed)
    {
        const auto slot = static_cast<qint32>(m_board.stop(fixed).slot);
        const SlotWindow fixedSlot{slot, slot};
        const auto hopsToFixed = static_cast<qint32>(fixed - m_way.talker);
        const auto hopsAfter = static_cast<qint32>(m_way.hops) - hopsToFixed;

        SlotWindow& send = m_board.stop(m_way.talker).window;
        narrowStart(send, subtractSlots(slot, multiplySlots(m_bufferNum, hopsToFixed)));
        narrowEnd(send, subtractSlots(slot, hopsToFixed));
        reviseHops(m_way.firstHop(), fixed, send, fixedSlot, hopsToFixed - 1);

        limitReceiveWindow(slot, hopsAfter);
        reviseHops(fixed + 1, m_way.listener(), fixedSlot, receiveWindow(), hopsAfter - 1);
    }

private:
    SlotWindow& receiveWindow() { return m_board.stop(m_way.listener()).window; }

    void limitReceiveWindow(qint32 slot, qint32 hopsAfter)
    {
        narrowStart(receiveWindow(), addSlots(slot, hopsAfter));
        narrowEnd(receiveWindow(), addSlots(slot, multiplySlots(m_bufferNum, hopsAfter)));
    }

    // Looking back from a later fixed point, a frame may have waited up to bufferNum slots in each
    // hop between (start bound) and has taken at least one slot per hop (end bound). hopsToGo
    // counts the hops between the first one given and the fixed point, and falls by one with each
    // hop.
    void reviseHops(quint32 first, quint32 last, SlotWindow previous, const SlotWindow& fixedPoint,
                    qint32 hopsToGo)
    {
        for (quint32 hop = first; hop != last; ++hop, --hopsToGo) {
            SlotWindow& window = m_board.stop(hop).window;
            narrowStart(window, addSlots(previous.start, 1));
            narrowStart(window,
                        subtractSlots(fixedPoint.start, multiplySlots(m_bufferNum, hopsToGo)));
            narrowEnd(window, addSlots(previous.end, m_bufferNum));
            narrowEnd(window, subtractSlots(fixedPoint.end, hopsToGo));
            previous = window;
        }
    }

    WindowBoard& m_board;
    const Way& m_way;
    qint32 m_bufferNum;
};

/// Touches the ports at which an instance has other windows than before.
class ChangeWatch
{
public:
    explicit ChangeWatch(TTPlanner& planner) : m_planner(planner) {}

    void remember(quint32 instance)
    {
        const WindowBoard& board = m_planner.board;
        m_first = board.firstStop(instance);
        m_before.assign(board.stops().begin() + m_first,
                        board.stops().begin() + board.firstStop(instance + 1));
    }

    void touchChanged()
    {
        const Stop* stop = &m_planner.board.stops()[m_first];
        for (const Stop& before : m_before) {
            if (stop->port != Stop::noPort && !(stop->window == before.window))
                m_planner.degrees.touch(stop->port);
            ++stop;
        }
    }

private:
    TTPlanner& m_planner;
    quint32 m_first = 0;
    std::vector<Stop> m_before;
};

/// Lets the other records of revised instances follow them.
void overwriteDuplicates(TTPlanner& planner)
{
    const auto isDuplicate = [&](quint32 instance) {
        return planner.duplicates.contains(instance);
    };
    if (std::none_of(planner.revised.begin(), planner.revised.end(), isDuplicate))
        return;
    planner.board.giveBack(planner.TTStreamInstanceList);
    for (const quint32 instance : planner.revised) {
        if (isDuplicate(instance))
            planner.duplicates.overwriteOthers(instance);
    }
    planner.ports.setOutdated();
}

} // namespace

void flowStatusRevise(TTPlanner& planner, quint16 nodeID, quint16 outport)
{
    qCDebug(planningLog) << "flowStatusRevise-----";
    const quint32 port = planner.ports.placeOf(nodeID, outport);
    if (port != PortIndex::noPlace) {
        planner.degrees.touch(port);
        ChangeWatch watch(planner);
        for (const PortInstance& entry : planner.ports.ports()[port].outport->instances) {
            watch.remember(entry.instance);
            reviseWindows(planner, port, entry.instance);
            watch.touchChanged();
            planner.revised.push_back(entry.instance);
        }
        overwriteDuplicates(planner);
    }
    qCDebug(planningLog) << "flowStatusRevise end-----";
}

qint32 reviseWindows(TTPlanner& planner, quint32 port, quint32 instance)
{
    WindowBoard& board = planner.board;
    for (quint32 number = board.firstWay(instance); number != board.firstWay(instance + 1);
         ++number) {
        const Way& way = board.way(number);
        WayRevision revision(board, way, planner.hopBufferNum);
        if (board.stop(way.talker).port == port) {
            revision.reviseBehindTalker();
            continue;
        }
        const quint32 fixed = board.findHop(way, port);
        if (fixed != way.listener())
            revision.reviseAroundHop(fixed);
    }
    return code::ok;
}

} // namespace planner
