#pragma once

#include <QString>

#include <optional>

/// What the program was asked for.
struct CommandLine {
    QString input;  ///< input document
    QString output; ///< schedule
    QString folder; ///< where the lists go; it is made
    int trafficClass = 7;
    int limit = 256;           ///< entries that a port's list may have
    bool takesRemarks = false; ///< whether a plan with remarks, but without faults, will do
};

/// Nothing when it cannot be understood.
std::optional<CommandLine> commandLineOf(const QStringList& arguments);
