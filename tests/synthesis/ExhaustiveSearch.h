#pragma once

#include "planner/PlanningModel.h"

#include <vector>

// Tries everything on small networks, by definitions of its own.

/// Whether slots t and r exist for all flows whose windows nowhere overlap.
///
/// The windows are those that the first stage derives for the whole network; they must not be
/// inverted, each hop must send behind the one before and within the buffers, and branches that
/// share a port must send there in the same slot.
bool hasPlanWithoutOverlap(const planner::PlanningContext& context);

/// Whether the flows at these places have a plan of any kind: a slot for each hop of each path, one
/// to buffers slots behind the one before, talker and listeners inside their windows, and no two
/// transmissions on a port at the same time of the cycle.
bool hasAnyPlan(const planner::PlanningContext& context, const std::vector<std::size_t>& places);
