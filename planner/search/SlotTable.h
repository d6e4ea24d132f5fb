#pragma once

#include <QtGlobal>

#include <array>
#include <map>
#include <vector>

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

    /// The next slot below this one that is free; it may lie before the table.
    qint64 lastFreeBefore(qint32 slot) const;

    /// The free slot above this one that comes as number count, from 1; it may lie behind the table
    /// and behind the largest number.
    qint64 freeSlotAfter(qint32 slot, quint32 count);

    void take(qint32 slot);

private:
    /// Counts of taken slots below the halves of a stretch, down to single slots; child 0 is none.
    struct Knot {
        std::array<quint32, 2> child{};
        quint32 taken = 0;
    };

    qint64 freeSlotByCounts(qint32 slot, quint32 count);
    void countTaken(qint32 slot);
    void prepareCounts();
    qint64 takenUpTo(qint32 slot) const;
    qint64 takenBelow(quint32 knot) const { return knot == 0 ? 0 : m_knots[knot].taken; }

    qint32 m_lastSlot;
    std::map<qint32, qint32> m_runs; ///< first to last slot of each run; runs do not touch
    std::vector<Knot> m_knots;       ///< the root at 1; empty until counts are needed
};

} // namespace planner
