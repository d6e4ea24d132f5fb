#pragma once

#include "app/MainWindow.h"

/// Opens what the main window keeps to itself, for tests.
struct MainWindowProbe {
    explicit MainWindowProbe(MainWindow& mainWindow) : window(mainWindow) {}

    const NodeInfo_Xml& sendNodeInfo() const { return window.sendNodeInfo; }
    const NodeInfo_Xml& rcvNodeInfo() const { return window.rcvNodeInfo; }
    int schedCycle() const { return window.schedCycle; }
    int slotCount() const { return window.slotCount; }
    FlowScheduleForm* flowScheduleForm() const { return window.flowScheduleForm; }
    QStatusBar* statusBar() const { return window.mainStatusBar; }
    void replaceFirstStage(qint32 (*stage)(planner::PlanningContext&))
    {
        window.firstStage = stage;
    }
    void replaceSecondStage(qint32 (*stage)(planner::TTPlanner&)) { window.secondStage = stage; }
    int callAlgorithm() { return window.callAlgorithm(); }
    void planByUserInput() { window.planByUserInput(); }
    void fillNodeList(QListWidget* list) { window.fillNodeList(list, window.sendNodeInfo); }

    MainWindow& window;
};
