#pragma once

#include "tests/planner/twin/NetworkDraft.h"
#include "tests/support/RandomSource.h"

/// Changes a few things of a draft that the reader must take as they come.
void addOddities(RandomSource& random, NetworkDraft& draft);

/// Breaks the text of a document in one place.
QByteArray damaged(RandomSource& random, const QByteArray& document);

/// A windows document with some windows and numbers that the first stage would not have written.
QByteArray disturbedWindows(RandomSource& random, const QByteArray& document);
