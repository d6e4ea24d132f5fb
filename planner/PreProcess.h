#pragma once

#include "planner/PlanningModel.h"
#include "planner/StageListener.h"

#include <vector>

// First stage: from the input document to the intermediate document.
namespace planner
{

/// So many instances can a cluster cycle hold at most: as many as maxHops are enough for, when each
/// passes a single switch.
constexpr quint64 maxInstances = maxHops / 3;

/// Runs the whole first stage in the current directory.
///
/// Returns code::ok after OutputXML/vek_hs.xml was written (or could not be saved),
/// code::folderMissing, code::refused for an unreasonable time window, or code::unreadable for a
/// document that readInputDocument() cannot read or whose cycle would hold more hops than maxHops.
qint32 preProcess(PlanningContext& context);

/// The same, with the ends of its parts told to a listener.
qint32 preProcess(PlanningContext& context, const StageListener& listener);

/// Least common multiple of all flow periods in microseconds, truncated to 32 bits; 0 without
/// flows.
quint32 computeClusterCycle(PlanningContext& context);

/// Combines adjacent periods (microseconds) until one is left; leaves it in clusterCycle.
///
/// Every intermediate value is cut to 32 bits. Without periods clusterCycle stays as it is.
quint32 lcmReduce(PlanningContext& context, const std::vector<quint32>& periods);

/// Narrows all windows and derives those of the switches; code::ok or code::refused.
qint32 checkTimeWindows(PlanningContext& context);

/// Narrows each receive window by what the send window allows.
void limitReceiveWindows(PlanningContext& context);

/// Narrows the send windows of each flow to what all its paths allow; code::ok or code::refused.
qint32 limitSendWindows(PlanningContext& context);

/// Derives a send window for each switch of each path, then joins those that share a port.
void deriveBridgeWindows(PlanningContext& context);

/// Makes one instance per period of each flow in the cluster cycle.
void expandInstances(PlanningContext& context);

} // namespace planner
