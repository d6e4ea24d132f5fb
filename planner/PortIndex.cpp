#include "planner/PortIndex.h"

#include "planner/PortLookup.h"
#include "planner/WindowOverlap.h"

#include <algorithm>

namespace planner
{

void PortIndex::rebuild(std::list<Node>& nodeList)
{
    *this = PortIndex();
    for (Node& node : nodeList) {
        for (NodeOutport& outport : node.outports) {
            m_placeOf.emplace(pairKey(node.nodeID, outport.outport), m_ports.size());
            m_ports.push_back({&node, &outport, false});
        }
    }
    const size_t count = m_ports.size();
    m_winners.resize(2 * count);
    for (size_t place = 0; place < count; ++place)
        m_winners[count + place] = place;
    for (size_t match = count; match-- > 1;)
        m_winners[match] = worseOf(m_winners[2 * match], m_winners[2 * match + 1]);
    for (size_t place = 0; place < count; ++place)
        touchPlace(place);
}

NodeOutport* PortIndex::find(quint16 nodeID, quint16 outport) const
{
    const auto found = m_placeOf.find(pairKey(nodeID, outport));
    return found != m_placeOf.end() ? m_ports[found->second].outport : nullptr;
}

void PortIndex::touch(quint16 nodeID, quint16 outport)
{
    const auto found = m_placeOf.find(pairKey(nodeID, outport));
    if (found != m_placeOf.end())
        touchPlace(found->second);
}

void PortIndex::touchPlace(size_t place)
{
    if (m_ports[place].isTouched)
        return;
    m_ports[place].isTouched = true;
    m_touched.push_back(place);
}

WorstPort PortIndex::measure()
{
    for (const size_t place : m_touched) {
        Port& port = m_ports[place];
        std::vector<SlotWindow> windows = collectPortWindows(*port.outport);
        port.outport->degree = 2 * countWindowOverlaps(windows);
        port.isTouched = false;
        playMatchesOf(place);
    }
    m_touched.clear();
    if (m_ports.empty())
        return {};
    const Port& worst = m_ports[m_winners[1]];
    if (worst.outport->degree == 0)
        return {};
    return {worst.outport->degree, worst.node->nodeID, worst.outport->outport};
}

size_t PortIndex::worseOf(size_t one, size_t other) const
{
    const quint32 oneDegree = m_ports[one].outport->degree;
    const quint32 otherDegree = m_ports[other].outport->degree;
    if (oneDegree != otherDegree)
        return oneDegree > otherDegree ? one : other;
    return std::min(one, other);
}

void PortIndex::playMatchesOf(size_t place)
{
    for (size_t match = (m_ports.size() + place) / 2; match > 0; match /= 2)
        m_winners[match] = worseOf(m_winners[2 * match], m_winners[2 * match + 1]);
}

} // namespace planner
