#include "planner/ConflictResolution.h"

#include "planner/PlanningLog.h"
#include "planner/passes/PortCopies.h"
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

    bool lookAhead(Turn turn)
    {
        LaterWindows& later = m_isSwitch ? m_switches : m_talkers;
        const std::vector<SlotWindow>& tighter = later.find(turn, m_window);
        return std::all_of(tighter.begin(), tighter.end(), [this](const SlotWindow& window) {
            return window.start == m_window.start ? giveWay() : stepAsideFor(window);
        });
    }

    // Equal starts, and the later window is the tighter one. Nothing is reserved for it. A switch
    // may leave the table here; a talker would search there for ever.
    bool giveWay()
    {
        m_slot = m_table.firstFreeFrom(addSlots(m_slot, 1));
        if (m_slot > m_table.lastSlot())
            return m_isSwitch || fail(exits().equalStarts);
        return m_slot <= m_window.end || fail(exits().equalStarts);
    }

    // The later window starts and ends earlier. Its first free slot is held only while the current
    // one moves off it; the window claims its slot at its own turn.
    bool stepAsideFor(const SlotWindow& later)
    {
        const qint32 claimed = m_table.firstFreeFrom(later.start);
        if (hasPassed(later.start, claimed, later.end))
            return fail(exits().laterIsFull);
        qCDebug(planningLog) << "temptxslot" << claimed;
        if (m_slot == claimed && m_table.holds(claimed))
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
        return from != to && (cameToLargest ? largest : to) > bound;
    }

    const PortView& m_port;
    SlotTable m_table;
    LaterWindows m_talkers;
    LaterWindows m_switches;
    SlotWindow m_window;
    bool m_isSwitch = false;
    qint32 m_slot = 0;
};

void fix(Hop& hop, qint32 slot)
{
    hop.slot = static_cast<quint32>(slot);
    hop.window = {slot, slot};
}

// A talker has one slot on all paths; a switch takes its slot along to the later paths.
void fixOtherPaths(const PortView& port, const PortEntry& entry, qint32 slot)
{
    WindowBoard& board = port.board;
    const PathIndex end = board.firstPath(entry.instance.plus(1));
    for (PathIndex index = entry.path.plus(1); index != end; ++index) {
        const BoardPath& path = board.path(index);
        const HopIndex sender = board.findSwitch(path, port.port);
        if (!entry.isSwitch && board.hop(path.talker).port == port.port)
            fix(board.hop(path.talker), slot);
        if (entry.isSwitch && sender != path.listener())
            fix(board.hop(sender), slot);
    }
}

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

void assignSlots(const PortView& port, const std::vector<qint32>& slotsGiven)
{
    auto entry = port.entries.begin();
    for (const qint32 slot : slotsGiven) {
        fix(port.board.hop(entry->hop), slot);
        if (!entry->meetsOnce)
            fixOtherPaths(port, *entry, slot);
        ++entry;
    }
}

} // namespace planner
