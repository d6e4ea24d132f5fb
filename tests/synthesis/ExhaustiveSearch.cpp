#include "tests/synthesis/ExhaustiveSearch.h"

#include "planner/PreProcess.h"

#include <algorithm>
#include <functional>
#include <map>
#include <numeric>

using namespace planner;

namespace
{

using Port = std::pair<int, int>; ///< node and outport

/// A time on a port, microseconds from the start of the cycle; may reach into the next one.
struct Use {
    Port port;
    qint64 begin;
    qint64 end; ///< not included
};

/// All uses of one way to plan a flow.
using Option = std::vector<Use>;

bool meet(const Use& a, const Use& b, qint64 cycle)
{
    if (a.port != b.port)
        return false;
    const qint64 turns =
        (std::abs(a.begin - b.begin) + (a.end - a.begin) + (b.end - b.begin)) / cycle;
    for (qint64 turn = -turns - 1; turn <= turns + 1; ++turn) {
        if (a.begin < b.end + turn * cycle && b.begin + turn * cycle < a.end)
            return true;
    }
    return false;
}

bool meet(const Option& a, const Option& b, qint64 cycle)
{
    return std::any_of(a.begin(), a.end(), [&](const Use& one) {
        return std::any_of(b.begin(), b.end(),
                           [&](const Use& other) { return meet(one, other, cycle); });
    });
}

/// Whether no use meets another one, or itself a cycle later.
bool isSound(const Option& option, qint64 cycle)
{
    for (std::size_t i = 0; i < option.size(); ++i) {
        if (option[i].end - option[i].begin > cycle)
            return false;
        for (std::size_t j = i + 1; j < option.size(); ++j) {
            if (meet(option[i], option[j], cycle))
                return false;
        }
    }
    return true;
}

/// The uses of all transmissions from those of the first one in slots.
Option repeated(const std::vector<std::pair<Port, SlotWindow>>& windows, const TTFlow& flow,
                qint64 cycle)
{
    Option option;
    for (qint64 number = 0; number < cycle / flow.period; ++number) {
        const qint64 shift = number * (flow.period / slotLength_us);
        for (const auto& window : windows)
            option.push_back({window.first, (window.second.start + shift) * slotLength_us,
                              (window.second.end + shift + 1) * slotLength_us});
    }
    return option;
}

/// Chooses an option for each flow; backtracks over all of them.
class OptionChoice
{
public:
    OptionChoice(std::vector<std::vector<Option>> options, qint64 cycle)
        : m_options(std::move(options)),
          m_cycle(cycle)
    {
        std::sort(m_options.begin(), m_options.end(),
                  [](const auto& a, const auto& b) { return a.size() < b.size(); });
    }

    bool exists(std::size_t flow = 0)
    {
        if (flow == m_options.size())
            return true;
        for (const Option& option : m_options[flow]) {
            const bool isFree =
                std::none_of(m_chosen.begin(), m_chosen.end(),
                             [&](const Option* other) { return meet(option, *other, m_cycle); });
            if (!isFree)
                continue;
            m_chosen.push_back(&option);
            const bool found = exists(flow + 1);
            m_chosen.pop_back();
            if (found)
                return true;
        }
        return false;
    }

private:
    std::vector<std::vector<Option>> m_options;
    qint64 m_cycle;
    std::vector<const Option*> m_chosen;
};

SlotWindow slotWindow(qint32 start, qint32 end)
{
    SlotWindow window;
    window.start = start;
    window.end = end;
    return window;
}

int buffersOf(const BridgeHop& hop)
{
    return hop.buffernum;
}

/// Calls visit with every choice of one value out of each range.
void forEachChoice(const std::vector<SlotWindow>& ranges,
                   const std::function<void(const std::vector<qint32>&)>& visit,
                   std::vector<qint32>& chosen)
{
    if (chosen.size() == ranges.size()) {
        visit(chosen);
        return;
    }
    const SlotWindow range = ranges[chosen.size()];
    for (qint32 value = range.start; value <= range.end; ++value) {
        chosen.push_back(value);
        forEachChoice(ranges, visit, chosen);
        chosen.pop_back();
    }
}

/// The windows that the first stage derives when the flow is narrowed to these slots; none when it
/// refuses them or they are not in order.
std::vector<std::pair<Port, SlotWindow>> derived(PlanningContext context)
{
    const TTFlow asked = context.flows.front();
    if (checkTimeWindows(context) != code::ok)
        return {};
    const TTFlow& flow = context.flows.front();
    std::map<Port, SlotWindow> bridges;
    std::vector<std::pair<Port, SlotWindow>> windows;
    auto given = asked.paths.begin();
    for (const VirtualLinkPath& path : flow.paths) {
        if (!(path.schedtxwin == given->schedtxwin) || !(path.schedrxwin == given->schedrxwin))
            return {};
        ++given;
        const Port talker{path.talkerNodeID, path.talkerOutport};
        if (windows.empty() || windows.front().first != talker)
            windows.insert(windows.begin(), {talker, path.schedtxwin});
        qint32 before = path.schedtxwin.start;
        for (const BridgeHop& hop : path.bridges) {
            const SlotWindow& window = hop.schedtxwin;
            if (window.start <= before || window.start > before + buffersOf(hop) ||
                window.end < window.start)
                return {};
            before = window.start;
            const auto known = bridges.emplace(Port{hop.nodeID, hop.outport}, window);
            if (known.first->second.start != window.start)
                return {};
            known.first->second.end = std::max(known.first->second.end, window.end);
        }
        if (before != path.schedrxwin.start)
            return {};
    }
    windows.insert(windows.end(), bridges.begin(), bridges.end());
    return windows;
}

std::vector<Option> optionsWithoutOverlap(const PlanningContext& context, const TTFlow& flow,
                                          qint64 cycle)
{
    PlanningContext alone;
    alone.switchBufferNum = context.switchBufferNum;
    std::vector<SlotWindow> ranges{flow.paths.front().schedtxwin};
    for (const VirtualLinkPath& path : flow.paths)
        ranges.push_back(path.schedrxwin);
    std::vector<Option> options;
    std::vector<qint32> chosen;
    forEachChoice(
        ranges,
        [&](const std::vector<qint32>& values) {
            alone.flows = {flow};
            std::size_t number = 1;
            for (VirtualLinkPath& path : alone.flows.front().paths) {
                path.schedtxwin = slotWindow(values[0], values[0]);
                path.schedrxwin = slotWindow(values[number], values[number]);
                ++number;
            }
            const auto windows = derived(alone);
            const Option option = repeated(windows, flow, cycle);
            if (!windows.empty() && isSound(option, cycle))
                options.push_back(option);
        },
        chosen);
    return options;
}

/// The slots of the senders of a flow, shared ones once, or nothing when branches disagree.
class AnySlots
{
public:
    AnySlots(const TTFlow& flow, qint64 cycle, std::vector<Option>& options)
        : m_flow(flow),
          m_cycle(cycle),
          m_options(options)
    {
    }

