#include "GateFormats.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

NodeNames::NodeNames(const verification::Network& network)
{
    for (const verification::NetworkNode& node : network.nodes) {
        m_names.emplace(node.nodeID, node.name);
        ++m_uses[node.name];
    }
}

QString NodeNames::nameOf(int node) const
{
    const auto place = m_names.find(node);
    return place == m_names.end() ? QString::number(node) : place->second;
}

QString NodeNames::interfaceOf(int node, int port) const
{
    static const QRegularExpression plain(QStringLiteral("^[A-Za-z0-9_.-]+$"));
    const auto place = m_names.find(node);
    const bool usable = place != m_names.end() && plain.match(place->second).hasMatch() &&
                        m_uses.at(place->second) == 1;
    const QString name = usable ? place->second : QStringLiteral("node%1").arg(node);
    return QStringLiteral("%1-%2").arg(name).arg(port);
}

QString csvField(const QString& text)
{
    if (!text.contains(QLatin1Char(',')) && !text.contains(QLatin1Char('"')) &&
        !text.contains(QLatin1Char('\n')))
        return text;
    QString doubled = text;
    doubled.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + doubled + QLatin1Char('"');
}

static int openStates(int trafficClass)
{
    return 1 << trafficClass;
}

/// A bit a class: the scheduled one alone, or all others.
static int statesOf(const GateEntry& entry, int trafficClass)
{
    const int open = openStates(trafficClass);
    return entry.isOpen ? open : 0xFF & ~open;
}

static QString remarks(const GateSetting& setting)
{
    QString text;
    for (const QString& line : setting.assumptions)
        text += QStringLiteral("# ") + line + QLatin1Char('\n');
    return text;
}

QByteArray gatesAsCsv(const std::vector<GateList>& lists, const NodeNames& names,
                      const GateSetting& setting)
{
    QString text = remarks(setting);
    text += QStringLiteral("node,name,port,index,gate_states,interval_ns\n");
    for (const GateList& list : lists) {
        int index = 0;
        for (const GateEntry& entry : list.entries) {
            text += QStringLiteral("%1,%2,%3,%4,0x%5,%6\n")
                        .arg(QString::number(list.node), csvField(names.nameOf(list.node)),
                             QString::number(list.port), QString::number(index++),
                             QStringLiteral("%1").arg(statesOf(entry, setting.trafficClass), 2, 16,
                                                      QLatin1Char('0')),
                             QString::number(entry.interval_ns));
        }
    }
    return text.toUtf8();
}

static QJsonObject controlList(const GateList& list, int trafficClass)
{
    QJsonArray entries;
    for (const GateEntry& entry : list.entries) {
        entries.append(
            QJsonObject{{QStringLiteral("index"), entries.size()},
                        {QStringLiteral("operation-name"),
                         QStringLiteral("ieee802-dot1q-sched:set-gate-states")},
                        {QStringLiteral("time-interval-value"), entry.interval_ns},
                        {QStringLiteral("gate-states-value"), statesOf(entry, trafficClass)}});
    }
    return {{QStringLiteral("gate-control-entry"), entries}};
}

static QJsonObject gateParameters(const GateList& list, const GateSetting& setting)
{
    return {{QStringLiteral("gate-enabled"), true},
            {QStringLiteral("admin-gate-states"), 0xFF},
            {QStringLiteral("admin-control-list"), controlList(list, setting.trafficClass)},
            {QStringLiteral("admin-cycle-time"),
             QJsonObject{{QStringLiteral("numerator"), setting.cycle_us},
                         {QStringLiteral("denominator"), 1000000}}},
            {QStringLiteral("admin-cycle-time-extension"), 0},
            {QStringLiteral("admin-base-time"),
             QJsonObject{{QStringLiteral("seconds"), QStringLiteral("0")}, // 64 bits are a text
                         {QStringLiteral("nanoseconds"), 0}}},
            {QStringLiteral("config-change"), true}};
}

QByteArray gatesAsJson(const std::vector<GateList>& lists, const NodeNames& names,
                       const GateSetting& setting)
{
    QJsonArray interfaces;
    for (const GateList& list : lists) {
        interfaces.append(QJsonObject{
            {QStringLiteral("name"), names.interfaceOf(list.node, list.port)},
            {QStringLiteral("type"), QStringLiteral("iana-if-type:ethernetCsmacd")},
            {QStringLiteral("ieee802-dot1q-bridge:bridge-port"),
             QJsonObject{{QStringLiteral("ieee802-dot1q-sched-bridge:gate-parameter-table"),
                          gateParameters(list, setting)}}}});
    }
    const QJsonObject document{{QStringLiteral("ietf-interfaces:interfaces"),
                                QJsonObject{{QStringLiteral("interface"), interfaces}}}};
    return QJsonDocument(document).toJson();
}

/// Priorities 0 to 15: the scheduled class has a traffic class of its own, 1.
static QString priorityMap(int trafficClass)
{
    QStringList map;
    for (int priority = 0; priority < 16; ++priority)
        map.append(priority == trafficClass ? QStringLiteral("1") : QStringLiteral("0"));
    return map.join(QLatin1Char(' '));
}

QByteArray gatesAsTaprio(const std::vector<GateList>& lists, const NodeNames& names,
                         const GateSetting& setting)
{
    QString text = remarks(setting);
    for (const GateList& list : lists) {
        text +=
            QStringLiteral("tc qdisc replace dev %1 parent root handle 100 taprio num_tc 2 map %2 "
                           "queues 1@0 1@1 base-time 0 cycle-time %3")
                .arg(names.interfaceOf(list.node, list.port), priorityMap(setting.trafficClass),
                     QString::number(setting.cycle_us * 1000));
        for (const GateEntry& entry : list.entries)
            text += QStringLiteral(" sched-entry S 0%1 %2")
                        .arg(entry.isOpen ? 2 : 1)
                        .arg(entry.interval_ns);
        text += QStringLiteral(" clockid CLOCK_TAI\n");
    }
    return text.toUtf8();
}
