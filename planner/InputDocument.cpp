#include "planner/InputDocument.h"

#include "planner/DocumentAccess.h"
#include "planner/PlanningLog.h"

#include <QDir>
#include <QStringList>

#include <tinyxml2.h>

#include <cmath>
#include <unordered_map>
#include <vector>

namespace planner
{

using tinyxml2::XMLElement;

namespace
{

/// A last slot that is only partly inside a window counts from this many microseconds on.
constexpr qint32 smallestLastSlot_us = 30;

QString quotedText(const XMLElement* parent, const char* name)
{
    return stripQuotes(childText(parent, name));
}

// Text that is no number, or does not fit, reads as 0.
quint16 number16(const XMLElement* parent, const char* name)
{
    return childText(parent, name).toUShort(nullptr, 10);
}

quint32 number32(const XMLElement* parent, const char* name)
{
    return childText(parent, name).toUInt(nullptr, 10);
}

SlotWindow slotWindow(const XMLElement* parent, const char* name)
{
    return windowToSlots(parseSlotWindow(childText(parent, name)));
}

HostInfo readHost(const XMLElement* element)
{
    HostInfo host;
    host.name = quotedText(element, "hostname");
    host.nodeID = number16(element, "nodeID");
    const XMLElement* opts = requiredChild(element, "opts");
    parseMacText(quotedText(opts, "MAC"), host.MAC);
    host.MTU = number16(opts, "MTU");
    host.buffernum = number16(opts, "buffernum");
    return host;
}

SwitchInfo readSwitch(const XMLElement* element)
{
    SwitchInfo info;
    info.name = quotedText(element, "switchname");
    info.nodeID = number16(element, "nodeID");
    const XMLElement* opts = requiredChild(element, "opts");
    parseMacText(quotedText(opts, "MAC"), info.MAC);
    info.portnum = number16(opts, "portnum");
    info.MTU = number16(opts, "MTU");
    info.buffernum = number16(opts, "buffernum");
    return info;
}

LinkInfo readLink(const TopologyIndex& topology, const XMLElement* element)
{
    LinkInfo link;
    link.srcnode = static_cast<quint16>(topology.nodeIdOfName(quotedText(element, "srcnode")));
    link.dstnode = static_cast<quint16>(topology.nodeIdOfName(quotedText(element, "dstnode")));
    link.srcport = number16(element, "srcport");
    link.dstport = number16(element, "dstport");
    link.bandwidth = number16(requiredChild(element, "opts"), "bandwidth");
    return link;
}

LinkInfo reversed(const LinkInfo& link)
{
    return {link.dstnode, link.srcnode, link.dstport, link.srcport, link.bandwidth};
}

/// The numbers are those of the path's nodes, in path order; nothing is linked to an unknown one.
void resolvePorts(const TopologyIndex& topology, const std::vector<quint32>& nodes,
                  VirtualLinkPath& path)
{
    quint16* outport = &path.talkerOutport;
    auto node = nodes.begin();
    for (BridgeHop& hop : path.bridges) {
        const LinkPorts ports = topology.portsBetween(*node, *std::next(node));
        *outport = ports.outport;
        hop.inport = ports.inport;
        outport = &hop.outport;
        ++node;
    }
    const LinkPorts ports = topology.portsBetween(*node, *std::next(node));
    *outport = ports.outport;
    path.listenerInport = ports.inport;
}

void resolveBufferNumbers(const TopologyIndex& topology, VirtualLinkPath& path)
{
    path.talkerBuffernum = topology.bufferNumOfHost(path.talkerNodeID);
    path.listenerBuffernum = topology.bufferNumOfHost(path.listenerNodeID);
    for (BridgeHop& hop : path.bridges)
        hop.buffernum = topology.bufferNumOfSwitch(hop.nodeID);
}

bool applyTalker(const TopologyIndex& topology, const XMLElement* talker, TTFlow& flow)
{
    const quint32 talkerNode = topology.nodeIdOfName(quotedText(talker, "name"));
    const SlotWindow window = slotWindow(talker, "txwin");
    for (VirtualLinkPath& path : flow.paths) {
        if (path.talkerNodeID != talkerNode)
            return false;
        path.schedtxwin = window;
    }
    return true;
}

bool applyListener(const TopologyIndex& topology, const XMLElement* listener, TTFlow& flow)
{
    const quint32 listenerNode = topology.nodeIdOfName(quotedText(listener, "name"));
    const SlotWindow window = slotWindow(listener, "rxwin");
    bool matched = false;
    for (VirtualLinkPath& path : flow.paths) {
        if (path.listenerNodeID == listenerNode) {
            path.schedrxwin = window;
            matched = true;
        }
    }
    return matched;
}

bool applyListeners(const TopologyIndex& topology, const XMLElement* element, TTFlow& flow)
{
    const XMLElement* listeners = element->FirstChildElement("listeners");
    bool matched = true;
    if (listeners) {
        forEachSibling(listeners, "listener", [&](const XMLElement* listener) {
            matched = matched && applyListener(topology, listener, flow);
        });
    }
    return matched;
}

/// Throws for a flow from which nothing can be planned.
void refuseUnplannable(const TTFlow& flow, FlowReading reading)
{
    if (reading == FlowReading::PeriodZero)
        throw DocumentError(QStringLiteral("flow %1 has period 0").arg(flow.flowID));
    if (reading == FlowReading::NoPath) {
        throw DocumentError(QStringLiteral("flow %1 has no path: virtual link %2 has none")
                                .arg(QString::number(flow.flowID), QString::number(flow.vlid)));
    }
}

qint32 readInputFile(PlanningContext& context, const QString& path)
{
    qCDebug(planningLog) << path;
    tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
    const tinyxml2::XMLError error = document.LoadFile(path.toUtf8().constData());
    if (error != tinyxml2::XML_SUCCESS) {
        qCDebug(planningLog) << "INPUT_XML_PARSE_ERR:" << static_cast<int>(error);
        return code::unreadable;
    }
    qCDebug(planningLog) << "parsing vek_hs.xml----------";
    try {
        const XMLElement* root = rootElement(document);
        readTopology(context, requiredChild(root, "topology"));
        readVirtualLinks(context, requiredChild(root, "virtuallinks"));
        readFlows(context, requiredChild(root, "flows"));
    } catch (const DocumentError& damage) {
        qCDebug(planningLog).noquote() << "vek_input.xml:" << damage.message();
        return code::unreadable;
    }
    return code::ok;
}

} // namespace

qint32 readInputDocument(PlanningContext& context)
{
    qCDebug(planningLog) << "finding vek_input.xml----------";
    QDir folder(QDir::currentPath());
    if (!folder.cd(QStringLiteral("ResourceXML")))
        return code::folderMissing;
    for (const QString& path : filesWithBaseName(folder.path(), QStringLiteral("vek_input"))) {
        const qint32 result = readInputFile(context, path);
        if (result != code::ok)
            return result;
    }
    return code::ok;
}

qint32 readTopology(PlanningContext& context, const XMLElement* topology)
{
    forEachSibling(requiredChild(topology, "hosts"), "host",
                   [&](const XMLElement* element) { context.hosts.push_back(readHost(element)); });
    forEachSibling(requiredChild(topology, "switches"), "switch", [&](const XMLElement* element) {
        context.switches.push_back(readSwitch(element));
        context.switchBufferNum = context.switches.back().buffernum;
    });
    const TopologyIndex nodes(context);
    forEachSibling(requiredChild(topology, "links"), "link", [&](const XMLElement* element) {
        const LinkInfo link = readLink(nodes, element);
        context.links.push_back(link);
        context.links.push_back(reversed(link));
    });
    return code::ok;
}

qint32 readVirtualLinks(PlanningContext& context, const XMLElement* virtuallinks)
{
    const TopologyIndex topology(context);
    forEachSibling(virtuallinks, "virtuallink", [&](const XMLElement* element) {
        VirtualLink virtualLink;
        virtualLink.vlid = number16(element, "vlid");
        forEachSibling(element, "datapath", [&](const XMLElement* datapath) {
            const QString names = stripQuotes(QString::fromUtf8(datapath->GetText()));
            virtualLink.paths.push_back(parseDatapath(topology, names));
        });
        context.virtualLinks.push_back(std::move(virtualLink));
    });
    return code::ok;
}

qint32 readFlows(PlanningContext& context, const XMLElement* flows)
{
    const FlowReader reader(context);
    for (const XMLElement* element = flows->FirstChildElement("flow"); element;
         element = element->NextSiblingElement()) {
        TTFlow flow;
        const FlowReading reading = reader.read(element, flow);
        if (reading == FlowReading::WrongTalker || reading == FlowReading::UnknownListener) {
            qCDebug(planningLog) << "flow info does not match the virtual link information";
            return code::unreadable;
        }
        refuseUnplannable(flow, reading);
        if (reading == FlowReading::Taken)
            context.flows.push_back(std::move(flow));
    }
    return code::ok;
}

FlowReader::FlowReader(const PlanningContext& context) : m_topology(context)
{
    for (const VirtualLink& virtualLink : context.virtualLinks)
        m_virtualLinks.emplace(virtualLink.vlid, &virtualLink);
}

bool FlowReader::isTimeTriggered(const XMLElement* element)
{
    const XMLElement* type = element->FirstChildElement("type");
    return type && QByteArray(type->GetText()) == "\"TT\"";
}

FlowReading FlowReader::read(const XMLElement* element, TTFlow& flow) const
{
    if (!isTimeTriggered(element))
        return FlowReading::OtherType;
    flow.flowID = number16(element, "flowID");
    flow.period = number32(element, "period");
    flow.size = number16(element, "size");
    flow.vlid = number16(element, "vlid");
    const auto virtualLink = m_virtualLinks.find(flow.vlid);
    if (virtualLink != m_virtualLinks.end())
        flow.paths = virtualLink->second->paths;
    if (!applyTalker(m_topology, requiredChild(element, "talker"), flow))
        return FlowReading::WrongTalker;
    if (!applyListeners(m_topology, element, flow))
        return FlowReading::UnknownListener;
    if (flow.period == 0)
        return FlowReading::PeriodZero;
    return flow.paths.empty() ? FlowReading::NoPath : FlowReading::Taken;
}

VirtualLinkPath parseDatapath(const TopologyIndex& topology, const QString& text)
{
    const QStringList names = text.split(QLatin1Char(','));
    if (names.size() < 3) {
        throw DocumentError(
            QStringLiteral("datapath \"%1\" needs a talker, a switch and a listener").arg(text));
    }
    std::vector<quint32> nodes;
    for (const QString& name : names)
        nodes.push_back(topology.nodeIdOfName(name));
    VirtualLinkPath path;
    path.talkerNodeID = static_cast<quint16>(nodes.front());
    path.listenerNodeID = static_cast<quint16>(nodes.back());
    for (auto node = std::next(nodes.begin()); node != std::prev(nodes.end()); ++node) {
        path.bridges.emplace_back();
        path.bridges.back().nodeID = static_cast<quint16>(*node);
    }
    resolvePorts(topology, nodes, path);
    resolveBufferNumbers(topology, path);
    return path;
}

QString stripQuotes(const QString& text)
{
    return QString(text).remove(QLatin1Char('"'));
}

void parseMacText(const QString& text, std::array<quint8, 6>& bytes)
{
    const QStringList parts = text.split(QLatin1Char(':'));
    for (int i = 0; i < 6; ++i) {
        const int value = i < parts.size() ? parts.at(i).toInt(nullptr, 10) : 0;
        bytes[static_cast<size_t>(i)] = static_cast<quint8>(value);
    }
}

SlotWindow parseSlotWindow(const QString& text)
{
    const QStringList bounds = windowBounds(text);
    SlotWindow window;
    window.start = bounds.value(0).toInt(nullptr, 10);
    window.end = bounds.value(1).toInt(nullptr, 10);
    return window;
}

QStringList windowBounds(const QString& text)
{
    const QString behindBracket = text.split(QLatin1Char('[')).value(1);
    return behindBracket.split(QLatin1Char(']')).first().split(QLatin1Char(','));
}

SlotWindow windowToSlots(const SlotWindow& raw)
{
    const double slotLength = slotLength_us;
    const qint32 remainder = raw.end % slotLength_us;
    SlotWindow window;
    window.start = static_cast<qint32>(std::ceil(raw.start / slotLength));
    if (remainder == 0)
        window.end = raw.end / slotLength_us - 1;
    else if (remainder >= smallestLastSlot_us)
        window.end = static_cast<qint32>(std::ceil(raw.end / slotLength)) - 1;
    else
        window.end = static_cast<qint32>(std::floor(raw.end / slotLength)) - 1;
    return window;
}

} // namespace planner
