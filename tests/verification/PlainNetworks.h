#pragma once

#include "tests/planner/twin/NetworkDraft.h"

/// A small network with nothing odd about it, the same for a seed on every machine.
///
/// A tree of switches, whole periods, windows in which each frame can arrive, one buffer number for
/// all. Half of them have flows to several listeners.
NetworkDraft plainNetwork(quint64 seed);
