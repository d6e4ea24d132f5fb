#pragma once

#include <QByteArray>
#include <QString>

// Files of the tests. Paths are absolute, or relative to the current directory.

/// Writes the file, making its folder; a failure makes the test fail.
void writeFile(const QString& path, const QByteArray& bytes);

/// The whole file; empty when it does not exist.
QByteArray readFile(const QString& path);
