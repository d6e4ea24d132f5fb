#include "synthesis/Repetition.h"

#include "planner/PreProcess.h"

#include <algorithm>
#include <numeric>

namespace synthesis
{

using namespace planner;

static constexpr quint32 slot_us = slotLength_us;

/// A table has this many cells at most for a port: 4 MiB.
static constexpr quint64 longestRing_cells = quint64(1) << 20;

Repetition::Repetition(const PlanningContext& context)
    : m_cycle_us(clusterCycleOf(context)),
      m_cellsPerSlot(slot_us / std::gcd(slot_us, m_cycle_us))
{
    for (const TTFlow& flow : context.flows) {
        m_instances += m_cycle_us / flow.period;
        m_longestRing = std::max(m_longestRing, quint64(ringLength(flow)));
    }
}

bool Repetition::recursWithPeriod(const TTFlow& flow) const
{
    return flow.period % slot_us == 0 && m_cycle_us % flow.period == 0;
}

bool Repetition::cycleHoldsWholeSlots() const
{
    return m_cycle_us % slot_us == 0;
}

bool Repetition::isSearchable() const
{
    return m_instances <= maxInstances && m_longestRing <= longestRing_cells;
}

quint32 Repetition::ringLength(const TTFlow& flow) const
{
    const quint32 cell_us = slot_us / m_cellsPerSlot;
    return (recursWithPeriod(flow) ? flow.period : m_cycle_us) / cell_us;
}

quint32 Repetition::transmissionsOnRing(const TTFlow& flow) const
{
    return recursWithPeriod(flow) ? 1 : transmissions(flow);
}

quint32 Repetition::transmissions(const TTFlow& flow) const
{
    return m_cycle_us / flow.period;
}

} // namespace synthesis
