#pragma once

#include "planner/TTPlanner.h"

// Writes the engine's lists to the debug log.
namespace planner
{

void printTTStreamInstanceList(const std::list<TTStreamInstance>& instances);
void printNodeList(const TTPlanner& planner);
void printTopologyInfo(const PlanningContext& context);
void printVirtualLink(const PlanningContext& context);

} // namespace planner
