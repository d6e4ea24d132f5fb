#include "app/MainWindow.h"

#include "project/ProjectFile.h"
#include "traffic/FlowEditorForm.h"
#include "traffic/FlowText.h"
#include "traffic/ShowVLineInfoForm.h"
#include "traffic/TrafficColumns.h"
#include "traffic/TrafficTable.h"
#include "traffic/VLineEditorForm.h"
#include "widgets/CellBox.h"
#include "widgets/DockToggle.h"
#include "widgets/RowTable.h"
#include "widgets/SingleDialog.h"

#include <QDockWidget>
#include <QPushButton>
#include <QTableWidget>

#include <algorithm>
#include <memory>

// Virtual links and flows: docks, tables and their editors.

static constexpr int fewBoxes = 50;

// ---- Docks

QTableWidget* MainWindow::createVLineTable()
{
    return createVLineColumns();
}

QTableWidget* MainWindow::createFlowTable()
{
    return createFlowColumns();
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
    dock->raise();
    shareRoomAmongDocks();
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

template <typename Record>
static void removeRange(QList<Record>& records, int first, int count)
{
    records.erase(records.begin() + first, records.begin() + first + count);
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
    const int row = appendRow(vLineTable);
    setCellText(vLineTable, row, VLineIdColumn, vLineInfo.vLineId);
    QStringList summaries;
    int mostSwitches = 0;
    for (const VLineItems& path : qAsConst(vLineInfo.vLinePaths)) {
        summaries.append(pathSummary(path));
        mostSwitches = std::max(mostSwitches, switchCount(path));
    }
    auto* paths = new CellBox(summaries);
    connect(paths, qOverload<int>(&QComboBox::activated), this, &MainWindow::showVLineWindow);
    setCellBox(vLineTable, row, VLinePathsColumn, paths);
    setCellText(vLineTable, row, VLineSwitchesColumn, QString::number(mostSwitches));
}

// Virtual links refer to nodes of the drawing, which go without asking; their names go with them.
void MainWindow::forgetGoneNodes(const GoneNodes& nodes)
{
    QVector<int> rows;
    for (int row = 0; row < vLineInfoList.size(); ++row) {
        if (forgetNodes(vLineInfoList[row].vLinePaths, nodes))
            rows.append(row);
    }
    if (!vLineTable || rows.isEmpty())
        return;
    // Shown boxes repaint one by one, and each one looks at all others for what lies over it.
    const std::unique_ptr<HiddenTable> hidden(rows.size() > fewBoxes ? new HiddenTable(vLineTable)
                                                                     : nullptr);
    for (const int row : qAsConst(rows))
        showPaths(row);
}

void MainWindow::showPaths(int row)
{
    auto* box = dynamic_cast<CellBox*>(vLineTable->cellWidget(row, VLinePathsColumn));
    const QList<VLineItems> paths = vLineInfoList.at(row).vLinePaths;
    for (int i = 0; box && i < paths.size(); ++i)
        box->setEntry(i, pathSummary(paths.at(i)));
}

void MainWindow::delVLineEditorTableItem()
{
    if (vLineTable)
        deleteSelectedRows(
            vLineTable, [this](int first, int count) { removeRange(vLineInfoList, first, count); });
}

// The row is the table's current one, which need not be that of the list that was opened.
void MainWindow::showVLineWindow(int index)
{
    if (!vLineTable)
        return;
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
    const HiddenTable hidden(vLineTable);
    removeRows(vLineTable, 0, vLineTable->rowCount());
    vLineInfoList.clear();
    for (const FileVLineInfo& record : qAsConst(records))
        addVLineEditorTableItem(vLineOf(record));
    vLineTable->scrollToTop();
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
    const int row = appendRow(flowTable);
    setFlowTexts(flowTable, row, flowInfo);
    QStringList listeners;
    for (const DstNodeInfo& node : qAsConst(flowInfo.dstNodes))
        listeners.append(receiveWindowText(node));
    setCellBox(flowTable, row, ReceiveWindowColumn, new CellBox(listeners));
}

void MainWindow::delFlowEditorTableItem()
{
    if (flowTable)
        deleteSelectedRows(
            flowTable, [this](int first, int count) { removeRange(flowInfoList, first, count); });
}

void MainWindow::addFlowItemByProjectFile(QList<FlowInfo> flows)
{
    ensureFlowDock();
    flowDock->setVisible(true);
    const HiddenTable hidden(flowTable);
    removeRows(flowTable, 0, flowTable->rowCount());
    flowInfoList.clear();
    for (const FlowInfo& flow : qAsConst(flows))
        addFlowEditorTableItem(flow);
    flowTable->scrollToTop();
}
