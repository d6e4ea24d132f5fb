#pragma once

#include "planner/TTPlanner.h"

// Gives every instance on one port a slot of its own.
namespace planner
{

/// Assigns slots to the port's instances in list order, yielding to later ones that are tighter.
///
/// Collapses the windows of the instances at the port to their slots and changes nothing else.
/// Returns code::ok, also for a port that is not in nodeList, or code::refused after logging which
/// exit was met; nothing is changed then.
qint32 conflictResolve(TTPlanner& planner, quint16 nodeID, quint16 outport);

} // namespace planner
