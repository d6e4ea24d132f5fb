#include "verification/NetworkDocument.h"

#include "verification/FlowTree.h"

#include <algorithm>

namespace verification
{

namespace
{

/// A last slot that is only partly inside a window counts from this many microseconds on.
constexpr qint64 smallestLastSlot_us = 30;

/// What an unknown name is on a path, where only 16 bits are kept.
constexpr int unknownNode = 0xFFFF;

qint64 floorDivide(qint64 value, qint64 by)
{
    const qint64 quotient = value / by;
    return value % by < 0 ? quotient - 1 : quotient;
}

/// The slots that a window of microseconds covers.
SlotRange slotsOf(qint64 low_us, qint64 high_us)
{
    const qint64 rest = high_us % slotLength_us; // keeps the sign, so none counts below zero
    const bool lastCounts = rest >= smallestLastSlot_us;
    SlotRange range;
    range.first = -floorDivide(-low_us, slotLength_us);
    range.last = floorDivide(high_us, slotLength_us) - (lastCounts ? 0 : 1);
    return range;
}

/// Behind the first "[", up to the next bracket of either kind; a reference into the text, because
/// taking apart one that is nothing but brackets would cost ten times its size.
QStringRef betweenBrackets(const QString& text)
{
    const int open = text.indexOf(QLatin1Char('['));
    if (open < 0)
        return {};
    const QStringRef behind = text.midRef(open + 1);
    const auto end = std::find_if(behind.begin(), behind.end(), [](QChar character) {
        return character == QLatin1Char('[') || character == QLatin1Char(']');
    });
    return behind.left(static_cast<int>(end - behind.begin()));
}

QString withoutQuotes(QString text)
{
    return text.remove(QLatin1Char('"'));
}

} // namespace

NetworkDocument::NetworkDocument(std::vector<Finding>& damage)
    : m_reading(QStringLiteral("vek_input.xml"), damage)
{
}

void NetworkDocument::read(const tinyxml2::XMLElement& root)
{
    readTopology(m_reading.child(&root, "topology"));
    forEachInList(m_reading.child(&root, "virtuallinks"), "virtuallink",
                  [this](Element element) { readVirtualLink(element); });
    readFlows(m_reading.child(&root, "flows"));
}

Network NetworkDocument::network() const
{
    Network network;
    network.nodes = m_hosts;
    network.nodes.insert(network.nodes.end(), m_switches.begin(), m_switches.end());
    network.flows = m_flows;
    return network;
}

// ---- Values, as the planning converts them: what is no number, or does not fit, is 0.

quint16 NetworkDocument::number16(Element parent, const char* name)
{
    return m_reading.text(parent, name).toUShort(nullptr, 10);
}

SlotRange NetworkDocument::window(Element parent, const char* name)
{
    const QString text = m_reading.text(parent, name);
    const QStringRef inside = betweenBrackets(text);
    const int comma = inside.indexOf(QLatin1Char(','));
    if (comma < 0)
        m_reading.report(parent, QStringLiteral("\"%1\" is no window").arg(text));
    const QStringRef behind = comma < 0 ? QStringRef() : inside.mid(comma + 1);
    return slotsOf(inside.left(comma).toInt(nullptr, 10),
                   behind.left(behind.indexOf(QLatin1Char(','))).toInt(nullptr, 10));
}

// ---- Topology

void NetworkDocument::readTopology(Element topology)
{
    forEachInList(m_reading.child(topology, "hosts"), "host",
                  [this](Element element) { readNode(element, "hostname", false); });
    forEachInList(m_reading.child(topology, "switches"), "switch",
                  [this](Element element) { readNode(element, "switchname", true); });
    forEachInList(m_reading.child(topology, "links"), "link",
                  [this](Element element) { readLink(element); });
}

void NetworkDocument::readNode(Element element, const char* nameElement, bool isSwitch)
{
    NetworkNode node;
    node.name = withoutQuotes(m_reading.text(element, nameElement));
    node.nodeID = number16(element, "nodeID");
    node.isSwitch = isSwitch;
    node.buffers = number16(m_reading.child(element, "opts"), "buffernum");
    QHash<QString, int>& ids = isSwitch ? m_switchIds : m_hostIds;
    if (!ids.contains(node.name))
        ids.insert(node.name, node.nodeID);
    (isSwitch ? m_switches : m_hosts).push_back(std::move(node));
}

int NetworkDocument::nodeOfName(const QString& name) const
{
    const auto host = m_hostIds.constFind(name);
    return host != m_hostIds.constEnd() ? *host : m_switchIds.value(name, unknownName);
}

void NetworkDocument::readLink(Element element)
{
    const int source = nodeOfName(withoutQuotes(m_reading.text(element, "srcnode")));
    const int target = nodeOfName(withoutQuotes(m_reading.text(element, "dstnode")));
    const int sourcePort = number16(element, "srcport");
    const int targetPort = number16(element, "dstport");
    const int bandwidth = number16(m_reading.child(element, "opts"), "bandwidth");
    if (source == unknownName || target == unknownName)
        return;
    // Of parallel links the last one counts.
    m_links[{source, target}] = {sourcePort, targetPort, bandwidth};
    m_links[{target, source}] = {targetPort, sourcePort, bandwidth};
}

// ---- Virtual links

void NetworkDocument::readVirtualLink(Element element)
{
    const int vlid = number16(element, "vlid");
    std::vector<NodePath> paths;
    forEachInList(element, "datapath", [&](Element datapath) {
        const QString text = withoutQuotes(QString::fromUtf8(datapath->GetText()));
        NodePath path;
        for (const QString& name : text.split(QLatin1Char(',')))
            path.push_back(nodeOfName(name));
        if (path.size() < 3)
            m_reading.report(datapath, QStringLiteral("\"%1\" is no path").arg(text));
        else
            paths.push_back(std::move(path));
    });
    m_virtualLinks.emplace(vlid, treeOf(paths));
}

NetworkFlow NetworkDocument::treeOf(const std::vector<NodePath>& paths) const
{
    FlowTree tree;
    for (const NodePath& path : paths) {
        tree.begin();
        for (size_t i = 0; i + 1 < path.size(); ++i) {
            const auto found = m_links.find({path[i], path[i + 1]}); // none of an unknown name
            const int node = path[i] == unknownName ? unknownNode : path[i];
            const int next = path[i + 1] == unknownName ? unknownNode : path[i + 1];
            if (found == m_links.end())
                tree.addGap({node, next});
            else
                tree.addBandwidth(found->second.bandwidth_Mbps);
            const Link link = found == m_links.end() ? Link() : found->second;
            tree.addSender(node, link.outport, link.inport);
        }
        tree.end(path.back() == unknownName ? unknownNode : path.back());
    }
    return tree.take();
}

// ---- Flows

void NetworkDocument::readFlows(Element flows)
{
    bool dropped = false;
    forEachInList(flows, "flow", [&](Element element) {
        const Element type = element->FirstChildElement("type");
        if (type && QByteArray(type->GetText()) == "\"TT\"")
            readFlow(element, dropped);
    });
}

/// dropped tells whether a flow before this one disagreed, and becomes true when this one does.
void NetworkDocument::readFlow(Element element, bool& dropped)
{
    const int vlid = number16(element, "vlid");
    const auto found = m_virtualLinks.find(vlid);
    NetworkFlow flow = found != m_virtualLinks.end() ? found->second : NetworkFlow();
    flow.vlid = vlid;
    flow.flowID = number16(element, "flowID");
    flow.period_us = m_reading.text(element, "period").toUInt(nullptr, 10);
    flow.size = number16(element, "size");
    const FlowState own = stateOf(element, flow);
    flow.state = dropped ? FlowState::BehindDisagreeing : own;
    dropped = dropped || own == FlowState::Disagrees;
    if (flow.state == FlowState::Taken) {
        m_onlyZeroSoFar = m_onlyZeroSoFar && flow.flowID == 0;
        if (m_onlyZeroSoFar)
            flow.state = FlowState::LeadingNumberZero;
    }
    m_flows.push_back(std::move(flow));
}

FlowState NetworkDocument::stateOf(Element element, NetworkFlow& flow)
{
    const Element talker = m_reading.child(element, "talker");
    const int talkerNode = nodeOfName(withoutQuotes(m_reading.text(talker, "name")));
    flow.sendWindow = window(talker, "txwin");
    bool agrees = true;
    for (const FlowHop& hop : flow.hops)
        agrees = agrees && (!hop.isTalker() || hop.node == talkerNode);
    agrees = applyListeners(element->FirstChildElement("listeners"), flow) && agrees;
    if (!agrees)
        return FlowState::Disagrees;
    if (flow.period_us == 0)
        return FlowState::NoPeriod;
    return flow.hops.empty() ? FlowState::NoVirtualLink : FlowState::Taken;
}

bool NetworkDocument::applyListeners(Element listeners, NetworkFlow& flow)
{
    bool agrees = true;
    forEachInList(listeners, "listener", [&](Element element) {
        const int node = nodeOfName(withoutQuotes(m_reading.text(element, "name")));
        const SlotRange range = window(element, "rxwin");
        bool matched = false;
        for (FlowListener& listener : flow.listeners) {
            if (listener.node == node) {
                listener.window = range;
                listener.hasWindow = true;
                matched = true;
            }
        }
        agrees = agrees && matched;
    });
    return agrees;
}

} // namespace verification
