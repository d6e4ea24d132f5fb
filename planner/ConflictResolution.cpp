#include "planner/ConflictResolution.h"

#include "planner/PlanningLog.h"
#include "planner/passes/PortCopies.h"
#include "planner/passes/PortSlots.h"
#include "planner/search/LaterWindows.h"
#include "planner/search/SlotTable.h"

#include <algorithm>
#include <limits>

namespace planner
{

namespace
{

/// Numbers under which the exits of a resolution appear in the log.
struct ExitNumbers {
    int noFreeSlot;    ///< the hop's own window is full
    int equalStarts;   ///< giving way to a tighter window moved the slot out of the hop's window
    int laterIsFull;   ///< a later, tighter window has no free slot left
    int steppedTooFar; ///< stepping aside for a later window moved the slot too far
};
constexpr ExitNumbers talkerExits{465, 486, 500, 512};
constexpr ExitNumbers switchExits{556, 580, 594, 607};

/// One call's work on a port: the slots given out so far, and the slot under search.
class SlotSearch
{
public:
    SlotSearch(const PortView& port, qint32 maxRxSlot) : m_port(port), m_table(maxRxSlot)
    {
        Turn turn;
        for (const PortEntry& entry : port.entries) {
            addLaterWindows(turn, entry);
            ++turn;
        }
    }

    /// Finds a slot for the instance of this turn, looking ahead to the later ones; false on
    /// failure.
    bool find(Turn turn)
    {
        const PortEntry& entry = m_port.entries[turn.value()];
        m_window = m_port.board.hop(entry.hop).window;
        m_isSwitch = entry.isSwitch;
        qCDebug(planningLog) << "冲突窗口: [" << m_window.start << "," << m_window.end << "]";
        if (!takeFirstFreeSlot() || !lookAhead(turn))
            return false;
        qCDebug(planningLog) << "冲突窗口分配时隙:" << m_slot;
        m_table.take(m_slot);
        return true;
    }

    /// The slot that was found last.
    qint32 slot() const { return m_slot; }

private:
    const ExitNumbers& exits() const { return m_isSwitch ? switchExits : talkerExits; }

    static bool fail(int exitNumber)
    {
        qCDebug(planningLog) << "line:" << exitNumber << "CONFLICT_RESOLVE_FAIL";
        return false;
    }

    // Talkers are compared with talkers only, switches with switches only.
    void addLaterWindows(Turn turn, const PortEntry& entry)
    {
        const WindowBoard& board = m_port.board;
        if (entry.meetsOnce) {
            (entry.isSwitch ? m_switches : m_talkers).add(turn, board.hop(entry.hop).window);
            return;
        }
        const PathIndex end = board.firstPath(entry.instance.plus(1));
        for (PathIndex index = board.firstPath(entry.instance); index != end; ++index) {
            const BoardPath& path = board.path(index);
            if (board.hop(path.talker).port == m_port.port)
                m_talkers.add(turn, board.hop(path.talker).window);
            for (HopIndex hop = path.firstSwitch(); hop != path.listener(); ++hop) {
                if (board.hop(hop).port == m_port.port)
                    m_switches.add(turn, board.hop(hop).window);
            }
        }
    }

    bool takeFirstFreeSlot()
    {
        m_slot = m_table.firstFreeFrom(m_window.start);
        if (m_slot == m_window.start)
            return true;
        if (m_slot > m_table.lastSlot()) {
            // The search went slot by slot: leaving the window inside the table was noticed first.
            const bool leftWindowFirst =
                m_window.start < m_table.lastSlot() && m_window.end < m_table.lastSlot();
            return leftWindowFirst && fail(exits().noFreeSlot);
        }
        return !hasPassed(m_window.start, m_slot, m_window.end) || fail(exits().noFreeSlot);
    }

    // What a later window X asks of the current one, W; the first row that fits applies.
    //
    //   X.start = W.start and W.end <= X.end   nothing: the current hop keeps precedence
    //   X.start = W.start and W.end > X.end    rule A: the current hop gives way
    //   X.start > W.start                      nothing
    //   W.start > X.end                        nothing: X ends before W begins
    //   X.end >= W.end                         nothing: X is no tighter
    //   otherwise                              rule B: the current hop steps aside
    //
    // So rule A is met by the windows of one box, rule B by those of another, and no others.
    WindowBox ruleA() const
    {
        WindowBox box;
        box.firstStart = box.lastStart = m_window.start;
        box.lastEnd = qint64(m_window.end) - 1;
        return box;
    }
    WindowBox ruleB() const
    {
        WindowBox box;
        box.lastStart = qint64(m_window.start) - 1;
        box.firstEnd = m_window.start;
        box.lastEnd = qint64(m_window.end) - 1;
        return box;
    }

    bool lookAhead(Turn turn)
    {
        LaterWindows& later = m_isSwitch ? m_switches : m_talkers;
        later.passOver(turn);
        if (m_window.end <= m_window.start && !later.hasInverted())
            return true; // nothing is tighter
        if (!later.any(ruleB()))
            return giveWay(later.count(ruleA()));
        if (!planningLog().isDebugEnabled() && passAtOnce(later))
            return true;
        return goThrough(later);
    }

