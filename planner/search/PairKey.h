#pragma once

#include <QtGlobal>

namespace planner
{

/// Two 16-bit numbers as one key, under which tables keep pairs.
inline quint32 pairKey(quint16 a, quint16 b)
{
    return quint32(a) << 16 | b;
}

} // namespace planner
