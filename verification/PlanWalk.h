#pragma once

#include "verification/HopSlots.h"
#include "verification/TransmissionMatch.h"

#include <memory>

namespace verification
{

/// Visits the transmissions of a schedule with their slots sorted to the hops of their flows.
class PlanWalk
{
public:
    /// plan must outlive this.
    explicit PlanWalk(const PlanRecords& plan)
        : m_plan(plan),
          m_match(matchTransmissions(plan)),
          m_hops(plan.network.flows.size())
    {
    }

    const TransmissionMatch& match() const { return m_match; }

    /// Calls visit(transmission, slots, number) for each that belongs to a flow, in document order.
    ///
    /// number is that of the transmission in its flow, from 0; slots hold until the next call.
    template <typename Visit>
    void forEachOfFlow(Visit visit)
    {
        for (size_t i = 0; i < m_match.places.size(); ++i) {
            const TransmissionMatch::Place& place = m_match.places[i];
            if (place.flow == TransmissionMatch::nobody)
                continue;
            const ScheduledTransmission& transmission = m_plan.schedule.transmissions[i];
            HopSlots& hopSlots = slotsOf(static_cast<size_t>(place.flow));
            hopSlots.fill(m_plan.schedule, transmission);
            visit(transmission, hopSlots, place.number);
        }
    }

private:
    HopSlots& slotsOf(size_t flow)
    {
        if (!m_hops[flow])
            m_hops[flow] = std::make_unique<HopSlots>(m_plan.network.flows[flow]);
        return *m_hops[flow];
    }

    const PlanRecords& m_plan;
    TransmissionMatch m_match;
    std::vector<std::unique_ptr<HopSlots>> m_hops; ///< by flow, made when first needed
};

} // namespace verification
