#pragma once

#include "planner/PlanningModel.h"
#include "planner/passes/BoardIndex.h"

#include <vector>

namespace planner
{

/// A talker or a switch where it sends, or a listener.
struct Hop {
    SlotWindow window;
    quint32 slot; ///< that was given by the last resolution of the port
    PortIndex port;
};

inline bool operator==(const Hop& a, const Hop& b)
{
    return a.window == b.window && a.slot == b.slot && a.port == b.port;
}

/// One path as a range of hops: the talker, the switches, the listener.
struct BoardPath {
    HopIndex talker;
    quint32 switches; ///< their count

    HopIndex firstSwitch() const { return talker.plus(1); }
    HopIndex listener() const { return talker.plus(1 + switches); }
};

/// The windows of many instances, side by side.
///
/// A pass reads and narrows windows all over the records; here those of one instance share a cache
/// line or two.
class WindowBoard
{
public:
    /// Appends an instance; portOf(nodeID, outport) numbers the ports of its senders.
    template <typename PortOf>
    void add(const TTStreamInstance& instance, const PortOf& portOf);

    /// Writes windows and slots back to the record from which they were taken.
    void giveBack(InstanceIndex index, TTStreamInstance& instance) const;

    /// Gives every port the number that stands under its present one.
    void renumberPorts(const std::vector<PortIndex>& numbers);

    quint32 instanceCount() const { return static_cast<quint32>(m_firstPaths.size()) - 1; }

    Hop& hop(HopIndex index) { return m_hops[index.value()]; }
    const Hop& hop(HopIndex index) const { return m_hops[index.value()]; }
    const std::vector<Hop>& hops() const { return m_hops; }

    /// The paths of an instance: from firstPath() of it to that of the next one.
    PathIndex firstPath(InstanceIndex instance) const { return m_firstPaths[instance.value()]; }
    const BoardPath& path(PathIndex index) const { return m_paths[index.value()]; }

    /// The hops of an instance: from firstHop() of it to that of the next one.
    HopIndex firstHop(InstanceIndex instance) const;

    /// The first switch of the path that sends on the port, or the path's listener.
    HopIndex findSwitch(const BoardPath& path, PortIndex port) const;

private:
    std::vector<Hop> m_hops;
    std::vector<BoardPath> m_paths;
    std::vector<PathIndex> m_firstPaths{PathIndex()}; ///< by instance, and one more at the end
};

template <typename PortOf>
void WindowBoard::add(const TTStreamInstance& instance, const PortOf& portOf)
{
    for (const VirtualLinkPath& path : instance.paths) {
        m_paths.push_back({HopIndex::behind(m_hops), static_cast<quint32>(path.bridges.size())});
        m_hops.push_back(
            {path.schedtxwin, path.txslotID, portOf(path.talkerNodeID, path.talkerOutport)});
        for (const BridgeHop& hop : path.bridges)
            m_hops.push_back({hop.schedtxwin, hop.txslotID, portOf(hop.nodeID, hop.outport)});
        m_hops.push_back({path.schedrxwin, 0, noPort});
    }
    m_firstPaths.push_back(PathIndex::behind(m_paths));
}

} // namespace planner
