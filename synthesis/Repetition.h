#pragma once

#include "planner/PlanningModel.h"

#include <vector>

namespace synthesis
{

/// How the transmissions of all flows repeat.
///
/// Time is counted in cells, of which a slot has a whole number. Where each period is a multiple of
/// a slot, a cell is a slot and a flow is one transmission that recurs on a ring as long as its
/// period: two flows meet where their cells agree modulo the greatest common divisor of their
/// rings, so that the length of the common cycle plays no part. Other flows recur with the cycle
/// alone, and each of their transmissions stands for itself on a ring as long as the cycle; when
/// that is no multiple of a slot, a cell is the largest part of a slot that divides both.
class Repetition
{
public:
    explicit Repetition(const planner::PlanningContext& context);

    quint32 cycle_us() const { return m_cycle_us; }
    quint32 cellsPerSlot() const { return m_cellsPerSlot; }

    /// Whether tables as long as the rings fit into memory, and the engine takes as many instances.
    bool isSearchable() const;

    /// Whether the slots of a cycle continue those of the one before.
    bool cycleHoldsWholeSlots() const;

    /// The cells after which a flow recurs: of its period or of the cycle.
    quint32 ringLength(const planner::TTFlow& flow) const;

    /// How many transmissions of the flow stand on its ring; all in the cycle, or 1.
    quint32 transmissionsOnRing(const planner::TTFlow& flow) const;

    /// How many transmissions the flow has in the cycle.
    quint32 transmissions(const planner::TTFlow& flow) const;

private:
    bool recursWithPeriod(const planner::TTFlow& flow) const;

    quint32 m_cycle_us;
    quint32 m_cellsPerSlot;
    quint64 m_instances = 0;
    quint64 m_longestRing = 0; ///< cells
};

} // namespace synthesis
