#include "verification/Finding.h"

#include <QStringList>

#include <tuple>

namespace verification
{

namespace
{

/// A line names no more transmissions than this; the finding itself holds all.
constexpr size_t mostNamed = 6;

auto orderOf(const Transmission& transmission)
{
    return std::tie(transmission.flowID, transmission.seq);
}

auto orderOf(const Finding& finding)
{
    return std::tie(finding.severity, finding.kind, finding.node, finding.port, finding.slot,
                    finding.transmissions, finding.found, finding.low, finding.high, finding.reason,
                    finding.detail);
}

QString nameOf(const Transmission& transmission)
{
    if (transmission.seq == Transmission::wholeFlow)
        return QString::number(transmission.flowID);
    return QStringLiteral("%1-%2").arg(QString::number(transmission.flowID),
                                       QString::number(transmission.seq));
}

QString listOf(const std::vector<Transmission>& transmissions)
{
    QStringList names;
    for (size_t i = 0; i < transmissions.size() && i < mostNamed; ++i)
        names.append(nameOf(transmissions[i]));
    if (transmissions.size() > mostNamed)
        names.append(QStringLiteral("and %1 more").arg(transmissions.size() - mostNamed));
    return names.join(QStringLiteral(", "));
}

QString describeReason(Reason reason)
{
    switch (reason) {
    case Reason::None:
        return {};
    case Reason::LeadingNumberZero:
        return QStringLiteral("flows of number 0 before all others are in no document");
    case Reason::DisagreesWithLink:
        return QStringLiteral("it disagrees with its virtual link");
    case Reason::BehindDisagreeing:
        return QStringLiteral("a flow before it disagrees with its virtual link");
    case Reason::UnknownVirtualLink:
        return QStringLiteral("its virtual link has no path");
    case Reason::PeriodZero:
        return QStringLiteral("it has no period");
    }
    return {};
}

/// The numbers that disagree, unless the kind has none.
QString describeNumbers(const Finding& finding)
{
    const QString found = QString::number(finding.found);
    if (finding.kind == Kind::MissingLink)
        return QStringLiteral("none to node ") + found;
    if (finding.found == 0 && finding.low == 0 && finding.high == 0)
        return {};
    const QString low = QString::number(finding.low);
    if (finding.low == finding.high)
        return QStringLiteral("%1 instead of %2").arg(found, low);
    return QStringLiteral("%1 not in [%2,%3]").arg(found, low, QString::number(finding.high));
}

} // namespace

bool operator==(const Transmission& a, const Transmission& b)
{
    return orderOf(a) == orderOf(b);
}

bool operator<(const Transmission& a, const Transmission& b)
{
    return orderOf(a) < orderOf(b);
}

bool operator==(const Finding& a, const Finding& b)
{
    return orderOf(a) == orderOf(b);
}

bool operator<(const Finding& a, const Finding& b)
{
    return orderOf(a) < orderOf(b);
}

std::vector<Kind> allKinds()
{
    std::vector<Kind> kinds;
    for (int kind = 0; kind <= static_cast<int>(Kind::BeyondCycle); ++kind)
        kinds.push_back(static_cast<Kind>(kind));
    return kinds;
}

QString nameOf(Kind kind)
{
    switch (kind) {
    case Kind::DamagedDocument:
        return QStringLiteral("damaged document");
    case Kind::SlotLength:
        return QStringLiteral("slot length");
    case Kind::CycleLength:
        return QStringLiteral("cycle length");
    case Kind::SharedSlot:
        return QStringLiteral("shared slot");
    case Kind::SharedSlotOverCycle:
        return QStringLiteral("shared slot over the cycle's end");
    case Kind::HopOrder:
        return QStringLiteral("sent before it came");
    case Kind::LongWait:
        return QStringLiteral("wait beyond the buffers");
    case Kind::SendWindow:
        return QStringLiteral("outside the send window");
    case Kind::ReceiveWindow:
        return QStringLiteral("outside the receive window");
    case Kind::ReceiveSlot:
        return QStringLiteral("receive slot of a switch");
    case Kind::ListenerSlot:
        return QStringLiteral("receive slot of a listener");
    case Kind::MissingFlow:
        return QStringLiteral("missing flow");
    case Kind::MissingTransmission:
        return QStringLiteral("missing transmission");
    case Kind::ExtraTransmission:
        return QStringLiteral("transmission nobody asks for");
    case Kind::MissingHop:
        return QStringLiteral("missing hop");
    case Kind::HopOffPath:
        return QStringLiteral("hop off the path");
    case Kind::WrongPort:
        return QStringLiteral("port the path does not use");
    case Kind::MissingLink:
        return QStringLiteral("missing link");
    case Kind::UnevenPeriod:
        return QStringLiteral("period that is no whole number of slots");
    case Kind::RepeatedFlowNumber:
        return QStringLiteral("repeated flow number");
    case Kind::UnlistedTalkerPort:
        return QStringLiteral("talker port without a row");
    case Kind::UnaskedListener:
        return QStringLiteral("listener without a receive window");
    case Kind::HostOnPath:
        return QStringLiteral("path through a host");
    case Kind::LongFrame:
        return QStringLiteral("frame longer than a slot");
    case Kind::FullBuffers:
        return QStringLiteral("more frames than buffers");
    case Kind::BeyondCycle:
        return QStringLiteral("slot beyond the cycle");
    }
    return {};
}

QString describe(const Finding& finding)
{
    QStringList parts{finding.severity == Severity::Fault ? QStringLiteral("fault")
                                                          : QStringLiteral("remark"),
                      nameOf(finding.kind)};
    if (finding.node != Finding::nowhere)
        parts.append(QStringLiteral("node %1").arg(finding.node));
    if (finding.port != Finding::nowhere)
        parts.append(QStringLiteral("port %1").arg(finding.port));
    if (finding.slot != Finding::noSlot)
        parts.append(QStringLiteral("slot %1").arg(finding.slot));
    if (!finding.transmissions.empty())
        parts.append(QStringLiteral("flow ") + listOf(finding.transmissions));
    for (const QString& part :
         {describeNumbers(finding), describeReason(finding.reason), finding.detail}) {
        if (!part.isEmpty())
            parts.append(part);
    }
    return parts.join(QStringLiteral(", "));
}

} // namespace verification
