#pragma once

#include <QtGlobal>

#include <initializer_list>
#include <vector>

/// Random numbers that are the same on every machine: the generator and all distributions are ours.
class RandomSource
{
public:
    explicit RandomSource(quint64 seed) : m_state(seed) {}

    quint64 next()
    {
        m_state += 0x9E3779B97F4A7C15ULL;
        quint64 z = m_state;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31);
    }
    /// 0 to count - 1; the slight bias of the remainder does no harm here.
    int below(int count) { return static_cast<int>(next() % static_cast<quint64>(count)); }
    /// low to high, both included.
    int between(int low, int high) { return low + below(high - low + 1); }
    bool chance(int percent) { return below(100) < percent; }

    template <typename T>
    T pick(std::initializer_list<T> values)
    {
        return values.begin()[below(static_cast<int>(values.size()))];
    }
    template <typename T>
    const T& pick(const std::vector<T>& values)
    {
        return values[static_cast<size_t>(below(static_cast<int>(values.size())))];
    }
    template <typename T>
    void shuffle(std::vector<T>& values)
    {
        for (size_t i = values.size(); i > 1; --i)
            std::swap(values[i - 1], values[static_cast<size_t>(below(static_cast<int>(i)))]);
    }

private:
    quint64 m_state;
};
