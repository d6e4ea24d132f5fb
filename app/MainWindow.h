#pragma once

#include "app/NarrowedFlows.h"
#include "app/SynthesisRun.h"
#include "project/NodeInfoXml.h"
#include "topology/FileRecords.h"
#include "topology/RecordNotifier.h"
#include "traffic/FlowInfo.h"
#include "traffic/VLineInfo.h"
#include "views/NodeList.h"

#include <QMainWindow>
#include <QMap>

#include <functional>
#include <memory>

namespace planner
{
struct PlanningContext;
struct TTPlanner;
} // namespace planner

namespace tinyxml2
{
class XMLDocument;
class XMLElement;
} // namespace tinyxml2

class Arrow;
class DiagramItem;
class FlowEditorForm;
class FlowListWindow;
class FlowScheduleForm;
class PlanCheck;
class PlanCheckForm;
class QAction;
class QDockWidget;
class QListWidget;
class QMenuBar;
class QStatusBar;
class QTableWidget;
class QToolBar;
class ShowVLineInfoForm;
class SynthesisForm;
class TimeSlotInfo;
class TopologyWindow;
class VLineEditorForm;
struct PlanPlace;
struct Project;

/// The studio's one top-level window and owner of its model: drawing, virtual links, flows,
/// schedule.
///
/// Its slots gather what they need from the model and hand it to the room of their subject. The
/// sources are split the same way: frame, run, traffic, project, plan, check, synthesis.
class MainWindow : public QMainWindow
{
    Q_OBJECT
    using XMLDocument = tinyxml2::XMLDocument;
    using XMLElement = tinyxml2::XMLElement;

public:
    /// Restores size and state of the last session; shows itself only when that was maximized.
    ///
    /// versions is taken and not used. Fills flowColorTable anew.
    MainWindow(const QMap<QString, QString>& versions, QWidget* parent);
    ~MainWindow() override;

signals:
    /// Reserved: nothing emits it and nothing is connected to it.
    void buildTopologyByProjectFile(QList<FileNodeInfo> nodes, QList<FileArrowInfo> arrows);

protected:
    /// Saves the window's size and state. While a run is going on, closing waits for its end.
    void closeEvent(QCloseEvent* event) override;

private slots:
    void changeStackedWidgetPage(int index);
    void planInfo();
    void bandWidthUsage();
    void e2eDelayAndJitter();
    void flowDistribution();
    void bufferUsage();
    void handleActionClose();
    void handleActionCloseAll();
    void handleActionOpenProject();
    void flowSchedule();
    void handleActionQuit();
    void handleActionSaveProject();
    void showImportForm();
    void showOutportForm();
    void importVekFile(QString vekInputFilePath, QString vekOutputFilePath);
    void outportVekFile(QString dirPath);
    void flowEditor();
    void addVLineItemByProjectFile(QList<FileVLineInfo> records);
    void addFlowItemByProjectFile(QList<FlowInfo> flows);
    void vLineEditor();
    void openFile(QString file);
    void showFlowEditorWindow();
    void deleteFlowEditorWindow();
    void addFlowEditorTableItem(FlowInfo flowInfo);
    void delFlowEditorTableItem();
    void showVLineEditorForm();
    void deleteVLineEditorWindow();
    void addVLineEditorTableItem(VLineInfo vLineInfo);
    void delVLineEditorTableItem();
    void delFlowScheduleWindow();
    void showVLineWindow(int index);
    void delShowVLineWindow();
    void updatePlanInfo();
    void updateFlowList();
    void updateNodeInfo();
    void updateInfoBarText();
    void planByUserInput();
    void generate_vek_input();
    void Rotunda();
    int callAlgorithm();
    void delHsXml();
    void delOutputXml();
    void parse_vek_output();
    void parse_vek_input();
    void generateNodesInfo(NodeInfo_Xml& nodeInfo, int nodeid, int outport, int flowid,
                           int txslotID);
    void generateHosts(XMLDocument& doc, XMLElement* hosts, DiagramItem* diaItem);
    void generateSwitches(XMLDocument& doc, XMLElement* switches, DiagramItem* diaItem);
    void generateLinks(XMLDocument& doc, XMLElement* links, Arrow* arrow);
    void generateVirtualLinks(XMLDocument& doc, XMLElement* virtuallinks);
    void generateFlows(XMLDocument& doc, XMLElement* flows);

private:
    friend struct MainWindowProbe;

