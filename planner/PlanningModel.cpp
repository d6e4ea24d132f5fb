#include "planner/PlanningModel.h"

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

} // namespace planner
