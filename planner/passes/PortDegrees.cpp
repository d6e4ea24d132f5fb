#include "planner/passes/PortDegrees.h"

#include "planner/search/WindowOverlap.h"

namespace planner
{

PortDegrees::PortDegrees(quint32 ports)
    : m_degrees(ports),
      m_isTouched(ports),
      m_winners(2 * size_t(ports))
{
    for (PortIndex port; port.value() < ports; ++port) {
        m_winners[ports + port.value()] = port;
        touch(port);
    }
}

void PortDegrees::touch(PortIndex port)
{
    if (m_isTouched[port.value()])
        return;
    m_isTouched[port.value()] = true;
    m_touched.push_back(port);
}

WorstPort PortDegrees::measure(const PortGroups& groups)
{
    std::vector<SlotWindow> windows;
    for (const PortIndex port : m_touched) {
        windows.clear();
        for (const PortEntry& entry : groups.ports[port.value()].entries)
            windows.push_back(groups.board.hop(entry.hop).window);
        m_degrees[port.value()] = 2 * countWindowOverlaps(windows);
        m_isTouched[port.value()] = false;
        playMatchesOf(port);
    }
    m_touched.clear();
    if (m_degrees.empty())
        return {};
    const PortIndex worst = m_winners[1];
    if (degreeOf(worst) == 0)
        return {};
    const PortGroup& port = groups.ports[worst.value()];
    return {degreeOf(worst), port.nodeID, port.outport};
}

// The port with the higher degree wins, the earlier one a draw.
void PortDegrees::playMatch(std::size_t match)
{
    const PortIndex one = m_winners[2 * match];
    const PortIndex other = m_winners[2 * match + 1];
    if (degreeOf(one) != degreeOf(other))
        m_winners[match] = degreeOf(one) > degreeOf(other) ? one : other;
    else
        m_winners[match] = one < other ? one : other;
}

void PortDegrees::playMatchesOf(PortIndex port)
{
    for (std::size_t match = (std::size_t(count()) + port.value()) / 2; match > 0; match /= 2)
        playMatch(match);
}

} // namespace planner
