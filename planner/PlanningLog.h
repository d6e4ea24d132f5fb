#pragma once

#include <QDebug>
#include <QLoggingCategory>

namespace planner
{

/// The category of the engine's log lines, for qCDebug(planningLog).
///
/// It is the default one, so that the lines are plain debug output; asking it first means that a
/// line nobody wants to see ("default.debug=false") is not put together either.
inline const QLoggingCategory& planningLog()
{
    return *QLoggingCategory::defaultCategory();
}

} // namespace planner
