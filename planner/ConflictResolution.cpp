#include "planner/ConflictResolution.h"

#include "planner/LaterWindows.h"
#include "planner/PlanningLog.h"
#include "planner/PortLookup.h"
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
    PortResolution(quint16 nodeID, const NodeOutport& port, qint32 maxRxSlot)
        : m_nodeID(nodeID),
          m_port(port),
          m_table(maxRxSlot)
    {
        for (size_t place = 0; place < port.instances.size(); ++place)
            addLaterWindows(place, port.instances[place]);
    }

    /// Finds a slot for the instance at this place, looking ahead to the later ones; false on
    /// failure.
    bool resolve(size_t place)
    {
        const PortInstance& entry = m_port.instances[place];
        m_window = entry.window();
        m_isBridge = entry.bridge != nullptr;
        qCDebug(planningLog) << "冲突窗口: [" << m_window.start << "," << m_window.end << "]";
        if (!takeFirstFreeSlot() || !lookAhead(place))
            return false;
        qCDebug(planningLog) << "冲突窗口分配时隙:" << m_slot;
        m_slots.push_back(m_slot);
        m_table.take(m_slot);
        return true;
    }

    /// Gives all instances the slots that were found.
    void assign() const
    {
        for (size_t place = 0; place < m_slots.size(); ++place)
            fix(m_port.instances[place], m_slots[place]);
    }

private:
    const ExitNumbers& exits() const { return m_isBridge ? bridgeExits : talkerExits; }

    static bool fail(int exitNumber)
    {
        qCDebug(planningLog) << "line:" << exitNumber << "CONFLICT_RESOLVE_FAIL";
        return false;
    }

    // Talkers are compared with talkers only, switches with switches only.
    void addLaterWindows(size_t place, const PortInstance& entry)
    {
        if (entry.meetsOnce) {
            (entry.bridge ? m_bridges : m_talkers).add(place, entry.window());
            return;
        }
        for (const VirtualLinkPath& path : entry.instance->paths) {
            if (talksOn(path, m_nodeID, m_port.outport))
                m_talkers.add(place, path.schedtxwin);
            for (const BridgeHop& hop : path.bridges) {
                if (forwardsOn(hop, m_nodeID, m_port.outport))
                    m_bridges.add(place, hop.schedtxwin);
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

    bool lookAhead(size_t place)
    {
        LaterWindows& later = m_isBridge ? m_bridges : m_talkers;
        const std::vector<SlotWindow>& tighter = later.find(place, m_window);
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

    /// Whether a search upwards from one slot to another went above the bound on its way.
    static bool hasPassed(qint32 from, qint32 to, qint32 bound)
    {
        const bool wrapped = to < from;
        return from != to && (wrapped ? std::numeric_limits<qint32>::max() : to) > bound;
    }

    void fix(const PortInstance& entry, qint32 slot) const
    {
        if (entry.bridge)
            fixSender(*entry.bridge, slot);
        else
            fixSender(*entry.path, slot);
        if (!entry.meetsOnce)
            fixOtherSenders(entry, slot);
    }

    // A talker has one slot on all paths; a switch takes its slot along to the later paths.
    void fixOtherSenders(const PortInstance& entry, qint32 slot) const
    {
        bool isLater = false;
        for (VirtualLinkPath& path : entry.instance->paths) {
            const auto bridge = findHop(path.bridges, m_nodeID, m_port.outport);
            if (!entry.bridge && talksOn(path, m_nodeID, m_port.outport))
                fixSender(path, slot);
            if (entry.bridge && isLater && bridge != path.bridges.end())
                fixSender(*bridge, slot);
            isLater = isLater || &path == entry.path;
        }
    }

    // A path and a switch's hop name their send slot and window alike.
    template <typename Sender>
    static void fixSender(Sender& sender, qint32 slot)
    {
        sender.txslotID = static_cast<quint32>(slot);
        sender.schedtxwin = {slot, slot};
    }

    quint16 m_nodeID;
    const NodeOutport& m_port;
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
    const NodeOutport* port = planner.ports.find(nodeID, outport);
    if (!port)
        return code::ok;
    PortResolution resolution(nodeID, *port, planner.maxRxSlot);
    for (size_t place = 0; place < port->instances.size(); ++place) {
        if (!resolution.resolve(place))
            return code::refused;
    }
    resolution.assign();
    return code::ok;
}

} // namespace planner
