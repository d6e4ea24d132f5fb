#pragma once

#include "planner/WindowBoard.h"

#include <vector>

// How badly the windows at one port overlap.
namespace planner
{

/// The window of each instance at the port, in the port's order.
std::vector<SlotWindow> collectPortWindows(const NodeOutport& port, const WindowBoard& board);

/// Sorts the windows by start and counts the neighbours that overlap.
quint32 countWindowOverlaps(std::vector<SlotWindow>& windows);

} // namespace planner
