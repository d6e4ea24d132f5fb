#pragma once

#include "synthesis/WindowSynthesis.h"

namespace synthesis
{

/// Counts the steps of a search, tells the caller of them and learns whether to go on.
class SearchBudget
{
public:
    /// Refers to the options.
    SearchBudget(const Options& options, std::size_t total) : m_options(options)
    {
        m_progress.total = total;
    }

    /// Takes steps; false from the moment they are spent or the caller has stopped the search.
    bool spend(quint64 steps)
    {
        m_progress.steps += steps;
        if (m_progress.steps >= m_nextReport)
            report();
        return mayGoOn();
    }

    bool mayGoOn() const { return !m_isStopped && m_progress.steps < m_options.steps; }
    bool isStopped() const { return m_isStopped; }
    quint64 steps() const { return m_progress.steps; }
    quint64 left() const { return mayGoOn() ? m_options.steps - m_progress.steps : 0; }

    void setPlaced(std::size_t placed) { m_progress.placed = placed; }

    /// Tells the caller where the search is.
    void report()
    {
        m_nextReport = m_progress.steps + stepsBetweenReports;
        if (!m_isStopped && m_options.progress && !m_options.progress(m_progress))
            m_isStopped = true;
    }

private:
    /// A few milliseconds.
    static constexpr quint64 stepsBetweenReports = 200000;

    const Options& m_options;
    Progress m_progress;
    quint64 m_nextReport = 0;
    bool m_isStopped = false;
};

} // namespace synthesis
