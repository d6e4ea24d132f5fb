#pragma once

#include "synthesis/PatternDerivation.h"

namespace synthesis
{

/// For each sending port of a flow, the slots of its first transmission in any plan at all.
///
/// A frame needs a slot a hop and waits no longer than the buffers last; where the rules let it
/// wait longer, as long as they do. So these windows hold at least what the rules derive. A port
/// that branches reach in different ways has the window around all of them. None ends before it
/// starts.
std::vector<PortWindow> possibleHopWindows(const planner::TTFlow& flow, quint16 switchBufferNum);

} // namespace synthesis
