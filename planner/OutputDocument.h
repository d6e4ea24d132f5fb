#pragma once

#include "planner/TTPlanner.h"

namespace planner
{

/// Writes OutputXML/vek_output.xml under the current directory: the slots of all instances, the
/// paths of an instance merged into one tree.
///
/// Leading instances with flowID 0 are not written. A file that cannot be saved goes unnoticed.
void writeOutputDocument(const TTPlanner& planner);

} // namespace planner
