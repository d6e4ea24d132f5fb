#include "GateLists.h"

#include <algorithm>
#include <map>

namespace
{

/// Microseconds from begin to end, end not included.
struct Interval {
    qint64 begin_us = 0;
    qint64 end_us = 0;
};

bool operator<(const Interval& a, const Interval& b)
{
    return a.begin_us < b.begin_us;
}

using PortNumbers = std::pair<int, int>; ///< nodeID and port

/// Appends the slot's time within the cycle, in two parts when it reaches over the end.
void appendSlot(std::vector<Interval>& intervals, qint64 slot,
                const verification::Schedule& schedule)
{
    const qint64 cycle = schedule.cycle_us;
    const qint64 begin = ((slot * schedule.slotLength_us) % cycle + cycle) % cycle;
    const qint64 end = begin + schedule.slotLength_us;
    intervals.push_back({begin, std::min(end, cycle)});
    if (end > cycle)
        intervals.push_back({0, std::min(end - cycle, cycle)});
}

std::map<PortNumbers, std::vector<Interval>> sendingTimes(const verification::Schedule& schedule)
{
    std::map<PortNumbers, std::vector<Interval>> times;
    for (const verification::ScheduledHop& hop : schedule.hops)
        appendSlot(times[{hop.node, hop.outport}], hop.sendSlot, schedule);
    for (auto& [port, intervals] : times)
        std::sort(intervals.begin(), intervals.end());
    return times;
}

/// Appends an interval, in several entries when one cannot hold it; nothing when it is empty.
void appendEntries(GateList& list, bool isOpen, qint64 duration_us)
{
    for (qint64 rest = duration_us * 1000; rest > 0; rest -= longestInterval_ns)
        list.entries.push_back({isOpen, std::min(rest, longestInterval_ns)});
}

void fillCycle(GateList& list, const std::vector<Interval>& intervals, qint64 cycle_us)
{
    qint64 now = 0;
    for (size_t i = 0; i < intervals.size();) {
        const qint64 begin = intervals[i].begin_us;
        qint64 end = intervals[i].end_us;
        for (++i; i < intervals.size() && intervals[i].begin_us <= end; ++i)
            end = std::max(end, intervals[i].end_us);
        appendEntries(list, false, begin - now);
        appendEntries(list, true, end - begin);
        now = end;
    }
    appendEntries(list, false, cycle_us - now);
}

} // namespace

std::vector<GateList> gateListsOf(const verification::Schedule& schedule)
{
    std::vector<GateList> lists;
    if (schedule.cycle_us <= 0)
        return lists; // a plan without flows
    for (const auto& [port, intervals] : sendingTimes(schedule)) {
        GateList list;
        list.node = port.first;
        list.port = port.second;
        fillCycle(list, intervals, schedule.cycle_us);
        lists.push_back(std::move(list));
    }
    return lists;
}
