#pragma once

#include "planner/TTPlanner.h"

/// Whether both planners hold the same, as far as the intermediate document tells it.
bool holdTheSame(const planner::TTPlanner& a, const planner::TTPlanner& b);
