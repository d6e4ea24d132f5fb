#include "planner/search/SlotTable.h"

#include "planner/search/SlotWindow.h"

#include <iterator>

namespace planner
{

SlotTable::SlotTable(qint32 maxRxSlot) : m_lastSlot(maxRxSlot) {}

qint32 SlotTable::firstFreeFrom(qint32 slot) const
{
    const auto behind = m_runs.upper_bound(slot);
    if (behind == m_runs.begin())
        return slot;
    const qint32 last = std::prev(behind)->second;
    return slot <= last ? addSlots(last, 1) : slot;
}

void SlotTable::take(qint32 slot)
{
    if (!holds(slot) || isTaken(slot))
        return;
    auto behind = m_runs.upper_bound(slot);
    qint32 last = slot;
    if (behind != m_runs.end() && subtractSlots(behind->first, 1) == slot) {
        last = behind->second;
        behind = m_runs.erase(behind);
    }
    if (behind != m_runs.begin() && addSlots(std::prev(behind)->second, 1) == slot)
        std::prev(behind)->second = last;
    else
        m_runs.emplace_hint(behind, slot, last);
}

} // namespace planner
