#include "verification/PlanVerifier.h"

#include "verification/FlowCheck.h"
#include "verification/FrameHolding.h"
#include "verification/PathCheck.h"
#include "verification/PortUse.h"

#include <algorithm>

namespace verification
{

size_t Verification::faults() const
{
    return static_cast<size_t>(
        std::count_if(findings.begin(), findings.end(),
                      [](const Finding& finding) { return finding.severity == Severity::Fault; }));
}

Verification verifyPlan(const PlanRecords& plan)
{
    Verification verification;
    FindingList& findings = verification.findings;
    findings = plan.damage;
    PlanWalk walk(plan);
    PathCheck paths(plan.network, findings);
    PortUse ports(plan);
    ports.addSchedule();
    walk.forEachOfFlow(
        [&](const ScheduledTransmission& transmission, const HopSlots& hops, qint64 number) {
            paths.examine(transmission, hops, number);
            ports.addImplied(transmission, hops);
        });
    ports.finish();
    ports.findSharedSlots(findings);
    ports.findSlotsBeyondCycle(findings);
    checkCycle(plan, findings);
    checkCompleteness(plan, walk.match(), findings);
    checkFlows(plan, findings);
    FrameHolding(plan).findFullBuffers(findings);

    std::sort(findings.begin(), findings.end());
    verification.transmissions = plan.schedule.transmissions.size();
    verification.flows = plan.network.flows.size();
    verification.ports = ports.portCount();
    return verification;
}

} // namespace verification
