#include "app/MainWindow.h"

#include "app/DockToggle.h"
#include "project/ProjectFile.h"
#include "topology/SingleDialog.h"
#include "traffic/FlowEditorForm.h"
#include "traffic/FlowText.h"
#include "traffic/ShowVLineInfoForm.h"
#include "traffic/TrafficTable.h"
#include "traffic/VLineEditorForm.h"

#include <QComboBox>
#include <QDockWidget>
#include <QPushButton>
#include <QTableWidget>

#include <algorithm>

// Virtual links and flows: docks, tables and their editors.

// ---- Docks

QTableWidget* MainWindow::createVLineTable()
{
    return createTrafficTable({QStringLiteral(u"序号"), QStringLiteral(u"虚链路id"),
                               QStringLiteral(u"虚链路信息"), QStringLiteral(u"交换机跳数")},
                              {64, 64, 108, 64});
}

QTableWidget* MainWindow::createFlowTable()
{
    return createTrafficTable({QStringLiteral(u"序号"), QStringLiteral(u"流类型"),
                               QStringLiteral(u"流标识"), QStringLiteral(u"周期(us)"),
                               QStringLiteral(u"消息长度(字节)"), QStringLiteral(u"虚链路ID"),
                               QStringLiteral(u"发送窗口(us)"), QStringLiteral(u"接收窗口(us)")},
                              {64, 64, 108, 108, 108, 108, 108, 108});
}

QDockWidget* MainWindow::createVLineDock()
{
    vLineTable = createVLineTable();
    TrafficDockButtons buttons;
    QDockWidget* dock =
        createTrafficDock(QStringLiteral(u"虚链路配置"), QStringLiteral("VLineEditorDock"),
                          vLineTable, this, buttons);
    connect(buttons.add, &QPushButton::clicked, this, &MainWindow::showVLineEditorForm);
    connect(buttons.remove, &QPushButton::clicked, this, &MainWindow::delVLineEditorTableItem);
    return dock;
}

QDockWidget* MainWindow::createFlowDock()
{
    flowTable = createFlowTable();
    offerSynthesis();
    TrafficDockButtons buttons;
    QDockWidget* dock = createTrafficDock(
        QStringLiteral(u"流量配置"), QStringLiteral("FlowEditorDock"), flowTable, this, buttons);
    connect(buttons.add, &QPushButton::clicked, this, &MainWindow::showFlowEditorWindow);
    connect(buttons.remove, &QPushButton::clicked, this, &MainWindow::delFlowEditorTableItem);
    return dock;
}

void MainWindow::ensureVLineDock()
{
    if (vLineDock)
        return;
    vLineDock = createVLineDock();
    addTrafficDock(vLineDock);
}

void MainWindow::ensureFlowDock()
{
    if (flowDock)
        return;
    flowDock = createFlowDock();
    addTrafficDock(flowDock);
}

void MainWindow::addTrafficDock(QDockWidget* dock)
{
    addDockWidget(Qt::BottomDockWidgetArea, dock);
    if (vLineDock && flowDock)
        tabifyDockWidget(vLineDock, flowDock);
}

void MainWindow::vLineEditor()
{
    if (vLineDock)
        toggleDock(vLineDock);
    else
        ensureVLineDock();
}

void MainWindow::flowEditor()
{
    if (flowDock)
        toggleDock(flowDock);
    else
        ensureFlowDock();
}

// ---- Virtual links

void MainWindow::showVLineEditorForm()
{
    if (vLineEditorForm)
        return;
    vLineEditorForm = new VLineEditorForm(topologyWindow, this);
    connect(vLineEditorForm, &VLineEditorForm::windowClosed, this,
            &MainWindow::deleteVLineEditorWindow);
    connect(vLineEditorForm, &VLineEditorForm::sendVLineInfo, this,
            &MainWindow::addVLineEditorTableItem);
    vLineEditorForm->setModal(false);
    vLineEditorForm->show();
}

void MainWindow::deleteVLineEditorWindow()
{
    forgetDialog(vLineEditorForm);
}

