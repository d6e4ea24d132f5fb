#include "planner/search/SlotTable.h"

#include "planner/search/SlotWindow.h"

#include <iterator>
#include <limits>

namespace planner
{

/// Slots of the table are numbers of this many bits and one more.
static constexpr int highestBit = 30;
static constexpr quint32 root = 1;

SlotTable::SlotTable(qint32 maxRxSlot) : m_lastSlot(maxRxSlot) {}

qint32 SlotTable::firstFreeFrom(qint32 slot) const
{
    const auto behind = m_runs.upper_bound(slot);
    if (behind == m_runs.begin())
        return slot;
    const qint32 last = std::prev(behind)->second;
    return slot <= last ? addSlots(last, 1) : slot;
}

qint64 SlotTable::lastFreeBefore(qint32 slot) const
{
    const auto from = m_runs.lower_bound(slot);
    if (from == m_runs.begin() || std::prev(from)->second < slot - qint64(1))
        return slot - qint64(1);
    return std::prev(from)->first - qint64(1);
}

qint64 SlotTable::freeSlotAfter(qint32 slot, quint32 count)
{
    constexpr quint32 few = 8; // run by run, which needs no counts
    constexpr qint32 largest = std::numeric_limits<qint32>::max();
    if (count > few || m_lastSlot == largest || slot >= largest - qint32(few))
        return freeSlotByCounts(slot, count);
    for (; count > 0; --count)
        slot = firstFreeFrom(slot + 1);
    return slot;
}

// Goes down towards the slot up to which this many of all slots from 0 on are free.
qint64 SlotTable::freeSlotByCounts(qint32 slot, quint32 count)
{
    prepareCounts();
    qint64 wanted = qint64(slot) + count;
    if (wanted < 0)
        return wanted; // ahead of the table all slots are free
    wanted += 1 - (slot < 0 ? 0 : takenUpTo(slot));
    quint32 knot = root;
    qint64 low = 0;
    for (int bit = highestBit; bit >= 0 && knot != 0; --bit) {
        const qint64 half = qint64(1) << bit;
        const quint32 left = m_knots[knot].child[0];
        const bool goesRight = wanted > half - takenBelow(left);
        if (goesRight) {
            wanted -= half - takenBelow(left);
            low += half;
        }
        knot = m_knots[knot].child[goesRight ? 1 : 0];
    }
    return low + wanted - 1 + takenBelow(knot); // which is 0 but at the largest number
}

void SlotTable::prepareCounts()
{
    if (!m_knots.empty())
        return;
    m_knots.resize(root + 1);
    for (const auto& run : m_runs) {
        for (qint64 slot = run.first; slot <= run.second; ++slot)
            countTaken(static_cast<qint32>(slot));
    }
}

void SlotTable::countTaken(qint32 slot)
{
    quint32 knot = root;
    ++m_knots[knot].taken;
    for (int bit = highestBit; bit >= 0; --bit) {
        const auto side = static_cast<size_t>((slot >> bit) & 1);
        if (m_knots[knot].child[side] == 0) {
            m_knots[knot].child[side] = static_cast<quint32>(m_knots.size());
            m_knots.emplace_back();
        }
        knot = m_knots[knot].child[side];
        ++m_knots[knot].taken;
    }
}

qint64 SlotTable::takenUpTo(qint32 slot) const
{
    qint64 taken = 0;
    quint32 knot = root;
    for (int bit = highestBit; bit >= 0 && knot != 0; --bit) {
        const auto side = static_cast<size_t>((slot >> bit) & 1);
        if (side == 1)
            taken += takenBelow(m_knots[knot].child[0]);
        knot = m_knots[knot].child[side];
    }
    return taken + takenBelow(knot);
}

void SlotTable::take(qint32 slot)
{
    if (!holds(slot) || isTaken(slot))
        return;
    if (!m_knots.empty())
        countTaken(slot);
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
