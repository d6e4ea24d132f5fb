#pragma once

#include "tests/planner/twin/RandomNetworks.h"

#include <QByteArray>
#include <QStringList>

/// All that one run of both stages leaves behind.
struct RunRecord {
    qint32 firstCode = 0;
    qint32 secondCode = 0; ///< 0 as well when the second stage was not reached
    QByteArray windows;    ///< vek_hs.xml
    QByteArray schedule;   ///< vek_output.xml
    QByteArray finalWindows;
    QStringList log; ///< without lines that only explain a refusal

    bool succeeded() const { return firstCode == 0 && secondCode == 0; }
    /// The outcome in words, taken from codes and log alone.
    QString outcome() const;
};

/// All outcomes that the random networks must reach.
QStringList requiredOutcomes();

/// Run both stages of the product, or of the twin, on a network in the current directory.
RunRecord runProduct(const RandomNetwork& network);
RunRecord runTwin(const RandomNetwork& network);

/// Run the second stage alone on a windows document.
RunRecord planWithProduct(const QByteArray& windows);
RunRecord planWithTwin(const QByteArray& windows);

/// What differs first, or an empty text.
QString firstDifference(const RunRecord& product, const RunRecord& twin);
