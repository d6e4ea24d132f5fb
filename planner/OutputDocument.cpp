#include "planner/OutputDocument.h"

#include "planner/documents/DocumentWriter.h"

#include <QFile>
#include <QFileInfo>

#include <set>
#include <tuple>
#include <utility>

namespace planner
{

using Element = DocumentWriter::Element;

namespace
{

void writeTalker(DocumentWriter& writer, const VirtualLinkPath& path)
{
    const Element talker(writer, "talker");
    writer.leaf("nodeID", qint32(path.talkerNodeID));
    writer.leaf("outport", qint32(path.talkerOutport));
    writer.leaf("txslotID", path.txslotID);
}

void writeBridge(DocumentWriter& writer, const BridgeHop& hop)
{
    const Element bridge(writer, "bridge");
    writer.leaf("nodeID", qint32(hop.nodeID));
    writer.leaf("inport", qint32(hop.inport));
    writer.leaf("rxslotID", hop.rxslotID);
    writer.leaf("outport", qint32(hop.outport));
    writer.leaf("txslotID", hop.txslotID);
}

void writeListener(DocumentWriter& writer, const VirtualLinkPath& path)
{
    const Element listener(writer, "listener");
    writer.leaf("nodeID", qint32(path.listenerNodeID));
    writer.leaf("inport", qint32(path.listenerInport));
    writer.leaf("rxslotID", path.rxslotID);
}

// Branches share hops; the first path that has one supplies its slots.
void writeBridges(DocumentWriter& writer, const TTStreamInstance& instance)
{
    const Element bridges(writer, "bridges");
    std::set<std::tuple<quint16, quint16, quint16>> written;
    for (const VirtualLinkPath& path : instance.paths) {
        for (const BridgeHop& hop : path.bridges) {
            if (written.emplace(hop.nodeID, hop.inport, hop.outport).second)
                writeBridge(writer, hop);
        }
    }
}

void writeListeners(DocumentWriter& writer, const TTStreamInstance& instance)
{
    const Element listeners(writer, "listeners");
    std::set<std::pair<quint16, quint16>> written;
    for (const VirtualLinkPath& path : instance.paths) {
        if (written.emplace(path.listenerNodeID, path.listenerInport).second)
            writeListener(writer, path);
    }
}

void writeInstance(DocumentWriter& writer, const TTStreamInstance& instance)
{
    const Element element(writer, "Instance");
    writer.leaf("flowID", qint32(instance.flowID));
    writer.leaf("seq", qint32(instance.seq));
    const Element pathSlots(writer, "path_slot");
    if (!instance.paths.empty())
        writeTalker(writer, instance.paths.front());
    writeBridges(writer, instance);
    writeListeners(writer, instance);
}

void writeSchedule(DocumentWriter& writer, const TTPlanner& planner)
{
    const Element root(writer, "vek_output");
    writer.attribute("xmlns", "urn:ietf:params:xml:ns:yang:vek_output");
    writer.leaf("schedCycle", planner.schedCycle);
    writer.leaf("slotLen", planner.slotLen);
    writeFlows(writer, planner.TTStreamInstanceList,
               [&writer](const TTStreamInstance& instance) { writeInstance(writer, instance); });
}

} // namespace

void writeOutputDocument(const TTPlanner& planner)
{
    saveOutputDocument(planner);
}

bool saveOutputDocument(const TTPlanner& planner)
{
    const auto folder = QStringLiteral("OutputXML");
    const auto fileName = QStringLiteral("vek_output.xml");
    DocumentWriter writer(folder, fileName);
    writeSchedule(writer, planner);
    if (writer.finish())
        return true;
    // A device or a file that a link leads to is not ours to remove.
    const QFileInfo file(folder + QLatin1Char('/') + fileName);
    if (file.isFile() && !file.isSymLink())
        QFile::remove(file.filePath());
    return false;
}

QByteArray outputDocument(const TTPlanner& planner)
{
    DocumentWriter writer;
    writeSchedule(writer, planner);
    return writer.bytes();
}

} // namespace planner
