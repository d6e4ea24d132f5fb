#pragma once

#include "planner/search/PairKey.h"
#include "planner/search/SlotWindow.h"

#include <QString>

#include <array>
#include <list>
#include <memory>

// Records of the planning engine. Lists own their elements by value, are appended to at the back
// and keep document order; copying a record copies everything below it.
//
// Units: a period of a TTFlow, clusterCycle and schedCycle are microseconds; every SlotWindow
// behind windowToSlots(), the period of a TTStreamInstance and all slot numbers are slots.
namespace planner
{

/// Length of one slot in microseconds; the same for every network.
constexpr qint32 slotLength_us = 200;

/// Both stages together stay within this memory, whatever is planned.
constexpr quint64 memoryLimit_bytes = quint64(6) << 30;

/// What one hop of a transmission takes at most, the lists of both stages and all that a run keeps
/// beside them counted; measured: up to 370.
constexpr quint64 hopSize_bytes = 384;

/// So many hops may the transmissions of a cycle have together; talkers and listeners count too.
constexpr quint64 maxHops = memoryLimit_bytes / hopSize_bytes;

/// What nodeIdOfName() returns for a name that no node has.
constexpr quint32 unknownNode = 0xFFFFFFFFU;

/// Return codes of the two stages.
namespace code
{
constexpr qint32 ok = 0;
constexpr qint32 unreadable = -1;    ///< a document does not parse or lacks what it needs
constexpr qint32 folderMissing = -2; ///< the folder of the document does not exist
constexpr qint32 refused = -3;       ///< an unreasonable window, or a resolution that failed
} // namespace code

/// A switch on a path, with the window in which it may send there.
struct BridgeHop {
    quint16 nodeID = 0;
    quint16 inport = 0;
    quint16 outport = 0;
    SlotWindow schedtxwin;
    quint32 rxslotID = 0; ///< written by the second stage only
    quint32 txslotID = 0; ///< written by the second stage only
    quint16 buffernum = 0;
};

/// One way through the network from a talker to one listener.
struct VirtualLinkPath {
    quint16 talkerNodeID = 0;
    quint16 talkerOutport = 0;
    SlotWindow schedtxwin;
    quint32 txslotID = 0; ///< written by the second stage only
    quint16 talkerBuffernum = 0;
    std::list<BridgeHop> bridges; ///< in path order
    quint16 listenerNodeID = 0;
    quint16 listenerInport = 0;
    SlotWindow schedrxwin;
    quint32 rxslotID = 0; ///< written by the second stage only
    quint16 listenerBuffernum = 0;
};

struct HostInfo {
    QString name; ///< without quote characters
    quint16 nodeID = 0;
    std::array<quint8, 6> MAC{};
    quint16 MTU = 0;
    quint16 buffernum = 0;
};

struct SwitchInfo {
    QString name; ///< without quote characters
    quint16 nodeID = 0;
    std::array<quint8, 6> MAC{};
    quint16 portnum = 0;
    quint16 MTU = 0;
    quint16 buffernum = 0;
};

/// One direction of a physical link.
struct LinkInfo {
    quint16 srcnode = 0;
    quint16 dstnode = 0;
    quint16 srcport = 0;
    quint16 dstport = 0;
    quint16 bandwidth = 0; ///< Mbps; carried, not used by planning
};

struct VirtualLink {
    quint16 vlid = 0;
    std::list<VirtualLinkPath> paths; ///< one per datapath, in document order
};

/// One time-triggered flow as read from the input document.
struct TTFlow {
    quint16 flowID = 0;
    quint16 vlid = 0;
    quint32 period = 0; ///< microseconds
    quint16 size = 0;   ///< bytes
    std::list<VirtualLinkPath>
        paths; ///< private copy of the virtual link's paths, windows filled in
};

/// One transmission of a flow in the cluster cycle.
struct TTStreamInstance {
    quint16 flowID = 0;
    quint16 vlid = 0;
    quint32 period = 0;               ///< slots, rounded down
    quint16 size = 0;                 ///< bytes
    std::list<VirtualLinkPath> paths; ///< private copy, windows shifted to this instance
    quint16 seq = 0;                  ///< number in the flow from 0; wraps at 65536
};

/// What tells instances apart, made of flowID and seq; two records may share it.
inline quint32 instanceKey(const TTStreamInstance& instance)
{
    return pairKey(instance.flowID, instance.seq);
}

/// The hops of the paths, with their talkers and listeners.
quint64 hopsOf(const std::list<VirtualLinkPath>& paths);

/// State of the first stage: the input document and what is derived from it.
struct PlanningContext {
    quint16 switchBufferNum =
        0;                    ///< slots a frame may wait in a switch: that of the switch read last
    quint64 clusterCycle = 0; ///< microseconds
    std::list<HostInfo> hosts;
    std::list<SwitchInfo> switches;
    std::list<LinkInfo> links; ///< two records per physical link
    std::list<VirtualLink> virtualLinks;
    std::list<TTFlow> flows;                          ///< flows of type TT only
    std::list<TTStreamInstance> TTStreamInstanceList; ///< flow by flow, by seq within a flow
    bool isCut = false; ///< the disk had no room for the whole of vek_hs.xml

    /// Returns to the empty state in which a run begins.
    void reset();

    /// Number of the first node, hosts before switches, with exactly this name, or unknownNode.
    quint32 nodeIdOfName(const QString& name) const;
};

/// An instance as the ports know it: a copy of its own, complete with all its paths.
///
/// Ports share one copy as long as none of them changes it, and who changes it puts another one in
/// its place.
using InstanceCopy = std::shared_ptr<const TTStreamInstance>;

/// One sending port with the instances that send on it.
struct NodeOutport {
    quint16 outport = 0;
    std::list<InstanceCopy> instances; ///< in order of first use
    quint32 degree = 0;                ///< conflict degree, valid after a degree pass
};

/// One sending node with its ports in order of first use.
struct Node {
    quint16 nodeID = 0;
    std::list<NodeOutport> outports;
};

} // namespace planner
