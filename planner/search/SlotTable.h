#pragma once

#include <QtGlobal>

#include <map>

namespace planner
{

/// The slots of one port that one resolution has given out.
///
/// Behaves as a table of the slots 0 to maxRxSlot with a mark for each one that is taken, but keeps
/// the taken slots as runs: a window may reach millions of slots ahead, and a search passes a run
/// at once. Outside the table nothing is taken and taking is without effect.
class SlotTable
{
public:
    explicit SlotTable(qint32 maxRxSlot);

    qint32 lastSlot() const { return m_lastSlot; }
    bool holds(qint32 slot) const { return slot >= 0 && slot <= m_lastSlot; }
    bool isTaken(qint32 slot) const { return firstFreeFrom(slot) != slot; }

    /// The slot itself or the next one above it that is free; it may lie behind the table.
    ///
    /// Behind the largest number of all comes the smallest one, which is free.
    qint32 firstFreeFrom(qint32 slot) const;

    void take(qint32 slot);

private:
    qint32 m_lastSlot;
    std::map<qint32, qint32> m_runs; ///< first to last slot of each run; runs do not touch
};

} // namespace planner
