#include "tools/tour/Tour.h"

#include "app/FlowScheduleForm.h"
#include "app/ImportVekForm.h"
#include "app/MainWindow.h"
#include "app/OutportVekForm.h"
#include "traffic/AddVLineForm.h"
#include "traffic/FlowEditorForm.h"
#include "traffic/VLineEditorForm.h"

#include "tests/app/Studio.h"

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
#include <QScreen>
#include <QtTest>

static constexpr int lookInterval_ms = 100;
static constexpr int mostLooksAtOneStage = 600;

/// The visible top-level window of a class; null when there is none.
template <typename Window>
static Window* visibleWindow()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* window = qobject_cast<Window*>(widget);
        if (window && window->isVisible())
            return window;
    }
    return nullptr;
}

template <typename Window>
static bool isShown()
{
    return visibleWindow<Window>() != nullptr;
}

static QStringList pathOf(const char* names)
{
    return QString::fromUtf8(names).split(QLatin1Char(' '));
}

template <typename Window>
static void clickButton(const char* name)
{
    auto* window = visibleWindow<Window>();
    QTest::mouseClick(window->template findChild<QPushButton*>(QString::fromUtf8(name)),
                      Qt::LeftButton);
}

static QString drawnProject()
{
    return QStringLiteral("drawn-network.rotpro");
}

static void chooseFile(const QString& path)
{
    auto* edit =
        visibleWindow<QFileDialog>()->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    edit->setText(path);
    QTest::keyClick(edit, Qt::Key_Enter);
}

Tour::Tour(const QString& examples, const QString& pictures, QObject* parent)
    : QObject(parent),
      m_examples(examples),
      m_pictures(pictures)
{
    addStartStages();
    addDrawingStages();
    addDrawnRunStages();
    addExchangeStages();
    for (const char* example : {"avionics-line", "ring", "industrial-tree"})
        addExampleStages(QString::fromUtf8(example));
    m_stages.push_back({QStringLiteral("end"), [] { return !isShown<QMessageBox>(); },
                        [this] { m_studio->window.close(); }});
    connect(&m_timer, &QTimer::timeout, this, &Tour::look);
    m_timer.start(lookInterval_ms);
}

Tour::~Tour() = default;

void Tour::addStartStages()
{
    m_stages.push_back({QStringLiteral("main-window"), &isShown<MainWindow>, [this] {
                            m_studio = std::make_unique<Studio>(*visibleWindow<MainWindow>());
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
                            VLineEditorForm* form = m_studio->openVLineEditor();
                            m_studio->addPath(form, pathOf("A S1 S2 B"));
                            m_studio->openPath(form);
                        }});
    m_stages.push_back({QStringLiteral("virtual-link-dialogs"), &isShown<AddVLineForm>, [this] {
                            m_studio->probe.vLineEditorForm()->close();
                            m_studio->defineVLine("1", {pathOf("A S1 S2 B"), pathOf("A S1 S2 C")});
                            m_studio->defineVLine("2", {pathOf("C S2 B")});
                        }});
    m_stages.push_back({QStringLiteral("virtual-links"),
                        [this] { return m_studio->probe.vLineInfoList().size() == 2; },
                        [this] { m_studio->openFlowEditor(); }});
    m_stages.push_back({QStringLiteral("flow-dialog"), &isShown<FlowEditorForm>, [this] {
                            m_studio->probe.flowEditorForm()->close();
                            const QList<QStringList> both{pathOf("400 4000"), pathOf("600 4000")};
                            m_studio->defineFlow("TT", "1", "5000", "1", pathOf("0 2000"), both);
                            m_studio->defineFlow("TT", "2", "10000", "1", pathOf("0 2000"), both);
                            m_studio->defineFlow("TT", "3", "10000", "2", pathOf("0 1000"),
                                                 {pathOf("200 3000")});
                        }});
}

// Saves what was drawn, plans it and reads its send table.
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
                        [this] { m_studio->clickFileMenu(QStringLiteral(u"导出vek规范")); }});
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

// Opens an example, plans it, then shows its schedule.
void Tour::addExampleStages(const QString& example)
{
    m_stages.push_back({example + QStringLiteral("-start"),
                        [] { return !isShown<ImportVekForm>() && !isShown<QMessageBox>(); },
                        [this] { m_studio->clickFileMenu(QStringLiteral(u"打开工程")); }});
    m_stages.push_back(
        {example + QStringLiteral("-choose-project"), &isShown<QFileDialog>, [this, example] {
             chooseFile(QStringLiteral("%1/%2/%2.rotpro").arg(m_examples, example));
         }});
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
                            showBusiestNode();
                        }});
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

// Opens the plan result dock alone and chooses the node that sends on most ports.
void Tour::showBusiestNode()
{
    m_studio->probe.vLineDock()->hide();
    m_studio->probe.flowDock()->hide();
    if (!m_studio->probe.planInfoDock() || m_studio->probe.planInfoDock()->isHidden())
        m_studio->clickToolBar(QStringLiteral(u"规划结果"));
    const NodeInfo_Xml& schedule = m_studio->probe.sendNodeInfo();
    auto* nodes = m_studio->probe.planInfoDock()->findChild<QListWidget*>();
    int busiest = 0;
    for (int row = 0; row < nodes->count(); ++row) {
        const auto portsOf = [&](int of) {
            return schedule.value(nodes->item(of)->data(Qt::UserRole).toInt()).size();
        };
        if (portsOf(row) > portsOf(busiest))
            busiest = row;
    }
    nodes->setCurrentRow(busiest);
    m_studio->window.resizeDocks({m_studio->probe.planInfoDock()}, {480}, Qt::Vertical);
}

void Tour::addOutcomeStage(const QString& name)
{
    m_stages.push_back({name, &isShown<QMessageBox>, [] {
                            auto* box = visibleWindow<QMessageBox>();
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
    QTest::qWait(lookInterval_ms); // lets the stage be painted before its picture is taken
    takePicture(stage.name);
    QTimer::singleShot(0, this, stage.act);
}

void Tour::takePicture(const QString& name)
{
    const QString path = QStringLiteral("%1/%2-%3.png")
                             .arg(m_pictures)
                             .arg(++m_pictureCount, 2, 10, QLatin1Char('0'))
                             .arg(name);
    if (!QGuiApplication::primaryScreen()->grabWindow(0).save(path))
        qWarning().noquote() << "tour: cannot save" << path;
}
