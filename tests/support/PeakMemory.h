#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

// What a piece of work takes, measured in a process of its own.

/// How a piece of work ended.
struct Measured {
    int result = -1;   ///< what it returned, or -1 when it crashed or spent its processor time
    qint64 memory = 0; ///< bytes that it took at most, beyond what the test program held before
};

/// Does the work in a child process, which has a minute of the processor for it, under the
/// sanitizers ten.
///
/// The result has to be 0 to 255. What the work changes is seen by the child alone.
Measured measured(const std::function<int()>& work);

/// Whether the work took no more than so many times the size of a file.
///
/// The sanitizers' own memory is allowed for in builds that have them.
bool staysWithin(const Measured& measured, int multiple, const QString& file);

/// Writes head, then unit again and again, then tail, without holding the whole of it.
void writeRepeated(const QString& path, const QByteArray& head, const QByteArray& unit, int count,
                   const QByteArray& tail);
