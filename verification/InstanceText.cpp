#include "verification/InstanceText.h"

#include "verification/TextScan.h"

namespace verification
{

/// Reads a list that may be written as one empty tag; false when readOne is, for any of it.
template <typename ReadOne>
bool InstanceText::readList(const char* name, ReadOne readOne)
{
    if (isEmpty(name))
        return true;
    if (!open(name))
        return false;
    while (!close(name)) {
        if (!readOne())
            return false;
    }
    return true;
}

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
    const auto hop = [&] {
        schedule.hops.emplace_back();
        return readHop(schedule.hops.back());
    };
    const auto listener = [&] {
        schedule.listeners.emplace_back();
        return readListener(schedule.listeners.back());
    };
    if (!readList("bridges", hop) || !readList("listeners", listener))
        return false;
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

/// Goes behind blanks and a tag that is written in three parts; stays where it is without it.
bool InstanceText::skipTag(const char* begin, const char* name, const char* end)
{
    const char* place = m_place;
    if (!skipText(place, begin) || !skipHere(place, name) || !skipHere(place, end))
        return false;
    m_place = place;
    return true;
}

bool InstanceText::open(const char* name)
{
    return skipTag("<", name, ">");
}

bool InstanceText::close(const char* name)
{
    return skipTag("</", name, ">");
}

bool InstanceText::isEmpty(const char* name)
{
    return skipTag("<", name, "/>");
}

// Slots have 31 bits here; one with its highest bit set lies before the cycle, which is rare. More
// digits than such a slot has are zeros ahead of it, and no number where a tree is read.
bool InstanceText::number(const char* name, qint64& value)
{
    constexpr qint64 largest = 0x7FFFFFFF;
    constexpr int mostDigits = 10;
    if (!open(name))
        return false;
    const char* const digits = m_place;
    for (; *m_place >= '0' && *m_place <= '9' && m_place - digits < mostDigits; ++m_place)
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
