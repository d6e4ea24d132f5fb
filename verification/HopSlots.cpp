#include "verification/HopSlots.h"

namespace verification
{

namespace
{

constexpr int noPlace = -1;

/// A listener among senders in one table of places.
constexpr int listenerPort = -2;

bool isRowOf(const ScheduledHop& row, const FlowHop& hop)
{
    return row.node == hop.node && row.inport == hop.inport && row.outport == hop.outport;
}

bool isRowOf(const ScheduledListener& row, const FlowListener& listener)
{
    return row.node == listener.node && row.inport == listener.inport;
}

} // namespace

// A document has a row for the talker of the first path and for each switch, as the paths meet
// them; the talker's other ports have none.
HopSlots::HopSlots(const NetworkFlow& flow) : m_flow(&flow)
{
    for (size_t i = 0; i < flow.hops.size(); ++i) {
        if (i == 0 || !flow.hops[i].isTalker())
            m_expectedHops.push_back(static_cast<int>(i));
    }
}

void HopSlots::fill(const Schedule& schedule, const ScheduledTransmission& transmission)
{
    m_hops.assign(m_flow->hops.size(), Entry());
    m_arrivals.assign(m_flow->listeners.size(), Arrival());
    m_strayHops.clear();
    m_strayListeners.clear();
    fillHops(schedule, transmission);
    fillListeners(schedule, transmission);
    implyTalkers();
}

int HopSlots::placeOf(const ScheduledHop& hop, size_t row) const
{
    if (row < m_expectedHops.size()) {
        const int expected = m_expectedHops[row];
        if (isRowOf(hop, m_flow->hops[static_cast<size_t>(expected)]))
            return expected;
    }
    if (m_places.empty()) {
        for (size_t i = 0; i < m_flow->hops.size(); ++i) {
            const FlowHop& own = m_flow->hops[i];
            m_places.emplace(std::make_tuple(own.node, own.inport, own.outport), int(i));
        }
        for (size_t i = 0; i < m_flow->listeners.size(); ++i) {
            const FlowListener& own = m_flow->listeners[i];
            m_places.emplace(std::make_tuple(own.node, own.inport, listenerPort), int(i));
        }
    }
    const auto found = m_places.find({hop.node, hop.inport, hop.outport});
    return found != m_places.end() ? found->second : noPlace;
}

int HopSlots::placeOf(const ScheduledListener& listener, size_t row) const
{
    if (row < m_flow->listeners.size() && isRowOf(listener, m_flow->listeners[row]))
        return static_cast<int>(row);
    ScheduledHop key;
    key.node = listener.node;
    key.inport = listener.inport;
    key.outport = listenerPort;
    return placeOf(key, m_expectedHops.size());
}

void HopSlots::fillHops(const Schedule& schedule, const ScheduledTransmission& transmission)
{
    // Without the talker's row every other one stands a place earlier.
    const size_t lead = transmission.hasTalker ? 0 : 1;
    for (size_t i = 0; i < transmission.hopCount; ++i) {
        const ScheduledHop& hop = schedule.hops[transmission.firstHop + i];
        const int place = placeOf(hop, i + lead);
        if (place == noPlace || m_hops[static_cast<size_t>(place)].known) {
            m_strayHops.push_back(&hop);
            continue;
        }
        Entry& entry = m_hops[static_cast<size_t>(place)];
        entry.known = true;
        entry.receive = hop.receiveSlot;
        entry.send = hop.sendSlot;
    }
}

void HopSlots::fillListeners(const Schedule& schedule, const ScheduledTransmission& transmission)
{
    for (size_t i = 0; i < transmission.listenerCount; ++i) {
        const ScheduledListener& listener = schedule.listeners[transmission.firstListener + i];
        const int place = placeOf(listener, i);
        if (place == noPlace || m_arrivals[static_cast<size_t>(place)].known)
            m_strayListeners.push_back(&listener);
        else
            m_arrivals[static_cast<size_t>(place)] = {true, listener.slot};
    }
}

// The first switch behind a talker's other port says when it is sent there.
void HopSlots::implyTalkers()
{
    for (const FlowStep& step : m_flow->steps) {
        const auto from = static_cast<size_t>(step.from);
        const Entry& next = m_hops[static_cast<size_t>(step.to)];
        if (from > 0 && m_flow->hops[from].isTalker() && !m_hops[from].known && next.known) {
            m_hops[from].known = true;
            m_hops[from].implied = true;
            m_hops[from].send = next.receive;
        }
    }
}

} // namespace verification
