#include "tests/planner/twin/ConflictAnalysis.h"

#include "tests/planner/twin/ConflictResolution.h"

#include <QDebug>

#include <algorithm>

namespace twin
{

namespace
{

void addInstanceToPort(std::list<Node>& nodes, const Instance& instance, quint16 nodeID,
                       quint16 outport)
{
    Node* node = nullptr;
    for (Node& candidate : nodes) {
        if (!node && candidate.nodeID == nodeID)
            node = &candidate;
    }
    if (!node) {
        nodes.push_back({nodeID, {{outport, {instance}, 0}}});
        return;
    }
    Outport* port = nullptr;
    for (Outport& candidate : node->outports) {
        if (!port && candidate.outport == outport)
            port = &candidate;
    }
    if (!port) {
        node->outports.push_back({outport, {instance}, 0});
        return;
    }
    for (const Instance& present : port->instances) {
        if (present.flowID == instance.flowID && present.seq == instance.seq)
            return;
    }
    port->instances.push_back(instance);
}

std::vector<Window> collectPortWindows(const Node& node, const Outport& port)
{
    std::vector<Window> windows;
    for (const Instance& instance : port.instances) {
        bool done = false;
        for (const Path& path : instance.paths) {
            if (done)
                break;
            if (path.talkerNodeID == node.nodeID && path.talkerOutport == port.outport) {
                windows.push_back(path.schedtxwin);
                done = true;
                continue;
            }
            for (const Hop& hop : path.bridges) {
                if (hop.nodeID == node.nodeID && hop.outport == port.outport) {
                    windows.push_back(hop.schedtxwin);
                    done = true;
                    break;
                }
            }
        }
    }
    return windows;
}

/// Walks hops downstream of a known window and narrows each around the previous one.
class DownstreamWalk
{
public:
    DownstreamWalk(qint32 B, qint32 start, qint32 end) : m_B(B), m_start(start), m_end(end) {}

