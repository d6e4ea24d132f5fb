#pragma once

#include "tests/planner/twin/Records.h"

namespace twin
{

/// Gives each instance of the port a slot; 0 or -3.
qint32 conflictResolve(Planner& planner, quint16 nodeID, quint16 outport);

} // namespace twin
