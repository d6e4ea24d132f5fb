#include "tests/synthesis/ModelOfNetwork.h"

#include <numeric>
#include <set>

using namespace synthesis;

static std::vector<std::size_t> placesOf(const planner::PlanningContext& context)
{
    std::vector<std::size_t> places(context.flows.size());
    std::iota(places.begin(), places.end(), std::size_t(0));
    return places;
}

ModelOfNetwork::ModelOfNetwork(const NetworkDraft& draft)
    : network(parsed(documentOf(draft))),
      repetition(network.network.context),
      places(placesOf(network.network.context)),
      model(network.network.context, repetition, places)
{
}

QString sharedCell(const SearchModel& model, const std::vector<Placement>& placements)
{
    quint64 ring = 1;
    for (const SearchFlow& flow : model.flows())
        ring = std::lcm(ring, quint64(flow.ring));
    std::set<std::pair<quint32, quint64>> taken;
    for (std::size_t number = 0; number < placements.size(); ++number) {
        if (!placements[number].isSet())
            continue;
        const SearchFlow& flow = model.flows()[number];
        for (const Reservation& own : flow.patterns[placements[number].pattern].reservations) {
            const quint64 first = model.cellOf(flow, own, placements[number].slot);
            for (quint64 turn = 0; turn < ring; turn += flow.ring) {
                for (quint32 i = 0; i < own.length; ++i) {
                    if (!taken.emplace(own.port, (turn + first + i) % ring).second)
                        return QStringLiteral("flow %1 on port %2").arg(number).arg(own.port);
                }
            }
        }
    }
    return QString();
}
