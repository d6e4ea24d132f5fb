#include "tools/tour/Tour.h"

#include "app/FlowScheduleForm.h"
#include "app/ImportVekForm.h"
#include "app/MainWindow.h"
#include "app/OutportVekForm.h"
#include "app/PlanCheckForm.h"
#include "app/SynthesisForm.h"
#include "topology/EditItemWindow.h"
#include "topology/EditLineWindow.h"
#include "traffic/AddDstNodeForm.h"
#include "traffic/AddVLineForm.h"
#include "traffic/FlowEditorForm.h"
#include "traffic/VLineEditorForm.h"
#include "traffic/VLineNodeSelectForm.h"

#include "tests/driver/OpenForms.h"
#include "tests/driver/Studio.h"
#include "tests/support/DialogClicks.h"
#include "tests/support/Text.h"
#include "tests/support/ViewMenus.h"
#include "tools/tour/DialogPictures.h"

#include <QApplication>
#include <QComboBox>
#include <QDebug>
#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTabBar>
#include <QTableView>
#include <QTableWidget>
#include <QtTest>

static constexpr int lookInterval_ms = 100;
static constexpr int mostLooksAtOneStage = 600;

template <typename Window>
static bool isShown()
{
    return openForm<Window>() != nullptr;
}

/// Whether windows were found and can be adopted.
static bool isSolved()
{
    auto* form = openForm<SynthesisForm>();
    return form && form->findChild<QPushButton*>(QStringLiteral("adoptButton"))->isEnabled();
}

template <typename Window>
static void clickButton(const char* name)
{
    auto* window = openForm<Window>();
    QTest::mouseClick(window->template findChild<QPushButton*>(QString::fromUtf8(name)),
                      Qt::LeftButton);
}

static QString drawnProject()
{
    return QStringLiteral("drawn-network.rotpro");
}

static void chooseFile(const QString& path)
{
    auto* edit = openForm<QFileDialog>()->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    edit->setText(path);
    QTest::keyClick(edit, Qt::Key_Enter);
}

// ---- Stages

Tour::Tour(const QString& examples, const QString& pictures, QObject* parent)
    : QObject(parent),
      m_examples(examples),
      m_pictures(pictures)
{
    addStartStages();
    addDrawingStages();
    addDrawnRunStages();
    addExchangeStages();
    addExampleStages(QStringLiteral("avionics-line"));
    addExampleStages(QStringLiteral("ring"));
    addExampleStages(QStringLiteral("industrial-tree"));
    addExampleStages(QStringLiteral("succeeds-not-sound"));
    addPlanCheckStages();
    addFailingExampleStages(
        {QStringLiteral("fails-window-check"), "1", words("4000 5000"), words("0 4600")});
    addFailingExampleStages(
        {QStringLiteral("fails-resolution"), "2", words("0 200"), words("200 600")});
    addSolvingStages(QStringLiteral("busy-plant"));
    m_stages.push_back({QStringLiteral("end"), [] { return !isShown<QMessageBox>(); },
                        [this] { m_studio->window.close(); }});
    connect(&m_timer, &QTimer::timeout, this, &Tour::look);
    m_timer.start(lookInterval_ms);
}

Tour::~Tour() = default;

void Tour::addStartStages()
{
    m_stages.push_back({QStringLiteral("main-window"), &isShown<MainWindow>, [this] {
                            m_studio = std::make_unique<Studio>(*openForm<MainWindow>());
                            m_studio->window.resize(1280, 800);
                        }});
}

