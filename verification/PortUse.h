#pragma once

#include "verification/Findings.h"
#include "verification/PlanFigures.h"
#include "verification/PlanWalk.h"

namespace verification
{

/// Which transmissions are sent in which slot of which port, over the repeating cycle.
class PortUse
{
public:
    explicit PortUse(const PlanRecords& plan);

    /// Takes every row of the schedule. Call once, before the others.
    void addSchedule();

    /// Takes what a talker sends on ports that the schedule has no row for.
    void addImplied(const ScheduledTransmission& transmission, const HopSlots& hops);

    /// Ends the taking; what follows looks at all ports.
    void finish();

    /// Two transmissions in one slot of a port, modulo the cycle.
    void findSharedSlots(FindingList& findings) const;

    /// Slots that lie outside of the cycle, one finding a port.
    void findSlotsBeyondCycle(FindingList& findings) const;

    /// Used slots of each port, the fullest first.
    std::vector<PortLoad> loads() const;

    size_t portCount() const;

private:
    struct Use {
        int node = 0;
        int port = 0;
        qint64 start_us = 0; ///< in the cycle
        qint64 slot = 0;     ///< as in the document
        Transmission transmission;
        size_t instance = 0; ///< place in the schedule; numbers need not be anybody's own
    };
    using Uses = std::vector<Use>;
    /// Uses of one port that start at one time of the cycle: from first to behind last.
    struct Group {
        size_t first = 0;
        size_t last = 0;
    };

    void add(int node, int port, qint64 slot, const ScheduledTransmission& transmission);
    qint64 startInCycle(qint64 slot) const;
    size_t endOfPort(size_t first) const;
    std::vector<Group> groupsOf(size_t first, size_t last) const;
    std::vector<Transmission> transmissionsOf(const Group& group) const;
    void findSharedIn(const Group& group, FindingList& findings) const;
    void findOverlap(const Group& early, const Group& late, qint64 gap_us,
                     FindingList& findings) const;

    const Schedule& m_schedule;
    Uses m_uses; ///< by node, port, time in the cycle, slot and transmission once finished
};

} // namespace verification
