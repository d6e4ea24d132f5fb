#pragma once

#include "synthesis/WindowSynthesis.h"

namespace synthesis
{

/// Gives the flows of a context the windows of a plan.
void applyWindows(planner::PlanningContext& context, const Found& plan);

/// Runs both stages on the flows of a context in memory and without log lines.
///
/// The context is as readInputDocument() leaves it. Returns a code of the stages, and with
/// code::ok the output document.
qint32 tryPlanning(planner::PlanningContext context, QByteArray& outputDocument);

} // namespace synthesis
