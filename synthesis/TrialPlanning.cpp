#include "synthesis/TrialPlanning.h"

#include "planner/IntermediateDocument.h"
#include "planner/PairKey.h"
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

TrialPlan tryPlanning(PlanningContext context)
{
    const QuietPlanning quiet;
    TrialPlan plan;
    context.clusterCycle = clusterCycleOf(context);
    plan.code = checkTimeWindows(context);
    if (plan.code == code::ok && instanceCount(context) > maxInstances)
        plan.code = code::unreadable;
    if (plan.code != code::ok)
        return plan;
    expandInstances(context);
    TTPlanner planner;
    takeInstances(planner, context);
    plan.code = planInstances(planner);
    if (plan.code == code::ok) {
        plan.outputDocument = outputDocument(planner);
    } else {
        // A failed resolution leaves the windows alone, so the port it was for is still the worst.
        const WorstPort worst = planner.degrees.measure(planner.ports, planner.board);
        plan.failedPort = pairKey(worst.nodeID, worst.outport);
    }
    return plan;
}

} // namespace synthesis
