#pragma once

#include "planner/passes/WindowBoard.h"

namespace planner
{

/// Tightens all windows of an instance around the slot that was fixed on it at a port.
///
/// A path that does not pass the port is left as it is.
void reviseInstance(WindowBoard& board, InstanceIndex instance, PortIndex port, qint32 bufferNum);

} // namespace planner
