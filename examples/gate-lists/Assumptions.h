#pragma once

#include "GateFormats.h"

/// What the lists rest on, a line each, for whoever loads them into a network.
QStringList assumptionsOf(const std::vector<GateList>& lists, const NodeNames& names,
                          const verification::Schedule& schedule, int trafficClass, int limit);

/// How many lists have more entries than the limit.
int listsBeyond(const std::vector<GateList>& lists, int limit);
