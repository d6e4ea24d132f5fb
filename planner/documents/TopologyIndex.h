#pragma once

#include "planner/PlanningModel.h"

#include <QHash>

#include <unordered_map>

namespace planner
{

/// The two ends of one direction of a link.
struct LinkPorts {
    quint16 outport = 0; ///< at the sending node
    quint16 inport = 0;  ///< at the receiving node
};

/// Answers questions about a topology that has been read, without walking its lists.
///
/// Holds what was there at its construction and refers to nothing.
class TopologyIndex
{
public:
    explicit TopologyIndex(const PlanningContext& context);

    /// Number of the first node, hosts before switches, with exactly this name, or unknownNode.
    quint32 nodeIdOfName(const QString& name) const;

    /// The ports of the link from one node to another: of parallel links the last one, else 0 and
    /// 0.
    ///
    /// No link leads to or from unknownNode, not even one whose own ends are unknown.
    LinkPorts portsBetween(quint32 srcnode, quint32 dstnode) const;

    /// Buffer number of the last host with this number, 0 without one, as for unknownNode.
    quint16 bufferNumOfHost(quint32 nodeID) const;

    /// Buffer number of the first switch with this number, 0 without one, as for unknownNode.
    quint16 bufferNumOfSwitch(quint32 nodeID) const;

private:
    QHash<QString, quint16> m_nodeIds;
    std::unordered_map<quint32, LinkPorts> m_links;     ///< by sending and receiving node
    std::unordered_map<quint32, quint16> m_hostBuffers; ///< by 32 bits, so that unknownNode is none
    std::unordered_map<quint32, quint16> m_switchBuffers;
};

} // namespace planner
