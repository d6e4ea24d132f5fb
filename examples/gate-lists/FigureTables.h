#pragma once

#include "GateFormats.h"

#include <verification/PlanFigures.h>

/// A line for each flow and listener: microseconds from the begin of the talker's slot to the end
/// of the slot in which the frame reaches the listener.
QByteArray latenciesAsCsv(const verification::PlanFigures& figures, const NodeNames& names);

/// A line a sending port, the fullest first: slots used of those in the cycle.
QByteArray loadsAsCsv(const verification::PlanFigures& figures, const NodeNames& names);
