#include "planner/PortDegrees.h"

#include "planner/WindowOverlap.h"

#include <algorithm>

namespace planner
{

void PortDegrees::rebuild(const PortIndex& index)
{
    const auto count = static_cast<quint32>(index.ports().size());
    m_isTouched.assign(count, false);
    m_touched.clear();
    m_winners.assign(2 * index.ports().size(), 0);
    for (quint32 place = 0; place < count; ++place)
        m_winners[count + place] = place;
    for (quint32 match = count; match-- > 1;)
        playMatch(index, match);
    for (quint32 place = 0; place < count; ++place)
        touch(place);
}

void PortDegrees::touch(quint32 place)
{
    if (m_isTouched[place])
        return;
    m_isTouched[place] = true;
    m_touched.push_back(place);
}

WorstPort PortDegrees::measure(const PortIndex& index, const WindowBoard& board)
{
    for (const quint32 place : m_touched) {
        NodeOutport& port = *index.ports()[place].outport;
        std::vector<SlotWindow> windows = collectPortWindows(port, board);
        port.degree = 2 * countWindowOverlaps(windows);
        m_isTouched[place] = false;
        playMatchesOf(index, place);
    }
    m_touched.clear();
    if (index.ports().empty())
        return {};
    const PortIndex::Port& worst = index.ports()[m_winners[1]];
    if (worst.outport->degree == 0)
        return {};
    return {worst.outport->degree, worst.nodeID, worst.outport->outport};
}

// The port with the higher degree wins, the earlier one a draw.
void PortDegrees::playMatch(const PortIndex& index, std::size_t match)
{
    const quint32 one = m_winners[2 * match];
    const quint32 other = m_winners[2 * match + 1];
    const quint32 oneDegree = index.ports()[one].outport->degree;
    const quint32 otherDegree = index.ports()[other].outport->degree;
    if (oneDegree != otherDegree)
        m_winners[match] = oneDegree > otherDegree ? one : other;
    else
        m_winners[match] = std::min(one, other);
}

void PortDegrees::playMatchesOf(const PortIndex& index, quint32 place)
{
    const auto count = static_cast<quint32>(index.ports().size());
    for (std::size_t match = (count + place) / 2; match > 0; match /= 2)
        playMatch(index, match);
}

} // namespace planner