    /// Meets the later windows in their order; those of rule A, which leave no line in the log, by
    /// their number.
    bool goThrough(LaterWindows& later)
    {
        WindowBox between = ruleA();
        for (const LaterWindows::Later& next : later.find(ruleB())) {
            between.lastOrder = next.order;
            if (!giveWay(later.count(between)) || !stepAsideFor(next.window))
                return false;
            between.firstOrder = next.order;
        }
        between.lastOrder = WindowBox().lastOrder;
        return giveWay(later.count(between));
    }

    /// Passes all later windows at once where none of them leads to an exit; else changes nothing.
    ///
    /// The table stands still, so rule B moves the slot once at most: while it is the first one
    /// found, and only for a window between whose start and that slot all is taken. Each window of
    /// rule A then moves it to the next free one.
    bool passAtOnce(LaterWindows& later)
    {
        WindowBox movers = ruleB();
        movers.firstStart = m_table.lastFreeBefore(m_window.start) + 1;
        WindowBox full = movers;
        full.lastEnd = std::min(full.lastEnd, qint64(m_slot) - 1);
        if (later.any(full))
            return false;
        quint32 moves = later.count(ruleA());
        movers.lastOrder = later.firstOrder(ruleA());
        moves += later.any(movers) ? 1 : 0;
        const qint64 slot = moves == 0 ? m_slot : m_table.freeSlotAfter(m_slot, moves);
        if (slot > m_table.lastSlot() || slot > m_window.end)
            return false;
        WindowBox passed = ruleB();
        passed.lastEnd = std::min(passed.lastEnd, slot - 1);
        if (m_isSwitch && later.any(passed))
            return false;
        m_slot = static_cast<qint32>(slot);
        return true;
    }

    // Equal starts, and so many later windows are the tighter ones. Nothing is reserved for them. A
    // switch may leave the table here; a talker would search there for ever.
    bool giveWay(quint32 windows)
    {
        if (windows == 0)
            return true;
        const qint64 target = m_table.freeSlotAfter(m_slot, windows);
        if (target > std::numeric_limits<qint32>::max())
            return giveWayOneByOne(windows);
        // The slots on the way are all free ones up to the target.
        const qint64 outside = m_table.freeSlotAfter(std::max(m_window.end, m_slot), 1);
        const qint64 lastMet = std::min<qint64>(target, m_table.lastSlot());
        if (outside <= lastMet || (!m_isSwitch && target > m_table.lastSlot()))
            return fail(exits().equalStarts);
        m_slot = static_cast<qint32>(target);
        return true;
    }

    // Behind the largest slot comes the smallest one.
    bool giveWayOneByOne(quint32 windows)
    {
        for (; windows > 0; --windows) {
            m_slot = m_table.firstFreeFrom(addSlots(m_slot, 1));
            const bool isAllowed =
                m_slot > m_table.lastSlot() ? m_isSwitch : m_slot <= m_window.end;
            if (!isAllowed)
                return fail(exits().equalStarts);
        }
        return true;
    }

    // The later window starts and ends earlier. Its first free slot is held only while the current
    // one moves off it; the window claims its slot at its own turn.
    bool stepAsideFor(const SlotWindow& later)
    {
        const qint32 claimed = m_table.firstFreeFrom(later.start);
        if (hasPassed(later.start, claimed, later.end))
            return fail(exits().laterIsFull);
        qCDebug(planningLog) << "temptxslot" << claimed;
        if (m_slot == claimed)
            m_slot = m_table.firstFreeFrom(addSlots(m_slot, 1));
        // Beyond the table no slot would ever be found, so this is a failure too. A switch is
        // measured against the later window, a talker against its own.
        const qint32 lastAllowed = m_isSwitch ? later.end : m_window.end;
        if (m_slot > m_table.lastSlot() || m_slot > lastAllowed)
            return fail(exits().steppedTooFar);
        return true;
    }

    /// Whether a search upwards went above the bound behind the slot at which it began.
    static bool hasPassed(qint32 from, qint32 to, qint32 bound)
    {
        constexpr qint32 largest = std::numeric_limits<qint32>::max();
        const bool cameToLargest = to < from && from != largest;
        return (cameToLargest ? largest : to) > bound;
    }

    const PortView& m_port;
    SlotTable m_table;
    LaterWindows m_talkers;
    LaterWindows m_switches;
    SlotWindow m_window;
    bool m_isSwitch = false;
    qint32 m_slot = 0;
};

} // namespace

qint32 conflictResolve(TTPlanner& planner, quint16 nodeID, quint16 outport)
{
    PortCopies copies(planner.nodeList, nodeID, outport);
    const PortSlots found = findSlots(copies.view(), planner.maxRxSlot);
    assignSlots(copies.view(), found.slotsGiven);
    copies.giveBack();
    return found.code;
}

PortSlots findSlots(const PortView& port, qint32 maxRxSlot)
{
    qCDebug(planningLog) << "conflictResolve";
    PortSlots found;
    SlotSearch search(port, maxRxSlot);
    for (Turn turn; turn.value() < port.entries.size(); ++turn) {
        if (!search.find(turn)) {
            found.code = code::refused;
            break;
        }
        found.slotsGiven.push_back(search.slot());
    }
    return found;
}

} // namespace planner
