#include "planner/search/LaterWindows.h"

#include <algorithm>
#include <iterator>

namespace planner
{

static WindowBox boundsOf(const LaterWindows::Later& later)
{
    return {later.window.start, later.window.start, later.window.end,
            later.window.end,   later.order,        later.order};
}

static WindowBox united(const WindowBox& a, const WindowBox& b)
{
    return {std::min(a.firstStart, b.firstStart), std::max(a.lastStart, b.lastStart),
            std::min(a.firstEnd, b.firstEnd),     std::max(a.lastEnd, b.lastEnd),
            std::min(a.firstOrder, b.firstOrder), std::max(a.lastOrder, b.lastOrder)};
}

static bool meet(const WindowBox& a, const WindowBox& b)
{
    return a.firstStart <= b.lastStart && b.firstStart <= a.lastStart && a.firstEnd <= b.lastEnd &&
           b.firstEnd <= a.lastEnd && a.firstOrder <= b.lastOrder && b.firstOrder <= a.lastOrder;
}

static bool lieWithin(const WindowBox& inner, const WindowBox& outer)
{
    return outer.firstStart <= inner.firstStart && inner.lastStart <= outer.lastStart &&
           outer.firstEnd <= inner.firstEnd && inner.lastEnd <= outer.lastEnd &&
           outer.firstOrder <= inner.firstOrder && inner.lastOrder <= outer.lastOrder;
}

void LaterWindows::add(Turn turn, const SlotWindow& window)
{
    m_windows.push_back({window, turn, static_cast<qint64>(m_windows.size())});
    m_hasInverted = m_hasInverted || window.end < window.start;
}

void LaterWindows::passOver(Turn turn)
{
    while (m_passed < m_windows.size() && !(turn < m_windows[m_passed].turn)) {
        if (!m_points.empty())
            forget(root(), m_pointOf[m_passed]);
        ++m_passed;
    }
}

quint32 LaterWindows::count(const WindowBox& box)
{
    quint32 count = 0;
    if (prepare())
        visit(root(), box, [&](const Knot& knot, const Place&) {
            count += knot.count;
            return true;
        });
    return count;
}

bool LaterWindows::any(const WindowBox& box)
{
    bool found = false;
    if (prepare())
        visit(root(), box, [&](const Knot&, const Place&) {
            found = true;
            return false;
        });
    return found;
}

qint64 LaterWindows::firstOrder(const WindowBox& box)
{
    WindowBox earlier = box;
    if (prepare())
        visit(root(), box, [&](const Knot& knot, const Place&) {
            earlier.lastOrder = std::min(earlier.lastOrder, knot.bounds.firstOrder);
            return true;
        });
    return earlier.lastOrder;
}

const std::vector<LaterWindows::Later>& LaterWindows::find(const WindowBox& box)
{
    m_found.clear();
    if (prepare())
        visit(root(), box, [&](const Knot&, const Place& place) {
            std::copy_if(m_points.begin() + static_cast<std::ptrdiff_t>(place.low),
                         m_points.begin() + static_cast<std::ptrdiff_t>(place.high),
                         std::back_inserter(m_found), [this](const Later& later) {
                             return later.order >= static_cast<qint64>(m_passed);
                         });
            return true;
        });
    std::sort(m_found.begin(), m_found.end(),
              [](const Later& a, const Later& b) { return a.order < b.order; });
    return m_found;
}

// Windows of one slot yield to none as a rule, so a port that is resolved for the second time often
// needs no tree.
bool LaterWindows::prepare()
{
    if (m_passed == m_windows.size())
        return false;
    if (!m_points.empty())
        return true;
    m_points.assign(m_windows.begin() + static_cast<std::ptrdiff_t>(m_passed), m_windows.end());
    m_knots.resize(4 * m_points.size());
    build(root());
    m_pointOf.resize(m_windows.size());
    for (size_t point = 0; point < m_points.size(); ++point)
        m_pointOf[static_cast<size_t>(m_points[point].order)] = point;
    return true;
}

// Halves the points along the side on which they lie furthest apart.
void LaterWindows::build(const Place& place)
{
    if (place.isLeaf()) {
        m_knots[place.knot] = {boundsOf(m_points[place.low]), 1};
        return;
    }
    const auto first = m_points.begin() + static_cast<std::ptrdiff_t>(place.low);
    const auto last = m_points.begin() + static_cast<std::ptrdiff_t>(place.high);
    WindowBox bounds = boundsOf(*first);
    for (auto point = first; point != last; ++point)
        bounds = united(bounds, boundsOf(*point));
    const bool byStart = bounds.lastStart - bounds.firstStart > bounds.lastEnd - bounds.firstEnd;
    const auto middle = m_points.begin() + static_cast<std::ptrdiff_t>(place.middle());
    std::nth_element(first, middle, last, [byStart](const Later& a, const Later& b) {
        const qint32 one = byStart ? a.window.start : a.window.end;
        const qint32 other = byStart ? b.window.start : b.window.end;
        return one != other ? one < other : a.order < b.order;
    });
    build(place.left());
    build(place.right());
    gather(place);
}

void LaterWindows::forget(const Place& place, size_t point)
{
    if (place.isLeaf()) {
        m_knots[place.knot].count = 0;
        return;
    }
    forget(point < place.middle() ? place.left() : place.right(), point);
    gather(place);
}

void LaterWindows::gather(const Place& place)
{
    const Knot& left = m_knots[place.left().knot];
    const Knot& right = m_knots[place.right().knot];
    Knot& knot = m_knots[place.knot];
    knot.count = left.count + right.count;
    if (left.count > 0 && right.count > 0)
        knot.bounds = united(left.bounds, right.bounds);
    else
        knot.bounds = left.count > 0 ? left.bounds : right.bounds;
}

// Calls visitor(knot, place) for knots that lie in the box, and goes on until it answers false.
template <typename Visit>
bool LaterWindows::visit(const Place& place, const WindowBox& box, const Visit& visitor) const
{
    const Knot& knot = m_knots[place.knot];
    if (knot.count == 0 || !meet(knot.bounds, box))
        return true;
    if (lieWithin(knot.bounds, box))
        return visitor(knot, place);
    return visit(place.left(), box, visitor) && visit(place.right(), box, visitor);
}

} // namespace planner
