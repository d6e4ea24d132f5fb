#pragma once

#include "verification/Finding.h"
#include "verification/Network.h"
#include "verification/Schedule.h"

#include <QStringList>

namespace tinyxml2
{
class XMLDocument;
}

namespace verification
{

/// A plan as read from its two documents; refers to neither.
struct PlanRecords {
    Network network;
    Schedule schedule;
    std::vector<Finding> damage; ///< what could not be read, in document order
};

/// Reads both documents of a plan; what is missing or damaged is passed over and reported.
PlanRecords readPlan(const tinyxml2::XMLDocument& input, const tinyxml2::XMLDocument& output);

/// The same from files, by absolute path or from the current directory.
///
/// Several input or output documents are read one behind the other, as if they were one; of the
/// cycle and the slot length the last document counts. A file that does not load, or a side
/// without a file, is damage.
PlanRecords readPlan(const QStringList& inputPaths, const QStringList& outputPaths);

} // namespace verification
