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
    void replaceWindowSearch(WindowSearch search) { window.windowSearch = search; }
    int callAlgorithm() { return window.callAlgorithm(); }
    void planByUserInput() { window.planByUserInput(); }
    void fillNodeList(QListWidget* list) { window.fillNodeList(list, window.sendNodeInfo); }

    TopologyWindow* topologyWindow() const { return window.topologyWindow; }
    QDockWidget* vLineDock() const { return window.vLineDock; }
    QDockWidget* planInfoDock() const { return window.planInfoDock; }
    QDockWidget* flowDock() const { return window.flowDock; }
    QTableWidget* vLineTable() const { return window.vLineTable; }
    QTableWidget* flowTable() const { return window.flowTable; }
    QList<VLineInfo>& vLineInfoList() const { return window.vLineInfoList; }
    QList<FlowInfo>& flowInfoList() const { return window.flowInfoList; }
    VLineEditorForm* vLineEditorForm() const { return window.vLineEditorForm; }
    FlowEditorForm* flowEditorForm() const { return window.flowEditorForm; }
    SynthesisForm* synthesisForm() const { return window.synthesisForm; }
    ShowVLineInfoForm* showVLineInfoForm() const { return window.showVLineInfoForm; }
    void addVLine(const VLineInfo& vLine) const { window.addVLineEditorTableItem(vLine); }
    void addFlow(const FlowInfo& flow) const { window.addFlowEditorTableItem(flow); }
    void generateInput() const { window.generate_vek_input(); }
    void showProject(const Project& project) const { window.showProject(project); }
    void addVLinesOfProject(const QList<FileVLineInfo>& vLines) const
    {
        window.addVLineItemByProjectFile(vLines);
    }
    void addFlowsOfProject(const QList<FlowInfo>& flows) const
    {
        window.addFlowItemByProjectFile(flows);
    }

    void outportVekFile(const QString& folder) const { window.outportVekFile(folder); }
    void importVekFile(const QString& input, const QString& output) const
    {
        window.importVekFile(input, output);
    }

    MainWindow& window;
};
