#pragma once

#include "planner/TTPlanner.h"

// Groups instances by sending port and works off the port whose windows overlap most.
namespace planner
{

/// Groups the instances by sending port: nodes, ports and instances in order of first use.
///
/// An instance stands once under a port, and so do all records with its flowID and seq.
std::list<Node> convertInstancesToNodes(const std::list<TTStreamInstance>& instanceList);

/// Groups the master list anew into nodeList, and takes its windows up for the passes.
void groupByPort(TTPlanner& planner);

/// Writes the windows and slots that the passes have left to the master list.
void giveBackWindows(TTPlanner& planner);

/// One pass: measures the ports, resolves the worst one and revises the windows around it.
///
/// Returns 0 when no port has a conflict, the even degree of the port that was resolved, or
/// code::refused when its resolution failed. The ports must have been grouped before.
qint32 calculateConflictDegree(TTPlanner& planner);

} // namespace planner