    /// The widgets and the schedule of the table that is chosen in the plan result dock.
    struct PlanView {
        QListWidget* nodes;
        TimeSlotInfo* table;
        FlowListWindow* flows;
        const NodeInfo_Xml& schedule;
        int mode;
    };

    QToolBar* createToolBar();
    QMenuBar* createMenuBar();
    QStatusBar* createStatusBar(const QMap<QString, QString>& versions);
    void restoreWindow();
    QDockWidget* createPlanInfoDock();
    PlanView currentPlanView();
    void fillNodeList(QListWidget* list, NodeInfo_Xml nodeInfo);
    QDockWidget* createVLineDock();
    QTableWidget* createVLineTable();
    QDockWidget* createFlowDock();
    QTableWidget* createFlowTable();
    void ensureVLineDock();
    void ensureFlowDock();
    void addTrafficDock(QDockWidget* dock);
    void shareRoomAmongDocks();
    void forgetGoneNodes(const GoneNodes& nodes);
    void showPaths(int row);
    void showStatus(const QString& text);
    void showProject(const Project& project);
    void planHere(const std::function<void()>& provideInput);
    int refuseRun();
    int runInHeldFolder(bool hasInput);
    int runStages(bool hasInput);
    int runFirstStage(planner::PlanningContext& context, bool hasInput);
    int runSecondStage(bool windowsAreCut);
    void loadSchedule();
    void checkPlan();
    void markCheckedNodes(QListWidget* nodes);
    void offerPlanCheck(QDockWidget* dock);
    void showPlanCheckForm();
    void delPlanCheckForm();
    int tableWith(const PlanPlace& place) const;
    void showPlace(const PlanPlace& place);
    void fillInputDocument(XMLDocument& doc);
    QByteArray drawnDocument();
    void offerSynthesis();
    void showSynthesisForm();
    void delSynthesisForm();
    void adoptWindows();
    void restoreWindows();
    void showWindowsOf(const QList<int>& rows);
    void selectFlows(const QList<int>& rows);
    void forgetSynthesis();

    NodeInfo_Xml sendNodeInfo; ///< output ports and send slots of the loaded schedule
    NodeInfo_Xml rcvNodeInfo;  ///< input ports and receive slots of the loaded schedule
    QMap<int, NodeNameRec> nodeNames;
    int schedCycle = 0; ///< microseconds
    int slotLen = 0;    ///< microseconds
    int slotCount = 0;
    QAction* saveProjectAction = nullptr;
    QAction* importAction = nullptr;
    QAction* outportAction = nullptr;
    QDockWidget* flowDock = nullptr;     ///< null until first opened
    QDockWidget* vLineDock = nullptr;    ///< null until first opened
    QDockWidget* planInfoDock = nullptr; ///< null until first opened
    QTableWidget* flowTable = nullptr;
    QTableWidget* vLineTable = nullptr;
    QStatusBar* mainStatusBar = nullptr;
    TopologyWindow* topologyWindow = nullptr;
    FlowEditorForm* flowEditorForm = nullptr;       ///< null while closed
    VLineEditorForm* vLineEditorForm = nullptr;     ///< null while closed
    FlowScheduleForm* flowScheduleForm = nullptr;   ///< null while closed
    ShowVLineInfoForm* showVLineInfoForm = nullptr; ///< null while closed
    QList<FlowInfo> flowInfoList;                   ///< in the order of flowTable
    QList<VLineInfo> vLineInfoList;                 ///< in the order of vLineTable

    const NodeIcons nodeIcons; ///< of all lists of nodes

    std::shared_ptr<const PlanCheck> planCheck; ///< of the loaded schedule; null before the first
    PlanCheckForm* planCheckForm = nullptr;     ///< null while closed

    SynthesisForm* synthesisForm = nullptr; ///< null while closed
    NarrowedFlows narrowedFlows;            ///< what was adopted in the project that is open
    WindowSearch windowSearch = &synthesis::synthesizeWindows;

    bool runInProgress = false; ///< a run lets events through, which must not start another one
    bool closeAfterRun = false; ///< the user asked to close while a run was going on
    qint32 (*firstStage)(planner::PlanningContext&);
    qint32 (*secondStage)(planner::TTPlanner&);
};
