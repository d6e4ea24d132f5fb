#pragma once

#include <QtGlobal>

#include <unordered_map>

namespace planner
{

struct SlotTableEntry {
    qint32 slot = 0;
    bool used = false;
};

/// The slots of one port that one resolution has given out.
///
/// Behaves as a table of the slots 0 to maxRxSlot; only entries that were written take memory,
/// since a window may reach millions of slots ahead. Outside the table nothing is used and writes
/// are lost.
class SlotTable
{
public:
    explicit SlotTable(qint32 maxRxSlot);

    qint32 lastSlot() const { return m_lastSlot; }
    bool used(qint32 slot) const;
    void setUsed(qint32 slot, bool used);

private:
    qint32 m_lastSlot;
    std::unordered_map<qint32, SlotTableEntry> m_entries;
};

} // namespace planner
