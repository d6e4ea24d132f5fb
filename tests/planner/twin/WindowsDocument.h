#pragma once

#include "tests/planner/twin/Records.h"

namespace twin
{

/// Writes the windows in the form of vek_hs.xml to a file below OutputXML.
void writeWindowsDocument(const QString& fileName, quint64 cycle,
                          const std::list<Instance>& instances);

/// Reads every file OutputXML/vek_hs.*; 0, -1 or -2.
qint32 readWindowsDocument(Planner& planner);

/// Logs the list.
void printInstances(const std::list<Instance>& instances);

} // namespace twin
