#include "planner/search/WindowOverlap.h"

#include "planner/search/WindowSort.h"

namespace planner
{

quint32 countWindowOverlaps(std::vector<SlotWindow>& windows)
{
    sortWindowsByStart(windows);
    quint32 count = 0;
    for (size_t i = 1; i < windows.size(); ++i) {
        if (windows[i].start <= windows[i - 1].end)
            ++count;
    }
    return count;
}

} // namespace planner
