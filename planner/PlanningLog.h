#pragma once

#include <QDebug>
#include <QLoggingCategory>

namespace planner
{

/// The category of the engine's log lines, for qCDebug(planningLog).
///
/// It is the default one, so that the lines are plain debug output; asking it first means that a
/// line nobody wants to see ("default.debug=false") is not put together either.
const QLoggingCategory& planningLog();

/// Keeps the engine's lines of this thread out of the log while it lives.
///
/// For plans that are only tried: their lines would be taken for those of a run.
class QuietPlanning
{
public:
    QuietPlanning();
    ~QuietPlanning();
    QuietPlanning(const QuietPlanning&) = delete;
    QuietPlanning& operator=(const QuietPlanning&) = delete;
};

} // namespace planner
