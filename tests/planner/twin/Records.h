#pragma once

#include <QString>

#include <array>
#include <list>

// Records of the twin: a second planning engine, slow and literal, that shares no code with the
// product. It walks its lists exactly as the procedure is told, so that an index or a shortcut of
// the product can be proven against it.
namespace twin
{

struct Window {
    qint32 end = 0;
    qint32 start = 0;
};

struct Hop {
    quint16 nodeID = 0;
    quint16 inport = 0;
    quint16 outport = 0;
    Window schedtxwin;
    quint32 rxslotID = 0;
    quint32 txslotID = 0;
    quint16 buffernum = 0;
};

struct Path {
    quint16 talkerNodeID = 0;
    quint16 talkerOutport = 0;
    Window schedtxwin;
    quint32 txslotID = 0;
    quint16 talkerBuffernum = 0;
    std::list<Hop> bridges;
    quint16 listenerNodeID = 0;
    quint16 listenerInport = 0;
    Window schedrxwin;
    quint32 rxslotID = 0;
    quint16 listenerBuffernum = 0;
};

struct Instance {
    quint16 flowID = 0;
    quint16 vlid = 0;
    quint32 period = 0; ///< slots
    quint16 size = 0;
    std::list<Path> paths;
    quint16 seq = 0;
};

struct Host {
    QString name;
    quint16 nodeID = 0;
    std::array<quint8, 6> MAC{};
    quint16 MTU = 0;
    quint16 buffernum = 0;
};

struct Switch {
    QString name;
    quint16 nodeID = 0;
    std::array<quint8, 6> MAC{};
    quint16 portnum = 0;
    quint16 MTU = 0;
    quint16 buffernum = 0;
};

struct Link {
    quint16 srcnode = 0;
    quint16 dstnode = 0;
    quint16 srcport = 0;
    quint16 dstport = 0;
    quint16 bandwidth = 0;
};

struct VirtualLink {
    quint16 vlid = 0;
    std::list<Path> paths;
};

struct Flow {
    quint16 flowID = 0;
    quint16 vlid = 0;
    quint32 period = 0; ///< microseconds
    quint16 size = 0;
    std::list<Path> paths;
};

/// State of the first stage.
struct Context {
    quint16 switchBufferNum = 0;
    quint64 clusterCycle = 0; ///< microseconds
    std::list<Host> hosts;
    std::list<Switch> switches;
    std::list<Link> links;
    std::list<VirtualLink> virtualLinks;
    std::list<Flow> flows;
    std::list<Instance> instances;
};

struct Outport {
    quint16 outport = 0;
    std::list<Instance> instances;
    quint32 degree = 0;
};

struct Node {
    quint16 nodeID = 0;
    std::list<Outport> outports;
};

/// State of the second stage.
struct Planner {
    quint16 hopBufferNum = 0;
    std::list<Node> nodeList;
    std::list<Instance> instances; ///< the master list
    qint32 maxRxSlot = 0;
    quint32 schedCycle = 0; ///< microseconds
    quint32 slotLen = 0;    ///< microseconds
};

inline bool operator==(const Window& a, const Window& b)
{
    return a.end == b.end && a.start == b.start;
}

inline bool operator==(const Hop& a, const Hop& b)
{
    return a.nodeID == b.nodeID && a.inport == b.inport && a.outport == b.outport &&
           a.schedtxwin == b.schedtxwin && a.txslotID == b.txslotID;
}

inline bool operator==(const Path& a, const Path& b)
{
    return a.talkerNodeID == b.talkerNodeID && a.talkerOutport == b.talkerOutport &&
           a.schedtxwin == b.schedtxwin && a.txslotID == b.txslotID && a.bridges == b.bridges &&
           a.listenerNodeID == b.listenerNodeID && a.listenerInport == b.listenerInport &&
           a.schedrxwin == b.schedrxwin;
}

inline bool operator==(const Instance& a, const Instance& b)
{
    return a.flowID == b.flowID && a.vlid == b.vlid && a.seq == b.seq && a.paths == b.paths;
}

/// Sum, difference and product of slot numbers; what leaves 32 bits wraps.
inline qint32 plus(qint64 a, qint64 b)
{
    return static_cast<qint32>(static_cast<quint32>(static_cast<quint64>(a + b)));
}
inline qint32 minus(qint64 a, qint64 b)
{
    return static_cast<qint32>(static_cast<quint32>(static_cast<quint64>(a - b)));
}
inline qint32 times(qint64 a, qint64 b)
{
    return static_cast<qint32>(static_cast<quint32>(static_cast<quint64>(a * b)));
}

} // namespace twin
