#include "app/FindingText.h"

#include "app/PlanCheck.h"

#include <QStringList>

using verification::Finding;
using verification::Kind;
using verification::Reason;
using verification::Severity;
using verification::Transmission;

static constexpr size_t mostTransmissions = 20;
static constexpr size_t mostLinesOfANode = 6;

namespace
{

/// What the user reads about a kind; in the explanation %1 stands for what was found, %2 and %3 for
/// the smallest and the largest number that would be right, %4 for the node that was found.
struct KindText {
    Kind kind;
    const char16_t* name;
    const char16_t* explanation;
};

constexpr KindText kindTexts[] = {
    {Kind::DamagedDocument, u"文档残缺", u"有一部分缺失或不是数字"},
    {Kind::SlotLength, u"时隙长度不符", u"调度表写的是 %1us，窗口按 %2us 计算"},
    {Kind::CycleLength, u"循环周期不符", u"调度表写的是 %1us，各流周期的最小公倍数是 %2us"},
    {Kind::SharedSlot, u"时隙冲突", u"%1 次发送占用同一时隙"},
    {Kind::SharedSlotOverCycle, u"跨周期时隙冲突", u"调度表循环后，%1 次发送占用同一时隙"},
    {Kind::HopOrder, u"转发次序颠倒", u"在时隙 %1 发送，最早只能在时隙 %2"},
    {Kind::LongWait, u"等待过久", u"在交换机中等待 %1 个时隙，允许 %2 到 %3 个"},
    {Kind::SendWindow, u"超出发送窗口", u"在时隙 %1 发送，发送窗口是时隙 [%2,%3]"},
    {Kind::ReceiveWindow, u"超出接收窗口", u"在时隙 %1 收到，接收窗口是时隙 [%2,%3]"},
    {Kind::ReceiveSlot, u"交换机接收时隙不符", u"调度表在时隙 %1 接收，帧在时隙 %2 到达"},
    {Kind::ListenerSlot, u"接收端时隙不符", u"调度表在时隙 %1 接收，帧在时隙 %2 到达"},
    {Kind::MissingFlow, u"流未规划", u"%2 次发送都不在调度表中"},
    {Kind::MissingTransmission, u"缺少发送", u"一个循环周期有 %1 次发送，应有 %2 次"},
    {Kind::ExtraTransmission, u"多余的发送", u"没有 TT 流要求这次发送"},
    {Kind::MissingHop, u"路径上缺少时隙", u"虚链路经过该节点，调度表没有它的时隙"},
    {Kind::HopOffPath, u"节点不在路径上", u"虚链路不经过该节点"},
    {Kind::WrongPort, u"端口与路径不符", u"虚链路不经过该端口"},
    {Kind::MissingLink, u"缺少链路", u"路径上的下一个节点是%4，两者之间没有链路"},
    {Kind::UnevenPeriod, u"周期不是时隙的整数倍", u"周期比整数个时隙多 %1us"},
    {Kind::RepeatedFlowNumber, u"流标识重复", u"%1 条 TT 流使用同一流标识"},
    {Kind::UnlistedTalkerPort, u"发送端口未列出", u"发送端还用这个端口发送，调度表没有它的一行"},
    {Kind::UnaskedListener, u"接收端没有接收窗口", u"虚链路通到该节点，流没有给它接收窗口"},
    {Kind::HostOnPath, u"路径经过终端", u"路径中间的节点不是交换机"},
    {Kind::LongFrame, u"帧长超过一个时隙", u"在最慢的链路上要 %1us，一个时隙是 %3us"},
    {Kind::FullBuffers, u"缓冲区不足", u"同时等待的帧最多 %1 个，缓冲区 %3 个"},
    {Kind::BeyondCycle, u"时隙超出循环周期", u"时隙 %1 不在循环周期的 %2 到 %3 之内"},
};

const KindText* textsOf(Kind kind)
{
    for (const KindText& texts : kindTexts) {
        if (texts.kind == kind)
            return &texts;
    }
    return nullptr;
}

} // namespace

QString textOf(Severity severity)
{
    return severity == Severity::Fault ? QStringLiteral(u"故障") : QStringLiteral(u"提示");
}

QString textOf(Kind kind)
{
    const KindText* texts = textsOf(kind);
    return texts ? QString::fromUtf16(texts->name) : QString();
}

