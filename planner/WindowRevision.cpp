#include "planner/WindowRevision.h"

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

/// Tightens the windows of one path around a slot that was fixed on it.
class PathRevision
{
public:
    PathRevision(WindowBoard& board, const BoardPath& path, qint32 bufferNum)
        : m_board(board),
          m_path(path),
          m_bufferNum(bufferNum)
    {
    }

    void reviseBehindTalker()
    {
        const auto switches = static_cast<qint32>(m_path.switches);
        const Hop& talker = m_board.hop(m_path.talker);
        limitReceiveWindow(static_cast<qint32>(talker.slot), switches);
        reviseSwitches({m_path.firstSwitch(), m_path.listener()}, talker.window, receiveWindow(),
                       switches - 1);
    }

    void reviseAroundSwitch(HopIndex fixed)
    {
        const auto slot = static_cast<qint32>(m_board.hop(fixed).slot);
        const SlotWindow fixedSlot{slot, slot};
        const auto hopsToFixed = static_cast<qint32>(fixed.value() - m_path.talker.value());
        const auto hopsAfter = static_cast<qint32>(m_path.switches) - hopsToFixed;

        SlotWindow& send = m_board.hop(m_path.talker).window;
        narrowStart(send, subtractSlots(slot, multiplySlots(m_bufferNum, hopsToFixed)));
        narrowEnd(send, subtractSlots(slot, hopsToFixed));
        reviseSwitches({m_path.firstSwitch(), fixed}, send, fixedSlot, hopsToFixed - 1);

        limitReceiveWindow(slot, hopsAfter);
        reviseSwitches({fixed.plus(1), m_path.listener()}, fixedSlot, receiveWindow(),
                       hopsAfter - 1);
    }

private:
    /// Hops from first on, without behind.
    struct Stretch {
        HopIndex first;
        HopIndex behind;
    };

    SlotWindow& receiveWindow() { return m_board.hop(m_path.listener()).window; }

    void limitReceiveWindow(qint32 slot, qint32 hopsAfter)
    {
        narrowStart(receiveWindow(), addSlots(slot, hopsAfter));
        narrowEnd(receiveWindow(), addSlots(slot, multiplySlots(m_bufferNum, hopsAfter)));
    }

    // Looking back from a later fixed point, a frame may have waited up to bufferNum slots in each
    // hop between (start bound) and has taken at least one slot per hop (end bound). hopsToGo
    // counts the hops between the first one given and the fixed point, and falls by one with each
    // hop.
    void reviseSwitches(const Stretch& stretch, SlotWindow previous, const SlotWindow& fixedPoint,
                        qint32 hopsToGo)
    {
        for (HopIndex hop = stretch.first; hop != stretch.behind; ++hop, --hopsToGo) {
            SlotWindow& window = m_board.hop(hop).window;
            narrowStart(window, addSlots(previous.start, 1));
            narrowStart(window,
                        subtractSlots(fixedPoint.start, multiplySlots(m_bufferNum, hopsToGo)));
            narrowEnd(window, addSlots(previous.end, m_bufferNum));
            narrowEnd(window, subtractSlots(fixedPoint.end, hopsToGo));
            previous = window;
        }
    }

    WindowBoard& m_board;
    const BoardPath& m_path;
    qint32 m_bufferNum;
};

} // namespace

void reviseInstance(WindowBoard& board, InstanceIndex instance, PortIndex port, qint32 bufferNum)
{
    const PathIndex end = board.firstPath(instance.plus(1));
    for (PathIndex index = board.firstPath(instance); index != end; ++index) {
        const BoardPath& path = board.path(index);
        PathRevision revision(board, path, bufferNum);
        if (board.hop(path.talker).port == port) {
            revision.reviseBehindTalker();
            continue;
        }
        const HopIndex fixed = board.findSwitch(path, port);
        if (fixed != path.listener())
            revision.reviseAroundSwitch(fixed);
    }
}

} // namespace planner
