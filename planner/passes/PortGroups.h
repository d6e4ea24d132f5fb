#pragma once

#include "planner/passes/WindowBoard.h"

#include <unordered_map>

// The sending ports, and the instances that send on them.
namespace planner
{

/// Where an instance meets a port.
///
/// Of several paths the first one that passes the port counts, and on it the talker before the
/// switches.
struct PortEntry {
    InstanceIndex instance;
    PathIndex path;
    HopIndex hop; ///< that sends on the port
    bool isSwitch = false;
    bool meetsOnce = true; ///< whether no other hop of the instance sends on the port
};

/// One sending port with the instances that send on it.
struct PortGroup {
    quint16 nodeID = 0;
    quint16 outport = 0;
    std::vector<PortEntry> entries; ///< in order of first use
};

/// What a resolution and a revision work on: a port, and the windows of all that send there.
struct PortView {
    WindowBoard& board; ///< not owned
    PortIndex port;
    const std::vector<PortEntry>& entries; ///< not owned
};

/// All instances on one board, grouped by sending port in the order of a nodeList: nodes by first
/// use, ports within a node by first use, instances within a port by their order in the list.
struct PortGroups {
    WindowBoard board;
    std::vector<PortGroup> ports;                    ///< by PortIndex
    std::unordered_map<quint32, PortIndex> numberOf; ///< by the numbers of node and port
};

/// Groups the instances.
///
/// An instance stands once under a port, and so do all records with its flowID and seq: what adding
/// them one after the other with addInstanceToPort() gives, without its walks.
PortGroups groupByPort(const std::list<TTStreamInstance>& instances);

/// The same as nodes, their degrees 0. All copies are made now, one for each instance.
std::list<Node> nodesOf(const PortGroups& groups, const std::list<TTStreamInstance>& instances);

/// Logs the beginning of a grouping, and its end when it goes.
class GroupingLines
{
public:
    GroupingLines();
    ~GroupingLines();
    GroupingLines(const GroupingLines&) = delete;
    GroupingLines& operator=(const GroupingLines&) = delete;
};

} // namespace planner
