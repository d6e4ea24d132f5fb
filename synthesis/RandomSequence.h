#pragma once

#include <QtGlobal>

namespace synthesis
{

/// Numbers that break ties in the same way on every machine.
class RandomSequence
{
public:
    explicit RandomSequence(quint64 seed) : m_state(seed) {}

    quint64 next()
    {
        m_state += 0x9E3779B97F4A7C15ULL;
        quint64 z = m_state;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31);
    }

    /// 0 to count - 1.
    quint32 below(quint32 count) { return static_cast<quint32>(next() % count); }

private:
    quint64 m_state;
};

} // namespace synthesis
