#pragma once

#include "planner/search/Index.h"
#include "planner/search/SlotWindow.h"

#include <limits>
#include <vector>

namespace planner
{

/// Bounds of a search for windows, all included.
struct WindowBox {
    static constexpr qint64 least = std::numeric_limits<qint32>::min();
    static constexpr qint64 largest = std::numeric_limits<qint32>::max();

    qint64 firstStart = least;
    qint64 lastStart = largest;
    qint64 firstEnd = least;
    qint64 lastEnd = largest;
    qint64 firstOrder = 0;
    qint64 lastOrder = std::numeric_limits<qint64>::max();
};

/// Finds, among the windows of later turns at a port, those in a box of starts and ends.
///
/// Windows are points in a tree of bounding boxes, so that a search costs what it finds and not
/// what the port holds, and a count or a look for the first one costs less than that.
class LaterWindows
{
public:
    struct Later {
        SlotWindow window;
        Turn turn;
        qint64 order; ///< of adding
    };

    /// Adds a window of the instance whose turn this is; turns must not fall.
    void add(Turn turn, const SlotWindow& window);

    /// Leaves out the windows up to this turn from now on; nothing may be added after it.
    void passOver(Turn turn);

    /// Whether a window was added that ends before it begins.
    bool hasInverted() const { return m_hasInverted; }

    quint32 count(const WindowBox& box);
    bool any(const WindowBox& box);

    /// The least order in the box; more than any order when it is empty.
    qint64 firstOrder(const WindowBox& box);

    /// The windows in the box by their order; lives until the next call.
    const std::vector<Later>& find(const WindowBox& box);

private:
    /// What lies below a knot of the tree.
    struct Knot {
        WindowBox bounds;
        quint32 count = 0;
    };
    /// A knot with its points, low to high - 1 in the order of the tree.
    struct Place {
        size_t knot;
        size_t low;
        size_t high;

        bool isLeaf() const { return high - low == 1; }
        size_t middle() const { return (low + high) / 2; }
        Place left() const { return {2 * knot, low, middle()}; }
        Place right() const { return {2 * knot + 1, middle(), high}; }
    };

    bool prepare();
    void build(const Place& place);
    void forget(const Place& place, size_t point);
    void gather(const Place& place);
    Place root() const { return {1, 0, m_points.size()}; }

    template <typename Visit>
    bool visit(const Place& place, const WindowBox& box, const Visit& visitor) const;

    std::vector<Later> m_windows; ///< in the order of adding
    bool m_hasInverted = false;
    size_t m_passed = 0;           ///< windows at the head of m_windows that are left out
    std::vector<Later> m_points;   ///< in the order of the tree; empty until it is needed
    std::vector<size_t> m_pointOf; ///< by position in m_windows
    std::vector<Knot> m_knots;     ///< a heap from 1 on
    std::vector<Later> m_found;
};

} // namespace planner
