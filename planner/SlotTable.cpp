#include "planner/SlotTable.h"

namespace planner
{

SlotTable::SlotTable(qint32 maxRxSlot) : m_lastSlot(maxRxSlot) {}

bool SlotTable::used(qint32 slot) const
{
    const auto entry = m_entries.find(slot);
    return entry != m_entries.end() && entry->second.used;
}

void SlotTable::setUsed(qint32 slot, bool used)
{
    if (slot >= 0 && slot <= m_lastSlot)
        m_entries[slot] = {slot, used};
}

} // namespace planner
