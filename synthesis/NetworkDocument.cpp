#include "synthesis/NetworkDocument.h"

#include "planner/InputDocument.h"
#include "planner/documents/DocumentAccess.h"

#include <tinyxml2.h>

#include <algorithm>

namespace synthesis
{

using namespace planner;
using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

namespace
{

Obstacle obstacleOf(FlowReading reading)
{
    switch (reading) {
    case FlowReading::WrongTalker:
        return Obstacle::WrongTalker;
    case FlowReading::UnknownListener:
        return Obstacle::UnknownListener;
    case FlowReading::PeriodZero:
        return Obstacle::PeriodZero;
    case FlowReading::NoPath:
        return Obstacle::NoPath;
    default:
        return Obstacle::OtherType;
    }
}

/// Reads the flow elements one by one, past those at which the planning stops.
class FlowList
{
public:
    explicit FlowList(InputNetwork& network) : m_network(network), m_reader(network.context) {}

    void read(const XMLElement* flows)
    {
        forEachSibling(flows, "flow", [this](const XMLElement* element) {
            readFlow(element);
            ++m_place;
        });
    }

private:
    void readFlow(const XMLElement* element)
    {
        TTFlow flow;
        // What stands behind a flow at which the reading ends may lack anything.
        const FlowReading reading =
            m_isCutOff ? typeBehindCut(element) : m_reader.read(element, flow);
        if (reading != FlowReading::Taken) {
            m_network.obstructed.push_back({m_place, obstacleOf(reading)});
            m_isCutOff = m_isCutOff || reading == FlowReading::WrongTalker ||
                         reading == FlowReading::UnknownListener;
        } else if (m_isCutOff) {
            m_network.obstructed.push_back({m_place, Obstacle::BehindDisagreement});
        } else {
            m_network.context.flows.push_back(std::move(flow));
            m_network.places.push_back(m_place);
        }
    }

    FlowReading typeBehindCut(const XMLElement* element) const
    {
        return FlowReader::isTimeTriggered(element) ? FlowReading::Taken : FlowReading::OtherType;
    }

    InputNetwork& m_network;
    const FlowReader m_reader;
    std::size_t m_place = 0;
    bool m_isCutOff = false;
};

/// Adds what shows only when all flows are known.
void addObstaclesOfContext(InputNetwork& network)
{
    for (const ObstructedFlow& flow : obstaclesOf(network.context))
        network.obstructed.push_back({network.places[flow.flow], flow.obstacle});
    std::sort(network.obstructed.begin(), network.obstructed.end(),
              [](const ObstructedFlow& a, const ObstructedFlow& b) { return a.flow < b.flow; });
}

/// The flow elements of a document that was read without damage, in order.
template <typename Document>
auto flowElements(Document& document)
{
    std::vector<decltype(document.FirstChildElement())> elements;
    auto* flows = document.FirstChildElement()->FirstChildElement("flows");
    for (auto* flow = flows->FirstChildElement("flow"); flow; flow = flow->NextSiblingElement())
        elements.push_back(flow);
    return elements;
}

template <typename Element>
std::vector<Element*> listenerElements(Element* flow)
{
    std::vector<Element*> elements;
    auto* listeners = flow->FirstChildElement("listeners");
    auto* listener = listeners ? listeners->FirstChildElement("listener") : nullptr;
    for (; listener; listener = listener->NextSiblingElement())
        elements.push_back(listener);
    return elements;
}

WindowBounds boundsIn(const XMLElement* parent, const char* name)
{
    const RawWindow raw = parseSlotWindow(childText(parent, name));
    return {raw.start, raw.end};
}

NarrowedWindow narrowed(const WindowBounds& own, const SlotWindow& slots)
{
    return {own, boundsOfSlots(slots, own)};
}

/// Names and numbers of the nodes, and what a plan makes of the flows that it holds.
class Narrowing
{
public:
    Narrowing(const InputNetwork& network, const Found& plan)
        : m_topology(network.context),
          m_plan(plan)
    {
    }

