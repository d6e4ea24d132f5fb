#pragma once

#include <QtGlobal>

namespace planner
{

/// A pair of slots that bounds a window, both included.
///
/// The end is held first although every text form writes the start first.
struct SlotWindow {
    qint32 end = 0;
    qint32 start = 0;
};

inline bool operator==(const SlotWindow& a, const SlotWindow& b)
{
    return a.end == b.end && a.start == b.start;
}

/// The three operations on slot numbers; results beyond 32 bits wrap.
inline qint32 addSlots(qint32 a, qint32 b)
{
    return static_cast<qint32>(static_cast<quint32>(a) + static_cast<quint32>(b));
}
inline qint32 subtractSlots(qint32 a, qint32 b)
{
    return static_cast<qint32>(static_cast<quint32>(a) - static_cast<quint32>(b));
}
inline qint32 multiplySlots(qint32 a, qint32 b)
{
    return static_cast<qint32>(static_cast<quint32>(a) * static_cast<quint32>(b));
}

} // namespace planner
