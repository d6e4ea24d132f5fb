#pragma once

#include "tests/planner/twin/NetworkDraft.h"
#include "tests/support/RandomSource.h"

/// Grows nodes and links of a draft and finds ways through them.
class RandomTopology
{
public:
    RandomTopology(RandomSource& random, NetworkDraft& draft) : m_random(random), m_draft(draft) {}

    /// A line, ring, star, tree or mesh of switches with hosts at random places.
    void growAny(int switchCount, int hostCount);
    /// A line of switches with all talkers at its first and all listeners at its last one.
    void growFunnel(int switchCount, int talkerCount, int listenerCount);

    int addNode(bool isSwitch);
    void addLink(int a, int b);
    /// Gives numbers and buffer sizes to all nodes.
    void number(int hostBuffer, int switchBuffer);

    const std::vector<int>& hosts() const { return m_hosts; }
    const std::vector<int>& switches() const { return m_switches; }

    /// Names along a way between two hosts; the shortest, or any without a repeated node.
    QStringList route(int talker, int listener, bool detour);
    /// A way that may meet a node more than once, the talker among them.
    QStringList wander(int talker, int listener);

    QString name(int node) const { return m_draft.nodes[static_cast<size_t>(node)].name; }

private:
    std::vector<int> neighbours(int node) const;
    bool search(int node, int listener, std::vector<int>& way, std::vector<bool>& seen, int limit);

    RandomSource& m_random;
    NetworkDraft& m_draft;
    std::vector<int> m_hosts;
    std::vector<int> m_switches;
};
