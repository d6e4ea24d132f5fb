#pragma once

#include "tests/planner/twin/Records.h"

namespace twin
{

/// Runs the second stage in the current directory; 0, -1, -2 or -3.
///
/// The planner keeps the master list with its final windows.
qint32 planSecondStage(Planner& planner);

} // namespace twin
