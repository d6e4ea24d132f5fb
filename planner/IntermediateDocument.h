#pragma once

#include "planner/TTPlanner.h"
#include "planner/WindowText.h"

// Writes and reads OutputXML/vek_hs.xml, the windows of all instances.
namespace planner
{

/// Writes the document under the current directory, making the folder when it is missing.
///
/// Leading instances with flowID 0 are not written. A file that cannot be saved goes unnoticed.
void writeHsDocument(const PlanningContext& context);

/// The same; false when the disk had no room for the whole document. What it took stays.
bool saveHsDocument(const PlanningContext& context);

/// Gives the planner what reading the document of this context would give it, without a document.
///
/// Slot numbers and what the second stage does not know of a hop are left as they are.
void takeInstances(TTPlanner& planner, const PlanningContext& context);

/// Reads every file of the folder OutputXML whose complete base name is "vek_hs".
///
/// Appends to TTStreamInstanceList and sets hopBufferNum, maxRxSlot, schedCycle and slotLen.
/// Returns code::ok, code::unreadable for a file that does not load, lacks an element or has a
/// window without two numbers, or holds more hops than maxHops, or code::folderMissing. Slot
/// numbers of what is read are 0.
qint32 readIntermediateDocument(TTPlanner& planner);

} // namespace planner
