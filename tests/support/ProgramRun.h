#pragma once

#include <QByteArray>
#include <QStringList>

/// How a program ended that was run to its end in the current directory.
struct ProgramRun {
    int code = -1; ///< -1 when it did not start, crashed or took more than two minutes
    QByteArray output;
    QStringList errors; ///< lines of the error output, without empty ones
};

/// Runs a program as a user does and waits for its end.
ProgramRun runProgram(const QString& program, const QStringList& arguments);
