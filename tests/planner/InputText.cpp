#include "tests/planner/InputText.h"

#include "tests/support/Documents.h"

static QString element(const QString& name, const QString& text)
{
    return QStringLiteral("<%1>%2</%1>").arg(name, text);
}

static QString number(const QString& name, int value)
{
    return element(name, QString::number(value));
}

static QString quoted(const QString& name, const QString& text)
{
    return element(name, QLatin1Char('"') + text + QLatin1Char('"'));
}

InputText& InputText::host(const QString& name, int nodeID, int buffernum)
{
    const QString opts = quoted(QStringLiteral("MAC"), QStringLiteral("1:2:3:4:5:6")) +
                         number(QStringLiteral("MTU"), 1500) +
                         number(QStringLiteral("buffernum"), buffernum);
    hosts += element(QStringLiteral("host"), quoted(QStringLiteral("hostname"), name) +
                                                 number(QStringLiteral("nodeID"), nodeID) +
                                                 element(QStringLiteral("opts"), opts));
    return *this;
}

InputText& InputText::switchNode(const QString& name, int nodeID, int buffernum)
{
    const QString opts = quoted(QStringLiteral("MAC"), QStringLiteral("1:2:3:4:5:6")) +
                         number(QStringLiteral("portnum"), 8) +
                         number(QStringLiteral("MTU"), 1500) +
                         number(QStringLiteral("buffernum"), buffernum);
    switches += element(QStringLiteral("switch"), quoted(QStringLiteral("switchname"), name) +
                                                      number(QStringLiteral("nodeID"), nodeID) +
                                                      element(QStringLiteral("opts"), opts));
    return *this;
}

InputText& InputText::link(const QString& from, int fromPort, const QString& to, int toPort)
{
    const QString opts = element(QStringLiteral("opts"), number(QStringLiteral("bandwidth"), 1000));
    links += element(QStringLiteral("link"), quoted(QStringLiteral("srcnode"), from) +
                                                 quoted(QStringLiteral("dstnode"), to) +
                                                 number(QStringLiteral("srcport"), fromPort) +
                                                 number(QStringLiteral("dstport"), toPort) + opts);
    return *this;
}

InputText& InputText::virtualLink(int vlid, const QStringList& datapaths)
{
    QString children = number(QStringLiteral("vlid"), vlid);
    for (const QString& path : datapaths)
        children += quoted(QStringLiteral("datapath"), path);
    virtualLinks += element(QStringLiteral("virtuallink"), children);
    return *this;
}

InputText& InputText::flow(int flowID, const QString& period, int vlid, const QString& talker,
                           const QString& txwin, const QList<QPair<QString, QString>>& listeners,
                           const QString& type)
{
    QString listenerElements;
    for (const auto& listener : listeners) {
        listenerElements += element(QStringLiteral("listener"),
                                    quoted(QStringLiteral("name"), listener.first) +
                                        element(QStringLiteral("rxwin"), listener.second));
    }
    const QString talkerElement =
        element(QStringLiteral("talker"),
                quoted(QStringLiteral("name"), talker) + element(QStringLiteral("txwin"), txwin));
    flows +=
        element(QStringLiteral("flow"),
                element(QStringLiteral("type"), type) + number(QStringLiteral("flowID"), flowID) +
                    element(QStringLiteral("period"), period) + number(QStringLiteral("size"), 64) +
                    number(QStringLiteral("vlid"), vlid) + talkerElement +
                    element(QStringLiteral("listeners"), listenerElements));
    return *this;
}

QByteArray InputText::document() const
{
    const QString topology = element(QStringLiteral("hosts"), hosts) +
                             element(QStringLiteral("switches"), switches) +
                             element(QStringLiteral("links"), links);
    return element(QStringLiteral("vek_input"),
                   element(QStringLiteral("topology"), topology) +
                       element(QStringLiteral("virtuallinks"), virtualLinks) +
                       element(QStringLiteral("flows"), flows))
        .toUtf8();
}

void InputText::save() const
{
    writeFile(QStringLiteral("ResourceXML/vek_input.xml"), document());
}

InputText lineNetwork(int switches, int buffernum)
{
    InputText input;
    input.host(QStringLiteral("A"), 1, buffernum).host(QStringLiteral("B"), 2, buffernum);
    QStringList path{QStringLiteral("A")};
    for (int i = 1; i <= switches; ++i) {
        const QString name = QStringLiteral("S%1").arg(i);
        input.switchNode(name, 10 + i, buffernum);
        input.link(path.last(), i == 1 ? 1 : 2, name, 1);
        path.append(name);
    }
    input.link(path.last(), 2, QStringLiteral("B"), 1);
    path.append(QStringLiteral("B"));
    input.virtualLink(1, {path.join(QLatin1Char(','))});
    return input;
}
