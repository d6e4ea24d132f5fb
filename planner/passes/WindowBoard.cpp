#include "planner/passes/WindowBoard.h"

namespace planner
{

void WindowBoard::giveBack(InstanceIndex index, TTStreamInstance& instance) const
{
    auto hop = m_hops.begin() + firstHop(index).value();
    for (VirtualLinkPath& path : instance.paths) {
        path.schedtxwin = hop->window;
        path.txslotID = hop->slot;
        ++hop;
        for (BridgeHop& bridge : path.bridges) {
            bridge.schedtxwin = hop->window;
            bridge.txslotID = hop->slot;
            ++hop;
        }
        path.schedrxwin = hop->window;
        ++hop;
    }
}

void WindowBoard::renumberPorts(const std::vector<PortIndex>& numbers)
{
    for (Hop& hop : m_hops) {
        if (hop.port != noPort)
            hop.port = numbers[hop.port.value()];
    }
}

HopIndex WindowBoard::firstHop(InstanceIndex instance) const
{
    const PathIndex path = firstPath(instance);
    return path.value() < m_paths.size() ? this->path(path).talker : HopIndex::behind(m_hops);
}

HopIndex WindowBoard::findSwitch(const BoardPath& path, PortIndex port) const
{
    HopIndex index = path.firstSwitch();
    while (index != path.listener() && hop(index).port != port)
        ++index;
    return index;
}

} // namespace planner
