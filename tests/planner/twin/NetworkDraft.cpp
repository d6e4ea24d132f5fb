#include "tests/planner/twin/NetworkDraft.h"

namespace
{

/// Writes elements as plain text, so that no code of the engine takes part.
class Text
{
public:
    void open(const char* name) { m_bytes += QByteArray("<") + name + ">\n"; }
    void close(const char* name) { m_bytes += QByteArray("</") + name + ">\n"; }
    void leaf(const char* name, const QString& text)
    {
        m_bytes +=
            QByteArray("<") + name + ">" + text.toHtmlEscaped().toUtf8() + "</" + name + ">\n";
    }
    void leaf(const char* name, qint64 value) { leaf(name, QString::number(value)); }
    void quoted(const char* name, const QString& text)
    {
        leaf(name, QStringLiteral(u"\"%1\"").arg(text));
    }
    QByteArray take() { return m_bytes; }

private:
    QByteArray m_bytes;
};

void writeNode(Text& text, const DraftNode& node)
{
    const char* element = node.isSwitch ? "switch" : "host";
    text.open(element);
    text.quoted(node.isSwitch ? "switchname" : "hostname", node.name);
    text.leaf("nodeID", node.nodeID);
    text.open("opts");
    text.quoted("MAC", QStringLiteral(u"2:0:0:0:0:%1").arg(node.nodeID));
    if (node.isSwitch)
        text.leaf("portnum", node.ports);
    text.leaf("MTU", 1500);
    text.leaf("buffernum", node.buffernum);
    text.close("opts");
    text.close(element);
}

void writeTopology(Text& text, const NetworkDraft& draft)
{
    text.open("topology");
    text.open("hosts");
    for (const DraftNode& node : draft.nodes) {
        if (!node.isSwitch)
            writeNode(text, node);
    }
    text.close("hosts");
    text.open("switches");
    for (const DraftNode& node : draft.nodes) {
        if (node.isSwitch)
            writeNode(text, node);
    }
    text.close("switches");
    text.open("links");
    for (const DraftLink& link : draft.links) {
        text.open("link");
        text.quoted("srcnode", draft.nodes[static_cast<size_t>(link.a)].name);
        text.quoted("dstnode", draft.nodes[static_cast<size_t>(link.b)].name);
        text.leaf("srcport", link.portA);
        text.leaf("dstport", link.portB);
        text.open("opts");
        text.leaf("bandwidth", 1000);
        text.close("opts");
        text.close("link");
    }
    text.close("links");
    text.close("topology");
}

void writeFlow(Text& text, const DraftFlow& flow)
{
    text.open("flow");
    text.leaf("type", flow.type);
    text.leaf("flowID", flow.flowID);
    text.leaf("period", flow.period);
    text.leaf("size", flow.size);
    text.leaf("vlid", flow.vlid);
    text.open("talker");
    text.quoted("name", flow.talker);
    text.leaf("txwin", flow.txwin);
    text.close("talker");
    text.open("listeners");
    for (const DraftListener& listener : flow.listeners) {
        text.open("listener");
        text.quoted("name", listener.name);
        text.leaf("rxwin", listener.rxwin);
        text.close("listener");
    }
    text.close("listeners");
    text.close("flow");
}

} // namespace

QByteArray documentOf(const NetworkDraft& draft)
{
    Text text;
    text.open("vek_input");
    writeTopology(text, draft);
    text.open("virtuallinks");
    for (const DraftVirtualLink& link : draft.virtualLinks) {
        text.open("virtuallink");
        text.leaf("vlid", link.vlid);
        for (const QStringList& path : link.paths)
            text.quoted("datapath", path.join(QLatin1Char(',')));
        text.close("virtuallink");
    }
    text.close("virtuallinks");
    text.open("flows");
    for (const DraftFlow& flow : draft.flows)
        writeFlow(text, flow);
    text.close("flows");
    text.close("vek_input");
    return text.take();
}
