#include "app/MainWindow.h"

#include "app/SynthesisForm.h"
#include "planner/PreProcess.h"
#include "planner/TTPlanning.h"
#include "topology/TopologyWindow.h"
#include "traffic/TrafficTypes.h"
#include "views/FlowColorTable.h"
#include "widgets/SingleDialog.h"

#include <QCloseEvent>
#include <QLabel>
#include <QMenuBar>
#include <QSettings>
#include <QStatusBar>
#include <QToolBar>

static QString maximizedKey()
{
    return QStringLiteral("app_maximized");
}

static QString sizeKey()
{
    return QStringLiteral("app_size");
}

MainWindow::MainWindow(const QMap<QString, QString>& versions, QWidget* parent)
    : QMainWindow(parent),
      firstStage(&planner::preProcess),
      secondStage(&planner::TTPlanning)
{
    registerTrafficTypes();
    fillFlowColorTable();
    addToolBar(Qt::LeftToolBarArea, createToolBar());
    topologyWindow = new TopologyWindow;
    setCentralWidget(topologyWindow);
    setMenuBar(createMenuBar());
    setMinimumSize(800, 600);
    mainStatusBar = createStatusBar(versions);
    setStatusBar(mainStatusBar);
    setWindowTitle(tr("Rotunda") + QStringLiteral(" - www.rotunda.example"));
    connect(&RecordNotifier::instance(), &RecordNotifier::nodesGone, this,
            &MainWindow::forgetGoneNodes);
    restoreWindow();
}

// The drawing goes while the lists that hold its nodes are still there to be told.
MainWindow::~MainWindow()
{
    delete topologyWindow;
}

void MainWindow::restoreWindow()
{
    const QSettings settings;
    if (settings.value(maximizedKey(), false).toBool())
        showMaximized();
    else
        resize(settings.value(sizeKey(), QSize(800, 600)).toSize());
}

QToolBar* MainWindow::createToolBar()
{
    auto* toolBar = new QToolBar(this);
    const auto add = [&](const char* icon, const QString& text, void (MainWindow::*slot)()) {
        const QString path = QStringLiteral(":/icons/icons8/") + QLatin1String(icon);
        connect(toolBar->addAction(QIcon(path), text), &QAction::triggered, this, slot);
    };
    add("icon-start.png", QStringLiteral(u"虚链路配置"), &MainWindow::vLineEditor);
    add("icon-analysis.png", QStringLiteral(u"流量配置"), &MainWindow::flowEditor);
    add("icon-param.png", QStringLiteral(u"调度规划"), &MainWindow::flowSchedule);
    add("icon-flow.png", QStringLiteral(u"规划结果"), &MainWindow::planInfo);

    toolBar->setStyleSheet(QStringLiteral("padding:6px;"));
    auto* filler = new QWidget;
    filler->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    toolBar->addWidget(filler);
    toolBar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    toolBar->setIconSize(QSize(40, 40));
    toolBar->setMovable(true);
    toolBar->setObjectName(QStringLiteral("Toolbar"));
    return toolBar;
}

QMenuBar* MainWindow::createMenuBar()
{
    auto* bar = new QMenuBar(this);
    bar->setObjectName(QStringLiteral("Menubar"));
    QMenu* menu = bar->addMenu(QStringLiteral(u"文件"));
    const auto add = [&](const QString& text, const QKeySequence& shortcut,
                         void (MainWindow::*slot)()) {
        QAction* action = menu->addAction(text);
        action->setShortcut(shortcut);
        connect(action, &QAction::triggered, this, slot);
        return action;
    };
    add(tr("打开工程"), QKeySequence::Open, &MainWindow::handleActionOpenProject);
    saveProjectAction =
        add(tr("保存工程"), QKeySequence::Save, &MainWindow::handleActionSaveProject);
    saveProjectAction->setEnabled(true);
    importAction = add(tr("导入vek规范"), tr("Ctrl+N"), &MainWindow::showImportForm);
    outportAction = add(tr("导出vek规范"), tr("Ctrl+M"), &MainWindow::showOutportForm);
    add(tr("退出"), QKeySequence::Quit, &MainWindow::handleActionQuit);
    return bar;
}

QStatusBar* MainWindow::createStatusBar(const QMap<QString, QString>&)
{
    auto* bar = new QStatusBar(this);
    bar->setContentsMargins(4, 4, 4, 4);
    bar->setStyleSheet(QStringLiteral("QStatusBar::item { border: none; }"));
    auto* logo = new QLabel;
    logo->setPixmap(QPixmap(QStringLiteral(":/icons/logo_blue.png")));
    logo->setScaledContents(true);
    logo->setMaximumHeight(25);
    logo->setMaximumWidth(100);
    bar->addPermanentWidget(logo);
    return bar;
}

void MainWindow::handleActionQuit()
{
    close();
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (runInProgress) {
        closeAfterRun = true;
        event->ignore();
        return;
    }
    closeDialog(synthesisForm); // nobody waits for its search any more
    QSettings settings;
    settings.setValue(maximizedKey(), isMaximized());
    if (!isMaximized())
        settings.setValue(sizeKey(), size());
    settings.sync();
}

// Reserved operations, declared and connected to nothing.

void MainWindow::bandWidthUsage() {}

void MainWindow::e2eDelayAndJitter() {}

void MainWindow::flowDistribution() {}

void MainWindow::bufferUsage() {}

void MainWindow::handleActionClose() {}

void MainWindow::handleActionCloseAll() {}

void MainWindow::openFile(QString) {}