// Draws, names and fills a small network, then its virtual links and flows, dialog by dialog.
void Tour::addDrawingStages()
{
    m_stages.push_back({QStringLiteral("empty-canvas"),
                        [this] { return m_studio->window.width() == 1280; },
                        [this] {
                            m_studio->editor.view()->centerOn(420, 330);
                            m_studio->drawSmallNetwork();
                            m_studio->editor.scene()->clearSelection();
                        }});
    m_stages.push_back({QStringLiteral("network"),
                        [this] { return m_studio->editor.links().size() == 4; },
                        [this] {
                            m_studio->editor.chooseFromContextMenu(centerOf(m_studio->node("S2")),
                                                                   QStringLiteral(u"编辑节点"));
                        }});
    m_stages.push_back({QStringLiteral("node-dialog"), &isShown<EditItemWindow>, [this] {
                            const QPointF s1 = centerOf(m_studio->node("S1"));
                            const QPointF s2 = centerOf(m_studio->node("S2"));
                            m_studio->editor.chooseFromContextMenu((s1 + s2) / 2,
                                                                   QStringLiteral(u"编辑链路"));
                        }});
    m_stages.push_back({QStringLiteral("property-dialogs"), &isShown<EditLineWindow>, [this] {
                            clickButton<EditItemWindow>("cancelButton");
                            clickButton<EditLineWindow>("cancelButton");
                            m_studio->editor.scene()->clearSelection();
                            openVirtualLinkDialogs();
                        }});
    m_stages.push_back(
        {QStringLiteral("virtual-link-dialogs"), &isShown<VLineNodeSelectForm>, [this] {
             clickButton<VLineNodeSelectForm>("cancelButton");
             clickButton<AddVLineForm>("cancelButton");
             clickButton<VLineEditorForm>("cancelButton");
             m_studio->defineVLine("1", {words("A S1 S2 B"), words("A S1 S2 C")});
             m_studio->defineVLine("2", {words("C S2 B")});
         }});
    m_stages.push_back({QStringLiteral("virtual-links"),
                        [this] { return m_studio->probe.vLineInfoList().size() == 2; },
                        [this] { openFlowDialogs(); }});
    m_stages.push_back({QStringLiteral("flow-dialogs"), &isShown<AddDstNodeForm>, [this] {
                            clickButton<AddDstNodeForm>("cancelButton");
                            clickButton<FlowEditorForm>("cancelButton");
                            const QList<QStringList> both{words("400 4000"), words("600 4000")};
                            m_studio->defineFlow("TT", "1", "5000", "1", words("0 2000"), both);
                            m_studio->defineFlow("TT", "2", "10000", "1", words("0 2000"), both);
                            m_studio->defineFlow("TT", "3", "10000", "2", words("0 1000"),
                                                 {words("200 3000")});
                        }});
}

// A virtual link with one path, and the choice of the last node of a second one.
void Tour::openVirtualLinkDialogs()
{
    VLineEditorForm* form = m_studio->openVLineEditor();
    typeText(form, "lineEdit_VLineId", "1");
    m_studio->addPath(form, words("A S1 S2 B"));
    AddVLineForm* path = m_studio->openPath(form);
    for (const char* name : {"S1", "S2", "C"}) {
        VLineNodeSelectForm* choice = m_studio->openNodeChoice(path);
        comboBox(choice, "comboBox_vLineNode")->setCurrentText(QString::fromUtf8(name));
        if (qstrcmp(name, "C") != 0)
            clickButton(choice, "confirmButton");
    }
}

// A filled flow, and the receive window of its second listener.
void Tour::openFlowDialogs()
{
    FlowEditorForm* form = m_studio->openFlowEditor();
    typeText(form, "lineEdit_flowId", "1");
    typeText(form, "lineEdit_flowPeriod", "5000");
    typeText(form, "lineEdit_flowSize", "64");
    typeText(form, "lineEdit_sendWindowLow", "0");
    typeText(form, "lineEdit_sendWindowHigh", "2000");
    comboBox(form, "comboBox_dstNode")->setCurrentIndex(1);
    clickButton(form, "addDstButton");
    auto* listener = openForm<AddDstNodeForm>();
    typeText(listener, "lineEdit_rcvWindowLow", "600");
    typeText(listener, "lineEdit_rcvWindowHigh", "4000");
}

// Saves what was drawn, plans it and reads its tables.
void Tour::addDrawnRunStages()
{
    m_stages.push_back({QStringLiteral("flows"),
                        [this] { return m_studio->probe.flowInfoList().size() == 3; },
                        [this] { m_studio->clickFileMenu(QStringLiteral(u"保存工程")); }});
    m_stages.push_back({QStringLiteral("save-project"), &isShown<QFileDialog>,
                        [] { chooseFile(QDir::current().absoluteFilePath(drawnProject())); }});
    m_stages.push_back({QStringLiteral("project-saved"),
                        [] { return !isShown<QFileDialog>() && QFile::exists(drawnProject()); },
                        [this] { m_studio->clickToolBar(QStringLiteral(u"调度规划")); }});
    addRunStages(QStringLiteral("drawn-network"));
    m_stages.push_back({QStringLiteral("drawn-network-send-table"),
                        [this] { return m_studio->probe.planInfoDock() != nullptr; },
                        [this] { showTable(QStringLiteral(u"接收控制表")); }});
    m_stages.push_back({QStringLiteral("drawn-network-receive-table"), [] { return true; },
                        [this] {
                            showTable(QStringLiteral(u"发送控制表"));
                            m_studio->clickFileMenu(QStringLiteral(u"导出vek规范"));
                        }});
}

