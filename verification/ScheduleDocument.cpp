#include "verification/ScheduleDocument.h"

#include "verification/DocumentReading.h"
#include "verification/InstanceText.h"
#include "verification/SchedulePieces.h"

namespace verification
{

namespace
{

using Element = DocumentReading::Element;

class ScheduleReading
{
public:
    ScheduleReading(Schedule& schedule, std::vector<Finding>& damage)
        : m_schedule(schedule),
          m_reading(QStringLiteral("vek_output.xml"), damage)
    {
    }

    void read(Element root)
    {
        readFrame(root);
        forEachInList(m_reading.child(root, "flows"), "flow", [this](Element flow) {
            forEachInList(flow, "Instance", [this](Element instance) { readInstance(instance); });
        });
    }

    /// False when a piece may not be what the tree has there; text is that of the whole document.
    bool read(const SchedulePieces& pieces, const char* text)
    {
        readFrame(pieces.frame());
        tinyxml2::XMLDocument piece(true, tinyxml2::PRESERVE_WHITESPACE);
        for (const SchedulePieces::Piece& instance : pieces.instances()) {
            if (InstanceText(instance.begin).appendTo(m_schedule))
                continue;
            if (instance.hasLooseBracket() ||
                piece.Parse(instance.begin, instance.length) != tinyxml2::XML_SUCCESS)
                return false;
            m_reading.beginPiece(text, instance.begin);
            readInstance(piece.FirstChildElement());
        }
        return true;
    }

private:
    void readFrame(Element root)
    {
        m_schedule.cycle_us = 0;
        m_schedule.slotLength_us = 0;
        m_reading.number(root, "schedCycle", m_schedule.cycle_us);
        m_reading.number(root, "slotLen", m_schedule.slotLength_us);
    }

    void readInstance(Element instance)
    {
        const Element slots = m_reading.child(instance, "path_slot");
        ScheduledTransmission transmission;
        const bool hasFlow = numberInto(instance, "flowID", transmission.flowID);
        const bool hasSeq = numberInto(instance, "seq", transmission.seq);
        if (!hasFlow || !hasSeq)
            return;
        transmission.firstHop = m_schedule.hops.size();
        transmission.firstListener = m_schedule.listeners.size();
        transmission.hasTalker = readTalker(m_reading.child(slots, "talker"));
        forEachInList(m_reading.child(slots, "bridges"), "bridge",
                      [this](Element bridge) { readBridge(bridge); });
        forEachInList(m_reading.child(slots, "listeners"), "listener",
                      [this](Element listener) { readListener(listener); });
        transmission.hopCount = m_schedule.hops.size() - transmission.firstHop;
        transmission.listenerCount = m_schedule.listeners.size() - transmission.firstListener;
        m_schedule.transmissions.push_back(transmission);
    }

    bool readTalker(Element talker)
    {
        ScheduledHop hop;
        hop.inport = ScheduledHop::noPort;
        if (!readSending(talker, hop))
            return false;
        m_schedule.hops.push_back(hop);
        return true;
    }

    void readBridge(Element bridge)
    {
        ScheduledHop hop;
        const bool sends = readSending(bridge, hop);
        const bool hasPort = numberInto(bridge, "inport", hop.inport);
        if (m_reading.slotNumber(bridge, "rxslotID", hop.receiveSlot) && sends && hasPort)
            m_schedule.hops.push_back(hop);
    }

    void readListener(Element element)
    {
        ScheduledListener listener;
        const bool hasNode = numberInto(element, "nodeID", listener.node);
        const bool hasPort = numberInto(element, "inport", listener.inport);
        if (m_reading.slotNumber(element, "rxslotID", listener.slot) && hasNode && hasPort)
            m_schedule.listeners.push_back(listener);
    }

    // Every part is read, so that a report names all that is damaged.
    bool readSending(Element element, ScheduledHop& hop)
    {
        const bool hasNode = numberInto(element, "nodeID", hop.node);
        const bool hasPort = numberInto(element, "outport", hop.outport);
        return m_reading.slotNumber(element, "txslotID", hop.sendSlot) && hasNode && hasPort;
    }

    /// Numbers of flows, nodes and ports have 16 bits.
    bool numberInto(Element parent, const char* name, int& value)
    {
        constexpr qint64 largest = 65535;
        qint64 read = 0;
        if (!m_reading.number(parent, name, read))
            return false;
        if (read < 0 || read > largest) {
            m_reading.report(
                parent->FirstChildElement(name),
                QStringLiteral("\"%1\" is no number of 16 bits").arg(QString::fromUtf8(name)));
            return false;
        }
        value = static_cast<int>(read);
        return true;
    }

    Schedule& m_schedule;
    DocumentReading m_reading;
};

} // namespace

void readSchedule(const tinyxml2::XMLElement& root, Schedule& schedule,
                  std::vector<Finding>& damage)
{
    ScheduleReading(schedule, damage).read(&root);
}

bool readScheduleByPieces(const QByteArray& bytes, Schedule& schedule, std::vector<Finding>& damage)
{
    const SchedulePieces pieces(bytes);
    if (!pieces.isUsual())
        return false;
    const Schedule before = schedule;
    const size_t damageBefore = damage.size();
    if (ScheduleReading(schedule, damage).read(pieces, bytes.constData()))
        return true;
    schedule = before;
    damage.resize(damageBefore);
    return false;
}

} // namespace verification
