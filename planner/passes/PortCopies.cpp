#include "planner/passes/PortCopies.h"

namespace planner
{

void addForPort(WindowBoard& board, const TTStreamInstance& instance, quint16 nodeID,
                quint16 outport)
{
    board.add(instance, [&](quint16 sender, quint16 senderPort) {
        return sender == nodeID && senderPort == outport ? onlyPort : noPort;
    });
}

NodeOutport* findPort(std::list<Node>& nodeList, quint16 nodeID, quint16 outport)
{
    for (Node& node : nodeList) {
        for (NodeOutport& port : node.outports) {
            if (node.nodeID == nodeID && port.outport == outport)
                return &port;
        }
    }
    return nullptr;
}

PortCopies::PortCopies(std::list<Node>& nodeList, quint16 nodeID, quint16 outport)
    : m_outport(findPort(nodeList, nodeID, outport))
{
    if (!m_outport)
        return;
    for (const InstanceCopy& copy : m_outport->instances)
        addForPort(m_board, *copy, nodeID, outport);
    const InstanceIndex end(m_board.instanceCount());
    for (InstanceIndex instance; instance != end; ++instance)
        enterFirstMeeting(instance);
}

// The first hop at the port counts; an instance without one has nothing to do here.
void PortCopies::enterFirstMeeting(InstanceIndex instance)
{
    const PathIndex end = m_board.firstPath(instance.plus(1));
    bool isMet = false;
    const auto meet = [&](PathIndex path, HopIndex hop, bool isSwitch) {
        if (m_board.hop(hop).port != onlyPort)
            return;
        if (isMet)
            m_entries.back().meetsOnce = false;
        else
            m_entries.push_back({instance, path, hop, isSwitch, true});
        isMet = true;
    };
    for (PathIndex index = m_board.firstPath(instance); index != end; ++index) {
        const BoardPath& path = m_board.path(index);
        meet(index, path.talker, false);
        for (HopIndex hop = path.firstSwitch(); hop != path.listener(); ++hop)
            meet(index, hop, true);
    }
}

void PortCopies::giveBack()
{
    if (!m_outport)
        return;
    InstanceIndex instance;
    for (InstanceCopy& copy : m_outport->instances) {
        TTStreamInstance changed = *copy;
        m_board.giveBack(instance, changed);
        copy = std::make_shared<const TTStreamInstance>(std::move(changed));
        ++instance;
    }
}

} // namespace planner
