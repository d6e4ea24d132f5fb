#include "planner/documents/TopologyIndex.h"

#include "planner/search/PairKey.h"

namespace planner
{

TopologyIndex::TopologyIndex(const PlanningContext& context)
{
    const auto addName = [this](const QString& name, quint16 nodeID) {
        if (!m_nodeIds.contains(name))
            m_nodeIds.insert(name, nodeID);
    };
    for (const HostInfo& host : context.hosts) {
        addName(host.name, host.nodeID);
        m_hostBuffers[host.nodeID] = host.buffernum;
    }
    for (const SwitchInfo& info : context.switches) {
        addName(info.name, info.nodeID);
        m_switchBuffers.emplace(info.nodeID, info.buffernum);
    }
    for (const LinkInfo& link : context.links)
        m_links[pairKey(link.srcnode, link.dstnode)] = {link.srcport, link.dstport};
}

quint32 TopologyIndex::nodeIdOfName(const QString& name) const
{
    const auto found = m_nodeIds.constFind(name);
    return found != m_nodeIds.constEnd() ? found.value() : unknownNode;
}

/// The value under a key; a value of zeros when there is none.
template <typename Map>
static typename Map::mapped_type valueOf(const Map& map, const typename Map::key_type& key)
{
    const auto found = map.find(key);
    return found != map.end() ? found->second : typename Map::mapped_type();
}

LinkPorts TopologyIndex::portsBetween(quint32 srcnode, quint32 dstnode) const
{
    if (srcnode == unknownNode || dstnode == unknownNode)
        return LinkPorts();
    return valueOf(m_links, pairKey(static_cast<quint16>(srcnode), static_cast<quint16>(dstnode)));
}

quint16 TopologyIndex::bufferNumOfHost(quint32 nodeID) const
{
    return valueOf(m_hostBuffers, nodeID);
}

quint16 TopologyIndex::bufferNumOfSwitch(quint32 nodeID) const
{
    return valueOf(m_switchBuffers, nodeID);
}

} // namespace planner
