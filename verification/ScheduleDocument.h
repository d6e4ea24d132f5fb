#pragma once

#include "verification/Finding.h"
#include "verification/Schedule.h"

namespace tinyxml2
{
class XMLElement;
}

namespace verification
{

/// Appends the transmissions of an output document, given its first element; cycle and slot length
/// are replaced.
///
/// A part that is missing or no number goes to damage; a hop, a listener or a transmission without
/// all its numbers is left out.
void readSchedule(const tinyxml2::XMLElement& root, Schedule& schedule,
                  std::vector<Finding>& damage);

/// The same from the text of a document; false when it has to be read as a whole, and then nothing
/// was changed.
bool readScheduleByPieces(const QByteArray& bytes, Schedule& schedule,
                          std::vector<Finding>& damage);

} // namespace verification
