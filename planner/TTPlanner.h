#pragma once

#include "planner/DuplicateInstances.h"
#include "planner/PlanningModel.h"
#include "planner/PortIndex.h"

namespace planner
{

/// State of the second stage: the lists, and beside them what finds and counts without walking
/// them.
///
/// The ports refer to the master list, so a planner can be moved but not copied.
struct TTPlanner {
    quint16 hopBufferNum = 0; ///< slots a window may widen per hop: that of the talker read last
    std::list<Node> nodeList; ///< instances by sending port; groupByPort() fills it
    std::list<TTStreamInstance> TTStreamInstanceList; ///< the master copy of all instances
    qint32 maxRxSlot = 0;                             ///< largest end of a receive window read
    quint32 schedCycle = 0;                           ///< microseconds
    quint32 slotLen = 0;                              ///< microseconds

    PortIndex ports;                       ///< finds the ports of nodeList and the worst of them
    DuplicateInstances duplicates;         ///< records of the master list that share flowID and seq
    std::vector<NumberedInstance> revised; ///< what the last pass has changed

    TTPlanner() = default;
    TTPlanner(TTPlanner&&) = default;
    TTPlanner& operator=(TTPlanner&&) = default;

    /// Returns to the empty state in which a run begins.
    void reset();
};

} // namespace planner
