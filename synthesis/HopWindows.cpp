#include "synthesis/HopWindows.h"

#include "planner/PreProcess.h"
#include "planner/search/PairKey.h"

#include <algorithm>
#include <map>

namespace synthesis
{

using namespace planner;

namespace
{

/// The rules let the window of a switch grow by this much behind that of the switch before it.
constexpr qint32 leastGrowth = 4;

/// The ports up to the one in question, in order.
using Ports = std::vector<quint32>;

/// Collects the windows of a port.
struct PortRecord {
    Ports way;
    SlotWindow shared; ///< what all branches allow, as long as they come the same way
    SlotWindow hull;   ///< what any of them allows
    bool isOneWay = true;
};

class WindowCollection
{
public:
    void add(const Ports& way, qint32 start, qint32 end)
    {
        SlotWindow window;
        window.start = start;
        window.end = end;
        const auto known = m_numbers.emplace(way.back(), m_records.size());
        if (known.second)
            m_records.push_back({way, window, window});
        PortRecord& record = m_records[known.first->second];
        record.isOneWay = record.isOneWay && record.way == way;
        record.shared.start = std::max(record.shared.start, start);
        record.shared.end = std::min(record.shared.end, end);
        record.hull.start = std::min(record.hull.start, start);
        record.hull.end = std::max(record.hull.end, end);
    }

    std::vector<PortWindow> take() const
    {
        std::vector<PortWindow> windows;
        for (const PortRecord& record : m_records) {
            const SlotWindow& window = record.isOneWay ? record.shared : record.hull;
            if (window.start <= window.end)
                windows.push_back({record.way.back(), window});
        }
        return windows;
    }

private:
    std::vector<PortRecord> m_records; ///< in order of first use
    std::map<quint32, std::size_t> m_numbers;
};

void addPath(WindowCollection& windows, const VirtualLinkPath& path, const SlotWindow& send,
             qint32 longestWait)
{
    Ports way{pairKey(path.talkerNodeID, path.talkerOutport)};
    windows.add(way, send.start, send.end);
    auto hopsAfter = static_cast<qint32>(path.bridges.size());
    qint32 earliest = send.start;
    qint32 latest = send.end;
    for (const BridgeHop& hop : path.bridges) {
        --hopsAfter;
        earliest =
            std::max(addSlots(earliest, 1),
                     subtractSlots(path.schedrxwin.start, multiplySlots(longestWait, hopsAfter)));
        latest =
            std::min(addSlots(latest, longestWait), subtractSlots(path.schedrxwin.end, hopsAfter));
        way.push_back(pairKey(hop.nodeID, hop.outport));
        windows.add(way, earliest, latest);
    }
}

} // namespace

std::vector<PortWindow> possibleHopWindows(const TTFlow& flow, quint16 switchBufferNum)
{
    TTFlow limited = flow;
    limitReceiveWindows(limited, switchBufferNum);
    SlotWindow send = sendWindowOf(limited.paths.front(), switchBufferNum);
    for (const VirtualLinkPath& path : limited.paths) {
        const SlotWindow allowed = sendWindowOf(path, switchBufferNum);
        send.start = std::max(send.start, allowed.start);
        send.end = std::min(send.end, allowed.end);
    }
    WindowCollection windows;
    for (const VirtualLinkPath& path : limited.paths)
        addPath(windows, path, send, std::max<qint32>(switchBufferNum, leastGrowth));
    return windows.take();
}

} // namespace synthesis
