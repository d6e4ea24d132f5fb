#include "planner/passes/PortGroups.h"

#include "planner/PlanningLog.h"
#include "planner/passes/DuplicateInstances.h"

#include <unordered_set>

namespace planner
{

namespace
{

/// Numbers ports as they are met, and then node by node.
class PortNumbering
{
public:
    explicit PortNumbering(PortGroups& groups) : m_groups(groups) {}

    PortIndex numberOf(quint16 nodeID, quint16 outport)
    {
        const auto known =
            m_groups.numberOf.emplace(pairKey(nodeID, outport), PortIndex::behind(m_met));
        if (known.second) {
            const auto node = m_nodes.emplace(nodeID, m_portsOfNodes.size());
            if (node.second)
                m_portsOfNodes.emplace_back();
            m_portsOfNodes[node.first->second].push_back(PortIndex::behind(m_met));
            m_met.push_back({nodeID, outport, {}});
        }
        return known.first->second;
    }

    void sortByNode()
    {
        std::vector<PortIndex> numbers(m_met.size());
        for (const std::vector<PortIndex>& ports : m_portsOfNodes) {
            for (const PortIndex met : ports) {
                numbers[met.value()] = PortIndex::behind(m_groups.ports);
                m_groups.ports.push_back(m_met[met.value()]);
            }
        }
        for (auto& port : m_groups.numberOf)
            port.second = numbers[port.second.value()];
        m_groups.board.renumberPorts(numbers);
    }

private:
    PortGroups& m_groups;
    std::vector<PortGroup> m_met; ///< in order of first use
    std::unordered_map<quint16, size_t> m_nodes;
    std::vector<std::vector<PortIndex>> m_portsOfNodes; ///< nodes in order of first use
};

/// Enters the hops of a board under their ports, instance by instance.
class PortFilling
{
public:
    PortFilling(PortGroups& groups, const std::list<TTStreamInstance>& instances)
        : m_groups(groups),
          m_firstOfSame(firstRecordsOfRepeatedKeys(instances))
    {
    }

    void fill()
    {
        const WindowBoard& board = m_groups.board;
        const InstanceIndex end(board.instanceCount());
        for (PortEntry entry; entry.instance != end; ++entry.instance) {
            const PathIndex behind = board.firstPath(entry.instance.plus(1));
            for (; entry.path != behind; ++entry.path)
                enterPath(board.path(entry.path), entry);
        }
    }

private:
    void enterPath(const BoardPath& path, PortEntry entry)
    {
        entry.hop = path.talker;
        enter(entry);
        entry.isSwitch = true;
        for (entry.hop = path.firstSwitch(); entry.hop != path.listener(); ++entry.hop)
            enter(entry);
    }

    void enter(const PortEntry& entry)
    {
        const PortIndex port = m_groups.board.hop(entry.hop).port;
        std::vector<PortEntry>& entries = m_groups.ports[port.value()].entries;
        if (!entries.empty() && entries.back().instance == entry.instance)
            entries.back().meetsOnce = false;
        else if (m_firstOfSame.empty() || isNew(entry.instance, port))
            entries.push_back(entry);
    }

    // Records that share their key stand once under a port, the first of them that comes there.
    bool isNew(InstanceIndex instance, PortIndex port)
    {
        const auto same = m_firstOfSame.find(instance.value());
        return same == m_firstOfSame.end() ||
               m_known.insert(quint64(port.value()) << 32 | same->second.value()).second;
    }

    PortGroups& m_groups;
    const std::unordered_map<quint32, InstanceIndex> m_firstOfSame;
    std::unordered_set<quint64> m_known; ///< ports with the repeated keys that they hold
};

} // namespace

PortGroups groupByPort(const std::list<TTStreamInstance>& instances)
{
    const GroupingLines lines;
    PortGroups groups;
    PortNumbering numbering(groups);
    const auto portOf = [&numbering](quint16 nodeID, quint16 outport) {
        return numbering.numberOf(nodeID, outport);
    };
    for (const TTStreamInstance& instance : instances)
        groups.board.add(instance, portOf);
    numbering.sortByNode();
    PortFilling(groups, instances).fill();
    return groups;
}

std::list<Node> nodesOf(const PortGroups& groups, const std::list<TTStreamInstance>& instances)
{
    std::vector<InstanceCopy> copies;
    copies.reserve(instances.size());
    for (const TTStreamInstance& instance : instances)
        copies.push_back(std::make_shared<const TTStreamInstance>(instance));
    std::list<Node> nodes;
    for (const PortGroup& port : groups.ports) {
        if (nodes.empty() || nodes.back().nodeID != port.nodeID)
            nodes.push_back({port.nodeID, {}});
        NodeOutport outport;
        outport.outport = port.outport;
        for (const PortEntry& entry : port.entries)
            outport.instances.push_back(copies[entry.instance.value()]);
        nodes.back().outports.push_back(std::move(outport));
    }
    return nodes;
}

GroupingLines::GroupingLines()
{
    qCDebug(planningLog) << "converting Instance to Node----------";
}

GroupingLines::~GroupingLines()
{
    qCDebug(planningLog) << "converting Instance to Node End----------";
}

} // namespace planner
