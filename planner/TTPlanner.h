#pragma once

#include "planner/PlanningModel.h"

namespace planner
{

/// State of the second stage.
///
/// Whoever fills the fields by hand may call the functions of the stage in any order: each works on
/// the fields as they stand and leaves nothing else behind.
struct TTPlanner {
    quint16 hopBufferNum = 0; ///< slots a window may widen per hop: that of the talker read last
    std::list<Node> nodeList; ///< instances by sending port
    std::list<TTStreamInstance> TTStreamInstanceList; ///< the master copy of all instances
    qint32 maxRxSlot = 0;                             ///< largest end of a receive window read
    quint32 schedCycle = 0;                           ///< microseconds
    quint32 slotLen = 0;                              ///< microseconds
    bool isCut = false; ///< the disk had no room for the whole of vek_output.xml

    /// Returns to the empty state in which a run begins.
    void reset();
};

} // namespace planner
