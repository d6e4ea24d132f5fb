#pragma once

#include "planner/DuplicateInstances.h"
#include "planner/PortDegrees.h"

namespace planner
{

/// State of the second stage: the lists, and beside them what a pass works on instead of walking
/// them.
///
/// groupByPort() fills nodeList and all that follows slotLen from the master list, whose windows
/// then rest until giveBackWindows(). The parts refer to each other: a planner can be moved but not
/// copied.
struct TTPlanner {
    quint16 hopBufferNum = 0; ///< slots a window may widen per hop: that of the talker read last
    std::list<Node> nodeList; ///< instances by sending port
    std::list<TTStreamInstance> TTStreamInstanceList; ///< the master copy of all instances
    qint32 maxRxSlot = 0;                             ///< largest end of a receive window read
    quint32 schedCycle = 0;                           ///< microseconds
    quint32 slotLen = 0;                              ///< microseconds

    PortIndex ports;               ///< numbers the ports of nodeList
    WindowBoard board;             ///< the windows of all instances
    PortDegrees degrees;           ///< how badly they overlap at each port
    DuplicateInstances duplicates; ///< records of the master list that share flowID and seq
    std::vector<quint32> revised;  ///< places of the instances that the last pass has changed

    TTPlanner() = default;
    TTPlanner(TTPlanner&&) = default;
    TTPlanner& operator=(TTPlanner&&) = default;

    /// Returns to the empty state in which a run begins.
    void reset();
};

} // namespace planner
