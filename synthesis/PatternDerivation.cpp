#include "synthesis/PatternDerivation.h"

#include "planner/PreProcess.h"
#include "planner/search/PairKey.h"

#include <algorithm>

namespace synthesis
{

using namespace planner;

static SlotWindow oneSlot(qint32 slot)
{
    SlotWindow window;
    window.start = slot;
    window.end = slot;
    return window;
}

/// The windows of a flow narrowed to slots; its bridges are not derived yet.
static TTFlow narrowed(const TTFlow& flow, const std::vector<qint32>& delays)
{
    TTFlow copy = flow;
    auto delay = delays.begin();
    for (VirtualLinkPath& path : copy.paths) {
        path.schedtxwin = oneSlot(0);
        path.schedrxwin = oneSlot(*delay++);
    }
    return copy;
}

bool PatternDerivation::goesForward(const VirtualLinkPath& path) const
{
    qint32 previous = 0;
    for (const BridgeHop& hop : path.bridges) {
        const SlotWindow& window = hop.schedtxwin;
        if (window.start <= previous || window.end < window.start ||
            window.start - previous > longestWait(hop, m_switchBufferNum))
            return false;
        previous = window.start;
    }
    // The last window never reaches beyond the slot of arrival and begins no earlier.
    return true;
}

/// Takes up a window; false when branches would pass the port in different slots.
static bool join(std::vector<PortWindow>& windows, const PortWindow& added)
{
    const auto same =
        std::find_if(windows.begin(), windows.end(),
                     [&added](const PortWindow& known) { return known.port == added.port; });
    if (same == windows.end()) {
        windows.push_back(added);
        return true;
    }
    same->window.end = std::max(same->window.end, added.window.end);
    return same->window.start == added.window.start;
}

std::optional<std::vector<PortWindow>>
PatternDerivation::windowsFor(const std::vector<qint32>& delays) const
{
    TTFlow flow = narrowed(m_flow, delays);
    deriveBridgeWindows(flow, m_switchBufferNum);
    std::vector<PortWindow> talkers;
    std::vector<PortWindow> bridges;
    for (const VirtualLinkPath& path : flow.paths) {
        if (!goesForward(path))
            return {};
        join(talkers, {pairKey(path.talkerNodeID, path.talkerOutport), path.schedtxwin});
        for (const BridgeHop& hop : path.bridges) {
            if (!join(bridges, {pairKey(hop.nodeID, hop.outport), hop.schedtxwin}))
                return {};
        }
    }
    talkers.insert(talkers.end(), bridges.begin(), bridges.end());
    return talkers;
}

} // namespace synthesis