    void list()
    {
        const VirtualLinkPath& first = m_flow.paths.front();
        for (qint32 t = first.schedtxwin.start; t <= first.schedtxwin.end; ++t) {
            m_slots.clear();
            for (const VirtualLinkPath& path : m_flow.paths)
                m_slots[{path.talkerNodeID, path.talkerOutport}] = t;
            walk(m_flow.paths.begin(), first.bridges.begin(), t);
        }
    }

private:
    using PathIterator = std::list<VirtualLinkPath>::const_iterator;
    using HopIterator = std::list<BridgeHop>::const_iterator;

    void walk(PathIterator path, HopIterator hop, qint32 before)
    {
        if (hop == path->bridges.end()) {
            if (before < path->schedrxwin.start || before > path->schedrxwin.end)
                return;
            const qint32 t = m_slots.at({path->talkerNodeID, path->talkerOutport});
            if (++path == m_flow.paths.end())
                keep();
            else
                walk(path, path->bridges.begin(), t);
            return;
        }
        const Port port{hop->nodeID, hop->outport};
        const auto known = m_slots.find(port);
        for (qint32 slot = before + 1; slot <= before + buffersOf(*hop); ++slot) {
            if (known != m_slots.end() && known->second != slot)
                continue;
            if (known != m_slots.end()) {
                walk(path, std::next(hop), slot);
                continue;
            }
            m_slots[port] = slot;
            walk(path, std::next(hop), slot);
            m_slots.erase(port);
        }
    }

    void keep()
    {
        std::vector<std::pair<Port, SlotWindow>> windows;
        for (const auto& slot : m_slots)
            windows.push_back({slot.first, slotWindow(slot.second, slot.second)});
        const Option option = repeated(windows, m_flow, m_cycle);
        if (isSound(option, m_cycle))
            m_options.push_back(option);
    }

    const TTFlow& m_flow;
    qint64 m_cycle;
    std::vector<Option>& m_options;
    std::map<Port, qint32> m_slots;
};

qint64 cycleOf(const PlanningContext& context)
{
    qint64 cycle = 1;
    for (const TTFlow& flow : context.flows)
        cycle = std::lcm(cycle, qint64(flow.period));
    return cycle;
}

} // namespace

bool hasPlanWithoutOverlap(const PlanningContext& context)
{
    const qint64 cycle = cycleOf(context);
    std::vector<std::vector<Option>> options;
    for (const TTFlow& flow : context.flows)
        options.push_back(optionsWithoutOverlap(context, flow, cycle));
    return OptionChoice(std::move(options), cycle).exists();
}

bool hasAnyPlan(const PlanningContext& context, const std::vector<std::size_t>& places)
{
    const qint64 cycle = cycleOf(context);
    std::vector<std::vector<Option>> options;
    for (const std::size_t place : places) {
        options.emplace_back();
        const auto flow = std::next(context.flows.begin(), static_cast<std::ptrdiff_t>(place));
        AnySlots(*flow, cycle, options.back()).list();
    }
    return OptionChoice(std::move(options), cycle).exists();
}
