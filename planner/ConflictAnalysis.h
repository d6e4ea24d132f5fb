#pragma once

#include "planner/TTPlanner.h"

// Groups instances by sending port and works off the port whose windows overlap most.
namespace planner
{

/// Groups the instances by sending port: nodes, ports and instances in order of first use.
///
/// An instance stands once under a port, and so do all records with its flowID and seq. The result
/// refers to the records of the list, which must stay where they are.
std::list<Node> convertInstancesToNodes(std::list<TTStreamInstance>& instanceList);

/// Groups the master list anew into nodeList and indexes it.
void groupByPort(TTPlanner& planner);

/// One pass: measures the ports, resolves the worst one and revises the windows around it.
///
/// Returns 0 when no port has a conflict, the even degree of the port that was resolved, or
/// code::refused when its resolution failed. The ports must have been grouped before.
qint32 calculateConflictDegree(TTPlanner& planner);

} // namespace planner