    NarrowedFlow narrow(const XMLElement* element, const TTFlow& flow, std::size_t number) const
    {
        const FlowWindows& windows = m_plan.flows[number];
        NarrowedFlow result;
        result.send =
            narrowed(boundsIn(element->FirstChildElement("talker"), "txwin"), windows.send);
        std::vector<bool> isTaken(flow.paths.size(), false);
        const std::vector<const XMLElement*> listeners = listenerElements(element);
        // The last element for a listener is the one that counts.
        for (std::size_t i = listeners.size(); i > 0; --i) {
            const SlotWindow* slots = windowOf(listeners[i - 1], flow, windows, isTaken);
            if (slots)
                result.listeners.push_back(
                    {i - 1, narrowed(boundsIn(listeners[i - 1], "rxwin"), *slots)});
        }
        std::reverse(result.listeners.begin(), result.listeners.end());
        return result;
    }

private:
    /// That of the paths to the listener; none when a later element has decided on them.
    const SlotWindow* windowOf(const XMLElement* listener, const TTFlow& flow,
                               const FlowWindows& windows, std::vector<bool>& isTaken) const
    {
        const quint32 node = m_topology.nodeIdOfName(stripQuotes(childText(listener, "name")));
        const SlotWindow* found = nullptr;
        std::size_t number = 0;
        for (const VirtualLinkPath& path : flow.paths) {
            if (path.listenerNodeID == node && !isTaken[number]) {
                isTaken[number] = true;
                found = &windows.receive[number];
            }
            ++number;
        }
        return found;
    }

    const TopologyIndex m_topology;
    const Found& m_plan;
};

bool isLeftOut(const InputNetwork& network, std::size_t place)
{
    return std::any_of(network.obstructed.begin(), network.obstructed.end(),
                       [place](const ObstructedFlow& flow) { return flow.flow == place; });
}

void setText(XMLElement* parent, const char* name, const WindowBounds& bounds)
{
    parent->FirstChildElement(name)->SetText(bounds.text().toUtf8().constData());
}

} // namespace

bool InputNetwork::isSearchable() const
{
    return damage.isEmpty() &&
           std::none_of(obstructed.begin(), obstructed.end(),
                        [](const ObstructedFlow& flow) { return preventsSearch(flow.obstacle); });
}

InputNetwork readNetwork(const XMLDocument& document)
{
    InputNetwork network;
    try {
        const XMLElement* root = rootElement(document);
        readTopology(network.context, requiredChild(root, "topology"));
        readVirtualLinks(network.context, requiredChild(root, "virtuallinks"));
        FlowList(network).read(requiredChild(root, "flows"));
        addObstaclesOfContext(network);
    } catch (const DocumentError& error) {
        network.damage = error.message();
    }
    return network;
}

QString WindowBounds::text() const
{
    return QStringLiteral("[%1,%2]").arg(QString::number(low), QString::number(high));
}

WindowBounds boundsOfSlots(const SlotWindow& slots, const WindowBounds& own)
{
    // A last slot may be covered only in part, then the window ends where it did. One that begins
    // inside a slot begins to count with the next.
    const qint64 end = (qint64(slots.end) + 1) * slotLength_us;
    return {slots.start * slotLength_us, static_cast<qint32>(std::min<qint64>(end, own.high))};
}

std::vector<NarrowedFlow> narrowedWindows(const XMLDocument& document, const InputNetwork& network,
                                          const Found& plan)
{
    const auto elements = flowElements(document);
    const Narrowing narrowing(network, plan);
    std::vector<NarrowedFlow> flows;
    std::size_t number = 0;
    for (const TTFlow& flow : network.context.flows) {
        const std::size_t place = network.places[number];
        if (!isLeftOut(network, place)) {
            flows.push_back(narrowing.narrow(elements[place], flow, number));
            flows.back().place = place;
        }
        ++number;
    }
    return flows;
}

void writeNarrowedWindows(XMLDocument& document, const std::vector<NarrowedFlow>& flows)
{
    const auto elements = flowElements(document);
    for (const NarrowedFlow& flow : flows) {
        XMLElement* element = elements[flow.place];
        setText(element->FirstChildElement("talker"), "txwin", flow.send.after);
        const auto listeners = listenerElements(element);
        for (const NarrowedListener& listener : flow.listeners)
            setText(listeners[listener.place], "rxwin", listener.window.after);
    }
}

/// Takes away the text beside the root.
///
/// The parser bears it behind the root when an end tag follows, and reads no further; written back
/// without that tag it would make the document unreadable.
static void removeTextBesideRoot(XMLDocument& document)
{
    for (tinyxml2::XMLNode* node = document.FirstChild(); node;) {
        tinyxml2::XMLNode* const next = node->NextSibling();
        if (node->ToText())
            document.DeleteNode(node);
        node = next;
    }
}

QByteArray narrowedDocument(const XMLDocument& document, const InputNetwork& network,
                            const Found& plan)
{
    XMLDocument copy(document.ProcessEntities(), tinyxml2::PRESERVE_WHITESPACE);
    document.DeepCopy(&copy);
    removeTextBesideRoot(copy);
    writeNarrowedWindows(copy, narrowedWindows(document, network, plan));
    tinyxml2::XMLPrinter printer;
    copy.Print(&printer);
    return QByteArray(printer.CStr(), printer.CStrSize() - 1);
}

} // namespace synthesis
