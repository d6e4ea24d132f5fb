#pragma once

#include <QString>

/// Prints what a search costs on networks of equal load and growing size, beside both stages.
///
/// Measurements are processes of their own; see runGrowthChild().
void printGrowth(int repeat);

/// The work of such a process in its current directory, which holds in.xml.
int runGrowthChild(const QString& task);
