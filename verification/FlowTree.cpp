#include "verification/FlowTree.h"

#include <utility>

namespace verification
{

void FlowTree::begin()
{
    m_path.clear();
    m_inport = FlowHop::noPort;
}

void FlowTree::addSender(int node, int outport, int inport)
{
    const auto next = static_cast<int>(m_flow.hops.size());
    const auto place = m_hops.emplace(std::make_tuple(node, m_inport, outport), next);
    if (place.second)
        m_flow.hops.push_back({node, m_inport, outport, 0});
    const int hop = place.first->second;
    ++m_flow.hops[static_cast<size_t>(hop)].paths;
    if (!m_path.empty() && m_steps.emplace(m_path.back(), hop).second)
        m_flow.steps.push_back({m_path.back(), hop});
    m_path.push_back(hop);
    m_inport = inport;
}

void FlowTree::end(int listener)
{
    const auto next = static_cast<int>(m_flow.listeners.size());
    const auto place = m_listeners.emplace(std::make_pair(listener, m_inport), next);
    if (place.second) {
        FlowListener added;
        added.node = listener;
        added.inport = m_inport;
        m_flow.listeners.push_back(added);
    }
    if (m_ends.emplace(m_path.back(), place.first->second).second)
        m_flow.ends.push_back({m_path.back(), place.first->second, m_path.front()});
}

void FlowTree::addGap(const LinkGap& gap)
{
    if (m_gaps.emplace(gap.from, gap.to).second)
        m_flow.gaps.push_back(gap);
}

void FlowTree::addBandwidth(qint64 bandwidth_Mbps)
{
    if (bandwidth_Mbps > 0 &&
        (m_flow.slowestLink_Mbps == 0 || bandwidth_Mbps < m_flow.slowestLink_Mbps))
        m_flow.slowestLink_Mbps = bandwidth_Mbps;
}

NetworkFlow FlowTree::take()
{
    return std::move(m_flow);
}

} // namespace verification
