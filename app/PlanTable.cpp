#include "app/PlanTable.h"

#include "app/FindingText.h"

#include <QApplication>
#include <QStyle>

using verification::Finding;
using verification::FlowLatency;
using verification::PortLoad;
using verification::Severity;
using verification::slotLength_us;
using verification::SlotRange;
using verification::SwitchOccupancy;

static PlanCell textCell(const QString& text)
{
    PlanCell cell;
    cell.text = text;
    return cell;
}

static PlanCell numberCell(qint64 number)
{
    PlanCell cell;
    cell.text = QString::number(number);
    cell.order = number;
    cell.isNumber = true;
    return cell;
}

/// A number that a row may lack; such rows come first.
static PlanCell numberCell(qint64 number, bool present)
{
    if (present)
        return numberCell(number);
    PlanCell cell;
    cell.order = Finding::noSlot;
    cell.isNumber = true;
    return cell;
}

/// How much of something is used, in percent with one decimal.
static PlanCell shareCell(qint64 used, qint64 all)
{
    if (all <= 0)
        return numberCell(0, false);
    PlanCell cell;
    cell.share = double(used) / double(all);
    cell.text = QString::number(cell.share * 100, 'f', 1);
    cell.order = used * 1000000 / all;
    cell.isNumber = true;
    return cell;
}

static PlanCell windowCell(const SlotRange& window, bool present)
{
    PlanCell cell;
    cell.order = present ? window.first : Finding::noSlot;
    if (present)
        cell.text = QStringLiteral("[%1,%2]").arg(window.first).arg(window.last);
    return cell;
}

static PlanCell severityCell(Severity severity)
{
    const bool isFault = severity == Severity::Fault;
    PlanCell cell;
    cell.text = textOf(severity);
    cell.order = isFault ? 0 : 1;
    cell.icon = QApplication::style()->standardIcon(isFault ? QStyle::SP_MessageBoxCritical
                                                            : QStyle::SP_MessageBoxInformation);
    return cell;
}

// ---- Findings

static PlanPlace placeOf(const PlanCheck& check, const Finding& finding)
{
    using verification::Kind;
    PlanPlace place;
    place.node = finding.node;
    place.port = finding.port;
    place.slot = finding.slot;
    place.receives = finding.kind == Kind::ReceiveWindow || finding.kind == Kind::ReceiveSlot ||
                     finding.kind == Kind::ListenerSlot || finding.kind == Kind::UnaskedListener;
    if (!place.hasNode() && !finding.transmissions.empty())
        place = check.talkerPort(finding.transmissions.front().flowID);
    return place;
}

PlanTable findingTable(const SharedPlanCheck& check)
{
    const auto at = [check](int row) -> const Finding& {
        return check->result().findings[size_t(row)];
    };
    PlanTable table;
    table.rowCount = int(check->result().findings.size());
    table.place = [=](int row) { return placeOf(*check, at(row)); };
    table.columns = {
        {QStringLiteral(u"级别"), [=](int row) { return severityCell(at(row).severity); }},
        {QStringLiteral(u"问题"), [=](int row) { return textCell(textOf(at(row).kind)); }},
        {QStringLiteral(u"节点"),
         [=](int row) {
             const int node = at(row).node;
             return textCell(node == Finding::nowhere ? QString() : check->nodeName(node));
         }},
        {QStringLiteral(u"端口"),
         [=](int row) { return numberCell(at(row).port, at(row).port != Finding::nowhere); }},
        {QStringLiteral(u"时隙"),
         [=](int row) { return numberCell(at(row).slot, at(row).slot != Finding::noSlot); }},
        {QStringLiteral(u"流"), [=](int row) { return textCell(transmissionsText(at(row))); }},
        {QStringLiteral(u"说明"),
         [=](int row) { return textCell(explanationOf(*check, at(row))); }},
    };
    return table;
}

// ---- Figures

