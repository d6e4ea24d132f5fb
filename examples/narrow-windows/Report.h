#pragma once

#include "synthesis/NetworkDocument.h"

#include <QStringList>

// What the program says, a line each.

/// The flows that are left out, or that keep the document from being searched.
QStringList linesOf(const synthesis::InputNetwork& network);

/// The outcome of a search; nodes by name, flows by number.
QStringList linesOf(const synthesis::InputNetwork& network, const synthesis::Outcome& outcome);
