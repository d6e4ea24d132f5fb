#include "verification/InstanceText.h"

#include "verification/TextScan.h"

namespace verification
{

bool InstanceText::appendTo(Schedule& schedule)
{
    const size_t hopCount = schedule.hops.size();
    const size_t listenerCount = schedule.listeners.size();
    if (readInstance(schedule))
        return true;
    schedule.hops.resize(hopCount);
    schedule.listeners.resize(listenerCount);
    return false;
}

bool InstanceText::readInstance(Schedule& schedule)
{
    ScheduledTransmission transmission;
    transmission.hasTalker = true;
    transmission.firstHop = schedule.hops.size();
    transmission.firstListener = schedule.listeners.size();
    ScheduledHop talker;
    talker.inport = ScheduledHop::noPort;
    if (!open("Instance") || !number("flowID", transmission.flowID) ||
        !number("seq", transmission.seq) || !open("path_slot") || !open("talker") ||
        !number("nodeID", talker.node) || !number("outport", talker.outport) ||
        !number("txslotID", talker.sendSlot) || !close("talker"))
        return false;
    schedule.hops.push_back(talker);
    if (!isEmpty("bridges")) {
        if (!open("bridges"))
            return false;
        while (!close("bridges")) {
            schedule.hops.emplace_back();
            if (!readHop(schedule.hops.back()))
                return false;
        }
    }
    if (!isEmpty("listeners")) {
        if (!open("listeners"))
            return false;
        while (!close("listeners")) {
            schedule.listeners.emplace_back();
            if (!readListener(schedule.listeners.back()))
                return false;
        }
    }
    transmission.hopCount = schedule.hops.size() - transmission.firstHop;
    transmission.listenerCount = schedule.listeners.size() - transmission.firstListener;
    if (!close("path_slot") || !close("Instance"))
        return false;
    schedule.transmissions.push_back(transmission);
    return true;
}

bool InstanceText::readHop(ScheduledHop& hop)
{
    return open("bridge") && number("nodeID", hop.node) && number("inport", hop.inport) &&
           number("rxslotID", hop.receiveSlot) && number("outport", hop.outport) &&
           number("txslotID", hop.sendSlot) && close("bridge");
}

bool InstanceText::readListener(ScheduledListener& listener)
{
    return open("listener") && number("nodeID", listener.node) &&
           number("inport", listener.inport) && number("rxslotID", listener.slot) &&
           close("listener");
}

bool InstanceText::open(const char* name)
{
    const char* place = m_place;
    if (!skipText(place, "<") || !skipHere(place, name) || *place != '>')
        return false;
    m_place = place + 1;
    return true;
}

bool InstanceText::close(const char* name)
{
    const char* place = m_place;
    if (!skipText(place, "</") || !skipHere(place, name) || *place != '>')
        return false;
    m_place = place + 1;
    return true;
}

bool InstanceText::isEmpty(const char* name)
{
    const char* place = m_place;
    if (!skipText(place, "<") || !skipHere(place, name) || !skipHere(place, "/>"))
        return false;
    m_place = place;
    return true;
}

// Slots have 31 bits here; one with its highest bit set lies before the cycle, which is rare.
bool InstanceText::number(const char* name, qint64& value)
{
    constexpr qint64 largest = 0x7FFFFFFF;
    if (!open(name))
        return false;
    const char* digits = m_place;
    value = 0;
    for (; *m_place >= '0' && *m_place <= '9' && value <= largest; ++m_place)
        value = value * 10 + (*m_place - '0');
    return m_place != digits && value <= largest && *m_place == '<' && close(name);
}

bool InstanceText::number(const char* name, int& value)
{
    constexpr qint64 largest = 65535;
    qint64 read = 0;
    if (!number(name, read) || read > largest)
        return false;
    value = static_cast<int>(read);
    return true;
}

} // namespace verification
