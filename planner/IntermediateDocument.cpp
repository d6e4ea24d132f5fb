#include "planner/IntermediateDocument.h"

#include "planner/DocumentAccess.h"
#include "planner/DocumentWriter.h"
#include "planner/InputDocument.h"
#include "planner/PlanningLog.h"

#include <QDir>

#include <tinyxml2.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>

namespace planner
{

using tinyxml2::XMLElement;
using Element = DocumentWriter::Element;

namespace
{

void writeTalker(DocumentWriter& writer, const VirtualLinkPath& path)
{
    const Element talker(writer, "talker");
    writer.leaf("nodeID", qint32(path.talkerNodeID));
    writer.leaf("outport", qint32(path.talkerOutport));
    writer.leaf("schedtxwin", windowText(path.schedtxwin));
    writer.leaf("buffernum", qint32(path.talkerBuffernum));
}

void writeBridge(DocumentWriter& writer, const BridgeHop& hop)
{
    const Element bridge(writer, "bridge");
    writer.leaf("nodeID", qint32(hop.nodeID));
    writer.leaf("inport", qint32(hop.inport));
    writer.leaf("outport", qint32(hop.outport));
    writer.leaf("schedtxwin", windowText(hop.schedtxwin));
    writer.leaf("buffernum", qint32(hop.buffernum));
}

void writeListener(DocumentWriter& writer, const VirtualLinkPath& path)
{
    const Element listener(writer, "listener");
    writer.leaf("nodeID", qint32(path.listenerNodeID));
    writer.leaf("inport", qint32(path.listenerInport));
    writer.leaf("schedrxwin", windowText(path.schedrxwin));
    writer.leaf("buffernum", qint32(path.listenerBuffernum));
}

void writeInstance(DocumentWriter& writer, const TTStreamInstance& instance)
{
    const Element element(writer, "Instance");
    writer.leaf("flowID", qint32(instance.flowID));
    writer.leaf("vlid", qint32(instance.vlid));
    writer.leaf("seq", qint32(instance.seq));
    writer.leaf("period", instance.period);
    writer.leaf("size", qint32(instance.size));
    const Element pathWindows(writer, "path_schedwin");
    for (const VirtualLinkPath& path : instance.paths) {
        const Element pathElement(writer, "path");
        writeTalker(writer, path);
        for (const BridgeHop& hop : path.bridges)
            writeBridge(writer, hop);
        writeListener(writer, path);
    }
}

/// The text of a child, which must be there and must not be empty.
const char* requiredText(const XMLElement* parent, const char* name)
{
    const XMLElement* child = requiredChild(parent, name);
    const char* text = child->GetText();
    if (!text || !*text) {
        throw DocumentError(
            QStringLiteral("element \"%1\" of line %2 is empty")
                .arg(QString::fromUtf8(name), QString::number(child->GetLineNum())));
    }
    return text;
}

// The C library's rule: leading blanks, then digits up to the first character that is none. What
// does not fit is cut, not refused.
quint32 leadingNumber(const XMLElement* parent, const char* name)
{
    return static_cast<quint32>(std::strtoll(requiredText(parent, name), nullptr, 10));
}

quint16 leadingNumber16(const XMLElement* parent, const char* name)
{
    return static_cast<quint16>(leadingNumber(parent, name));
}

/// Reads a window in just the form in which windows are written; false for any other text.
bool readWrittenWindow(const char* text, SlotWindow& window)
{
    const char* const end = text + std::strlen(text);
    if (*text != '[')
        return false;
    const std::from_chars_result start = std::from_chars(text + 1, end, window.start);
    if (start.ec != std::errc() || start.ptr == end || *start.ptr != ',')
        return false;
    const std::from_chars_result last = std::from_chars(start.ptr + 1, end, window.end);
    return last.ec == std::errc() && last.ptr + 1 == end && *last.ptr == ']';
}

SlotWindow slotWindow(const XMLElement* parent, const char* name)
{
    const char* text = requiredText(parent, name);
    SlotWindow window;
    if (readWrittenWindow(text, window))
        return window;
    const QString otherText = QString::fromUtf8(text);
    if (windowBounds(otherText).size() < 2) {
        throw DocumentError(QStringLiteral("window \"%1\" of line %2 needs two numbers")
                                .arg(otherText, QString::number(parent->GetLineNum())));
    }
    return parseSlotWindow(otherText);
}

void readTalker(TTPlanner& planner, const XMLElement* talker, VirtualLinkPath& path)
{
    path.talkerNodeID = leadingNumber16(talker, "nodeID");
    path.talkerOutport = leadingNumber16(talker, "outport");
    path.schedtxwin = slotWindow(talker, "schedtxwin");
    path.talkerBuffernum = leadingNumber16(talker, "buffernum");
    planner.hopBufferNum = path.talkerBuffernum;
}

// A switch's buffer number is written but not read: the second stage knows only the talker's.
BridgeHop readBridge(const XMLElement* bridge)
{
    BridgeHop hop;
    hop.nodeID = leadingNumber16(bridge, "nodeID");
    hop.inport = leadingNumber16(bridge, "inport");
    hop.outport = leadingNumber16(bridge, "outport");
    hop.schedtxwin = slotWindow(bridge, "schedtxwin");
    return hop;
}

void readListener(TTPlanner& planner, const XMLElement* listener, VirtualLinkPath& path)
{
    path.listenerNodeID = leadingNumber16(listener, "nodeID");
    path.listenerInport = leadingNumber16(listener, "inport");
    path.schedrxwin = slotWindow(listener, "schedrxwin");
    planner.maxRxSlot = std::max(planner.maxRxSlot, path.schedrxwin.end);
}

VirtualLinkPath readPath(TTPlanner& planner, const XMLElement* element)
{
    VirtualLinkPath path;
    readTalker(planner, requiredChild(element, "talker"), path);
    for (const XMLElement* bridge = element->FirstChildElement("bridge"); bridge;
         bridge = bridge->NextSiblingElement("bridge"))
        path.bridges.push_back(readBridge(bridge));
    readListener(planner, requiredChild(element, "listener"), path);
    return path;
}

TTStreamInstance readInstance(TTPlanner& planner, const XMLElement* element)
{
    TTStreamInstance instance;
    instance.flowID = leadingNumber16(element, "flowID");
    instance.vlid = leadingNumber16(element, "vlid");
    instance.seq = leadingNumber16(element, "seq");
    instance.period = leadingNumber(element, "period");
    instance.size = leadingNumber16(element, "size");
    const XMLElement* paths = requiredChild(element, "path_schedwin");
    requiredChild(paths, "path");
    forEachSibling(paths, "path", [&](const XMLElement* path) {
        instance.paths.push_back(readPath(planner, path));
    });
    return instance;
}

void readDocument(TTPlanner& planner, const tinyxml2::XMLDocument& document)
{
    const XMLElement* root = rootElement(document);
    planner.schedCycle = leadingNumber(root, "schedCycle");
    planner.slotLen = leadingNumber(root, "slotLen");
    forEachSibling(requiredChild(root, "flows"), "flow", [&](const XMLElement* flow) {
        requiredChild(flow, "Instance");
        forEachSibling(flow, "Instance", [&](const XMLElement* instance) {
            planner.TTStreamInstanceList.push_back(readInstance(planner, instance));
        });
    });
}

qint32 readIntermediateFile(TTPlanner& planner, const QString& path)
{
    qCDebug(planningLog) << path;
    tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
    if (document.LoadFile(path.toUtf8().constData()) != tinyxml2::XML_SUCCESS)
        return code::unreadable;
    qCDebug(planningLog) << "parsing vek_hs.xml----------";
    try {
        readDocument(planner, document);
    } catch (const DocumentError& damage) {
        qCDebug(planningLog).noquote() << "vek_hs.xml:" << damage.message();
        return code::unreadable;
    }
    qCDebug(planningLog) << "parsing vek_hs.xml end----------";
    return code::ok;
}

} // namespace

std::string windowText(const SlotWindow& window)
{
    return '[' + std::to_string(window.start) + ',' + std::to_string(window.end) + ']';
}

void writeHsDocument(const PlanningContext& context)
{
    DocumentWriter writer(QStringLiteral("OutputXML"), QStringLiteral("vek_hs.xml"));
    const Element root(writer, "vek_hs");
    writer.attribute("xmlns", "urn:ietf:params:xml:ns:yang:vek_hs");
    writer.leaf("slotLen", slotLength_us);
    writer.leaf("schedCycle", context.clusterCycle);
    writeFlows(writer, context.TTStreamInstanceList,
               [&writer](const TTStreamInstance& instance) { writeInstance(writer, instance); });
}

void takeInstances(TTPlanner& planner, const PlanningContext& context)
{
    planner.reset();
    planner.slotLen = slotLength_us;
    planner.schedCycle = static_cast<quint32>(context.clusterCycle);
    for (const TTStreamInstance& instance : context.TTStreamInstanceList) {
        // The document loses those of number 0 at the head of the list.
        if (planner.TTStreamInstanceList.empty() && instance.flowID == 0)
            continue;
        planner.TTStreamInstanceList.push_back(instance);
        for (const VirtualLinkPath& path : instance.paths) {
            planner.hopBufferNum = path.talkerBuffernum;
            planner.maxRxSlot = std::max(planner.maxRxSlot, path.schedrxwin.end);
        }
    }
}

qint32 readIntermediateDocument(TTPlanner& planner)
{
    qCDebug(planningLog) << "finding vek_hs.xml----------";
    planner.maxRxSlot = 0;
    QDir folder(QDir::currentPath());
    if (!folder.cd(QStringLiteral("OutputXML")))
        return code::folderMissing;
    for (const QString& path : filesWithBaseName(folder.path(), QStringLiteral("vek_hs"))) {
        const qint32 result = readIntermediateFile(planner, path);
        if (result != code::ok)
            return result;
    }
    qCDebug(planningLog) << "Parsing vek_hs.xml End----------";
    return code::ok;
}

} // namespace planner
