#include "tests/driver/MainWindowProbe.h"
#include "tests/support/GuiTestMain.h"
#include "views/FlowColorTable.h"

#include <QLabel>
#include <QMenuBar>
#include <QMetaMethod>
#include <QSettings>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>

static std::unique_ptr<MainWindow> createWindow()
{
    return std::make_unique<MainWindow>(QMap<QString, QString>(), nullptr);
}

static QSettings& settings()
{
    static QSettings instance;
    return instance;
}

class MainWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { settings().clear(); }

    void firstStartIs800By600AndNotMaximized()
    {
        const auto window = createWindow();
        QVERIFY(!window->isVisible());
        window->show();
        QVERIFY(!window->isMaximized());
        QCOMPARE(window->size(), QSize(800, 600));
    }

    void maximizedStateIsRestoredAndKeepsTheEarlierSize()
    {
        settings().setValue(QStringLiteral("app_size"), QSize(900, 700));
        auto window = createWindow();
        window->showMaximized();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        window->close();
        QCOMPARE(settings().value(QStringLiteral("app_maximized")).toBool(), true);
        QCOMPARE(settings().value(QStringLiteral("app_size")).toSize(), QSize(900, 700));

        window = createWindow();
        QVERIFY(window->isVisible());
        QVERIFY(window->isMaximized());
        window->showNormal();
        window->resize(850, 650);
        window->close();
        QCOMPARE(settings().value(QStringLiteral("app_maximized")).toBool(), false);
        QCOMPARE(settings().value(QStringLiteral("app_size")).toSize(), QSize(850, 650));
        QCOMPARE(createWindow()->size(), QSize(850, 650));
    }

    void sizeBelowTheMinimumIsRaised()
    {
        settings().setValue(QStringLiteral("app_size"), QSize(300, 200));
        const auto window = createWindow();
        window->show();
        QCOMPARE(window->size(), QSize(800, 600));
    }

    void toolBarOffersTheFourSteps()
    {
        const auto window = createWindow();
        window->show();
        auto* bar = window->findChild<QToolBar*>(QStringLiteral("Toolbar"));
        QVERIFY(bar);
        QCOMPARE(window->toolBarArea(bar), Qt::LeftToolBarArea);
        QCOMPARE(bar->iconSize(), QSize(40, 40));
        QCOMPARE(bar->toolButtonStyle(), Qt::ToolButtonTextUnderIcon);
        QVERIFY(bar->isMovable());
        QStringList texts;
        QList<QImage> icons;
        for (const QAction* action : bar->actions()) {
            if (!action->text().isEmpty()) {
                texts.append(action->text());
                icons.append(action->icon().pixmap(40, 40).toImage());
            }
        }
        QList<QImage> expectedIcons;
        for (const char* name : {"start", "analysis", "param", "flow"}) {
            const QIcon icon(QStringLiteral(":/icons/icons8/icon-%1.png").arg(QLatin1String(name)));
            expectedIcons.append(icon.pixmap(40, 40).toImage());
            QVERIFY(!expectedIcons.last().isNull());
        }
        QCOMPARE(icons, expectedIcons);
        QCOMPARE(texts, (QStringList{QStringLiteral(u"虚链路配置"), QStringLiteral(u"流量配置"),
                                     QStringLiteral(u"调度规划"), QStringLiteral(u"规划结果")}));
        QCOMPARE(bar->actions().size(), 5);
    }

    void fileMenuHasItsShortcuts()
    {
        const auto window = createWindow();
        auto* bar = window->findChild<QMenuBar*>(QStringLiteral("Menubar"));
        QVERIFY(bar);
        QMenu* menu = bar->actions().first()->menu();
        QCOMPARE(menu->title(), QStringLiteral(u"文件"));
        QStringList entries;
        for (const QAction* action : menu->actions()) {
            entries.append(action->text() + QLatin1Char(' ') +
                           action->shortcut().toString(QKeySequence::PortableText));
        }
        QCOMPARE(entries,
                 (QStringList{
                     QStringLiteral(u"打开工程 Ctrl+O"), QStringLiteral(u"保存工程 Ctrl+S"),
                     QStringLiteral(u"导入vek规范 Ctrl+N"), QStringLiteral(u"导出vek规范 Ctrl+M"),
                     QStringLiteral(u"退出 ") + QKeySequence(QKeySequence::Quit).toString()}));
    }

    void quitClosesTheWindow()
    {
        const auto window = createWindow();
        window->show();
        auto* bar = window->findChild<QMenuBar*>(QStringLiteral("Menubar"));
        bar->actions().first()->menu()->actions().last()->trigger();
        QVERIFY(!window->isVisible());
        QVERIFY(settings().contains(QStringLiteral("app_size")));
    }

    void titleNamesTheProgramAndItsPlaceOnTheWeb()
    {
        QCOMPARE(createWindow()->windowTitle(), QStringLiteral("Rotunda - www.rotunda.example"));
    }

    void statusBarShowsTheLogo()
    {
        const auto window = createWindow();
        const QStatusBar* bar = MainWindowProbe(*window).statusBar();
        QCOMPARE(bar->contentsMargins(), QMargins(4, 4, 4, 4));
        auto* logo = bar->findChild<QLabel*>();
        QVERIFY(logo);
        QVERIFY(!logo->pixmap(Qt::ReturnByValue).isNull());
        QVERIFY(logo->hasScaledContents());
        QCOMPARE(logo->maximumSize(), QSize(100, 25));
    }

    void recordsOfQueuedSignalsAreKnownByName()
    {
        createWindow();
        for (const char* name : {"VLineInfo", "VLineItems", "FlowInfo"})
            QVERIFY(QMetaType::type(name) != QMetaType::UnknownType);
    }

    void eachWindowFillsTheColoursAnew()
    {
        createWindow();
        const QVector<QColor> first = flowColorTable;
        QCOMPARE(first.size(), 1000);
        createWindow();
        QVERIFY(flowColorTable != first);
    }

    // Slots are called by name, so their signatures are an interface.
    void slotsAreDeclaredInOrder()
    {
        QStringList declared;
        const QMetaObject& meta = MainWindow::staticMetaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            if (meta.method(i).methodType() == QMetaMethod::Slot)
                declared.append(QString::fromUtf8(meta.method(i).methodSignature()));
        }
        const QString expected = QStringLiteral(
            "changeStackedWidgetPage(int) planInfo() bandWidthUsage() e2eDelayAndJitter() "
            "flowDistribution() bufferUsage() handleActionClose() handleActionCloseAll() "
            "handleActionOpenProject() flowSchedule() handleActionQuit() "
            "handleActionSaveProject() showImportForm() showOutportForm() "
            "importVekFile(QString,QString) outportVekFile(QString) flowEditor() "
            "addVLineItemByProjectFile(QList<FileVLineInfo>) "
            "addFlowItemByProjectFile(QList<FlowInfo>) vLineEditor() openFile(QString) "
            "showFlowEditorWindow() deleteFlowEditorWindow() addFlowEditorTableItem(FlowInfo) "
            "delFlowEditorTableItem() showVLineEditorForm() deleteVLineEditorWindow() "
            "addVLineEditorTableItem(VLineInfo) delVLineEditorTableItem() "
            "delFlowScheduleWindow() showVLineWindow(int) delShowVLineWindow() updatePlanInfo() "
            "updateFlowList() updateNodeInfo() updateInfoBarText() planByUserInput() "
            "generate_vek_input() Rotunda() callAlgorithm() delHsXml() delOutputXml() "
            "parse_vek_output() parse_vek_input() "
            "generateNodesInfo(NodeInfo_Xml&,int,int,int,int) "
            "generateHosts(XMLDocument&,XMLElement*,DiagramItem*) "
            "generateSwitches(XMLDocument&,XMLElement*,DiagramItem*) "
            "generateLinks(XMLDocument&,XMLElement*,Arrow*) "
            "generateVirtualLinks(XMLDocument&,XMLElement*) "
            "generateFlows(XMLDocument&,XMLElement*)");
        QCOMPARE(declared.join(QLatin1Char(' ')), expected);
    }
};

ROTUNDA_GUI_TEST_MAIN(MainWindowTest)
#include "MainWindowTest.moc"
