#pragma once

#include "planner/PlanningModel.h"

#include <optional>
#include <vector>

namespace synthesis
{

/// The slots in which one frame of a flow may take up a sending port.
struct PortWindow {
    quint32 port = 0; ///< node and outport, see planner::pairKey()
    planner::SlotWindow window;
};

/// Asks the planning rules which windows follow from a send slot and receive slots.
class PatternDerivation
{
public:
    PatternDerivation(const planner::TTFlow& flow, quint16 switchBufferNum)
        : m_flow(flow),
          m_switchBufferNum(switchBufferNum)
    {
    }

    /// The windows of all senders when the frame is sent in slot 0 and arrives after these delays.
    ///
    /// Delays are slots, by path, between one slot and full buffers a hop, so that the rules leave
    /// send and receive slots as they are. Nothing when the frame would not go forward: a window
    /// that ends before it starts, a hop that sends no later than the one before or waits longer
    /// than its buffers last, branches that pass a port in different slots.
    std::optional<std::vector<PortWindow>> windowsFor(const std::vector<qint32>& delays) const;

    /// How many slots a frame may wait in a node on its path: one without buffers of its own, which
    /// is no switch, is taken for any other.
    static qint32 longestWait(const planner::BridgeHop& hop, quint16 switchBufferNum)
    {
        return hop.buffernum > 0 ? hop.buffernum : switchBufferNum;
    }

private:
    bool goesForward(const planner::VirtualLinkPath& path) const;

    const planner::TTFlow& m_flow;
    quint16 m_switchBufferNum;
};

} // namespace synthesis
