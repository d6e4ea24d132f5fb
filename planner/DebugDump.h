#pragma once

#include "planner/TTPlanner.h"

// Writes the engine's lists to the debug log, a value or two a line; windows in slots.
namespace planner
{

/// The windows of each instance, in the order of the list.
void printTTStreamInstanceList(const std::list<TTStreamInstance>& instances);

/// The instances of each port with their windows; a debugging aid.
void printNodeList(const TTPlanner& planner);

/// Hosts, switches and links; a debugging aid.
void printTopologyInfo(const PlanningContext& context);

/// The paths of each virtual link, whose windows are not known yet; a debugging aid.
void printVirtualLink(const PlanningContext& context);

} // namespace planner