// Exports the schedule of the drawn network and shows how it would come back.
void Tour::addExchangeStages()
{
    m_stages.push_back({QStringLiteral("export-dialog"), &isShown<OutportVekForm>,
                        [] { clickButton<OutportVekForm>("button_selectOutportPath"); }});
    m_stages.push_back({QStringLiteral("export-choose-folder"), &isShown<QFileDialog>, [] {
                            QDir().mkdir(QStringLiteral("exported"));
                            chooseFile(
                                QDir::current().absoluteFilePath(QStringLiteral("exported")));
                        }});
    m_stages.push_back({QStringLiteral("export-folder-chosen"),
                        [] { return !isShown<QFileDialog>(); },
                        [] { clickButton<OutportVekForm>("button_outport"); }});
    m_stages.push_back({QStringLiteral("exported"), [] { return !isShown<OutportVekForm>(); },
                        [this] { m_studio->clickFileMenu(QStringLiteral(u"导入vek规范")); }});
    m_stages.push_back({QStringLiteral("import-dialog"), &isShown<ImportVekForm>,
                        [] { clickButton<ImportVekForm>("button_cancel"); }});
}

void Tour::addOpeningStages(const QString& example)
{
    m_stages.push_back({example + QStringLiteral("-start"),
                        [] { return !isShown<ImportVekForm>() && !isShown<QMessageBox>(); },
                        [this] { m_studio->clickFileMenu(QStringLiteral(u"打开工程")); }});
    m_stages.push_back(
        {example + QStringLiteral("-choose-project"), &isShown<QFileDialog>, [this, example] {
             chooseFile(QStringLiteral("%1/%2/%2.rotpro").arg(m_examples, example));
         }});
}

// Opens an example, plans it, then shows its schedule.
void Tour::addExampleStages(const QString& example)
{
    addOpeningStages(example);
    m_stages.push_back({example + QStringLiteral("-opened"), [] { return !isShown<QFileDialog>(); },
                        [this] { makeRoomForTheDrawing(); }});
    m_stages.push_back({example + QStringLiteral("-scaled"),
                        [this] { return m_studio->editor.view()->height() > 600; },
                        [this] {
                            m_studio->editor.view()->centerOn(
                                m_studio->editor.scene()->itemsBoundingRect().center());
                        }});
    m_stages.push_back({example, [] { return true; },
                        [this] { m_studio->clickToolBar(QStringLiteral(u"调度规划")); }});
    addRunStages(example);
    m_stages.push_back({example + QStringLiteral("-schedule"),
                        [this] { return m_studio->probe.planInfoDock() != nullptr; }, [] {}});
}

// Opens the check of the plan that is shown, walks through its pages, and goes to the place of its
// first finding.
void Tour::addPlanCheckStages()
{
    m_stages.push_back({QStringLiteral("plan-check-menu"), [] { return true; },
                        [this] {
                            auto* nodes = m_studio->probe.planInfoDock()->findChild<QListWidget*>();
                            openMenuByMouse(*nodes, nodes->currentIndex());
                        }});
    m_stages.push_back({QStringLiteral("plan-check-menu-open"), &isShown<QMenu>,
                        [] { chooseByMouse(openMenu(), openMenu()->actions().first()->text()); }});
    m_stages.push_back({QStringLiteral("plan-check-findings"), &isShown<PlanCheckForm>,
                        [this] { openPlanCheckPage(1); }});
    m_stages.push_back(
        {QStringLiteral("plan-check-load"), [] { return true; }, [this] { openPlanCheckPage(2); }});
    m_stages.push_back({QStringLiteral("plan-check-latency"), [] { return true; },
                        [this] { openPlanCheckPage(3); }});
    m_stages.push_back({QStringLiteral("plan-check-buffers"), [] { return true; },
                        [this] {
                            openPlanCheckPage(0);
                            goToFirstFinding();
                        }});
    m_stages.push_back({QStringLiteral("plan-check-place"), [] { return true; },
                        [] { openForm<PlanCheckForm>()->close(); }});
}

