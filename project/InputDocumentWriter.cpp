#include "project/InputDocumentWriter.h"

#include "project/DocumentFolder.h"
#include "topology/Arrow.h"
#include "topology/DiagramItem.h"

#include <QFile>
#include <QFileInfo>

#include <tinyxml2.h>

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;
using tinyxml2::XMLNode;

static QString quoted(const QString& text)
{
    return QStringLiteral("\"%1\"").arg(text);
}

static QString window(const QString& low, const QString& high)
{
    return QStringLiteral("[%1,%2]").arg(low, high);
}

static XMLElement* appendElement(XMLDocument& doc, XMLNode* parent, const char* name)
{
    return parent->InsertEndChild(doc.NewElement(name))->ToElement();
}

// An empty text is a text node all the same, so the element is written with both its tags. No
// document can hold a null character, which a damaged project file may: it would end the text.
static void appendText(XMLDocument& doc, XMLElement* parent, const char* name, QString text)
{
    text.remove(QChar::Null);
    appendElement(doc, parent, name)->InsertEndChild(doc.NewText(text.toUtf8().constData()));
}

InputDocumentParts appendParts(XMLDocument& doc)
{
    XMLElement* root = appendElement(doc, &doc, "vek_input");
    root->SetAttribute("xmlns", "urn:ietf:params:xml:ns:yang:vek_input");
    XMLElement* topology = appendElement(doc, root, "topology");
    InputDocumentParts parts;
    parts.hosts = appendElement(doc, topology, "hosts");
    parts.switches = appendElement(doc, topology, "switches");
    parts.links = appendElement(doc, topology, "links");
    parts.virtuallinks = appendElement(doc, root, "virtuallinks");
    parts.flows = appendElement(doc, root, "flows");
    return parts;
}

void appendHost(XMLDocument& doc, XMLElement* hosts, const DiagramItem& node)
{
    XMLElement* host = appendElement(doc, hosts, "host");
    appendText(doc, host, "hostname", quoted(node.nodeName));
    appendText(doc, host, "nodeID", node.nodeId);
    XMLElement* opts = appendElement(doc, host, "opts");
    appendText(doc, opts, "MAC", quoted(node.nodeMac));
    appendText(doc, opts, "MTU", node.mtu);
    appendText(doc, opts, "buffernum", node.bufferNum);
}

void appendSwitch(XMLDocument& doc, XMLElement* switches, const DiagramItem& node)
{
    XMLElement* element = appendElement(doc, switches, "switch");
    appendText(doc, element, "switchname", quoted(node.nodeName));
    appendText(doc, element, "nodeID", node.nodeId);
    XMLElement* opts = appendElement(doc, element, "opts");
    appendText(doc, opts, "MAC", quoted(node.nodeMac));
    appendText(doc, opts, "portnum", node.portNum);
    appendText(doc, opts, "MTU", node.mtu);
    appendText(doc, opts, "buffernum", node.bufferNum);
}

void appendLink(XMLDocument& doc, XMLElement* links, const Arrow& arrow)
{
    XMLElement* link = appendElement(doc, links, "link");
    appendText(doc, link, "srcnode", quoted(arrow.srcNode));
    appendText(doc, link, "dstnode", quoted(arrow.dstNode));
    appendText(doc, link, "srcport", arrow.srcPort);
    appendText(doc, link, "dstport", arrow.dstPort);
    appendText(doc, appendElement(doc, link, "opts"), "bandwidth", arrow.bandWidth);
}

void appendVirtualLink(XMLDocument& doc, XMLElement* virtuallinks, const VLineInfo& vLine)
{
    XMLElement* element = appendElement(doc, virtuallinks, "virtuallink");
    appendText(doc, element, "vlid", vLine.vLineId);
    for (const VLineItems& path : vLine.vLinePaths) {
        const QString names = nodeNamesOf(path).join(QLatin1Char(','));
        appendText(doc, element, "datapath", QLatin1Char('"') + names + QLatin1Char('"'));
    }
}

void appendFlow(XMLDocument& doc, XMLElement* flows, const FlowInfo& flow)
{
    XMLElement* element = appendElement(doc, flows, "flow");
    appendText(doc, element, "type", quoted(flow.flowType));
    appendText(doc, element, "flowID", flow.flowId);
    appendText(doc, element, "period", flow.flowPeriod);
    appendText(doc, element, "size", flow.flowSize);
    appendText(doc, element, "vlid", flow.vLineId);
    XMLElement* talker = appendElement(doc, element, "talker");
    appendText(doc, talker, "name", quoted(flow.srcNode));
    appendText(doc, talker, "txwin", window(flow.sendWindowLow, flow.sendWindowHigh));
    XMLElement* listeners = appendElement(doc, element, "listeners");
    for (const DstNodeInfo& node : flow.dstNodes) {
        XMLElement* listener = appendElement(doc, listeners, "listener");
        appendText(doc, listener, "name", quoted(node.dstNodeName));
        appendText(doc, listener, "rxwin", window(node.rcvWindowLow, node.rcvWindowHigh));
    }
}

// What is written through a link ends in a file of the user's, and a pipe would be waited for.
static void removeUnlessOwn(const QString& path)
{
    const QFileInfo file(path);
    if (file.isSymLink() || !file.isFile())
        QFile::remove(path);
}

void saveInputDocument(XMLDocument& doc)
{
    ensureDocumentFolder(inputFolder());
    const QString path = inputFolder() + QStringLiteral("/vek_input.xml");
    removeUnlessOwn(path);
    doc.SaveFile(QFile::encodeName(path).constData());
}
