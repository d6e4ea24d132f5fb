#pragma once

#include "bench/planner/Measurement.h"

// What the child processes do, each in its current directory.

/// Runs both stages of the engine; times by "1.read" to "2.free", counts and codes.
Measurement measureEngine();

/// Runs both stages of the literal engine; "total" and codes.
Measurement measureTwin();

/// Loads and saves the documents of a run with the XML library alone, planning nothing; freeing
/// them counts, as it does for the lists of the stages.
Measurement measureFloor();
