#pragma once

#include "synthesis/WindowSynthesis.h"

#include <optional>

namespace synthesis
{

/// Gives the flows of a context the windows of a plan.
void applyWindows(planner::PlanningContext& context, const Found& plan);

/// What both stages make of a network.
struct TrialPlan {
    qint32 code = planner::code::ok;
    QByteArray outputDocument; ///< with code::ok
    /// The port whose conflicts could not be resolved, see planner::pairKey().
    std::optional<quint32> failedPort;
};

/// Runs both stages on the flows of a context in memory and without log lines.
///
/// The context is as readInputDocument() leaves it.
TrialPlan tryPlanning(planner::PlanningContext context);

} // namespace synthesis
