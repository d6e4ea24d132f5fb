#pragma once

#include "verification/Findings.h"
#include "verification/PlanRecords.h"
#include "verification/TransmissionMatch.h"

namespace verification
{

/// Examines cycle and slot length against what the flows ask for.
void checkCycle(const PlanRecords& plan, FindingList& findings);

/// Compares the transmissions of the plan with those that the flows ask for.
void checkCompleteness(const PlanRecords& plan, const TransmissionMatch& match,
                       FindingList& findings);

/// Examines each flow by itself: period, paths, frame.
void checkFlows(const PlanRecords& plan, FindingList& findings);

} // namespace verification