void Tour::openPlanCheckPage(int index)
{
    auto* bar = openForm<PlanCheckForm>()->findChild<QTabBar*>();
    QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(index).center());
}

// By Enter, so that the tool tip of its cell shows.
void Tour::goToFirstFinding()
{
    auto* findings =
        openForm<PlanCheckForm>()->findChild<QTableView*>(QStringLiteral("findingTable"));
    QTest::keyClick(findings, Qt::Key_Return);
}

// Opens an example and sees it fail.
void Tour::addRefusalStages(const QString& name)
{
    addOpeningStages(name);
    m_stages.push_back({name + QStringLiteral("-opened"), [] { return !isShown<QFileDialog>(); },
                        [this] {
                            makeRoomForTheDrawing();
                            m_studio->clickToolBar(QStringLiteral(u"流量配置"));
                        }});
    m_stages.push_back({name, [this] { return m_studio->probe.flowDock()->isVisible(); },
                        [this] {
                            m_studio->editor.view()->centerOn(
                                m_studio->editor.scene()->itemsBoundingRect().center());
                            m_studio->clickToolBar(QStringLiteral(u"调度规划"));
                        }});
    m_stages.push_back({name + QStringLiteral("-schedule-dialog"), &isShown<FlowScheduleForm>,
                        [] { clickButton<FlowScheduleForm>("RotundaButton"); }});
    addOutcomeStage(name + QStringLiteral("-refused"));
}

// Opens an example, sees it fail, has its windows solved, and plans again.
void Tour::addSolvingStages(const QString& name)
{
    addRefusalStages(name);
    m_stages.push_back({name + QStringLiteral("-refusal-read"),
                        [] { return !isShown<QMessageBox>() && !isShown<FlowScheduleForm>(); },
                        [this] {
                            auto* flows = m_studio->probe.flowTable();
                            openMenuByMouse(*flows, flows->model()->index(0, 2));
                        }});
    m_stages.push_back({name + QStringLiteral("-menu"), &isShown<QMenu>,
                        [] { chooseByMouse(openMenu(), openMenu()->actions().first()->text()); }});
    m_stages.push_back({name + QStringLiteral("-solved"), &isSolved,
                        [] { clickButton<SynthesisForm>("adoptButton"); }});
    m_stages.push_back({name + QStringLiteral("-adopted"), [] { return !isShown<SynthesisForm>(); },
                        [this] { m_studio->clickToolBar(QStringLiteral(u"调度规划")); }});
    addRunStages(name);
    m_stages.push_back({name + QStringLiteral("-schedule"), [] { return true; }, [] {}});
}

// Opens an example, sees it fail, replaces its second flow by a mended one, and plans again.
void Tour::addFailingExampleStages(const FailingExample& example)
{
    const QString& name = example.name;
    addRefusalStages(name);
    m_stages.push_back({name + QStringLiteral("-refusal-read"),
                        [] { return !isShown<QMessageBox>() && !isShown<FlowScheduleForm>(); },
                        [this, example] { mend(example); }});
    m_stages.push_back({name + QStringLiteral("-mended"),
                        [this, example] {
                            const FlowInfo flow = m_studio->probe.flowInfoList().last();
                            return flow.dstNodes.first().rcvWindowHigh == example.receiveWindow[1];
                        },
                        [this] { m_studio->clickToolBar(QStringLiteral(u"调度规划")); }});
    addRunStages(name + QStringLiteral("-mended"));
    m_stages.push_back({name + QStringLiteral("-mended-schedule"), [] { return true; }, [] {}});
}

void Tour::mend(const FailingExample& example)
{
    m_studio->probe.flowTable()->selectRow(1);
    QTest::mouseClick(Studio::dockButton(m_studio->probe.flowDock(), QStringLiteral(u"删除")),
                      Qt::LeftButton);
    m_studio->defineFlow("TT", "2", "10000", example.vLineId, example.sendWindow,
                         {example.receiveWindow});
}

// Plans what is drawn and leaves the dock open on the schedule.
void Tour::addRunStages(const QString& name)
{
    m_stages.push_back({name + QStringLiteral("-schedule-dialog"), &isShown<FlowScheduleForm>,
                        [] { clickButton<FlowScheduleForm>("RotundaButton"); }});
    addOutcomeStage(name + QStringLiteral("-planned"));
    m_stages.push_back({name + QStringLiteral("-run-over"),
                        [] { return !isShown<QMessageBox>() && !isShown<FlowScheduleForm>(); },
                        [this, name] {
                            keepDocuments(name);
                            openScheduleDock();
                        }});
    m_stages.push_back({name + QStringLiteral("-dock-open"), // it grows step by step
                        [this] { return m_studio->probe.planInfoDock()->height() > 460; },
                        [this] { showTable(QStringLiteral(u"发送控制表")); }});
}

