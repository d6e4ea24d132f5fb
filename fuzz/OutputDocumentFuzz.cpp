#include "fuzz/FuzzFolder.h"

#include "project/ScheduleReader.h"

#include "verification/ScheduleDocument.h"

#include <tinyxml2.h>

// An output document of any bytes, as the studio loads it to show it.

using namespace verification;

/// What the studio would show.
struct Shown {
    NodeInfo_Xml sent;
    NodeInfo_Xml received;
    int schedCycle = 0;
    int slotLen = 0;
    int slotCount = 0;

    void load() { readSchedule({sent, received, schedCycle, slotLen, slotCount}); }
};

static void enterAll(const Schedule& schedule, Shown& shown)
{
    for (const ScheduledTransmission& transmission : schedule.transmissions) {
        for (size_t i = 0; i < transmission.hopCount; ++i) {
            const ScheduledHop& hop = schedule.hops[transmission.firstHop + i];
            enterSlot(shown.sent, hop.node, hop.outport, transmission.flowID,
                      static_cast<int>(hop.sendSlot));
            if (i > 0 || !transmission.hasTalker)
                enterSlot(shown.received, hop.node, hop.inport, transmission.flowID,
                          static_cast<int>(hop.receiveSlot));
        }
        for (size_t i = 0; i < transmission.listenerCount; ++i) {
            const ScheduledListener& listener = schedule.listeners[transmission.firstListener + i];
            enterSlot(shown.received, listener.node, listener.inport, transmission.flowID,
                      static_cast<int>(listener.slot));
        }
    }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    putFile(QStringLiteral("OutputXML"), QStringLiteral("vek_output.xml"), bytesOf(data, size));
    Shown shown;
    shown.load();
    Shown again = shown;
    again.load();
    require(shown.sent == again.sent && shown.received == again.received &&
                shown.slotCount == again.slotCount,
            "loading twice shows the same");

    tinyxml2::XMLDocument tree(true, tinyxml2::PRESERVE_WHITESPACE);
    const bool isTree = tree.Parse(reinterpret_cast<const char*>(data), size) == 0;
    if (!isTree || !tree.FirstChildElement())
        return 0;
    Schedule schedule;
    std::vector<Finding> damage;
    readSchedule(*tree.FirstChildElement(), schedule, damage);
    if (!damage.empty())
        return 0;
    Shown judged;
    enterAll(schedule, judged);
    require(judged.sent == shown.sent && judged.received == shown.received,
            "what is judged is what is shown");
    return 0;
}
