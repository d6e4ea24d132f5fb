#pragma once

#include "verification/Finding.h"

class PlanCheck;

// What the user reads about a finding, in Chinese.

/// "故障" or "提示".
QString textOf(verification::Severity severity);

/// What is wrong, in a few characters such as "时隙冲突".
QString textOf(verification::Kind kind);

/// The transmissions as "10-0, 25-0"; a whole flow as "10". Of very many only the first are named.
QString transmissionsText(const verification::Finding& finding);

/// The numbers that disagree, and the reason where one is known, in words.
QString explanationOf(const PlanCheck& check, const verification::Finding& finding);

/// One sentence on what was examined and found; also for a check that is null.
QString summaryOf(const PlanCheck* check);

/// What a node list says about a node, some lines; empty when nothing was found at it.
QString nodeToolTip(const PlanCheck& check, int nodeID);
