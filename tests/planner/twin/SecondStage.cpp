#include "tests/planner/twin/SecondStage.h"

#include "tests/planner/twin/ConflictAnalysis.h"
#include "tests/planner/twin/WindowsDocument.h"

#include <tinyxml2.h>

#include <QDebug>
#include <QDir>

namespace twin
{

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

namespace
{

/// Runs passes and knows when the state of an earlier one has come back.
///
/// A pass depends on the master list alone, so a state that returns would return for ever. The
/// state is saved before passes 1, 2, 4, 8 and so on: one of them lies on the circle and is no
/// further ahead than the circle is long.
class Passes
{
public:
    explicit Passes(Planner& planner) : m_planner(planner) {}

    qint32 next()
    {
        ++m_count;
        if ((m_count & (m_count - 1)) == 0)
            m_saved = m_planner.instances;
        const qint32 r = calculateConflictDegree(m_planner);
        return r > 0 && m_planner.instances == m_saved ? -3 : r;
    }

private:
    Planner& m_planner;
    quint64 m_count = 0;
    std::list<Instance> m_saved;
};

void finalizeSlots(Planner& planner)
{
    for (Instance& instance : planner.instances) {
        for (Path& path : instance.paths) {
            path.txslotID = static_cast<quint32>(path.schedtxwin.start);
            quint32 previous = path.txslotID;
            for (Hop& hop : path.bridges) {
                hop.rxslotID = previous;
                hop.txslotID = static_cast<quint32>(hop.schedtxwin.start);
                previous = hop.txslotID;
            }
            path.rxslotID = static_cast<quint32>(path.schedrxwin.start);
        }
    }
}

XMLElement* add(XMLElement* parent, const char* name)
{
    XMLElement* element = parent->GetDocument()->NewElement(name);
    parent->InsertEndChild(element);
    return element;
}

void addNumber(XMLElement* parent, const char* name, quint32 value)
{
    XMLElement* element = add(parent, name);
    const QByteArray text = QByteArray::number(value);
    element->InsertEndChild(parent->GetDocument()->NewText(text.constData()));
}

bool wasWritten(const std::list<Hop>& written, const Hop& hop)
{
    for (const Hop& other : written) {
        if (other.nodeID == hop.nodeID && other.inport == hop.inport &&
            other.outport == hop.outport)
            return true;
    }
    return false;
}

bool wasWritten(const std::list<Path>& written, const Path& path)
{
    for (const Path& other : written) {
        if (other.listenerNodeID == path.listenerNodeID &&
            other.listenerInport == path.listenerInport)
            return true;
    }
    return false;
}

void addBridge(XMLElement* bridges, const Hop& hop)
{
    XMLElement* bridge = add(bridges, "bridge");
    addNumber(bridge, "nodeID", hop.nodeID);
    addNumber(bridge, "inport", hop.inport);
    addNumber(bridge, "rxslotID", hop.rxslotID);
    addNumber(bridge, "outport", hop.outport);
    addNumber(bridge, "txslotID", hop.txslotID);
}

void addListener(XMLElement* listeners, const Path& path)
{
    XMLElement* listener = add(listeners, "listener");
    addNumber(listener, "nodeID", path.listenerNodeID);
    addNumber(listener, "inport", path.listenerInport);
    addNumber(listener, "rxslotID", path.rxslotID);
}

void addSlots(XMLElement* element, const std::list<Path>& paths)
{
    XMLElement* talker = add(element, "talker");
    addNumber(talker, "nodeID", paths.front().talkerNodeID);
    addNumber(talker, "outport", paths.front().talkerOutport);
    addNumber(talker, "txslotID", paths.front().txslotID);
    XMLElement* bridges = add(element, "bridges");
    XMLElement* listeners = add(element, "listeners");
    std::list<Hop> writtenHops;
    std::list<Path> writtenListeners;
    for (const Path& path : paths) {
        for (const Hop& hop : path.bridges) {
            if (wasWritten(writtenHops, hop))
                continue;
            addBridge(bridges, hop);
            writtenHops.push_back(hop);
        }
        if (wasWritten(writtenListeners, path))
            continue;
        addListener(listeners, path);
        writtenListeners.push_back(path);
    }
}

void writeOutputDocument(const Planner& planner)
{
    const QDir folder(QDir::currentPath());
    if (!folder.exists(QStringLiteral(u"OutputXML")))
        folder.mkpath(QStringLiteral(u"OutputXML"));
    const QString path = folder.absolutePath() + QStringLiteral(u"/OutputXML/vek_output.xml");
    XMLDocument document;
    XMLElement* root = document.NewElement("vek_output");
    root->SetAttribute("xmlns", "urn:ietf:params:xml:ns:yang:vek_output");
    document.InsertEndChild(root);
    addNumber(root, "schedCycle", planner.schedCycle);
    addNumber(root, "slotLen", planner.slotLen);
    XMLElement* flows = add(root, "flows");
    XMLElement* flow = document.NewElement("flow");
    quint16 last = 0;
    for (const Instance& instance : planner.instances) {
        if (instance.flowID != last) {
            flow = add(flows, "flow");
            last = instance.flowID;
        }
        XMLElement* element = add(flow, "Instance");
        addNumber(element, "flowID", instance.flowID);
        addNumber(element, "seq", instance.seq);
        addSlots(add(element, "path_slot"), instance.paths);
    }
    document.SaveFile(path.toUtf8().constData());
}

} // namespace

qint32 planSecondStage(Planner& planner)
{
    planner = Planner();
    qDebug() << "TTPlanning start----------";
    const qint32 code = readWindowsDocument(planner);
    if (code != 0) {
        qDebug() << (code == -2 ? "cannot find vek_hs.xml" : "parse vek_hs.xml failed");
        return code;
    }
    const std::list<Instance> copy = planner.instances;
    planner.nodeList = convertInstancesToNodes(copy);
    Passes passes(planner);
    qint32 r = passes.next();
    while (r != 0) {
        qDebug() << "resolve conflict:" << r;
        if (r < 0) {
            qDebug() << "resolve conflict failed";
            return r;
        }
        r = passes.next();
    }
    finalizeSlots(planner);
    writeOutputDocument(planner);
    qDebug() << "TTPlanning end----------";
    return 0;
}

} // namespace twin
