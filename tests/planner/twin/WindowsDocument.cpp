#include "tests/planner/twin/WindowsDocument.h"

#include "tests/planner/twin/InputReader.h"

#include <tinyxml2.h>

#include <QDebug>
#include <QDir>
#include <QFileInfo>

#include <cstdlib>

namespace twin
{

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

namespace
{

XMLElement* add(XMLElement* parent, const char* name)
{
    XMLElement* element = parent->GetDocument()->NewElement(name);
    parent->InsertEndChild(element);
    return element;
}

void addText(XMLElement* parent, const char* name, const QString& text)
{
    XMLElement* element = add(parent, name);
    element->InsertEndChild(parent->GetDocument()->NewText(text.toUtf8().constData()));
}

void addNumber(XMLElement* parent, const char* name, qulonglong value)
{
    addText(parent, name, QString::number(value));
}

void addWindow(XMLElement* parent, const char* name, const Window& window)
{
    addText(parent, name,
            QStringLiteral(u"[") + QString::number(window.start) + QStringLiteral(u",") +
                QString::number(window.end) + QStringLiteral(u"]"));
}

void addPath(XMLElement* parent, const Path& path)
{
    XMLElement* element = add(parent, "path");
    XMLElement* talker = add(element, "talker");
    addNumber(talker, "nodeID", path.talkerNodeID);
    addNumber(talker, "outport", path.talkerOutport);
    addWindow(talker, "schedtxwin", path.schedtxwin);
    addNumber(talker, "buffernum", path.talkerBuffernum);
    for (const Hop& hop : path.bridges) {
        XMLElement* bridge = add(element, "bridge");
        addNumber(bridge, "nodeID", hop.nodeID);
        addNumber(bridge, "inport", hop.inport);
        addNumber(bridge, "outport", hop.outport);
        addWindow(bridge, "schedtxwin", hop.schedtxwin);
        addNumber(bridge, "buffernum", hop.buffernum);
    }
    XMLElement* listener = add(element, "listener");
    addNumber(listener, "nodeID", path.listenerNodeID);
    addNumber(listener, "inport", path.listenerInport);
    addWindow(listener, "schedrxwin", path.schedrxwin);
    addNumber(listener, "buffernum", path.listenerBuffernum);
}

void addInstance(XMLElement* flow, quint16 flowID, const Instance& instance)
{
    XMLElement* element = add(flow, "Instance");
    addNumber(element, "flowID", flowID);
    addNumber(element, "vlid", instance.vlid);
    addNumber(element, "seq", instance.seq);
    addNumber(element, "period", instance.period);
    addNumber(element, "size", instance.size);
    XMLElement* paths = add(element, "path_schedwin");
    for (const Path& path : instance.paths)
        addPath(paths, path);
}

/// Thrown where the document lacks what the reader takes.
struct Incomplete {
};

const XMLElement* child(const XMLElement* parent, const char* name)
{
    const XMLElement* element = parent->FirstChildElement(name);
    if (!element)
        throw Incomplete();
    return element;
}

const char* text(const XMLElement* parent, const char* name)
{
    const char* found = child(parent, name)->GetText();
    if (!found)
        throw Incomplete();
    return found;
}

quint16 number16(const XMLElement* parent, const char* name)
{
    return static_cast<quint16>(std::atoi(text(parent, name)));
}

quint32 number32(const XMLElement* parent, const char* name)
{
    return static_cast<quint32>(std::atol(text(parent, name)));
}

Window window(const XMLElement* parent, const char* name)
{
    const QString whole = QString::fromUtf8(text(parent, name));
    const QString between = whole.split(QLatin1Char('[')).value(1).split(QLatin1Char(']')).value(0);
    if (between.split(QLatin1Char(',')).size() < 2)
        throw Incomplete();
    return parseSlotWindow(whole);
}

Path readPath(Planner& planner, const XMLElement* element)
{
    Path path;
    const XMLElement* talker = child(element, "talker");
    path.talkerNodeID = number16(talker, "nodeID");
    path.talkerOutport = number16(talker, "outport");
    path.schedtxwin = window(talker, "schedtxwin");
    path.talkerBuffernum = number16(talker, "buffernum");
    planner.hopBufferNum = path.talkerBuffernum;
    for (auto* e = element->FirstChildElement("bridge"); e; e = e->NextSiblingElement()) {
        if (qstrcmp(e->Name(), "bridge") != 0)
            continue;
        Hop hop;
        hop.nodeID = number16(e, "nodeID");
        hop.inport = number16(e, "inport");
        hop.outport = number16(e, "outport");
        hop.schedtxwin = window(e, "schedtxwin");
        path.bridges.push_back(hop);
    }
    const XMLElement* listener = child(element, "listener");
    path.listenerNodeID = number16(listener, "nodeID");
    path.listenerInport = number16(listener, "inport");
    path.schedrxwin = window(listener, "schedrxwin");
    if (path.schedrxwin.end > planner.maxRxSlot)
        planner.maxRxSlot = path.schedrxwin.end;
    return path;
}

Instance readInstance(Planner& planner, const XMLElement* element)
{
    Instance instance;
    instance.flowID = number16(element, "flowID");
    instance.vlid = number16(element, "vlid");
    instance.seq = number16(element, "seq");
    instance.period = number32(element, "period");
    instance.size = number16(element, "size");
    const XMLElement* paths = child(element, "path_schedwin");
    for (auto* e = child(paths, "path"); e; e = e->NextSiblingElement())
        instance.paths.push_back(readPath(planner, e));
    return instance;
}

void readRoot(Planner& planner, const XMLElement* root)
{
    if (!root)
        throw Incomplete();
    planner.schedCycle = number32(root, "schedCycle");
    planner.slotLen = number32(root, "slotLen");
    const XMLElement* flows = child(root, "flows");
    for (auto* flow = flows->FirstChildElement("flow"); flow; flow = flow->NextSiblingElement()) {
        for (auto* e = child(flow, "Instance"); e; e = e->NextSiblingElement())
            planner.instances.push_back(readInstance(planner, e));
    }
}

} // namespace

void writeWindowsDocument(const QString& fileName, quint64 cycle,
                          const std::list<Instance>& instances)
{
    const QDir folder(QDir::currentPath());
    folder.mkpath(QStringLiteral(u"OutputXML"));
    XMLDocument document;
    XMLElement* root = document.NewElement("vek_hs");
    root->SetAttribute("xmlns", "urn:ietf:params:xml:ns:yang:vek_hs");
    document.InsertEndChild(root);
    addNumber(root, "slotLen", 200);
    addNumber(root, "schedCycle", cycle);
    XMLElement* flows = add(root, "flows");
    XMLElement* current = document.NewElement("flow");
    quint16 number = 0;
    for (const Instance& instance : instances) {
        if (instance.flowID != number) {
            current = add(flows, "flow");
            number = instance.flowID;
        }
        addInstance(current, number, instance);
    }
    const QString path = folder.absolutePath() + QStringLiteral(u"/OutputXML/") + fileName;
    document.SaveFile(path.toUtf8().constData());
}

qint32 readWindowsDocument(Planner& planner)
{
    qDebug() << "finding vek_hs.xml----------";
    planner.maxRxSlot = 0;
    QDir folder(QDir::currentPath());
    if (!folder.cd(QStringLiteral(u"OutputXML")))
        return -2;
    for (const QString& entry : folder.entryList(QDir::Files)) {
        const QFileInfo file(folder, entry);
        if (file.completeBaseName() != QStringLiteral(u"vek_hs"))
            continue;
        const QString path = file.absoluteFilePath();
        qDebug() << path;
        XMLDocument document;
        if (document.LoadFile(path.toUtf8().constData()) != tinyxml2::XML_SUCCESS)
            return -1;
        qDebug() << "parsing vek_hs.xml----------";
        try {
            readRoot(planner, document.FirstChildElement());
        } catch (const Incomplete&) {
            return -1;
        }
        qDebug() << "parsing vek_hs.xml end----------";
    }
    qDebug() << "Parsing vek_hs.xml End----------";
    return 0;
}

void printInstances(const std::list<Instance>& instances)
{
    qDebug() << "print TTStreamInstanceList";
    for (const Instance& instance : instances) {
        qDebug() << "  flowID:" << instance.flowID;
        qDebug() << "  seq:" << instance.seq;
        for (const Path& path : instance.paths) {
            qDebug() << "  talker  :" << path.talkerNodeID << path.talkerOutport;
            qDebug() << "    talker schedtxwin:" << path.schedtxwin.start << path.schedtxwin.end;
            for (const Hop& hop : path.bridges) {
                qDebug() << "  bridge  :" << hop.nodeID << hop.outport;
                qDebug() << "    bridge schedtxwin:" << hop.schedtxwin.start << hop.schedtxwin.end;
            }
            qDebug() << "  listener:" << path.listenerNodeID << path.listenerInport;
            qDebug() << "    listener schedrxwin:" << path.schedrxwin.start << path.schedrxwin.end;
            qDebug() << "    -----------------------";
            qDebug() << "";
        }
    }
}

} // namespace twin
