#pragma once

#include "planner/TTPlanner.h"
#include "planner/passes/PortGroups.h"

// Gives every instance on one port a slot of its own.
namespace planner
{

/// Assigns slots to the port's copies in list order, yielding to later ones that are tighter.
///
/// Collapses the windows of the copies at the port to their slots and changes nothing else.
/// Returns code::ok, also for a port that is not in nodeList, or code::refused after logging which
/// exit was met; copies ahead of the one that found no slot are collapsed then all the same.
qint32 conflictResolve(TTPlanner& planner, quint16 nodeID, quint16 outport);

/// What the instances at a port were given.
struct PortSlots {
    qint32 code = 0;                ///< as above
    std::vector<qint32> slotsGiven; ///< in the port's order, up to a failure
};

/// Finds the slots and changes nothing; the table of slots reaches to maxRxSlot.
PortSlots findSlots(const PortView& port, qint32 maxRxSlot);

} // namespace planner
