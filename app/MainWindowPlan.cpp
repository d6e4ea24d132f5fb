#include "app/MainWindow.h"

#include "project/NodeList.h"
#include "project/ScheduleReader.h"

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
    appendNodes(*list, nodeInfo, nodeNames);
}

void MainWindow::planInfo() {}

void MainWindow::changeStackedWidgetPage(int) {}

void MainWindow::updatePlanInfo() {}

void MainWindow::updateFlowList() {}

void MainWindow::updateNodeInfo() {}

void MainWindow::updateInfoBarText() {}
