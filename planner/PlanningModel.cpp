#include "planner/PlanningModel.h"

#include <algorithm>

namespace planner
{

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
