#pragma once

#include "planner/TTPlanner.h"

// Tightens windows around slots that were fixed.
namespace planner
{

/// Carries the slots fixed at a port to all windows of its instances and to their duplicates.
///
/// Touches every port at which a window changed, and adds the instances to planner.revised. Once a
/// duplicate was overwritten, which may have led over other ports before, the ports are outdated.
void flowStatusRevise(TTPlanner& planner, quint16 nodeID, quint16 outport);

/// Tightens all windows of one instance around its fixed hop at a port; always code::ok.
///
/// port is the port's place in the PortIndex, instance the place in the master list.
qint32 reviseWindows(TTPlanner& planner, quint32 port, quint32 instance);

} // namespace planner