void MainWindow::addVLineEditorTableItem(VLineInfo vLineInfo)
{
    ensureVLineDock();
    vLineInfoList.append(vLineInfo);
    const int row = appendTrafficRow(vLineTable, {vLineInfo.vLineId});
    auto* paths = new QComboBox;
    int mostSwitches = 0;
    for (const VLineItems& path : qAsConst(vLineInfo.vLinePaths)) {
        paths->addItem(pathSummary(path));
        mostSwitches = std::max(mostSwitches, switchCount(path));
    }
    connect(paths, qOverload<int>(&QComboBox::activated), this, &MainWindow::showVLineWindow);
    vLineTable->setCellWidget(row, 2, paths);
    vLineTable->setItem(row, 3, centredItem(QString::number(mostSwitches)));
}

// Virtual links refer to nodes of the drawing, which go without asking; their names go with them.
void MainWindow::forgetGoneNode(const DiagramItem* node)
{
    for (int row = 0; row < vLineInfoList.size(); ++row) {
        if (!forgetNode(vLineInfoList[row].vLinePaths, node))
            continue;
        auto* paths = qobject_cast<QComboBox*>(vLineTable->cellWidget(row, 2));
        const QList<VLineItems>& items = vLineInfoList.at(row).vLinePaths;
        for (int i = 0; paths && i < items.size(); ++i)
            paths->setItemText(i, pathSummary(items.at(i)));
    }
}

void MainWindow::delVLineEditorTableItem()
{
    deleteSelectedRows(vLineTable, [this](int row) { vLineInfoList.removeAt(row); });
}

// The row is the table's current one, which need not be that of the list that was opened.
void MainWindow::showVLineWindow(int index)
{
    const QList<VLineItems> paths = vLineInfoList.value(vLineTable->currentRow()).vLinePaths;
    if (index < 0 || index >= paths.size())
        return;
    forgetDialog(showVLineInfoForm);
    showVLineInfoForm = new ShowVLineInfoForm(paths.at(index), this);
    connect(showVLineInfoForm, &QDialog::finished, this, &MainWindow::delShowVLineWindow);
    showVLineInfoForm->show();
}

void MainWindow::delShowVLineWindow()
{
    forgetDialog(showVLineInfoForm);
}

void MainWindow::addVLineItemByProjectFile(QList<FileVLineInfo> records)
{
    ensureVLineDock();
    vLineDock->setVisible(true);
    clearTrafficTable(vLineTable);
    vLineInfoList.clear();
    for (const FileVLineInfo& record : qAsConst(records))
        addVLineEditorTableItem(vLineOf(record));
}

// ---- Flows

void MainWindow::showFlowEditorWindow()
{
    if (flowEditorForm)
        return;
    flowEditorForm = new FlowEditorForm(vLineInfoList, this);
    connect(flowEditorForm, &FlowEditorForm::windowClosed, this,
            &MainWindow::deleteFlowEditorWindow);
    connect(flowEditorForm, &FlowEditorForm::sendFlowInfo, this,
            &MainWindow::addFlowEditorTableItem);
    flowEditorForm->setModal(true);
    flowEditorForm->show();
}

void MainWindow::deleteFlowEditorWindow()
{
    forgetDialog(flowEditorForm);
}

void MainWindow::addFlowEditorTableItem(FlowInfo flowInfo)
{
    ensureFlowDock();
    flowInfoList.append(flowInfo);
    const int row = appendTrafficRow(flowTable, {flowInfo.flowType, flowInfo.flowId,
                                                 flowInfo.flowPeriod, flowInfo.flowSize,
                                                 flowInfo.vLineId, sendWindowText(flowInfo)});
    auto* listeners = new QComboBox;
    for (const DstNodeInfo& node : qAsConst(flowInfo.dstNodes))
        listeners->addItem(receiveWindowText(node));
    flowTable->setCellWidget(row, 7, listeners);
}

void MainWindow::delFlowEditorTableItem()
{
    deleteSelectedRows(flowTable, [this](int row) { flowInfoList.removeAt(row); });
}

void MainWindow::addFlowItemByProjectFile(QList<FlowInfo> flows)
{
    ensureFlowDock();
    flowDock->setVisible(true);
    clearTrafficTable(flowTable);
    flowInfoList.clear();
    for (const FlowInfo& flow : qAsConst(flows))
        addFlowEditorTableItem(flow);
}