PlanTable loadTable(const SharedPlanCheck& check)
{
    const auto at = [check](int row) -> const PortLoad& {
        return check->figures().loads[size_t(row)];
    };
    PlanTable table;
    table.rowCount = int(check->figures().loads.size());
    table.place = [=](int row) {
        PlanPlace place;
        place.node = at(row).node;
        place.port = at(row).port;
        return place;
    };
    table.columns = {
        {QStringLiteral(u"节点"), [=](int row) { return textCell(check->nodeName(at(row).node)); }},
        {QStringLiteral(u"端口"), [=](int row) { return numberCell(at(row).port); }},
        {QStringLiteral(u"占用时隙"), [=](int row) { return numberCell(at(row).usedSlots); }},
        {QStringLiteral(u"周期时隙"), [=](int row) { return numberCell(at(row).cycleSlots); }},
        {QStringLiteral(u"负载(%)"),
         [=](int row) { return shareCell(at(row).usedSlots, at(row).cycleSlots); }},
    };
    return table;
}

PlanTable latencyTable(const SharedPlanCheck& check)
{
    const auto at = [check](int row) -> const FlowLatency& {
        return check->figures().latencies[size_t(row)];
    };
    const auto number = [=](qint64 FlowLatency::*field, qint64 unit) {
        return [=](int row) { return numberCell(at(row).*field * unit); };
    };
    const auto jitter = [=](qint64 unit) {
        return [=](int row) { return numberCell(at(row).jitter() * unit); };
    };
    PlanTable table;
    table.rowCount = int(check->figures().latencies.size());
    table.place = [=](int row) { return check->talkerPort(at(row).flowID); };
    table.columns = {
        {QStringLiteral(u"流"), [=](int row) { return numberCell(at(row).flowID); }},
        {QStringLiteral(u"发送端"),
         [=](int row) { return textCell(check->nodeName(at(row).talker)); }},
        {QStringLiteral(u"接收端"),
         [=](int row) { return textCell(check->nodeName(at(row).listener)); }},
        {QStringLiteral(u"次数"),
         [=](int row) { return numberCell(qint64(at(row).transmissions)); }},
        {QStringLiteral(u"最小(时隙)"), number(&FlowLatency::smallest, 1)},
        {QStringLiteral(u"最大(时隙)"), number(&FlowLatency::largest, 1)},
        {QStringLiteral(u"抖动(时隙)"), jitter(1)},
        {QStringLiteral(u"最小(us)"), number(&FlowLatency::smallest, slotLength_us)},
        {QStringLiteral(u"最大(us)"), number(&FlowLatency::largest, slotLength_us)},
        {QStringLiteral(u"抖动(us)"), jitter(slotLength_us)},
        {QStringLiteral(u"发送窗口(时隙)"),
         [=](int row) { return windowCell(at(row).sendWindow, true); }},
        {QStringLiteral(u"接收窗口(时隙)"),
         [=](int row) { return windowCell(at(row).receiveWindow, at(row).hasReceiveWindow); }},
    };
    return table;
}

PlanTable occupancyTable(const SharedPlanCheck& check)
{
    const auto at = [check](int row) -> const SwitchOccupancy& {
        return check->figures().switches[size_t(row)];
    };
    PlanTable table;
    table.rowCount = int(check->figures().switches.size());
    table.place = [=](int row) {
        PlanPlace place;
        place.node = at(row).node;
        place.slot = at(row).slot;
        return place;
    };
    table.columns = {
        {QStringLiteral(u"交换机"),
         [=](int row) { return textCell(check->nodeName(at(row).node)); }},
        {QStringLiteral(u"最多等待帧数"), [=](int row) { return numberCell(at(row).mostFrames); }},
        {QStringLiteral(u"缓冲区个数"), [=](int row) { return numberCell(at(row).buffers); }},
        {QStringLiteral(u"首次出现时隙"), [=](int row) { return numberCell(at(row).slot); }},
        {QStringLiteral(u"占用(%)"),
         [=](int row) { return shareCell(at(row).mostFrames, at(row).buffers); }},
    };
    return table;
}
