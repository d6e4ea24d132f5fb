#pragma once

#include "tests/planner/twin/Records.h"

#include <vector>

namespace twin
{

/// Runs the first stage in the current directory; 0, -1, -2 or -3.
qint32 preProcess(Context& context);

quint32 lcmReduce(Context& context, const std::vector<quint32>& periods);
qint32 checkTimeWindows(Context& context);
void expandInstances(Context& context);

} // namespace twin
