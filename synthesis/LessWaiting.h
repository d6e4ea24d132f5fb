#pragma once

#include "synthesis/PlacementSearch.h"

namespace synthesis
{

/// Moves flows of a plan to places where they wait less, one after the other while any can.
///
/// All flows must be placed, and none may share a cell; the result is such a plan again.
std::vector<Placement> withLessWaiting(const SearchModel& model, std::vector<Placement> placements);

} // namespace synthesis
