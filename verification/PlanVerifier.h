#pragma once

#include "verification/PlanRecords.h"

// Judges a plan by its documents alone, without any code of the engine that made it.
namespace verification
{

/// The outcome of an examination; refers to nothing.
struct Verification {
    std::vector<Finding> findings; ///< in the order of operator<; the same on every machine
    size_t transmissions = 0;      ///< how many were examined
    size_t flows = 0;              ///< TT flows that the input document asks for
    size_t ports = 0;              ///< sending ports in use

    size_t faults() const; ///< number of findings that are faults
    bool sound() const { return faults() == 0; }
};

/// Examines a plan. Its cost grows with the size of the documents.
///
/// Damage of the records is among the findings. Slots are compared modulo the cycle, since the
/// schedule repeats.
Verification verifyPlan(const PlanRecords& plan);

} // namespace verification
