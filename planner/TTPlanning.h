#pragma once

#include "planner/TTPlanner.h"

// Second stage: from the intermediate document to the output document.
namespace planner
{

/// Runs the whole second stage in the current directory.
///
/// Returns code::ok after OutputXML/vek_output.xml was written (or could not be saved),
/// code::unreadable or code::folderMissing for the intermediate document, code::refused when a
/// conflict could not be resolved; no document is written then.
qint32 TTPlanning(TTPlanner& planner);

/// What the stage does between reading and writing, on the instances of the master list.
///
/// Returns code::ok with all slots set, or code::refused when a conflict could not be resolved.
qint32 planInstances(TTPlanner& planner);

/// Takes every slot from the start of its window.
void finalizeSlots(TTPlanner& planner);

/// Writes the slots of all instances, the paths of an instance merged into one tree.
///
/// Leading instances with flowID 0 are not written. A file that cannot be saved goes unnoticed.
void writeOutputDocument(const TTPlanner& planner);

/// The bytes of the same document.
QByteArray outputDocument(const TTPlanner& planner);

} // namespace planner
