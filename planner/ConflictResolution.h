#pragma once

#include "planner/PlanningModel.h"

// Gives every instance on one port a slot of its own.
namespace planner
{

/// Assigns slots to the port's instances in list order, yielding to later ones that are tighter.
///
/// Changes the copies below the port and nothing else. Returns code::ok, also for a port that is
/// not in nodeList, or code::refused after logging which exit was met; copies assigned so far then
/// keep their slots.
qint32 conflictResolve(TTPlanner& planner, quint16 nodeID, quint16 outport);

} // namespace planner
