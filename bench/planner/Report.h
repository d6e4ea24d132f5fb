#pragma once

#include "bench/planner/BenchCase.h"
#include "bench/planner/Measurement.h"

/// All that is known of one case.
struct CaseResult {
    BenchCase benchCase;
    Measurement engine;
    Measurement floor;
    Measurement logged; ///< the engine with its log lines, which go to a handler that drops them
    Measurement twin;   ///< empty when it was not run or did not finish
    bool sameAsTwin = true;
};

void printHead();
void printCase(const CaseResult& result);
/// Growth exponents of each phase over a series: the slope of log time over log instances.
void printGrowth(const QString& name, const std::vector<CaseResult>& series);
