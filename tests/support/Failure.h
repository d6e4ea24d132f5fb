#pragma once

#include <QByteArray>

/// For a helper that cannot do its work: makes the test function fail that is running.
///
/// It returns, so the helper gives back something harmless and the other test functions still run.
/// A program that runs no test function prints the message and ends with code 1.
void failTest(const QByteArray& message, const char* file = __builtin_FILE(),
              int line = __builtin_LINE());
