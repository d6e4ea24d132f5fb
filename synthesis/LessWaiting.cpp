#include "synthesis/LessWaiting.h"

#include <algorithm>

namespace synthesis
{

namespace
{

/// A free place with less waiting than the flow has; not set without one.
Placement betterPlace(const PortTable& table, const SearchFlow& flow, qint64 waiting)
{
    std::vector<quint64> costs;
    for (quint32 number = 0; number < flow.patterns.size(); ++number) {
        const Pattern& pattern = flow.patterns[number];
        if (pattern.waiting >= waiting)
            break;
        costs.assign(pattern.choices(flow.ringSlots), 0);
        table.addCosts(flow, pattern, costs);
        const auto free = std::find(costs.begin(), costs.end(), 0U);
        if (free != costs.end())
            return {number, pattern.first + static_cast<qint32>(free - costs.begin())};
    }
    return {};
}

bool improveOnce(const SearchModel& model, PortTable& table, std::vector<Placement>& placements)
{
    bool improved = false;
    for (quint32 number = 0; number < placements.size(); ++number) {
        const SearchFlow& flow = model.flows()[number];
        const Placement old = placements[number];
        const qint64 waiting = flow.patterns[old.pattern].waiting;
        table.release(number, flow.patterns[old.pattern], 1);
        const Placement better = betterPlace(table, flow, waiting);
        placements[number] = better.isSet() ? better : old;
        const Placement& now = placements[number];
        table.occupy(number, flow.patterns[now.pattern], now.slot, 1);
        improved = improved || better.isSet();
    }
    return improved;
}

} // namespace

std::vector<Placement> withLessWaiting(const SearchModel& model, std::vector<Placement> placements)
{
    PortTable table(model);
    for (quint32 number = 0; number < placements.size(); ++number) {
        const Placement& one = placements[number];
        table.occupy(number, model.flows()[number].patterns[one.pattern], one.slot, 1);
    }
    while (improveOnce(model, table, placements)) {
    }
    return placements;
}

} // namespace synthesis
