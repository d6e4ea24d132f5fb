#pragma once

#include "verification/Network.h"

#include <map>
#include <set>
#include <tuple>
#include <vector>

namespace verification
{

/// Joins the paths of a virtual link to a tree: senders and listeners that paths share stand once.
class FlowTree
{
public:
    /// Begins a path; its senders follow, talker first.
    void begin();

    /// Appends a sender that leaves by outport to a node, which it reaches at its port inport.
    void addSender(int node, int outport, int inport);

    /// Ends the path, which has a sender at least, at its listener.
    void end(int listener);

    void addGap(const LinkGap& gap);

    /// Bandwidth of a link on the paths; 0 when it names none.
    void addBandwidth(qint64 bandwidth_Mbps);

    /// The tree as a flow that lacks all but its ways.
    NetworkFlow take();

private:
    NetworkFlow m_flow;
    std::map<std::tuple<int, int, int>, int> m_hops; ///< place by node, inport and outport
    std::map<std::pair<int, int>, int> m_listeners;  ///< place by node and inport
    std::set<std::pair<int, int>> m_steps;
    std::set<std::pair<int, int>> m_ends;
    std::set<std::pair<int, int>> m_gaps;
    std::vector<int> m_path;        ///< places of its senders so far, the talker first
    int m_inport = FlowHop::noPort; ///< at which the next node is reached
};

} // namespace verification
