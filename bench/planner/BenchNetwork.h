#pragma once

#include "bench/planner/BenchCase.h"

#include "tests/planner/twin/NetworkDraft.h"

/// The network of a case, the same on every machine.
///
/// Every talker has a stretch of the cycle to itself, so that flows of different talkers do not
/// meet and the plan succeeds however many flows there are; conflicts are those between flows of a
/// talker.
NetworkDraft networkOf(const BenchCase& benchCase);
