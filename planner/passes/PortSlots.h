#pragma once

#include "planner/passes/PortGroups.h"

namespace planner
{

/// Collapses the windows at the port to these slots, which are in the port's order.
///
/// There may be fewer than entries: the windows of the others stay.
void assignSlots(const PortView& port, const std::vector<qint32>& slotsGiven);

} // namespace planner
