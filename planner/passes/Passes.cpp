#include "planner/passes/Passes.h"

#include "planner/passes/PortCopies.h"
#include "planner/passes/PortSlots.h"

#include <algorithm>

namespace planner
{

Passes::Passes(TTPlanner& planner)
    : m_planner(planner),
      m_groups(groupByPort(planner.TTStreamInstanceList)),
      m_degrees(static_cast<quint32>(m_groups.ports.size())),
      m_duplicates(planner.TTStreamInstanceList),
      m_watch(m_groups.board)
{
    planner.nodeList.clear();
}

Passes::~Passes()
{
    giveBackWindows();
    m_planner.nodeList = nodesOf(m_groups, m_planner.TTStreamInstanceList);
    giveBackDegrees();
    giveBackUnresolved();
}

void Passes::giveBackDegrees()
{
    PortIndex port;
    for (Node& node : m_planner.nodeList) {
        for (NodeOutport& outport : node.outports) {
            outport.degree = m_degrees.degreeOf(port);
            ++port;
        }
    }
}

void Passes::giveBackUnresolved()
{
    if (m_unresolved.maxDegree == 0)
        return;
    PortCopies copies(m_planner.nodeList, m_unresolved.nodeID, m_unresolved.outport);
    assignSlots(copies.view(), m_slotsGiven);
    copies.giveBack();
}

void Passes::leaveUnresolved(const WorstPort& port, const std::vector<qint32>& slotsGiven)
{
    m_unresolved = port;
    m_slotsGiven = slotsGiven;
}

void Passes::begin()
{
    m_revised.clear();
    m_watch.beforePass(m_groups.board);
}

PortView Passes::view(const WorstPort& port)
{
    const PortIndex index = m_groups.numberOf.at(pairKey(port.nodeID, port.outport));
    return {m_groups.board, index, m_groups.ports[index.value()].entries};
}

void Passes::remember(InstanceIndex instance)
{
    const auto hops = m_groups.board.hops().begin();
    m_before.assign(hops + m_groups.board.firstHop(instance).value(),
                    hops + m_groups.board.firstHop(instance.plus(1)).value());
}

void Passes::touchChanged(InstanceIndex instance)
{
    HopIndex index = m_groups.board.firstHop(instance);
    for (const Hop& before : m_before) {
        if (before.port != noPort && !(m_groups.board.hop(index).window == before.window))
            m_degrees.touch(before.port);
        ++index;
    }
}

void Passes::overwriteDuplicates()
{
    const auto isDuplicate = [this](InstanceIndex index) { return m_duplicates.contains(index); };
    if (std::none_of(m_revised.begin(), m_revised.end(), isDuplicate))
        return;
    giveBackWindows();
    for (const InstanceIndex instance : m_revised) {
        if (isDuplicate(instance))
            m_duplicates.overwriteOthers(instance);
    }
    m_isOutdated = true;
}

// The ports share one board of windows, so that a revision reaches them at once; the log tells of a
// renewed grouping all the same.
void Passes::renew()
{
    if (!m_isOutdated) {
        const GroupingLines lines;
        return;
    }
    m_groups = groupByPort(m_planner.TTStreamInstanceList);
    m_degrees = PortDegrees(static_cast<quint32>(m_groups.ports.size()));
    m_isOutdated = false;
    m_revised.assign(m_groups.board.instanceCount(), InstanceIndex());
    InstanceIndex next;
    for (InstanceIndex& revised : m_revised) {
        revised = next;
        ++next;
    }
}

void Passes::giveBackWindows()
{
    InstanceIndex index;
    for (TTStreamInstance& instance : m_planner.TTStreamInstanceList) {
        m_groups.board.giveBack(index, instance);
        ++index;
    }
}

} // namespace planner
