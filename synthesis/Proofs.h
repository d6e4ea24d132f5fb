#pragma once

#include "synthesis/Repetition.h"
#include "synthesis/WindowSynthesis.h"

#include <optional>

// Finds reasons why no plan can exist, whatever slots are chosen.
namespace synthesis
{

/// The first flow whose own windows leave no slot, for its talker or for a listener.
std::optional<NoSlot> findFlowWithoutSlot(const planner::PlanningContext& context);

} // namespace synthesis
