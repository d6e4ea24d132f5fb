#pragma once

#include "planner/OutputDocument.h"
#include "planner/StageListener.h"
#include "planner/TTPlanner.h"

// Second stage: from the intermediate document to the output document.
namespace planner
{

/// Runs the whole second stage in the current directory.
///
/// Returns code::ok after OutputXML/vek_output.xml was written (or could not be saved; the
/// planner's isCut says whether the disk was full), code::unreadable or code::folderMissing for the
/// intermediate document, code::refused when a conflict could not be resolved; no document is
/// written then.
qint32 TTPlanning(TTPlanner& planner);

/// The same, with the ends of its parts told to a listener.
qint32 TTPlanning(TTPlanner& planner, const StageListener& listener);

/// Groups the master list by port and runs degree passes until no port has a conflict.
///
/// Reads no document and writes none. Returns code::ok, or code::refused when a resolution failed
/// or would not end; the lists are then as the last successful pass has left them, but for the
/// copies at the port that failed, which keep the slots that were found.
qint32 resolveConflicts(TTPlanner& planner, const StageListener& listener = {});

/// What the stage does between reading and writing, on the instances of the master list.
///
/// Returns code::ok with all slots set, or code::refused when a conflict could not be resolved.
qint32 planInstances(TTPlanner& planner, const StageListener& listener = {});

/// Takes every slot from the start of its window.
void finalizeSlots(TTPlanner& planner);

} // namespace planner
