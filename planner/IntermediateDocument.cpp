#include "planner/IntermediateDocument.h"

#include "planner/PlanningLog.h"
#include "planner/WindowText.h"
#include "planner/documents/DocumentAccess.h"
#include "planner/documents/DocumentWriter.h"
#include "planner/documents/WrittenPieces.h"

#include <QDir>

#include <tinyxml2.h>

#include <algorithm>
#include <cstdlib>

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

void writeWindows(DocumentWriter& writer, const PlanningContext& context)
{
    const Element root(writer, "vek_hs");
    writer.attribute("xmlns", "urn:ietf:params:xml:ns:yang:vek_hs");
    writer.leaf("slotLen", slotLength_us);
    writer.leaf("schedCycle", context.clusterCycle);
    writeFlows(writer, context.TTStreamInstanceList,
               [&writer](const TTStreamInstance& instance) { writeInstance(writer, instance); });
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
    return windowInSlots(parseSlotWindow(otherText));
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

void readDocument(TTPlanner& planner, HopBudget& budget, const tinyxml2::XMLDocument& document)
{
    const XMLElement* root = rootElement(document);
    planner.schedCycle = leadingNumber(root, "schedCycle");
    planner.slotLen = leadingNumber(root, "slotLen");
    forEachSibling(requiredChild(root, "flows"), "flow", [&](const XMLElement* flow) {
        requiredChild(flow, "Instance");
        forEachSibling(flow, "Instance", [&](const XMLElement* instance) {
            planner.TTStreamInstanceList.push_back(readInstance(planner, instance));
            budget.spend(hopsOf(planner.TTStreamInstanceList.back().paths));
        });
    });
}

/// Whether the root of a piece, which goes on to its end, has nothing behind its flows.
bool endsWithItsFlows(const tinyxml2::XMLDocument& piece)
{
    const XMLElement* root = piece.RootElement();
    return root->LastChild() == root->FirstChildElement("flows");
}

/// Returns a planner to what it was ahead of a document.
class StateBefore
{
public:
    explicit StateBefore(TTPlanner& planner)
        : m_planner(planner),
          m_instances(planner.TTStreamInstanceList.size()),
          m_hopBufferNum(planner.hopBufferNum),
          m_maxRxSlot(planner.maxRxSlot),
          m_schedCycle(planner.schedCycle),
          m_slotLen(planner.slotLen)
    {
    }

    void restore() const
    {
        m_planner.TTStreamInstanceList.resize(m_instances);
        m_planner.hopBufferNum = m_hopBufferNum;
        m_planner.maxRxSlot = m_maxRxSlot;
        m_planner.schedCycle = m_schedCycle;
        m_planner.slotLen = m_slotLen;
    }

private:
    TTPlanner& m_planner;
    size_t m_instances;
    quint16 m_hopBufferNum;
    qint32 m_maxRxSlot;
    quint32 m_schedCycle;
    quint32 m_slotLen;
};

/// Several documents share one budget.
HopBudget budgetLeftBy(const TTPlanner& planner)
{
    HopBudget budget(maxHops);
    for (const TTStreamInstance& instance : planner.TTStreamInstanceList)
        budget.spend(hopsOf(instance.paths));
    return budget;
}

/// Reads a document of just the written form without a tree of the whole; false, and nothing
/// changed, for any other one.
bool readPieces(TTPlanner& planner, const QString& path)
{
    const StateBefore before(planner);
    HopBudget budget = budgetLeftBy(planner);
    WrittenPieces pieces(path);
    tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
    try {
        while (pieces.next()) {
            const QByteArray& text = pieces.document();
            if (document.Parse(text.constData(), static_cast<size_t>(text.size())) !=
                    tinyxml2::XML_SUCCESS ||
                !endsWithItsFlows(document))
                break;
            readDocument(planner, budget, document);
        }
    } catch (const DocumentTooLarge&) {
        throw; // the whole would be too large all the more
    } catch (const DocumentError&) {
        // Told of when the whole is read, which knows the line.
        before.restore();
        return false;
    }
    if (!pieces.isComplete())
        before.restore();
    return pieces.isComplete();
}

/// Whether the file could be loaded; what it lacks is thrown.
bool readWhole(TTPlanner& planner, const QString& path)
{
    HopBudget budget = budgetLeftBy(planner);
    tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
    if (document.LoadFile(path.toUtf8().constData()) != tinyxml2::XML_SUCCESS)
        return false;
    qCDebug(planningLog) << "parsing vek_hs.xml----------";
    readDocument(planner, budget, document);
    return true;
}

qint32 readIntermediateFile(TTPlanner& planner, const QString& path)
{
    qCDebug(planningLog) << path;
    try {
        if (readPieces(planner, path))
            qCDebug(planningLog) << "parsing vek_hs.xml----------";
        else if (!readWhole(planner, path))
            return code::unreadable;
    } catch (const DocumentError& damage) {
        qCDebug(planningLog).noquote() << "vek_hs.xml:" << damage.message();
        return code::unreadable;
    }
    qCDebug(planningLog) << "parsing vek_hs.xml end----------";
    return code::ok;
}

} // namespace

void writeHsDocument(const PlanningContext& context)
{
    saveHsDocument(context);
}

// What a full disk leaves of it stays: the second stage refuses it, and would plan nothing, with
// success, where it finds none.
bool saveHsDocument(const PlanningContext& context)
{
    DocumentWriter writer(QStringLiteral("OutputXML"), QStringLiteral("vek_hs.xml"));
    writeWindows(writer, context);
    return writer.finish();
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
    for (const QString& path : filesWithBaseName(folder, QStringLiteral("vek_hs"))) {
        const qint32 result = readIntermediateFile(planner, path);
        if (result != code::ok)
            return result;
    }
    qCDebug(planningLog) << "Parsing vek_hs.xml End----------";
    return code::ok;
}

} // namespace planner
