#include "planner/ConflictResolution.h"

#include "planner/LaterWindows.h"
#include "planner/PlanningLog.h"
#include "planner/SlotTable.h"

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
constexpr ExitNumbers bridgeExits{556, 580, 594, 607};

/// One call's work on a port: the slots given out so far, and the slot under search.
class PortResolution
{
public:
    PortResolution(WindowBoard& board, const NodeOutport& port, quint32 place, qint32 maxRxSlot)
        : m_board(board),
          m_port(port),
          m_place(place),
          m_table(maxRxSlot)
    {
        for (size_t rank = 0; rank < port.instances.size(); ++rank)
            addLaterWindows(rank, port.instances[rank]);
    }

    /// Finds a slot for the instance of this rank on the port, looking ahead to the later ones;
    /// false on failure.
    bool resolve(size_t rank)
    {
        const PortInstance& entry = m_port.instances[rank];
        m_window = m_board.stop(entry.stop).window;
        m_isBridge = entry.isBridge;
        qCDebug(planningLog) << "冲突窗口: [" << m_window.start << "," << m_window.end << "]";
        if (!takeFirstFreeSlot() || !lookAhead(rank))
            return false;
        qCDebug(planningLog) << "冲突窗口分配时隙:" << m_slot;
        m_slots.push_back(m_slot);
        m_table.take(m_slot);
        return true;
    }

    /// Gives all instances the slots that were found.
    void assign()
    {
        for (size_t rank = 0; rank < m_slots.size(); ++rank)
            fix(m_port.instances[rank], m_slots[rank]);
    }

private:
    const ExitNumbers& exits() const { return m_isBridge ? bridgeExits : talkerExits; }

    static bool fail(int exitNumber)
    {
        qCDebug(planningLog) << "line:" << exitNumber << "CONFLICT_RESOLVE_FAIL";
        return false;
    }

    // Talkers are compared with talkers only, switches with switches only.
    void addLaterWindows(size_t rank, const PortInstance& entry)
    {
        if (entry.meetsOnce) {
            (entry.isBridge ? m_bridges : m_talkers).add(rank, m_board.stop(entry.stop).window);
            return;
        }
        const quint32 end = m_board.firstWay(entry.instance + 1);
        for (quint32 number = m_board.firstWay(entry.instance); number != end; ++number) {
            const Way& way = m_board.way(number);
            if (m_board.stop(way.talker).port == m_place)
                m_talkers.add(rank, m_board.stop(way.talker).window);
            for (quint32 hop = way.firstHop(); hop != way.listener(); ++hop) {
                if (m_board.stop(hop).port == m_place)
                    m_bridges.add(rank, m_board.stop(hop).window);
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

    bool lookAhead(size_t rank)
    {
        LaterWindows& later = m_isBridge ? m_bridges : m_talkers;
        const std::vector<SlotWindow>& tighter = later.find(rank, m_window);
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
            return m_isBridge || fail(exits().equalStarts);
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
        const qint32 lastAllowed = m_isBridge ? later.end : m_window.end;
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

    void fix(const PortInstance& entry, qint32 slot)
    {
        fixStop(entry.stop, slot);
        if (!entry.meetsOnce)
            fixOtherWays(entry, slot);
    }

    // A talker has one slot on all ways; a switch takes its slot along to the later ways.
    void fixOtherWays(const PortInstance& entry, qint32 slot)
    {
        const quint32 end = m_board.firstWay(entry.instance + 1);
        for (quint32 number = entry.way + 1; number != end; ++number) {
            const Way& way = m_board.way(number);
            const quint32 hop = m_board.findHop(way, m_place);
            if (!entry.isBridge && m_board.stop(way.talker).port == m_place)
                fixStop(way.talker, slot);
            if (entry.isBridge && hop != way.listener())
                fixStop(hop, slot);
        }
    }

    void fixStop(quint32 number, qint32 slot)
    {
        Stop& stop = m_board.stop(number);
        stop.slot = static_cast<quint32>(slot);
        stop.window = {slot, slot};
    }

    WindowBoard& m_board;
    const NodeOutport& m_port;
    quint32 m_place; ///< of the port in the PortIndex
    SlotTable m_table;
    LaterWindows m_talkers;
    LaterWindows m_bridges;
    std::vector<qint32> m_slots; ///< found so far, in the port's order
    SlotWindow m_window;
    bool m_isBridge = false;
    qint32 m_slot = 0;
};

} // namespace

qint32 conflictResolve(TTPlanner& planner, quint16 nodeID, quint16 outport)
{
    qCDebug(planningLog) << "conflictResolve";
    const quint32 place = planner.ports.placeOf(nodeID, outport);
    if (place == PortIndex::noPlace)
        return code::ok;
    const NodeOutport& port = *planner.ports.ports()[place].outport;
    PortResolution resolution(planner.board, port, place, planner.maxRxSlot);
    for (size_t rank = 0; rank < port.instances.size(); ++rank) {
        if (!resolution.resolve(rank))
            return code::refused;
    }
    resolution.assign();
    return code::ok;
}

} // namespace planner
