#include "synthesis/SearchModel.h"

#include "synthesis/PatternDerivation.h"
#include "synthesis/WaitingChoices.h"

#include "planner/PreProcess.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <tuple>

namespace synthesis
{

using namespace planner;

namespace
{

/// Patterns that are tried for one flow; a path of five switches with four buffers each has 16.
constexpr std::size_t mostTries = 2048;
constexpr std::size_t mostPatterns = 256;
/// Reservations of all patterns of a flow; one that recurs with the cycle alone has many in each.
constexpr std::size_t mostReservations = 50000;

struct Range {
    qint64 first;
    qint64 last;
};

/// The send slots that keep a flow inside its windows with these delays.
Range sendSlots(const TTFlow& flow, const std::vector<qint32>& delays)
{
    Range range{std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max()};
    auto delay = delays.begin();
    for (const VirtualLinkPath& path : flow.paths) {
        const qint64 d = *delay++;
        range.first = std::max(
            {range.first, qint64(path.schedtxwin.start), qint64(path.schedrxwin.start) - d});
        range.last =
            std::min({range.last, qint64(path.schedtxwin.end), qint64(path.schedrxwin.end) - d});
    }
    return range;
}

std::size_t reservationsOf(const SearchFlow& flow)
{
    return flow.patterns.empty() ? 0
                                 : flow.patterns.size() * flow.patterns.front().reservations.size();
}

/// Whether no two of the reservations share a cell of a port on a ring.
bool areDisjoint(std::vector<Reservation> reservations, quint32 ring)
{
    const auto order = [](const Reservation& a, const Reservation& b) {
        return std::tie(a.port, a.start) < std::tie(b.port, b.start);
    };
    std::sort(reservations.begin(), reservations.end(), order);
    auto first = reservations.cbegin(); // of the port
    for (auto own = first; own != reservations.cend(); ++own) {
        if (own->port != first->port)
            first = own;
        const auto after = own + 1;
        const bool isLast = after == reservations.cend() || after->port != own->port;
        const quint64 next = isLast ? quint64(first->start) + ring : after->start;
        if (quint64(own->start) + own->length > next)
            return false;
    }
    return true;
}

} // namespace

SearchModel::SearchModel(const PlanningContext& context, const Repetition& repetition,
                         const std::vector<std::size_t>& places)
    : m_repetition(repetition),
      m_switchBufferNum(context.switchBufferNum)
{
    std::vector<const TTFlow*> all;
    for (const TTFlow& flow : context.flows)
        all.push_back(&flow);
    for (const std::size_t place : places) {
        SearchFlow added;
        added.place = place;
        added.flow = all[place];
        added.ring = repetition.ringLength(*added.flow);
        added.ringSlots = added.ring / std::gcd(added.ring, repetition.cellsPerSlot());
        m_flows.push_back(std::move(added));
        WaitingChoices choices(*m_flows.back().flow, context.switchBufferNum);
        std::vector<qint32> delays;
        if (choices.next(delays))
            addPattern(m_flows.back(), delays);
    }
}

quint32 SearchModel::numberOfPort(quint32 key)
{
    const auto known = m_numbers.emplace(key, static_cast<quint32>(m_ports.size()));
    if (known.second)
        m_ports.push_back(key);
    return known.first->second;
}

void SearchModel::addPattern(SearchFlow& flow, const std::vector<qint32>& delays)
{
    Range range = sendSlots(*flow.flow, delays);
    if (range.last >= 0 && range.first < 0) {
        // The documents hold slots without a sign.
        flow.isComplete = flow.isComplete && range.last + 1 >= flow.ringSlots;
        range.first = 0;
    }
    if (range.first > range.last)
        return;
    const auto windows = PatternDerivation(*flow.flow, m_switchBufferNum).windowsFor(delays);
    if (!windows)
        return;
    Pattern pattern;
    pattern.delays = delays;
    pattern.first = static_cast<qint32>(range.first);
    pattern.last = static_cast<qint32>(range.last);
    auto delay = delays.begin();
    for (const VirtualLinkPath& path : flow.flow->paths)
        pattern.waiting += *delay++ - static_cast<qint32>(path.bridges.size());
    if (reserve(flow, *windows, pattern))
        flow.patterns.push_back(std::move(pattern));
}

bool SearchModel::reserve(const SearchFlow& flow, const std::vector<PortWindow>& windows,
                          Pattern& pattern)
{
    const quint64 cells = m_repetition.cellsPerSlot();
    const quint32 count = m_repetition.transmissionsOnRing(*flow.flow);
    for (const PortWindow& window : windows) {
        const quint64 length = quint64(window.window.end - window.window.start + 1) * cells;
        if (length > flow.ring)
            return false;
        for (quint32 number = 0; number < count; ++number) {
            const quint64 slot =
                quint64(window.window.start) + quint64(number) * periodInSlots(*flow.flow);
            pattern.reservations.push_back({numberOfPort(window.port),
                                            static_cast<quint32>(slot * cells % flow.ring),
                                            static_cast<quint32>(length)});
        }
    }
    return areDisjoint(pattern.reservations, flow.ring);
}

std::vector<PortWindow> SearchModel::windowsOf(const SearchFlow& flow, const Pattern& pattern) const
{
    return *PatternDerivation(*flow.flow, m_switchBufferNum).windowsFor(pattern.delays);
}

bool SearchModel::addWaitingPatterns(std::size_t number)
{
    SearchFlow& flow = m_flows[number];
    if (flow.hasAllPatterns)
        return false;
    flow.hasAllPatterns = true;
    const std::size_t before = flow.patterns.size();
    WaitingChoices choices(*flow.flow, m_switchBufferNum);
    std::vector<qint32> delays;
    choices.next(delays); // has been tried
    std::size_t tries = 0;
    while (choices.next(delays)) {
        if (++tries > mostTries || flow.patterns.size() >= mostPatterns ||
            reservationsOf(flow) > mostReservations) {
            flow.isComplete = false;
            break;
        }
        addPattern(flow, delays);
    }
    return flow.patterns.size() > before;
}

} // namespace synthesis
