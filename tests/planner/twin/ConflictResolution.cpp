#include "tests/planner/twin/ConflictResolution.h"

#include <QDebug>

#include <vector>

namespace twin
{

namespace
{

/// The table, one element a slot from the least to the largest that was ever marked: a table may be
/// as long as there are slots. Outside it nothing is used and nothing is kept.
class Table
{
public:
    explicit Table(qint32 maxRxSlot) : m_last(maxRxSlot) {}

    bool contains(qint32 slot) const { return slot >= 0 && slot <= m_last; }
    bool used(qint32 slot) const
    {
        return slot >= m_first && placeOf(slot) < m_used.size() && m_used[placeOf(slot)];
    }
    void mark(qint32 slot, bool used)
    {
        if (!contains(slot))
            return;
        if (m_used.empty())
            m_first = slot;
        if (slot < m_first) {
            m_used.insert(m_used.begin(), static_cast<size_t>(m_first - slot), false);
            m_first = slot;
        }
        if (placeOf(slot) >= m_used.size())
            m_used.resize(placeOf(slot) + 1, false);
        m_used[placeOf(slot)] = used;
    }

private:
    size_t placeOf(qint32 slot) const { return static_cast<size_t>(slot - m_first); }

    qint32 m_last;
    qint32 m_first = 0;
    std::vector<bool> m_used;
};

/// Ends the call with code -3.
struct Failed {
};

[[noreturn]] void fail(int line)
{
    qDebug() << "line:" << line << "CONFLICT_RESOLVE_FAIL";
    throw Failed();
}

/// The hop of the current instance: its path, and the bridge unless the talker is meant.
struct Current {
    std::list<Path>::iterator path;
    Hop* bridge = nullptr;
    bool found = false;
};

/// One call of the resolution.
class Resolution
{
public:
    Resolution(qint32 maxRxSlot, quint16 nodeID, quint16 outport)
        : m_nodeID(nodeID),
          m_outport(outport),
          m_maxRxSlot(maxRxSlot),
          m_table(maxRxSlot)
    {
    }

    void run(std::list<Instance>& instances)
    {
        for (auto I = instances.begin(); I != instances.end(); ++I) {
            const Current hop = findHop(*I);
            if (!hop.found)
                continue;
            const bool bridge = hop.bridge != nullptr;
            const Window W = bridge ? hop.bridge->schedtxwin : hop.path->schedtxwin;
            qDebug() << "冲突窗口: [" << W.start << "," << W.end << "]";
            qint32 s = firstFreeSlot(bridge, W);
            for (auto later = std::next(I); later != instances.end(); ++later)
                lookAhead(bridge, W, s, *later);
            qDebug() << "冲突窗口分配时隙:" << s;
            if (bridge)
                assignBridge(*I, hop, s);
            else
                assignTalker(*I, s);
            m_table.mark(s, true);
        }
    }

private:
    bool talkerAtPort(const Path& path) const
    {
        return path.talkerNodeID == m_nodeID && path.talkerOutport == m_outport;
    }
    bool bridgeAtPort(const Hop& hop) const
    {
        return hop.nodeID == m_nodeID && hop.outport == m_outport;
    }

    Current findHop(Instance& instance) const
    {
        for (auto path = instance.paths.begin(); path != instance.paths.end(); ++path) {
            if (talkerAtPort(*path))
                return {path, nullptr, true};
            for (Hop& hop : path->bridges) {
                if (bridgeAtPort(hop))
                    return {path, &hop, true};
            }
        }
        return {};
    }

    qint32 firstFreeSlot(bool bridge, const Window& W) const
    {
        qint32 s = W.start;
        while (m_table.used(s)) {
            s = plus(s, 1);
            if (s > m_maxRxSlot)
                throw Failed();
            if (s > W.end)
                fail(bridge ? 556 : 465);
        }
        return s;
    }

    void lookAhead(bool bridge, const Window& W, qint32& s, const Instance& later)
    {
        for (const Path& path : later.paths) {
            if (!bridge) {
                if (talkerAtPort(path))
                    yieldTo(bridge, W, s, path.schedtxwin);
                continue;
            }
            for (const Hop& hop : path.bridges) {
                if (bridgeAtPort(hop))
                    yieldTo(bridge, W, s, hop.schedtxwin);
            }
        }
    }

    void yieldTo(bool bridge, const Window& W, qint32& s, const Window& X)
    {
        if (X.start == W.start && W.end <= X.end)
            return;
        if (X.start == W.start && W.end > X.end) {
            ruleA(bridge, W, s);
            return;
        }
        if (X.start > W.start)
            return;
        if (W.start > X.end)
            return;
        if (X.end >= W.end)
            return;
        ruleB(bridge, W, s, X);
    }

    void ruleA(bool bridge, const Window& W, qint32& s) const
    {
        s = plus(s, 1);
        while (m_table.used(s))
            s = plus(s, 1);
        if (s > m_maxRxSlot) {
            // A bridge goes on outside the table; for a talker every further slot is skipped, too,
            // which would never end.
            if (!bridge)
                fail(486);
            return;
        }
        if (s > W.end)
            fail(bridge ? 580 : 486);
    }

    void ruleB(bool bridge, const Window& W, qint32& s, const Window& X)
    {
        qint32 u = X.start;
        while (m_table.used(u)) {
            u = plus(u, 1);
            if (u > X.end)
                fail(bridge ? 594 : 500);
        }
        qDebug() << "temptxslot" << u;
        m_table.mark(u, true);
        while (m_table.used(s))
            s = plus(s, 1);
        // The procedure would test this again and again without end.
        if (s > m_maxRxSlot)
            fail(bridge ? 607 : 512);
        if (s > (bridge ? X.end : W.end))
            fail(bridge ? 607 : 512);
        m_table.mark(u, false);
    }

    void assignTalker(Instance& instance, qint32 s) const
    {
        for (Path& path : instance.paths) {
            if (!talkerAtPort(path))
                continue;
            path.txslotID = static_cast<quint32>(s);
            path.schedtxwin.start = s;
            path.schedtxwin.end = s;
        }
    }

    static void fix(Hop& hop, qint32 s)
    {
        hop.txslotID = static_cast<quint32>(s);
        hop.schedtxwin.start = s;
        hop.schedtxwin.end = s;
    }

    void assignBridge(Instance& instance, const Current& current, qint32 s) const
    {
        fix(*current.bridge, s);
        for (auto path = std::next(current.path); path != instance.paths.end(); ++path) {
            for (Hop& hop : path->bridges) {
                if (bridgeAtPort(hop)) {
                    fix(hop, s);
                    break;
                }
            }
        }
    }

    quint16 m_nodeID;
    quint16 m_outport;
    qint32 m_maxRxSlot;
    Table m_table;
};

} // namespace

qint32 conflictResolve(Planner& planner, quint16 nodeID, quint16 outport)
{
    qDebug() << "conflictResolve";
    Resolution resolution(planner.maxRxSlot, nodeID, outport);
    try {
        for (Node& node : planner.nodeList) {
            for (Outport& port : node.outports) {
                if (node.nodeID == nodeID && port.outport == outport)
                    resolution.run(port.instances);
            }
        }
    } catch (const Failed&) {
        return -3;
    }
    return 0;
}

} // namespace twin
