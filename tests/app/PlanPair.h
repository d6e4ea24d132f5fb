#pragma once

#include "tests/planner/InputText.h"

#include <QByteArray>

// Plans made by hand on a line: host A (1), switches S1 (11) and S2 (12), host B (2). Port 1 of a
// node leads to the left, port 2 to the right; a host has port 1. A frame leaves A by port 1.

/// The slots in which the transmission of a flow leaves A, S1 and S2.
struct LineTransmission {
    int flowID = 0;
    int seq = 0;
    int fromA = 0;
    int fromS1 = 0;
    int fromS2 = 0;
};

/// Flows of 2,000 us, ten slots, on the line, each free to be sent and received at any time.
InputText lineInput(const QList<int>& flowIDs);

/// The output document of these transmissions, with a cycle of ten slots.
QByteArray lineSchedule(const QList<LineTransmission>& transmissions);

/// Flows 10 and 25 in slots of their own.
QList<LineTransmission> soundTransmissions();

/// Flows 10 and 25, both in slot 5 of port 2 of S2, and in order otherwise.
QList<LineTransmission> clashingTransmissions();
