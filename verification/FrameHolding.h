#pragma once

#include "verification/Findings.h"
#include "verification/PlanFigures.h"

#include <unordered_map>

namespace verification
{

/// How many frames each switch holds at once, over the repeating cycle.
class FrameHolding
{
public:
    explicit FrameHolding(const PlanRecords& plan);

    /// The most frames that each switch holds, by node; switches that hold none are left out.
    std::vector<SwitchOccupancy> occupancies() const;

    /// Switches that hold more frames than they have buffers.
    void findFullBuffers(FindingList& findings) const;

private:
    /// A frame comes, or goes, at a time of the cycle.
    struct Change {
        qint64 time_us = 0;
        int frames = 0;
    };
    struct Holding {
        qint64 always = 0; ///< frames that are there at the start of the cycle
        std::vector<Change> changes;
    };

    void addTransmission(const Schedule& schedule, const ScheduledTransmission& transmission);
    void addFrame(int node, qint64 receiveSlot, qint64 sendSlot);
    SwitchOccupancy mostFrames(int node, Holding holding) const;

    const qint64 m_cycle_us;
    std::unordered_map<int, int> m_buffers; ///< of each switch
    std::unordered_map<int, Holding> m_holdings;
};

} // namespace verification
