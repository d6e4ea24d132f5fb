#pragma once

#include "planner/PlanningModel.h"

#include <vector>

// Groups instances by sending port, measures how their windows overlap, and tightens windows around
// slots that were fixed.
namespace planner
{

/// Groups the instances by sending port: nodes, ports and instances in order of first use.
std::list<Node> convertInstancesToNodes(const std::list<TTStreamInstance>& instanceList);

/// The window of each instance at the port, from the first of its paths that passes it.
std::vector<SlotWindow> collectPortWindows(const Node& node, const NodeOutport& port);

/// Sorts the windows by start and counts the neighbours that overlap.
quint32 countWindowOverlaps(std::vector<SlotWindow>& windows);

/// Measures all ports, resolves the worst one and revises the windows around it.
///
/// Returns 0 when no port has a conflict, the even degree of the port that was resolved, or
/// code::refused when its resolution failed.
qint32 calculateConflictDegree(TTPlanner& planner);

/// Carries the slots fixed at a port to all windows of its instances, in the master list too.
void flowStatusRevise(TTPlanner& planner, quint16 nodeID, quint16 outport);

/// Tightens all windows of one instance around its fixed hop at the port; always code::ok.
qint32 reviseWindows(const TTPlanner& planner, quint16 nodeID, quint16 outport,
                     TTStreamInstance& instance);

} // namespace planner