static QString textOf(const Transmission& transmission)
{
    const QString flow = QString::number(transmission.flowID);
    if (transmission.seq == Transmission::wholeFlow)
        return flow;
    return flow + QLatin1Char('-') + QString::number(transmission.seq);
}

QString transmissionsText(const Finding& finding)
{
    QStringList texts;
    for (const Transmission& transmission : finding.transmissions) {
        if (size_t(texts.size()) == mostTransmissions) {
            texts.append(QStringLiteral(u"…共 %1").arg(finding.transmissions.size()));
            break;
        }
        texts.append(textOf(transmission));
    }
    return texts.join(QStringLiteral(", "));
}

static QString textOf(Reason reason)
{
    switch (reason) {
    case Reason::None:
        break;
    case Reason::LeadingNumberZero:
        return QStringLiteral(u"排在最前、流标识为 0 的流不参与规划");
    case Reason::DisagreesWithLink:
        return QStringLiteral(u"发送端或接收端与虚链路不符");
    case Reason::BehindDisagreeing:
        return QStringLiteral(u"排在与虚链路不符的流之后，一并舍弃");
    case Reason::UnknownVirtualLink:
        return QStringLiteral(u"没有这条虚链路，或它没有路径");
    case Reason::PeriodZero:
        return QStringLiteral(u"周期为 0");
    }
    return QString();
}

// Not by arg(), which complains of a text without places for its numbers.
static QString numbersText(const PlanCheck& check, const Finding& finding)
{
    const KindText* texts = textsOf(finding.kind);
    QString pattern = texts ? QString::fromUtf16(texts->explanation) : QString();
    if (finding.kind == Kind::MissingLink)
        return pattern.replace(QStringLiteral("%4"), check.nodeName(int(finding.found)));
    return pattern.replace(QStringLiteral("%1"), QString::number(finding.found))
        .replace(QStringLiteral("%2"), QString::number(finding.low))
        .replace(QStringLiteral("%3"), QString::number(finding.high));
}

QString explanationOf(const PlanCheck& check, const Finding& finding)
{
    QStringList parts{numbersText(check, finding)};
    if (finding.reason != Reason::None)
        parts.append(textOf(finding.reason));
    if (!finding.detail.isEmpty())
        parts.append(finding.detail);
    return parts.join(QStringLiteral(u"；"));
}

static QString countsText(size_t faults, size_t remarks)
{
    return QStringLiteral(u"%1 个故障、%2 个提示").arg(faults).arg(remarks);
}

QString summaryOf(const PlanCheck* check)
{
    if (!check)
        return QStringLiteral(u"还没有载入调度表。");
    const verification::Verification& result = check->result();
    const QString examined = QStringLiteral(u"已检查 %1 次发送、%2 条流、%3 个端口。")
                                 .arg(result.transmissions)
                                 .arg(result.flows)
                                 .arg(result.ports);
    if (result.findings.empty())
        return QStringLiteral(u"未发现问题。") + examined;
    const size_t faults = result.faults();
    return QStringLiteral(u"发现 %1。").arg(countsText(faults, result.findings.size() - faults)) +
           examined;
}

static QString lineOf(const Finding& finding)
{
    QStringList parts{textOf(finding.severity)};
    if (finding.port != Finding::nowhere)
        parts.append(QStringLiteral(u"端口%1").arg(finding.port));
    if (finding.slot != Finding::noSlot)
        parts.append(QStringLiteral(u"时隙%1").arg(finding.slot));
    parts.append(textOf(finding.kind));
    if (!finding.transmissions.empty())
        parts.append(QStringLiteral(u"流 ") + transmissionsText(finding));
    return parts.join(QLatin1Char(' '));
}

QString nodeToolTip(const PlanCheck& check, int nodeID)
{
    const std::vector<size_t>& places = check.findingsAt(nodeID);
    if (places.empty())
        return QString();
    size_t faults = 0;
    QStringList lines;
    for (const size_t place : places) {
        const Finding& finding = check.result().findings[place];
        faults += finding.severity == Severity::Fault ? 1 : 0;
        if (size_t(lines.size()) < mostLinesOfANode)
            lines.append(lineOf(finding));
    }
    if (places.size() > mostLinesOfANode)
        lines.append(QStringLiteral(u"……"));
    lines.prepend(countsText(faults, places.size() - faults));
    return lines.join(QLatin1Char('\n'));
}
