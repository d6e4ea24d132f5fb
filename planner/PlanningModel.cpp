#include "planner/PlanningModel.h"

#include <algorithm>

namespace planner
{

quint64 hopsOf(const std::list<VirtualLinkPath>& paths)
{
    quint64 hops = 0;
    for (const VirtualLinkPath& path : paths)
        hops += path.bridges.size() + 2;
    return hops;
}

void PlanningContext::reset()
{
    switchBufferNum = 0;
    clusterCycle = 0;
    hosts.clear();
    switches.clear();
    links.clear();
    virtualLinks.clear();
    flows.clear();
    TTStreamInstanceList.clear();
    isCut = false;
}

quint32 PlanningContext::nodeIdOfName(const QString& name) const
{
    const auto isNamed = [&name](const auto& node) { return node.name == name; };
    const auto host = std::find_if(hosts.begin(), hosts.end(), isNamed);
    if (host != hosts.end())
        return host->nodeID;
    const auto info = std::find_if(switches.begin(), switches.end(), isNamed);
    return info != switches.end() ? info->nodeID : unknownNode;
}

} // namespace planner
