#pragma once

#include "planner/TTPlanner.h"

#include <QByteArray>

namespace planner
{

/// Writes OutputXML/vek_output.xml under the current directory: the slots of all instances, the
/// paths of an instance merged into one tree.
///
/// Leading instances with flowID 0 are not written. A file that cannot be saved goes unnoticed.
void writeOutputDocument(const TTPlanner& planner);

/// The same; false when the disk had no room for the whole document. What it took is removed then.
bool saveOutputDocument(const TTPlanner& planner);

/// The bytes of the same document.
QByteArray outputDocument(const TTPlanner& planner);

} // namespace planner