// Copies the documents of a run to a folder of their own; the next run replaces them.
void Tour::keepDocuments(const QString& name)
{
    QDir().mkpath(name);
    for (const char* document :
         {"ResourceXML/vek_input.xml", "OutputXML/vek_hs.xml", "OutputXML/vek_output.xml"}) {
        const QString source = QString::fromUtf8(document);
        QFile::copy(source, name + QLatin1Char('/') + QFileInfo(source).fileName());
    }
}

// Hides the docks and scales the drawing to fit.
void Tour::makeRoomForTheDrawing()
{
    for (QDockWidget* dock : m_studio->window.findChildren<QDockWidget*>())
        dock->hide();
    const QRectF drawing = m_studio->editor.scene()->itemsBoundingRect();
    const bool isLarge = drawing.width() > 940 || drawing.height() > 640;
    TopologyWindowProbe::scales(m_studio->editor.window)
        ->setCurrentText(isLarge ? QStringLiteral("50%") : QStringLiteral("100%"));
}

// Opens the plan result dock alone.
void Tour::openScheduleDock()
{
    m_studio->probe.vLineDock()->hide();
    m_studio->probe.flowDock()->hide();
    if (!m_studio->probe.planInfoDock() || m_studio->probe.planInfoDock()->isHidden())
        m_studio->clickToolBar(QStringLiteral(u"规划结果"));
    m_studio->window.resizeDocks({m_studio->probe.planInfoDock()}, {480}, Qt::Vertical);
}

// Chooses a table, in it the node with most ports, and brings that node into view.
void Tour::showTable(const QString& table)
{
    QDockWidget* dock = m_studio->probe.planInfoDock();
    auto* tables = dock->findChild<QComboBox*>(QStringLiteral("comboboxFlowTableType"));
    tables->setCurrentText(table);
    const NodeInfo_Xml& schedule = tables->currentIndex() == 0 ? m_studio->probe.sendNodeInfo()
                                                               : m_studio->probe.rcvNodeInfo();
    auto* nodes = dock->findChild<QListWidget*>();
    int busiest = 0;
    for (int row = 0; row < nodes->count(); ++row) {
        const auto portsOf = [&](int of) {
            return schedule.value(nodes->item(of)->data(Qt::UserRole).toInt()).size();
        };
        if (portsOf(row) > portsOf(busiest))
            busiest = row;
    }
    nodes->setCurrentRow(busiest);
    const QString name = nodes->item(busiest)->text();
    m_studio->editor.view()->centerOn(m_studio->node(name.toUtf8().constData()));
}

void Tour::addOutcomeStage(const QString& name)
{
    m_stages.push_back({name, &isShown<QMessageBox>, [] {
                            auto* box = openForm<QMessageBox>();
                            qInfo().noquote() << "tour:" << box->windowTitle() << box->text();
                            QTest::mouseClick(box->buttons().first(), Qt::LeftButton);
                        }});
}

// Acting may block in a dialog that the next stage answers, so it happens outside of this slot: a
// timer is silent while its own slot is running.
void Tour::look()
{
    if (m_stages.empty())
        return;
    if (!m_stages.front().isReached()) {
        if (++m_looksAtStage > mostLooksAtOneStage) {
            qWarning().noquote() << "tour: did not come to" << m_stages.front().name;
            QCoreApplication::exit(1);
        }
        return;
    }
    m_looksAtStage = 0;
    const Stage stage = m_stages.front();
    m_stages.pop_front();
    arrangeDialogs();
    QTest::qWait(lookInterval_ms); // lets the stage be painted before its picture is taken
    takePicture(stage.name);
    QTimer::singleShot(0, this, stage.act);
}

void Tour::takePicture(const QString& name)
{
    const QString path = QStringLiteral("%1/%2-%3.png")
                             .arg(m_pictures)
                             .arg(++m_pictureCount, 3, 10, QLatin1Char('0'))
                             .arg(name);
    if (!screenPicture().save(path))
        qWarning().noquote() << "tour: cannot save" << path;
}
