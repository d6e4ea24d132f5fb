#include "tests/planner/twin/RandomTopology.h"

int RandomTopology::addNode(bool isSwitch)
{
    const int index = static_cast<int>(m_draft.nodes.size());
    std::vector<int>& kind = isSwitch ? m_switches : m_hosts;
    DraftNode node;
    node.isSwitch = isSwitch;
    node.name = (isSwitch ? QStringLiteral(u"S%1") : QStringLiteral(u"H%1")).arg(kind.size());
    m_draft.nodes.push_back(node);
    kind.push_back(index);
    return index;
}

void RandomTopology::addLink(int a, int b)
{
    DraftLink link;
    link.a = a;
    link.b = b;
    link.portA = m_draft.nodes[static_cast<size_t>(a)].ports++;
    link.portB = m_draft.nodes[static_cast<size_t>(b)].ports++;
    m_draft.links.push_back(link);
}

void RandomTopology::growAny(int switchCount, int hostCount)
{
    enum Shape { Line, Ring, Star, Tree, Mesh };
    const Shape shape = m_random.pick({Line, Ring, Star, Tree, Mesh});
    for (int i = 0; i < switchCount; ++i)
        addNode(true);
    for (int i = 1; i < switchCount; ++i) {
        int parent = i - 1;
        if (shape == Star)
            parent = 0;
        else if (shape == Tree || shape == Mesh)
            parent = m_random.below(i);
        addLink(m_switches[static_cast<size_t>(parent)], m_switches[static_cast<size_t>(i)]);
    }
    if (shape == Ring && switchCount > 2)
        addLink(m_switches.back(), m_switches.front());
    if (shape == Mesh && switchCount > 2) {
        for (int extra = m_random.between(1, switchCount); extra > 0; --extra) {
            const int a = m_random.below(switchCount);
            const int b = m_random.below(switchCount);
            if (a != b)
                addLink(m_switches[static_cast<size_t>(a)], m_switches[static_cast<size_t>(b)]);
        }
    }
    for (int i = 0; i < hostCount; ++i) {
        const int host = addNode(false);
        addLink(host, m_random.pick(m_switches));
        // A host with a second line, so that branches can leave by different ports.
        if (m_random.chance(10))
            addLink(m_random.pick(m_switches), host);
    }
}

void RandomTopology::growFunnel(int switchCount, int talkerCount, int listenerCount)
{
    for (int i = 0; i < switchCount; ++i) {
        addNode(true);
        if (i > 0)
            addLink(m_switches[static_cast<size_t>(i - 1)], m_switches[static_cast<size_t>(i)]);
    }
    for (int i = 0; i < talkerCount + listenerCount; ++i)
        addLink(addNode(false), i < talkerCount ? m_switches.front() : m_switches.back());
}

void RandomTopology::number(int hostBuffer, int switchBuffer)
{
    std::vector<int> numbers;
    for (size_t i = 0; i < m_draft.nodes.size(); ++i)
        numbers.push_back(static_cast<int>(i));
    if (m_random.chance(40))
        m_random.shuffle(numbers);
    const bool uneven = m_random.chance(20);
    for (size_t i = 0; i < m_draft.nodes.size(); ++i) {
        DraftNode& node = m_draft.nodes[i];
        node.nodeID = numbers[i];
        node.buffernum = node.isSwitch ? switchBuffer : hostBuffer;
        if (uneven)
            node.buffernum = m_random.between(1, node.buffernum + 1);
    }
}

std::vector<int> RandomTopology::neighbours(int node) const
{
    std::vector<int> found;
    for (const DraftLink& link : m_draft.links) {
        if (link.a == node)
            found.push_back(link.b);
        if (link.b == node)
            found.push_back(link.a);
    }
    return found;
}

/// Depth first, with at most limit nodes on the way; hosts are entered only as the listener.
bool RandomTopology::search(int node, int listener, std::vector<int>& way, std::vector<bool>& seen,
                            int limit)
{
    way.push_back(node);
    if (node == listener)
        return true;
    seen[static_cast<size_t>(node)] = true;
    std::vector<int> next = neighbours(node);
    m_random.shuffle(next);
    for (const int other : next) {
        const bool host = !m_draft.nodes[static_cast<size_t>(other)].isSwitch;
        if (seen[static_cast<size_t>(other)] || (host && other != listener))
            continue;
        if (static_cast<int>(way.size()) < limit && search(other, listener, way, seen, limit))
            return true;
    }
    way.pop_back();
    seen[static_cast<size_t>(node)] = false;
    return false;
}

QStringList RandomTopology::route(int talker, int listener, bool detour)
{
    std::vector<int> way;
    const int all = static_cast<int>(m_draft.nodes.size());
    for (int limit = detour ? all : 3; limit <= all && way.empty(); ++limit) {
        std::vector<bool> seen(static_cast<size_t>(all), false);
        search(talker, listener, way, seen, limit);
    }
    QStringList names;
    for (const int node : way)
        names.append(name(node));
    return names;
}

QStringList RandomTopology::wander(int talker, int listener)
{
    QStringList names{name(talker)};
    int node = talker;
    for (int steps = m_random.between(1, 4); steps > 0; --steps) {
        node = m_random.pick(neighbours(node));
        names.append(name(node));
    }
    const QStringList rest = route(node, listener, false);
    for (int i = 1; i < rest.size(); ++i)
        names.append(rest.at(i));
    return names;
}
