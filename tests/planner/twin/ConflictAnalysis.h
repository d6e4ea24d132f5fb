#pragma once

#include "tests/planner/twin/Records.h"

#include <vector>

namespace twin
{

std::list<Node> convertInstancesToNodes(const std::list<Instance>& instances);

quint32 countWindowOverlaps(std::vector<Window>& windows);

/// 0 without a conflict, the even degree of the port that was resolved, or -3.
qint32 calculateConflictDegree(Planner& planner);

void flowStatusRevise(Planner& planner, quint16 nodeID, quint16 outport);

void reviseWindows(const Planner& planner, quint16 nodeID, quint16 outport, Instance& instance);

} // namespace twin
