#include "planner/search/LaterWindows.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <numeric>

namespace planner
{

/// Start of a window that is not there any more.
static constexpr qint64 never = std::numeric_limits<qint64>::max();

void LaterWindows::add(Turn turn, const SlotWindow& window)
{
    std::vector<Later>& windows = window.end < window.start ? m_inverted : m_proper;
    windows.push_back({window, turn, m_proper.size() + m_inverted.size()});
}

const std::vector<SlotWindow>& LaterWindows::find(Turn turn, const SlotWindow& window)
{
    m_hits.clear();
    m_found.clear();
    if (window.start < window.end) {
        prepareSearch();
        forgetUpTo(turn);
        findReaching(window);
    }
    findInverted(turn, window);
    std::sort(m_hits.begin(), m_hits.end(),
              [](const Later& a, const Later& b) { return a.order < b.order; });
    for (const Later& hit : m_hits)
        m_found.push_back(hit.window);
    return m_found;
}

// A window of one slot yields to none that merely reaches it, so a port that is resolved for the
// second time often needs no search.
void LaterWindows::prepareSearch()
{
    if (!m_earliest.empty() || m_proper.empty())
        return;
    const size_t count = m_proper.size();
    m_byEnd.resize(count);
    std::iota(m_byEnd.begin(), m_byEnd.end(), size_t(0));
    std::sort(m_byEnd.begin(), m_byEnd.end(), [this](size_t a, size_t b) {
        return m_proper[a].window.end < m_proper[b].window.end;
    });
    size_t leaves = 1;
    while (leaves < count)
        leaves *= 2;
    m_leafOf.resize(count);
    m_earliest.assign(2 * leaves, never);
    for (size_t leaf = 0; leaf < count; ++leaf) {
        m_leafOf[m_byEnd[leaf]] = leaf;
        m_earliest[leaves + leaf] = m_proper[m_byEnd[leaf]].window.start;
    }
    for (size_t knot = leaves; knot-- > 1;)
        m_earliest[knot] = std::min(m_earliest[2 * knot], m_earliest[2 * knot + 1]);
}

void LaterWindows::forgetUpTo(Turn turn)
{
    while (m_forgotten < m_proper.size() && !(turn < m_proper[m_forgotten].turn))
        forget(m_leafOf[m_forgotten++]);
}

void LaterWindows::forget(size_t leaf)
{
    size_t knot = m_earliest.size() / 2 + leaf;
    m_earliest[knot] = never;
    for (knot /= 2; knot > 0; knot /= 2)
        m_earliest[knot] = std::min(m_earliest[2 * knot], m_earliest[2 * knot + 1]);
}

void LaterWindows::findReaching(const SlotWindow& window)
{
    m_search = {firstLeafEndingFrom(window.start), firstLeafEndingFrom(window.end), window.start};
    if (!m_earliest.empty())
        collect(1, 0, m_earliest.size() / 2);
}

// Goes down to the leaves low to high - 1 of a knot as long as one of them can be a hit.
void LaterWindows::collect(size_t knot, size_t low, size_t high)
{
    if (high <= m_search.first || m_search.last <= low || m_earliest[knot] > m_search.latestStart)
        return;
    if (high - low == 1) {
        m_hits.push_back(m_proper[m_byEnd[low]]);
        return;
    }
    const size_t middle = (low + high) / 2;
    collect(2 * knot, low, middle);
    collect(2 * knot + 1, middle, high);
}

// These reach nothing, and count only where they begin with the window.
void LaterWindows::findInverted(Turn turn, const SlotWindow& window)
{
    const auto startsEarlier = [](const Later& a, const Later& b) {
        return a.window.start < b.window.start;
    };
    if (!m_invertedAreSorted)
        std::stable_sort(m_inverted.begin(), m_inverted.end(), startsEarlier);
    m_invertedAreSorted = true;
    const auto same = std::equal_range(m_inverted.begin(), m_inverted.end(),
                                       Later{window, Turn(), 0}, startsEarlier);
    std::copy_if(same.first, same.second, std::back_inserter(m_hits), [&](const Later& later) {
        return turn < later.turn && later.window.end < window.end;
    });
}

size_t LaterWindows::firstLeafEndingFrom(qint32 slot) const
{
    const auto found = std::lower_bound(
        m_byEnd.begin(), m_byEnd.end(), slot,
        [this](size_t position, qint32 bound) { return m_proper[position].window.end < bound; });
    return static_cast<size_t>(found - m_byEnd.begin());
}

} // namespace planner
