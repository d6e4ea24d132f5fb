#pragma once

#include <QString>

/// What the user reads after a planning stage, and what the run answers with.
struct StageOutcome {
    enum Box { None, Information, Warning };

    Box box = None;
    QString caption;
    QString text;
    int result = 0; ///< answer of the run; 0 lets the caller load the schedule
};

/// Outcome of the first stage by its result, a planner::code; without a box the run goes on to the
/// second stage.
StageOutcome outcomeOfPreProcess(int result);

/// Outcome of the second stage by its result, a planner::code; codes it does not know count as
/// success, unsaid.
StageOutcome outcomeOfPlanning(int result);
