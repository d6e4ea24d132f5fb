#pragma once

#include "planner/search/SlotWindow.h"

#include <vector>

namespace planner
{

/// Sorts the windows by start and counts the neighbours that overlap.
quint32 countWindowOverlaps(std::vector<SlotWindow>& windows);

} // namespace planner
