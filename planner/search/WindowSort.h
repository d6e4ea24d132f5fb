#pragma once

#include "planner/search/SlotWindow.h"

#include <vector>

namespace planner
{

/// Sorts windows by start with an introspective sort of fixed steps.
///
/// Windows with equal start can change the count of overlapping neighbours by their order, so the
/// order of equal elements is part of the result; it must not depend on a standard library.
void sortWindowsByStart(std::vector<SlotWindow>& windows);

} // namespace planner
