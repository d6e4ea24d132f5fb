#include "planner/PlanningLog.h"

namespace planner
{

static thread_local int quietPlannings = 0;

const QLoggingCategory& planningLog()
{
    static const QLoggingCategory silent("planning.tried", QtFatalMsg);
    return quietPlannings > 0 ? silent : *QLoggingCategory::defaultCategory();
}

QuietPlanning::QuietPlanning()
{
    ++quietPlannings;
}

QuietPlanning::~QuietPlanning()
{
    --quietPlannings;
}

} // namespace planner
