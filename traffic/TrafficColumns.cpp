#include "traffic/TrafficColumns.h"

#include "traffic/FlowText.h"
#include "widgets/RowTable.h"

namespace
{

struct FlowColumnText {
    FlowColumn place;
    RowTableColumn column;
    QString (*text)(const FlowInfo& flow); ///< null when the column shows no text of the flow
};

/// In the order of FlowColumn.
QVector<FlowColumnText> flowColumns()
{
    return {{FlowNumberColumn, {QStringLiteral(u"序号"), 64}, nullptr},
            {FlowTypeColumn,
             {QStringLiteral(u"流类型"), 64},
             [](const FlowInfo& flow) { return flow.flowType; }},
            {FlowIdColumn,
             {QStringLiteral(u"流标识"), 108},
             [](const FlowInfo& flow) { return flow.flowId; }},
            {FlowPeriodColumn,
             {QStringLiteral(u"周期(us)"), 108},
             [](const FlowInfo& flow) { return flow.flowPeriod; }},
            {FlowSizeColumn,
             {QStringLiteral(u"消息长度(字节)"), 108},
             [](const FlowInfo& flow) { return flow.flowSize; }},
            {FlowVLineColumn,
             {QStringLiteral(u"虚链路ID"), 108},
             [](const FlowInfo& flow) { return flow.vLineId; }},
            {SendWindowColumn, {QStringLiteral(u"发送窗口(us)"), 108}, &sendWindowText},
            {ReceiveWindowColumn, {QStringLiteral(u"接收窗口(us)"), 108}, nullptr}};
}

} // namespace

QTableWidget* createVLineColumns()
{
    return createRowTable({{QStringLiteral(u"序号"), 64},
                           {QStringLiteral(u"虚链路id"), 64},
                           {QStringLiteral(u"虚链路信息"), 108},
                           {QStringLiteral(u"交换机跳数"), 64}});
}

QTableWidget* createFlowColumns()
{
    QVector<RowTableColumn> columns;
    for (const FlowColumnText& each : flowColumns())
        columns.append(each.column);
    return createRowTable(columns);
}

void setFlowTexts(QTableWidget* table, int row, const FlowInfo& flow)
{
    static const QVector<FlowColumnText> columns = flowColumns();
    for (const FlowColumnText& each : columns) {
        if (each.text)
            setCellText(table, row, each.place, each.text(flow));
    }
}
