#pragma once

#include <QString>

/// Prints for each family of planted networks how many the rules plan alone and how many have
/// windows that lead to a plan; only the families whose name holds the text.
void printReach(const QString& filter, int networks);
