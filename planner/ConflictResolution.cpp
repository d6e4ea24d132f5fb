#include "planner/ConflictResolution.h"

#include "planner/PlanningLog.h"
#include "planner/PortLookup.h"
#include "planner/SlotTable.h"

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

using Instances = std::list<TTStreamInstance>;
using PathIterator = std::list<VirtualLinkPath>::iterator;

/// The first hop of an instance at the port: the talker of a path, or one of its bridges.
struct HopAtPort {
    PathIterator path;
    BridgeHop* bridge = nullptr; ///< null for a talker

    SlotWindow window() const { return bridge ? bridge->schedtxwin : path->schedtxwin; }
};

/// One call's work on a port: the slots given out so far, and the slot under search.
class PortResolution
{
public:
    PortResolution(quint16 nodeID, quint16 outport, qint32 maxRxSlot)
        : m_nodeID(nodeID),
          m_outport(outport),
          m_table(maxRxSlot)
    {
    }

    /// Gives a slot to the current instance, looking ahead to the later ones; false on failure.
    bool resolve(Instances::iterator current, Instances::iterator end)
    {
        HopAtPort hop;
        if (!findHopOf(*current, hop))
            return true;
        m_window = hop.window();
        m_isBridge = hop.bridge != nullptr;
        qCDebug(planningLog) << "冲突窗口: [" << m_window.start << "," << m_window.end << "]";
        if (!takeFirstFreeSlot() || !lookAhead(std::next(current), end))
            return false;
        qCDebug(planningLog) << "冲突窗口分配时隙:" << m_slot;
        assign(*current, hop);
        m_table.setUsed(m_slot, true);
        return true;
    }

private:
    const ExitNumbers& exits() const { return m_isBridge ? bridgeExits : talkerExits; }

    static bool fail(int exitNumber)
    {
        qCDebug(planningLog) << "line:" << exitNumber << "CONFLICT_RESOLVE_FAIL";
        return false;
    }

    bool findHopOf(TTStreamInstance& instance, HopAtPort& hop) const
    {
        for (hop.path = instance.paths.begin(); hop.path != instance.paths.end(); ++hop.path) {
            if (talksOn(*hop.path, m_nodeID, m_outport))
                return true;
            const auto bridge = findHop(hop.path->bridges, m_nodeID, m_outport);
            if (bridge != hop.path->bridges.end()) {
                hop.bridge = &*bridge;
                return true;
            }
        }
        return false;
    }

    bool takeFirstFreeSlot()
    {
        m_slot = m_window.start;
        while (m_table.used(m_slot)) {
            m_slot = addSlots(m_slot, 1);
            if (m_slot > m_table.lastSlot())
                return false;
            if (m_slot > m_window.end)
                return fail(exits().noFreeSlot);
        }
        return true;
    }

    // Talkers are compared with talkers only, switches with switches only.
    bool lookAhead(Instances::const_iterator later, Instances::const_iterator end)
    {
        for (; later != end; ++later) {
            for (const VirtualLinkPath& path : later->paths) {
                if (!(m_isBridge ? yieldToBridges(path) : yieldToTalker(path)))
                    return false;
            }
        }
        return true;
    }

    bool yieldToTalker(const VirtualLinkPath& path)
    {
        return !talksOn(path, m_nodeID, m_outport) || yieldTo(path.schedtxwin);
    }

    bool yieldToBridges(const VirtualLinkPath& path)
    {
        return std::all_of(path.bridges.begin(), path.bridges.end(), [this](const BridgeHop& hop) {
            return !forwardsOn(hop, m_nodeID, m_outport) || yieldTo(hop.schedtxwin);
        });
    }

    bool yieldTo(const SlotWindow& later)
    {
        if (later.start == m_window.start)
            return m_window.end <= later.end || giveWay();
        const bool needsItsSlotFirst =
            later.start < m_window.start && m_window.start <= later.end && later.end < m_window.end;
        return !needsItsSlotFirst || stepAsideFor(later);
    }

    // Equal starts, and the later window is the tighter one. Nothing is reserved for it. A switch
    // may leave the table here; a talker would search there for ever.
    bool giveWay()
    {
        do {
            m_slot = addSlots(m_slot, 1);
        } while (m_table.used(m_slot));
        if (m_slot > m_table.lastSlot())
            return m_isBridge || fail(exits().equalStarts);
        return m_slot <= m_window.end || fail(exits().equalStarts);
    }

    // The later window starts and ends earlier. Its first free slot is held only while the current
    // hop moves off it; the window claims its slot at its own turn.
    bool stepAsideFor(const SlotWindow& later)
    {
        qint32 claimed = later.start;
        while (m_table.used(claimed)) {
            claimed = addSlots(claimed, 1);
            if (claimed > later.end)
                return fail(exits().laterIsFull);
        }
        qCDebug(planningLog) << "temptxslot" << claimed;
        m_table.setUsed(claimed, true);
        while (m_table.used(m_slot))
            m_slot = addSlots(m_slot, 1);
        // Beyond the table no slot would ever be found, so this is a failure too. A switch is
        // measured against the later window, a talker against its own.
        const qint32 lastAllowed = m_isBridge ? later.end : m_window.end;
        if (m_slot > m_table.lastSlot() || m_slot > lastAllowed)
            return fail(exits().steppedTooFar);
        m_table.setUsed(claimed, false);
        return true;
    }

    void assign(TTStreamInstance& instance, const HopAtPort& hop) const
    {
        if (!hop.bridge) {
            for (VirtualLinkPath& path : instance.paths) {
                if (talksOn(path, m_nodeID, m_outport))
                    fix(path);
            }
            return;
        }
        fix(*hop.bridge);
        for (auto path = std::next(hop.path); path != instance.paths.end(); ++path) {
            const auto bridge = findHop(path->bridges, m_nodeID, m_outport);
            if (bridge != path->bridges.end())
                fix(*bridge);
        }
    }

    // A path and a switch's hop name their send slot and window alike.
    template <typename Sender>
    void fix(Sender& sender) const
    {
        sender.txslotID = static_cast<quint32>(m_slot);
        sender.schedtxwin.start = m_slot;
        sender.schedtxwin.end = m_slot;
    }

    quint16 m_nodeID;
    quint16 m_outport;
    SlotTable m_table;
    SlotWindow m_window;
    bool m_isBridge = false;
    qint32 m_slot = 0;
};

} // namespace

qint32 conflictResolve(TTPlanner& planner, quint16 nodeID, quint16 outport)
{
    qCDebug(planningLog) << "conflictResolve";
    NodeOutport* port = findPort(planner, nodeID, outport);
    if (!port)
        return code::ok;
    PortResolution resolution(nodeID, outport, planner.maxRxSlot);
    for (auto current = port->instances.begin(); current != port->instances.end(); ++current) {
        if (!resolution.resolve(current, port->instances.end()))
            return code::refused;
    }
    return code::ok;
}

} // namespace planner
