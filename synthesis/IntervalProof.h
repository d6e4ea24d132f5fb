#pragma once

#include "synthesis/Repetition.h"
#include "synthesis/SearchBudget.h"

#include <optional>

namespace synthesis
{

/// Looks for an interval of a port into which more transmissions must fall than it has slots.
///
/// Whatever slots a plan of any kind gives to the hops, each of them lies in a window that follows
/// from those of talker and listeners; where too many such windows lie inside one interval, there
/// is no plan. Of the intervals that are found, that with the fewest flows, then transmissions.
/// Intervals that reach past the end of the cycle count where the cycle holds whole slots. The
/// flows are those with these places. Ports with very many transmissions are only counted as a
/// whole.
std::optional<Overfull> findOverfullInterval(const planner::PlanningContext& context,
                                             const Repetition& repetition,
                                             const std::vector<std::size_t>& places,
                                             SearchBudget& budget);

} // namespace synthesis
