#include "project/ScheduleReader.h"

#include "project/DocumentFolder.h"
#include "project/TolerantReader.h"

#include <tinyxml2.h>

using Element = TolerantReader::Element;

namespace
{

/// Enters the slots of one output document.
class OutputWalk
{
public:
    explicit OutputWalk(const ScheduleTarget& target) : m_target(target) {}

    void read(const tinyxml2::XMLElement& root)
    {
        bool complete = true;
        m_target.schedCycle = m_reader.number(&root, "schedCycle", complete);
        m_target.slotLen = m_reader.number(&root, "slotLen", complete);
        m_target.slotCount = m_target.slotLen == 0
                                 ? 0
                                 : static_cast<int>(qint64(m_target.schedCycle) / m_target.slotLen);
        const auto readFlow = [this](Element flow) {
            m_reader.forEachSibling(flow, "Instance",
                                    [this](Element instance) { readInstance(instance); });
        };
        m_reader.forEachSibling(m_reader.child(&root, "flows"), "flow", readFlow);
        m_reader.report(QStringLiteral("vek_output.xml"));
    }

private:
    void readInstance(Element instance)
    {
        bool hasFlow = true;
        const int flowID = m_reader.number(instance, "flowID", hasFlow);
        const Element pathSlot = m_reader.child(instance, "path_slot");
        if (!hasFlow)
            return;
        if (const Element talker = m_reader.child(pathSlot, "talker"))
            enter(m_target.sendNodeInfo, talker, "outport", "txslotID", flowID);
        m_reader.forEachSibling(m_reader.child(pathSlot, "bridges"), "bridge", [&](Element bridge) {
            enter(m_target.sendNodeInfo, bridge, "outport", "txslotID", flowID);
            enter(m_target.rcvNodeInfo, bridge, "inport", "rxslotID", flowID);
        });
        m_reader.forEachSibling(
            m_reader.child(pathSlot, "listeners"), "listener", [&](Element listener) {
                enter(m_target.rcvNodeInfo, listener, "inport", "rxslotID", flowID);
            });
    }

    // A hop that lacks one of its numbers has no place in the tables.
    void enter(NodeInfo_Xml& nodeInfo, Element hop, const char* portName, const char* slotName,
               int flowID)
    {
        bool complete = true;
        const int nodeID = m_reader.number(hop, "nodeID", complete);
        const int port = m_reader.number(hop, portName, complete);
        const int slotId = m_reader.number(hop, slotName, complete);
        if (complete)
            enterSlot(nodeInfo, nodeID, port, flowID, slotId);
    }

    ScheduleTarget m_target;
    TolerantReader m_reader;
};

void readNames(TolerantReader& reader, Element container, const char* kind, const char* nameElement,
               int isHost, NodeNames& nodeNames)
{
    reader.forEachSibling(container, kind, [&](Element node) {
        const Element name = reader.child(node, nameElement);
        bool hasId = true;
        const int nodeID = reader.number(node, "nodeID", hasId);
        if (hasId && !nodeNames.contains(nodeID))
            nodeNames.insert(nodeID,
                             {isHost, name ? QString::fromUtf8(name->GetText()) : QString()});
    });
}

} // namespace

void readSchedule(const ScheduleTarget& target)
{
    target.sendNodeInfo.clear();
    target.rcvNodeInfo.clear();
    forEachDocument({outputFolder(), QStringLiteral("vek_output")},
                    [&target](const tinyxml2::XMLElement& root) { OutputWalk(target).read(root); });
}

void enterSlot(NodeInfo_Xml& nodeInfo, int nodeid, int port, int flowid, int slotId)
{
    nodeInfo[nodeid][port][flowid][slotId] = 0;
}

void readNodeNames(NodeNames& nodeNames)
{
    nodeNames.clear();
    forEachDocument({inputFolder(), QStringLiteral("vek_input")},
                    [&nodeNames](const tinyxml2::XMLElement& root) {
                        TolerantReader reader;
                        const Element topology = reader.child(&root, "topology");
                        readNames(reader, reader.child(topology, "hosts"), "host", "hostname", 1,
                                  nodeNames);
                        readNames(reader, reader.child(topology, "switches"), "switch",
                                  "switchname", 0, nodeNames);
                        reader.child(&root, "flows");
                        reader.report(QStringLiteral("vek_input.xml"));
                    });
}