    /// The bounds are what a later fixed point allows.
    void narrow(Window& window, qint32 lowest, qint32 highest)
    {
        window.start = std::max({plus(m_start, 1), window.start, lowest});
        window.end = std::min({plus(m_end, m_B), window.end, highest});
        m_start = window.start;
        m_end = window.end;
    }

private:
    qint32 m_B;
    qint32 m_start;
    qint32 m_end;
};

void reviseFromTalker(qint32 B, Path& path)
{
    const qint32 h = static_cast<qint32>(path.bridges.size());
    const qint32 t = static_cast<qint32>(path.txslotID);
    Window& rx = path.schedrxwin;
    rx.start = std::max(rx.start, plus(t, h));
    rx.end = std::min(rx.end, plus(t, times(B, h)));
    DownstreamWalk walk(B, path.schedtxwin.start, path.schedtxwin.end);
    qint32 j = 1;
    for (Hop& hop : path.bridges) {
        const qint32 k = h - j;
        walk.narrow(hop.schedtxwin, minus(rx.start, times(B, k)), minus(rx.end, k));
        ++j;
    }
}

void reviseFromBridge(qint32 B, Path& path, std::list<Hop>::iterator fixed, qint32 c)
{
    const qint32 h = static_cast<qint32>(path.bridges.size());
    const qint32 t = static_cast<qint32>(fixed->txslotID);
    const qint32 r = h - c - 1;
    Window& tx = path.schedtxwin;
    tx.start = std::max(tx.start, minus(t, times(B, c + 1)));
    tx.end = std::min(tx.end, minus(t, c + 1));
    DownstreamWalk before(B, tx.start, tx.end);
    qint32 j = 1;
    for (auto hop = path.bridges.begin(); hop != fixed; ++hop, ++j) {
        const qint32 m = c + 1 - j;
        before.narrow(hop->schedtxwin, minus(t, times(B, m)), minus(t, m));
    }
    Window& rx = path.schedrxwin;
    rx.start = std::max(rx.start, plus(t, r));
    rx.end = std::min(rx.end, plus(t, times(B, r)));
    DownstreamWalk behind(B, t, t);
    qint32 d = 1;
    for (auto hop = std::next(fixed); hop != path.bridges.end(); ++hop, ++d) {
        const qint32 k = r - d;
        behind.narrow(hop->schedtxwin, minus(rx.start, times(B, k)), minus(rx.end, k));
    }
}

} // namespace

std::list<Node> convertInstancesToNodes(const std::list<Instance>& instances)
{
    qDebug() << "converting Instance to Node----------";
    std::list<Node> nodes;
    for (const Instance& instance : instances) {
        for (const Path& path : instance.paths) {
            addInstanceToPort(nodes, instance, path.talkerNodeID, path.talkerOutport);
            for (const Hop& hop : path.bridges)
                addInstanceToPort(nodes, instance, hop.nodeID, hop.outport);
        }
    }
    qDebug() << "converting Instance to Node End----------";
    return nodes;
}

// The library's sort is the introspective sort that the procedure asks for, equal starts included;
// elsewhere than in libstdc++ the twin would need one of its own.
quint32 countWindowOverlaps(std::vector<Window>& windows)
{
    std::sort(windows.begin(), windows.end(),
              [](const Window& a, const Window& b) { return a.start < b.start; });
    quint32 count = 0;
    for (size_t i = 0; i + 1 < windows.size(); ++i) {
        if (windows[i + 1].start <= windows[i].end)
            ++count;
    }
    return count;
}

qint32 calculateConflictDegree(Planner& planner)
{
    qDebug() << "Conflict Degree Calculating----------";
    quint32 maxDegree = 0;
    quint16 worstNode = 0;
    quint16 worstOutport = 0;
    for (Node& node : planner.nodeList) {
        for (Outport& port : node.outports) {
            std::vector<Window> windows = collectPortWindows(node, port);
            port.degree = 2 * countWindowOverlaps(windows);
            if (maxDegree < port.degree) {
                maxDegree = port.degree;
                worstNode = node.nodeID;
                worstOutport = port.outport;
            }
        }
    }
    qDebug() << "Conflict Degree Calculating End----------";
    qDebug() << "maxDegree:" << maxDegree << "node:" << worstNode << "outport:" << worstOutport;
    if (maxDegree == 0)
        return 0;
    const qint32 result = conflictResolve(planner, worstNode, worstOutport);
    qDebug() << "Resolve:" << result;
    if (result != 0)
        return result;
    flowStatusRevise(planner, worstNode, worstOutport);
    const std::list<Instance> copy = planner.instances;
    planner.nodeList = convertInstancesToNodes(copy);
    return static_cast<qint32>(maxDegree);
}

void flowStatusRevise(Planner& planner, quint16 nodeID, quint16 outport)
{
    qDebug() << "flowStatusRevise-----";
    for (Node& node : planner.nodeList) {
        for (Outport& port : node.outports) {
            if (node.nodeID != nodeID || port.outport != outport)
                continue;
            for (Instance& copy : port.instances) {
                reviseWindows(planner, nodeID, outport, copy);
                for (Instance& record : planner.instances) {
                    if (record.flowID == copy.flowID && record.seq == copy.seq)
                        record = copy;
                }
            }
        }
    }
    qDebug() << "flowStatusRevise end-----";
}

void reviseWindows(const Planner& planner, quint16 nodeID, quint16 outport, Instance& instance)
{
    const qint32 B = planner.hopBufferNum;
    for (Path& path : instance.paths) {
        if (path.talkerNodeID == nodeID && path.talkerOutport == outport) {
            reviseFromTalker(B, path);
            continue;
        }
        qint32 c = 0;
        for (auto hop = path.bridges.begin(); hop != path.bridges.end(); ++hop, ++c) {
            if (hop->nodeID == nodeID && hop->outport == outport) {
                reviseFromBridge(B, path, hop, c);
                break;
            }
        }
    }
}

} // namespace twin
