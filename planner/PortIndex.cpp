#include "planner/PortIndex.h"

#include "planner/PairKey.h"

namespace planner
{

void PortIndex::rebuild(std::list<Node>& nodeList)
{
    *this = PortIndex();
    for (Node& node : nodeList) {
        for (NodeOutport& outport : node.outports) {
            m_placeOf.emplace(pairKey(node.nodeID, outport.outport),
                              static_cast<quint32>(m_ports.size()));
            m_ports.push_back({node.nodeID, &outport});
        }
    }
}

quint32 PortIndex::placeOf(quint16 nodeID, quint16 outport) const
{
    const auto found = m_placeOf.find(pairKey(nodeID, outport));
    return found != m_placeOf.end() ? found->second : noPlace;
}

} // namespace planner
