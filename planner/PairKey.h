#pragma once

#include "planner/PlanningModel.h"

// Numbers under which tables keep pairs of numbers.
namespace planner
{

/// Two 16-bit numbers as one key.
inline quint32 pairKey(quint16 a, quint16 b)
{
    return quint32(a) << 16 | b;
}

/// What tells instances apart; two records may share it.
inline quint32 instanceKey(const TTStreamInstance& instance)
{
    return pairKey(instance.flowID, instance.seq);
}

} // namespace planner
