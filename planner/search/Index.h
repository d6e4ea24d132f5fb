#pragma once

#include <QtGlobal>

namespace planner
{

/// The number of one thing of a kind, from 0; numbers of two kinds do not mix.
template <typename Kind>
class Index
{
public:
    constexpr Index() = default;
    constexpr explicit Index(quint32 value) : m_value(value) {}

    /// The number of what is appended next to a list of this kind.
    template <typename List>
    static Index behind(const List& list)
    {
        return Index(static_cast<quint32>(list.size()));
    }

    constexpr quint32 value() const { return m_value; }
    constexpr Index plus(quint32 steps) const { return Index(m_value + steps); }

    Index& operator++()
    {
        ++m_value;
        return *this;
    }

    friend constexpr bool operator==(Index a, Index b) { return a.m_value == b.m_value; }
    friend constexpr bool operator!=(Index a, Index b) { return a.m_value != b.m_value; }
    friend constexpr bool operator<(Index a, Index b) { return a.m_value < b.m_value; }

private:
    quint32 m_value = 0;
};

/// An instance's turn at a port: its place in the port's list.
using Turn = Index<struct TurnKind>;

} // namespace planner
