#pragma once

#include "project/NodeInfoXml.h"

/// Where a loaded schedule goes; all fields belong to the caller.
struct ScheduleTarget {
    NodeInfo_Xml& sendNodeInfo; ///< output ports and send slots
    NodeInfo_Xml& rcvNodeInfo;  ///< input ports and receive slots
    int& schedCycle;            ///< microseconds
    int& slotLen;               ///< microseconds
    int& slotCount;             ///< schedCycle / slotLen, truncated; 0 when slotLen is 0
};

/// Replaces the schedule by that of OutputXML/vek_output.xml under the current directory.
///
/// Without a document that loads, both maps are left empty and the cycle as it was. Missing
/// elements are passed over with one debug line.
void readSchedule(const ScheduleTarget& target);

/// Enters one slot, creating the levels above it; a slot that is there already changes nothing.
void enterSlot(NodeInfo_Xml& nodeInfo, int nodeid, int port, int flowid, int slotId);

/// Replaces the names by those of ResourceXML/vek_input.xml under the current directory.
///
/// Of several nodes with one id the first one wins, hosts before switches.
void readNodeNames(NodeNames& nodeNames);
