#pragma once

#include "planner/search/Index.h"
#include "planner/search/SlotWindow.h"

#include <vector>

namespace planner
{

/// Finds, among the windows of later instances at a port, those that an earlier one yields to.
///
/// It yields to a window that begins no later than its own, ends before it ends, and either reaches
/// its first slot or begins with it. The other windows of the port are not looked at, so that a
/// search costs what it finds and not what the port holds.
class LaterWindows
{
public:
    /// Adds a window of the instance whose turn this is; turns must not fall.
    void add(Turn turn, const SlotWindow& window);

    /// The windows that the instance of this turn yields to, of instances behind it, in the order
    /// of adding.
    ///
    /// Turns must not fall from call to call, and nothing may be added after the first call. What
    /// is returned lives until the next call.
    const std::vector<SlotWindow>& find(Turn turn, const SlotWindow& window);

private:
    struct Later {
        SlotWindow window;
        Turn turn;
        size_t order = 0; ///< of adding
    };

    void prepareSearch();
    void forgetUpTo(Turn turn);
    void forget(size_t leaf);
    void findReaching(const SlotWindow& window);
    void collect(size_t knot, size_t low, size_t high);
    void findInverted(Turn turn, const SlotWindow& window);
    size_t firstLeafEndingFrom(qint32 slot) const;

    /// What is searched for: leaves first to last - 1 with a window that begins by a slot.
    struct Search {
        size_t first = 0;
        size_t last = 0;
        qint32 latestStart = 0;
    };

    std::vector<Later> m_proper;      ///< in the order of adding
    std::vector<Later> m_inverted;    ///< windows that end before they begin
    bool m_invertedAreSorted = false; ///< by start
    std::vector<size_t> m_byEnd;      ///< leaves: positions in m_proper, by end
    std::vector<size_t> m_leafOf;     ///< by position in m_proper
    std::vector<qint64> m_earliest; ///< a heap over the leaves: the earliest start below each knot
    size_t m_forgotten = 0; ///< windows at the head of m_proper that are not searched any more
    Search m_search;
    std::vector<Later> m_hits;
    std::vector<SlotWindow> m_found;
};

} // namespace planner
