#include "synthesis/TrialPlanning.h"

#include "planner/IntermediateDocument.h"
#include "planner/PlanningLog.h"
#include "planner/PreProcess.h"
#include "planner/TTPlanning.h"

namespace synthesis
{

using namespace planner;

void applyWindows(PlanningContext& context, const Found& plan)
{
    auto windows = plan.flows.begin();
    for (TTFlow& flow : context.flows) {
        auto receive = windows->receive.begin();
        for (VirtualLinkPath& path : flow.paths) {
            path.schedtxwin = windows->send;
            path.schedrxwin = *receive++;
        }
        ++windows;
    }
}

qint32 tryPlanning(PlanningContext context, QByteArray& output)
{
    const QuietPlanning quiet;
    context.clusterCycle = clusterCycleOf(context);
    const qint32 windowResult = checkTimeWindows(context);
    if (windowResult != code::ok)
        return windowResult;
    if (instanceCount(context) > maxInstances)
        return code::unreadable;
    expandInstances(context);
    TTPlanner planner;
    takeInstances(planner, context);
    const qint32 planResult = planInstances(planner);
    if (planResult == code::ok)
        output = outputDocument(planner);
    return planResult;
}

} // namespace synthesis
