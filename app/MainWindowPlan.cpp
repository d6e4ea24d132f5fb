#include "app/MainWindow.h"

#include "views/PlanPanelNames.h"
#include "widgets/DockToggle.h"

#include "project/ScheduleReader.h"
#include "views/FlowListWindow.h"
#include "views/NodeList.h"
#include "views/PlanInfoWindow.h"
#include "views/TimeSlotInfo.h"

#include <QAction>
#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QListWidget>
#include <QStackedWidget>

// The loaded schedule and the dock that shows it.

void MainWindow::parse_vek_output()
{
    readSchedule({sendNodeInfo, rcvNodeInfo, schedCycle, slotLen, slotCount});
}

void MainWindow::parse_vek_input()
{
    readNodeNames(nodeNames);
}

void MainWindow::generateNodesInfo(NodeInfo_Xml& nodeInfo, int nodeid, int outport, int flowid,
                                   int txslotID)
{
    enterSlot(nodeInfo, nodeid, outport, flowid, txslotID);
}

void MainWindow::fillNodeList(QListWidget* list, NodeInfo_Xml nodeInfo)
{
    parse_vek_input();
    appendNodes(*list, nodeIcons, nodeInfo, nodeNames);
}

// ---- The dock. Its widgets are found by name each time, so their names are an interface.

QDockWidget* MainWindow::createPlanInfoDock()
{
    auto* dock = new QDockWidget(QStringLiteral(u"规划结果"), this);
    dock->setVisible(true);
    auto* content = new PlanInfoWindow(this);
    dock->setWidget(content);
    connect(content->importAction, &QAction::triggered, this, &MainWindow::showImportForm);
    connect(content->exportAction, &QAction::triggered, this, &MainWindow::showOutportForm);
    connect(content->tableType, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &MainWindow::changeStackedWidgetPage);
    connect(content->nodeList, &QListWidget::itemSelectionChanged, this,
            &MainWindow::updatePlanInfo);
    for (TimeSlotInfo* table : {content->sendTable, content->receiveTable})
        connect(table, &QTableWidget::itemSelectionChanged, this, &MainWindow::updateFlowList);
    offerPlanCheck(dock);
    return dock;
}

void MainWindow::planInfo()
{
    if (planInfoDock) {
        toggleDock(planInfoDock);
        return;
    }
    planInfoDock = createPlanInfoDock();
    updateNodeInfo();
    addDockWidget(Qt::BottomDockWidgetArea, planInfoDock);
    shareRoomAmongDocks();
}

// The drawing keeps more than half of the height, and the schedule takes the width that its many
// columns need from the tables beside it. A dock that is hidden or that the user has put elsewhere
// is left alone.
void MainWindow::shareRoomAmongDocks()
{
    constexpr int tablesPercent = 30;
    constexpr int schedulePercent = 42;
    QList<QDockWidget*> docks;
    QList<int> widths;
    for (QDockWidget* dock : {vLineDock, flowDock, planInfoDock}) {
        if (!dock || dock->isHidden() || dock->isFloating() ||
            dockWidgetArea(dock) != Qt::BottomDockWidgetArea)
            continue;
        docks.append(dock);
        widths.append(dock == planInfoDock ? width() : 1);
    }
    if (docks.isEmpty())
        return;
    const bool hasSchedule = docks.last() == planInfoDock;
    if (hasSchedule)
        resizeDocks(docks, widths, Qt::Horizontal);
    const int heightPercent = hasSchedule ? schedulePercent : tablesPercent;
    resizeDocks({docks.last()}, {height() * heightPercent / 100}, Qt::Vertical);
}

void MainWindow::changeStackedWidgetPage(int index)
{
    if (!planInfoDock)
        return;
    planInfoDock->findChild<QStackedWidget*>(planPanel::pages())->setCurrentIndex(index);
    updateNodeInfo();
}

MainWindow::PlanView MainWindow::currentPlanView()
{
    const auto* type = planInfoDock->findChild<QComboBox*>(planPanel::tableType());
    const bool receives = type->currentText() == QStringLiteral(u"接收控制表");
    const QString variant = receives ? planPanel::receive() : planPanel::send();
    return {planInfoDock->findChild<QListWidget*>(planPanel::nodes()),
            planInfoDock->findChild<TimeSlotInfo*>(planPanel::grid(variant)),
            planInfoDock->findChild<FlowListWindow*>(planPanel::flowList(variant)),
            receives ? rcvNodeInfo : sendNodeInfo,
            receives ? FlowListWindow::Receive : FlowListWindow::Send};
}

void MainWindow::updateInfoBarText()
{
    if (!planInfoDock)
        return;
    auto* cycle = planInfoDock->findChild<QLabel*>(planPanel::cycleLabel());
    auto* slotLength = planInfoDock->findChild<QLabel*>(planPanel::slotLengthLabel());
    if (!cycle || !slotLength)
        return;
    cycle->setText(QStringLiteral(u"循环周期:%1us  ").arg(schedCycle));
    slotLength->setText(QStringLiteral(u"时隙长度:%1us").arg(slotLen));
}

void MainWindow::updateNodeInfo()
{
    if (!planInfoDock)
        return;
    updateInfoBarText();
    const PlanView view = currentPlanView();
    view.nodes->clear();
    view.table->removeAllRows(); // clearing alone would leave the bars to be deleted later
    view.table->clear();
    view.flows->clearFlowList();
    fillNodeList(view.nodes, view.schedule);
    markCheckedNodes(view.nodes);
}

void MainWindow::updatePlanInfo()
{
    if (!planInfoDock)
        return;
    const PlanView view = currentPlanView();
    const QList<QListWidgetItem*> selected = view.nodes->selectedItems();
    if (!selected.isEmpty()) {
        const int nodeID = selected.first()->data(Qt::UserRole).toInt();
        view.table->showPorts(view.schedule.value(nodeID), slotCount);
    }
    view.flows->clearFlowList();
    if (QTableWidgetItem* firstPort = view.table->item(0, 0))
        view.table->setCurrentItem(firstPort);
}

void MainWindow::updateFlowList()
{
    if (!planInfoDock)
        return;
    const PlanView view = currentPlanView();
    view.flows->clearFlowList();
    const QTableWidgetItem* port = view.table->item(view.table->currentRow(), 0);
    const QList<QListWidgetItem*> selected = view.nodes->selectedItems();
    if (!port || selected.isEmpty())
        return;
    const int portNumber = port->text().remove(QStringLiteral(u"端口")).toInt();
    const int nodeID = selected.first()->data(Qt::UserRole).toInt();
    view.flows->fillFlowList(view.schedule, nodeID, portNumber, view.mode);
}
