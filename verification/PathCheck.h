#pragma once

#include "verification/Findings.h"
#include "verification/HopSlots.h"

#include <unordered_map>

namespace verification
{

/// Follows each transmission along the paths of its flow: order, waiting, windows, ports.
class PathCheck
{
public:
    /// network and findings must outlive this.
    PathCheck(const Network& network, FindingList& findings);

    /// number is that of the transmission in its flow, from 0.
    void examine(const ScheduledTransmission& transmission, const HopSlots& hops, qint64 number);

private:
    void checkTalkers(const HopSlots& hops);
    void checkStep(const HopSlots& hops, const FlowStep& step);
    void checkReceiveSlot(const HopSlots& hops, const FlowStep& step);
    void checkOrder(const FlowHop& hop, qint64 sentBefore, qint64 send);
    void checkEnd(const HopSlots& hops, const FlowEnd& end);
    void checkListenerSlot(const HopSlots& hops, const FlowEnd& end);
    void checkReceiveWindow(const FlowListener& listener, qint64 slot);
    void checkPresence(const HopSlots& hops);
    void checkStrays(const HopSlots& hops);
    void add(const FindingMaker& maker);

    /// Of a switch; noSwitch for any other node.
    int buffersOf(int node) const;

    static constexpr int noSwitch = -1;

    FindingList& m_findings;
    std::unordered_map<int, int> m_buffers; ///< of each switch
    Transmission m_transmission;            ///< under examination
    qint64 m_shift = 0;                     ///< slots by which its windows are later
};

} // namespace verification
