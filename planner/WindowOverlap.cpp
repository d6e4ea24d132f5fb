#include "planner/WindowOverlap.h"

#include "planner/WindowSort.h"

namespace planner
{

std::vector<SlotWindow> collectPortWindows(const NodeOutport& port, const WindowBoard& board)
{
    std::vector<SlotWindow> windows;
    windows.reserve(port.instances.size());
    for (const PortInstance& entry : port.instances)
        windows.push_back(board.stop(entry.stop).window);
    return windows;
}

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
