#pragma once

#include "planner/StageListener.h"
#include "planner/TTPlanner.h"
#include "planner/passes/PortDegrees.h"
#include "planner/search/WindowOverlap.h"

#include <vector>

// Groups instances by sending port, works off the port whose windows overlap most, and carries the
// slots that were fixed there along their paths.
namespace planner
{

class Passes;

/// Groups the instances by sending port: nodes, ports and instances in order of first use.
///
/// An instance stands once under a port, and so do all records with its flowID and seq.
std::list<Node> convertInstancesToNodes(const std::list<TTStreamInstance>& instanceList);

/// Enters a copy of the instance under a port, which is made when the list does not have it;
/// nothing happens when one with its flowID and seq stands there already.
void addInstanceToPort(std::list<Node>& nodeList, const InstanceCopy& instance, quint16 nodeID,
                       quint16 outport);

/// The window of each copy at its port, in the port's order.
///
/// Of several paths the first one that passes the port counts, and on it the talker before the
/// switches.
std::vector<SlotWindow> collectPortWindows(const Node& node, const NodeOutport& port);

/// The first of the ports with the highest degree, as last measured.
///
/// After a resolution that failed this is the port for which no slots were found.
WorstPort worstPort(const std::list<Node>& nodeList);

/// One pass: measures the ports, resolves the worst one and revises the windows around it.
///
/// Returns 0 when no port has a conflict, the even degree of the port that was resolved, or
/// code::refused when its resolution failed. Works on the copies in nodeList, carries them to the
/// master list and groups that anew. An empty nodeList is built first, since without it every
/// conflict would go unseen.
qint32 calculateConflictDegree(TTPlanner& planner);

/// The same pass on what is held; to be called from a loop.
qint32 calculateConflictDegree(Passes& passes, const StageListener& listener = {});

/// Carries the slots fixed at a port along the paths of the copies there, and these to all records
/// of the master list with their flowID and seq.
void flowStatusRevise(TTPlanner& planner, quint16 nodeID, quint16 outport);

/// Tightens all windows of one instance around its fixed hop at a port; always code::ok.
///
/// Of the planner only hopBufferNum is read.
qint32 reviseWindows(const TTPlanner& planner, quint16 nodeID, quint16 outport,
                     TTStreamInstance& instance);

} // namespace planner
