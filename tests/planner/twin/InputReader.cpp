#include "tests/planner/twin/InputReader.h"

#include <tinyxml2.h>

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QStringList>

#include <cmath>
#include <cstring>
#include <vector>

namespace twin
{

using tinyxml2::XMLElement;

namespace
{

/// Thrown where a document lacks something without which reading cannot go on.
struct Incomplete {
};

const XMLElement* child(const XMLElement* parent, const char* name)
{
    const XMLElement* element = parent->FirstChildElement(name);
    if (!element)
        throw Incomplete();
    return element;
}

QString text(const XMLElement* parent, const char* name)
{
    return QString::fromUtf8(child(parent, name)->GetText());
}

quint16 number16(const XMLElement* parent, const char* name)
{
    return text(parent, name).toUShort(nullptr, 10);
}

QString stripQuotes(QString quoted)
{
    return quoted.remove(QLatin1Char('"'));
}

void parseMacText(const QString& address, std::array<quint8, 6>& bytes)
{
    const QStringList parts = stripQuotes(address).split(QLatin1Char(':'));
    for (int i = 0; i < 6 && i < parts.size(); ++i)
        bytes[static_cast<size_t>(i)] = static_cast<quint8>(parts.at(i).toInt(nullptr, 10));
}

void readHosts(Context& context, const XMLElement* hosts)
{
    for (auto* e = hosts->FirstChildElement("host"); e; e = e->NextSiblingElement()) {
        Host host;
        host.name = stripQuotes(text(e, "hostname"));
        host.nodeID = number16(e, "nodeID");
        const XMLElement* opts = child(e, "opts");
        parseMacText(text(opts, "MAC"), host.MAC);
        host.MTU = number16(opts, "MTU");
        host.buffernum = number16(opts, "buffernum");
        context.hosts.push_back(host);
    }
}

void readSwitches(Context& context, const XMLElement* switches)
{
    for (auto* e = switches->FirstChildElement("switch"); e; e = e->NextSiblingElement()) {
        Switch record;
        record.name = stripQuotes(text(e, "switchname"));
        record.nodeID = number16(e, "nodeID");
        const XMLElement* opts = child(e, "opts");
        parseMacText(text(opts, "MAC"), record.MAC);
        record.portnum = number16(opts, "portnum");
        record.MTU = number16(opts, "MTU");
        record.buffernum = number16(opts, "buffernum");
        context.switches.push_back(record);
        context.switchBufferNum = record.buffernum;
    }
}

void readLinks(Context& context, const XMLElement* links)
{
    for (auto* e = links->FirstChildElement("link"); e; e = e->NextSiblingElement()) {
        Link link;
        link.srcnode = static_cast<quint16>(nodeIdOfName(context, stripQuotes(text(e, "srcnode"))));
        link.dstnode = static_cast<quint16>(nodeIdOfName(context, stripQuotes(text(e, "dstnode"))));
        link.srcport = number16(e, "srcport");
        link.dstport = number16(e, "dstport");
        link.bandwidth = number16(child(e, "opts"), "bandwidth");
        context.links.push_back(link);
        Link back = link;
        back.srcnode = link.dstnode;
        back.dstnode = link.srcnode;
        back.srcport = link.dstport;
        back.dstport = link.srcport;
        context.links.push_back(back);
    }
}

void readVirtualLinks(Context& context, const XMLElement* virtuallinks)
{
    for (auto* e = virtuallinks->FirstChildElement("virtuallink"); e; e = e->NextSiblingElement()) {
        VirtualLink link;
        link.vlid = number16(e, "vlid");
        for (auto* d = e->FirstChildElement("datapath"); d; d = d->NextSiblingElement()) {
            const QString names = stripQuotes(QString::fromUtf8(d->GetText()));
            link.paths.push_back(parseDatapath(context, names));
        }
        context.virtualLinks.push_back(link);
    }
}

/// Sets the send windows; false when a path has another talker.
bool readTalker(const Context& context, const XMLElement* talker, Flow& flow)
{
    const Window window = windowToSlots(parseSlotWindow(text(talker, "txwin")));
    const QString name = stripQuotes(text(talker, "name"));
    for (Path& path : flow.paths) {
        if (path.talkerNodeID != nodeIdOfName(context, name))
            return false;
        path.schedtxwin = window;
    }
    return true;
}

/// Sets the receive windows; false when a listener has no path.
bool readListeners(const Context& context, const XMLElement* listeners, Flow& flow)
{
    if (!listeners)
        return true;
    for (auto* e = listeners->FirstChildElement("listener"); e; e = e->NextSiblingElement()) {
        const Window window = windowToSlots(parseSlotWindow(text(e, "rxwin")));
        const QString name = stripQuotes(text(e, "name"));
        bool matched = false;
        for (Path& path : flow.paths) {
            if (path.listenerNodeID == nodeIdOfName(context, name)) {
                path.schedrxwin = window;
                matched = true;
            }
        }
        if (!matched)
            return false;
    }
    return true;
}

void copyPaths(const Context& context, Flow& flow)
{
    for (const VirtualLink& link : context.virtualLinks) {
        if (link.vlid == flow.vlid) {
            flow.paths = link.paths;
            return;
        }
    }
}

void readFlows(Context& context, const XMLElement* flows)
{
    for (auto* e = flows->FirstChildElement("flow"); e; e = e->NextSiblingElement()) {
        const XMLElement* type = e->FirstChildElement("type");
        if (!type || !type->GetText() || std::strcmp(type->GetText(), "\"TT\"") != 0)
            continue;
        Flow flow;
        flow.flowID = number16(e, "flowID");
        flow.period = text(e, "period").toUInt(nullptr, 10);
        flow.size = number16(e, "size");
        flow.vlid = number16(e, "vlid");
        copyPaths(context, flow);
        if (!readTalker(context, child(e, "talker"), flow) ||
            !readListeners(context, e->FirstChildElement("listeners"), flow)) {
            qDebug() << "flow info does not match the virtual link information";
            return;
        }
        if (flow.period == 0 || flow.paths.empty())
            throw Incomplete();
        context.flows.push_back(flow);
    }
}

void readRoot(Context& context, const XMLElement* root)
{
    if (!root)
        throw Incomplete();
    const XMLElement* topology = child(root, "topology");
    readHosts(context, child(topology, "hosts"));
    readSwitches(context, child(topology, "switches"));
    readLinks(context, child(topology, "links"));
    readVirtualLinks(context, child(root, "virtuallinks"));
    readFlows(context, child(root, "flows"));
}

/// Steps 2 to 5 of a path: the ports of each pair of neighbours, the last link of a pair deciding.
/// The numbers are compared in their 32 bits, so that an unknown node is linked to nothing.
void connectPath(const Context& context, const std::vector<quint32>& nodes, Path& path)
{
    for (const Link& link : context.links) {
        if (link.srcnode == nodes[0] && link.dstnode == nodes[1]) {
            path.talkerOutport = link.srcport;
            path.bridges.front().inport = link.dstport;
        }
    }
    for (const Link& link : context.links) {
        if (link.srcnode == nodes[nodes.size() - 2] && link.dstnode == nodes.back()) {
            path.bridges.back().outport = link.srcport;
            path.listenerInport = link.dstport;
        }
    }
    size_t number = 1;
    for (auto first = path.bridges.begin(); std::next(first) != path.bridges.end(); ++first) {
        const auto second = std::next(first);
        for (const Link& link : context.links) {
            if (link.srcnode == nodes[number] && link.dstnode == nodes[number + 1]) {
                first->outport = link.srcport;
                second->inport = link.dstport;
            }
        }
        ++number;
    }
}

/// Compared in 32 bits as well.
void fillBuffers(const Context& context, const std::vector<quint32>& nodes, Path& path)
{
    for (const Host& host : context.hosts) {
        if (host.nodeID == nodes.front())
            path.talkerBuffernum = host.buffernum;
        if (host.nodeID == nodes.back())
            path.listenerBuffernum = host.buffernum;
    }
    size_t number = 1;
    for (Hop& hop : path.bridges) {
        for (const Switch& record : context.switches) {
            if (record.nodeID == nodes[number]) {
                hop.buffernum = record.buffernum;
                break;
            }
        }
        ++number;
    }
}

} // namespace

quint32 nodeIdOfName(const Context& context, const QString& name)
{
    for (const Host& host : context.hosts) {
        if (host.name == name)
            return host.nodeID;
    }
    for (const Switch& record : context.switches) {
        if (record.name == name)
            return record.nodeID;
    }
    return 0xFFFFFFFFU;
}

Path parseDatapath(const Context& context, const QString& text)
{
    const QStringList names = text.split(QLatin1Char(','), Qt::KeepEmptyParts);
    if (names.size() < 3)
        throw Incomplete();
    std::vector<quint32> nodes;
    for (const QString& name : names)
        nodes.push_back(nodeIdOfName(context, name));
    Path path;
    path.talkerNodeID = static_cast<quint16>(nodes.front());
    path.listenerNodeID = static_cast<quint16>(nodes.back());
    for (size_t i = 1; i + 1 < nodes.size(); ++i) {
        Hop hop;
        hop.nodeID = static_cast<quint16>(nodes[i]);
        path.bridges.push_back(hop);
    }
    connectPath(context, nodes, path);
    fillBuffers(context, nodes, path);
    return path;
}

Window parseSlotWindow(const QString& text)
{
    const QString behindBracket = text.split(QLatin1Char('[')).value(1);
    const QString between = behindBracket.split(QLatin1Char(']')).value(0);
    const QStringList bounds = between.split(QLatin1Char(','));
    Window window;
    window.start = bounds.value(0).toInt(nullptr, 10);
    window.end = bounds.value(1).toInt(nullptr, 10);
    return window;
}

Window windowToSlots(const Window& raw)
{
    Window converted;
    converted.start = static_cast<qint32>(std::ceil(raw.start / 200.0));
    const qint32 rest = raw.end % 200;
    if (rest == 0)
        converted.end = raw.end / 200 - 1;
    else if (rest > 29)
        converted.end = static_cast<qint32>(std::ceil(raw.end / 200.0)) - 1;
    else
        converted.end = static_cast<qint32>(std::floor(raw.end / 200.0)) - 1;
    return converted;
}

qint32 readInputDocument(Context& context)
{
    qDebug() << "finding vek_input.xml----------";
    QDir folder(QDir::currentPath());
    if (!folder.cd(QStringLiteral(u"ResourceXML")))
        return -2;
    for (const QString& entry : folder.entryList(QDir::Files)) {
        const QFileInfo file(folder, entry);
        if (file.completeBaseName() != QStringLiteral(u"vek_input"))
            continue;
        const QString path = file.absoluteFilePath();
        qDebug() << path;
        tinyxml2::XMLDocument document;
        const tinyxml2::XMLError error = document.LoadFile(path.toUtf8().constData());
        if (error != tinyxml2::XML_SUCCESS) {
            qDebug() << "INPUT_XML_PARSE_ERR:" << static_cast<int>(error);
            return -1;
        }
        qDebug() << "parsing vek_hs.xml----------";
        try {
            readRoot(context, document.FirstChildElement());
        } catch (const Incomplete&) {
            return -1;
        }
    }
    return 0;
}

} // namespace twin
