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
    const auto hasName = [&name](const auto& node) { return node.name == name; };
    const auto host = std::find_if(hosts.begin(), hosts.end(), hasName);
    if (host != hosts.end())
        return host->nodeID;
    const auto found = std::find_if(switches.begin(), switches.end(), hasName);
    return found != switches.end() ? found->nodeID : unknownNode;
}

} // namespace planner
