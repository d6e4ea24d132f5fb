#include "planner/WindowBoard.h"

namespace planner
{

void WindowBoard::rebuild(const std::list<TTStreamInstance>& instances, const PortIndex& ports)
{
    *this = WindowBoard();
    for (const TTStreamInstance& instance : instances) {
        for (const VirtualLinkPath& path : instance.paths) {
            m_ways.push_back(
                {static_cast<quint32>(m_stops.size()), static_cast<quint32>(path.bridges.size())});
            m_stops.push_back({path.schedtxwin, path.txslotID,
                               ports.placeOf(path.talkerNodeID, path.talkerOutport)});
            for (const BridgeHop& hop : path.bridges)
                m_stops.push_back(
                    {hop.schedtxwin, hop.txslotID, ports.placeOf(hop.nodeID, hop.outport)});
            m_stops.push_back({path.schedrxwin, 0, Stop::noPort});
        }
        m_firstWays.push_back(static_cast<quint32>(m_ways.size()));
    }
}

void WindowBoard::giveBack(std::list<TTStreamInstance>& instances) const
{
    auto stop = m_stops.begin();
    for (TTStreamInstance& instance : instances) {
        for (VirtualLinkPath& path : instance.paths) {
            path.schedtxwin = stop->window;
            path.txslotID = stop->slot;
            ++stop;
            for (BridgeHop& hop : path.bridges) {
                hop.schedtxwin = stop->window;
                hop.txslotID = stop->slot;
                ++stop;
            }
            path.schedrxwin = stop->window;
            ++stop;
        }
    }
}

quint32 WindowBoard::firstStop(quint32 instance) const
{
    const quint32 way = m_firstWays[instance];
    return way < m_ways.size() ? m_ways[way].talker : static_cast<quint32>(m_stops.size());
}

quint32 WindowBoard::findHop(const Way& way, quint32 port) const
{
    quint32 number = way.firstHop();
    while (number != way.listener() && m_stops[number].port != port)
        ++number;
    return number;
}

} // namespace planner
