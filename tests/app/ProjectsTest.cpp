#include "app/FlowScheduleForm.h"

#include "tests/driver/Studio.h"
#include "tests/project/ProjectBytes.h"
#include "tests/support/DialogAnswers.h"
#include "tests/support/DialogClicks.h"
#include "tests/support/Documents.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"

#include <QDir>
#include <QDockWidget>
#include <QFileInfo>
#include <QListWidget>
#include <QTableWidget>

#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>

// Saving and opening projects through the file menu and its dialogs.

static QStringList namesFromTheTop(Editor& editor)
{
    QStringList names;
    for (QGraphicsItem* item : editor.scene()->items(Qt::DescendingOrder)) {
        if (const auto* node = qgraphicsitem_cast<DiagramItem*>(item))
            names.append(node->nodeName);
    }
    return names;
}

/// An open studio in a folder of its own.
struct ProjectStudio {
    TemporaryFolder folder;
    LogCapture log;
    Studio studio;

    /// Writes the bytes as a file and opens it through the menu.
    void open(const QByteArray& bytes)
    {
        writeFile(folder.path(u("given.rotpro")), bytes);
        studio.openProject(folder.path(u("given.rotpro")));
    }

    /// Saves through the menu under a name that is not used yet and returns the file.
    QByteArray save()
    {
        const QString path = folder.path(QStringLiteral("saved-%1.rotpro").arg(++saves));
        studio.saveProject(path);
        return readFile(path);
    }

    QByteArray roundOf(const QByteArray& bytes)
    {
        open(bytes);
        return save();
    }

    int saves = 0;
};

class ProjectsTest : public QObject
{
    Q_OBJECT

private slots:
    void emptyProjectIsSixteenZeroBytesAndShowsBothDocks()
    {
        ProjectStudio project;
        QCOMPARE(project.save(), QByteArray(16, '\0'));
        project.studio.drawSmallNetwork();
        project.open(QByteArray(16, '\0'));
        QVERIFY(project.studio.editor.scene()->items().isEmpty());
        QVERIFY(project.studio.probe.vLineDock());
        QVERIFY(project.studio.probe.flowDock());
        QCOMPARE(project.studio.window.tabifiedDockWidgets(project.studio.probe.vLineDock()),
                 QList<QDockWidget*>{project.studio.probe.flowDock()});
        QCOMPARE(project.studio.probe.vLineTable()->rowCount(), 0);
        QCOMPARE(project.studio.probe.flowTable()->rowCount(), 0);
    }

    void hiddenDocksAreShownAgain()
    {
        ProjectStudio project;
        project.open(QByteArray(16, '\0'));
        project.studio.probe.vLineDock()->hide();
        project.studio.probe.flowDock()->hide();
        project.open(QByteArray(16, '\0'));
        QVERIFY(!project.studio.probe.vLineDock()->isHidden());
        QVERIFY(!project.studio.probe.flowDock()->isHidden());
    }

    void dialogsAreTheToolkitsOwnWithTheirCaptions()
    {
        ProjectStudio project;
        DialogAnswers answers;
        answers.expectCancelledFileDialog();
        project.studio.clickFileMenu(u("打开工程"));
        answers.expectCancelledFileDialog();
        project.studio.clickFileMenu(u("保存工程"));
        QCOMPARE(answers.seen(), (QStringList{u("打开工程 [Rotunda工程配置文件 (*.rotpro)]"),
                                              u("保存文件 [Rotunda工程配置文件 (*.rotpro)]")}));
        QVERIFY(answers.allFileDialogsWereOwn());
        QCOMPARE(answers.parents(),
                 (QList<QWidget*>{&project.studio.window, &project.studio.window}));
    }

    void cancellingChangesNothing()
    {
        ProjectStudio project;
        project.studio.drawSmallNetwork();
        DialogAnswers answers;
        answers.expectCancelledFileDialog();
        project.studio.clickFileMenu(u("打开工程"));
        answers.expectCancelledFileDialog();
        project.studio.clickFileMenu(u("保存工程"));
        QVERIFY(answers.allAnswered());
        QCOMPARE(project.studio.editor.nodes().size(), 5);
        QVERIFY(!project.studio.probe.vLineDock());
        QVERIFY(QDir(project.folder.path(QString())).entryList(QDir::Files).isEmpty());
    }

    void endingIsAddedUnlessItStandsThereInSmallLetters_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("saved");
        QTest::newRow("missing") << u("plant") << u("plant.rotpro");
        QTest::newRow("given") << u("plant.rotpro") << u("plant.rotpro");
        QTest::newRow("capitals") << u("plant.ROTPRO") << u("plant.ROTPRO.rotpro");
        QTest::newRow("another") << u("plant.xml") << u("plant.xml.rotpro");
    }

    void endingIsAddedUnlessItStandsThereInSmallLetters()
    {
        QFETCH(QString, typed);
        QFETCH(QString, saved);
        ProjectStudio project;
        project.studio.saveProject(project.folder.path(typed));
        QCOMPARE(QDir(project.folder.path(QString())).entryList(QDir::Files), QStringList{saved});
    }

    void savingCutsTheOldFile()
    {
        ProjectStudio project;
        writeFile(project.folder.path(u("old.rotpro")), QByteArray(5000, 'x'));
        project.studio.saveProject(project.folder.path(u("old"))); // which the dialog does not find
        QCOMPARE(readFile(project.folder.path(u("old.rotpro"))), QByteArray(16, '\0'));
    }

    void fullDiskLeavesTheOldProjectWithoutAWord()
    {
        ProjectStudio project;
        project.studio.drawSmallNetwork();
        writeFile(project.folder.path(u("old.rotpro")), "old");
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit before{};
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit full{100, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
        project.studio.saveProject(project.folder.path(u("old")));
        setrlimit(RLIMIT_FSIZE, &before);
        QCOMPARE(readFile(project.folder.path(u("old.rotpro"))), QByteArray("old"));
        QVERIFY(project.log.lines().isEmpty());
    }

    void fileThatCannotBeWrittenIsNoReasonForAWord()
    {
        ProjectStudio project;
        project.studio.drawSmallNetwork();
        QVERIFY(QDir().mkdir(project.folder.path(u("taken.rotpro"))));
        DialogAnswers answers;
        answers.expectFile(project.folder.path(u("taken")));
        project.studio.clickFileMenu(u("保存工程"));
        QVERIFY(answers.allAnswered());
        QCOMPARE(answers.seen().size(), 1);
        QVERIFY(project.log.lines().isEmpty());
        QVERIFY(QFileInfo(project.folder.path(u("taken.rotpro"))).isDir());
    }

    void fileThatCannotBeReadLeavesEverythingAsItWas()
    {
        ProjectStudio project;
        project.studio.drawSmallNetwork();
        // Even root cannot open a socket as a file.
        const QByteArray path = QFile::encodeName(project.folder.path(u("s.rotpro")));
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        QVERIFY(size_t(path.size()) < sizeof address.sun_path);
        std::copy(path.begin(), path.end(), address.sun_path);
        const int handle = socket(AF_UNIX, SOCK_STREAM, 0);
        QCOMPARE(bind(handle, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        project.studio.openProject(project.folder.path(u("s.rotpro")));
        ::close(handle);
        QCOMPARE(project.studio.editor.nodes().size(), 5);
        QVERIFY(!project.studio.probe.vLineDock());
        QVERIFY(!project.studio.probe.flowDock());
    }

    void pipeOrDeviceAsProjectIsRefusedWithoutAWord_data()
    {
        QTest::addColumn<QString>("target");
        QTest::newRow("pipe") << QString();
        QTest::newRow("device without end") << u("/dev/zero");
    }

    void pipeOrDeviceAsProjectIsRefusedWithoutAWord()
    {
        QFETCH(QString, target);
        ProjectStudio project;
        project.studio.drawSmallNetwork();
        const QString path = project.folder.path(u("other.rotpro"));
        if (target.isEmpty())
            QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        else
            QVERIFY(QFile::link(target, path));
        project.studio.openProject(path);
        QCOMPARE(project.studio.editor.nodes().size(), 5);
        QVERIFY(!project.studio.probe.vLineDock());
    }

    void dockThatIsOpenAlreadyGetsTheOtherBesideIt()
    {
        for (const char* open : {"虚链路配置", "流量配置"}) {
            ProjectStudio project;
            project.studio.clickToolBar(u(open));
            project.open(bytesOf(smallProject()));
            QCOMPARE(project.studio.window.tabifiedDockWidgets(project.studio.probe.vLineDock()),
                     QList<QDockWidget*>{project.studio.probe.flowDock()});
            QVERIFY(!project.studio.probe.vLineDock()->isHidden());
            QVERIFY(!project.studio.probe.flowDock()->isHidden());
        }
    }

    void drawnProjectIsSavedWithTheTopmostItemFirst()
    {
        ProjectStudio project;
        project.studio.drawSmallNetwork();
        project.studio.defineVLine("7", {{u("A"), u("S1"), u("S2"), u("B")}});
        project.studio.defineFlow("TT", "1", "5000", "7", {u("0"), u("2000")},
                                  {{u("400"), u("4000")}});
        project.studio.editor.scene()->setMode(DiagramScene::InsertText);
        project.studio.editor.click(QPointF(600, 450)); // a free text, which is not saved
        const Project saved = projectFrom(project.save());
        QStringList names;
        for (const FileNodeInfo& node : saved.nodes) {
            names.append(node.nodeName);
            const DiagramItem* item = project.studio.node(node.nodeName.toUtf8().constData());
            QCOMPARE(node.position, item->pos());
            QCOMPARE(node.type, qint32(item->diagramType));
            QCOMPARE(node.nodeId, item->nodeId);
            QCOMPARE(node.nodeMac, u("2:0:0:0:0:1"));
            QCOMPARE(node.bufferNum, u("4"));
        }
        QCOMPARE(names, namesFromTheTop(project.studio.editor));
        QCOMPARE(saved.links.size(), 4);
        QCOMPARE(saved.links.last().srcNode, u("A"));
        QCOMPARE(saved.links.last().dstNode, u("S1"));
        QCOMPARE(saved.links.last().bandWidth, u("1000"));
        QCOMPARE(saved.vLines.first().vLineId, u("7"));
        QCOMPARE(saved.vLines.first().vLinePaths,
                 (QList<QStringList>{{u("A"), u("S1"), u("S2"), u("B")}}));
        QCOMPARE(saved.flows.first().flowPeriod, u("5000"));
        QCOMPARE(saved.flows.first().dstNodes.first().rcvWindowHigh, u("4000"));
    }

    void openingReversesStackingAndIdsAndTwiceRestoresThem()
    {
        ProjectStudio project;
        project.studio.drawSmallNetwork();
        const QStringList drawn = namesFromTheTop(project.studio.editor);
        QCOMPARE(project.studio.node("A")->nodeId, u("0"));
        const QByteArray first = project.save();
        const QByteArray second = project.roundOf(first);
        QStringList reversed = drawn;
        std::reverse(reversed.begin(), reversed.end());
        QCOMPARE(namesFromTheTop(project.studio.editor), reversed);
        QCOMPARE(project.studio.node("A")->nodeId, u("4"));
        QVERIFY(second != first);
        QCOMPARE(project.roundOf(second), first);
        QCOMPARE(namesFromTheTop(project.studio.editor), drawn);
        QCOMPARE(project.studio.node("A")->nodeId, u("0"));
    }

    void hostsOfALaterInputDocumentComeReversedToo()
    {
        ProjectStudio project;
        project.studio.drawSmallNetwork();
        project.open(project.save());
        project.studio.probe.generateInput();
        const QByteArray document = readFile(u("ResourceXML/vek_input.xml"));
        QVERIFY(document.indexOf("<hostname>\"C\"") > 0);
        QVERIFY(document.indexOf("<hostname>\"C\"") < document.indexOf("<hostname>\"A\""));
        QVERIFY(document.indexOf("<switchname>\"S2\"") < document.indexOf("<switchname>\"S1\""));
    }

    void textsStayNullOrEmptyAsTheyWere()
    {
        ProjectStudio project;
        Project given = smallProject();
        std::reverse(given.nodes.begin(), given.nodes.end());
        std::reverse(given.links.begin(), given.links.end());
        const Project saved = projectFrom(project.roundOf(bytesOf(smallProject())));
        for (int i = 0; i < given.nodes.size(); ++i)
            given.nodes[i].nodeId = QString::number(2 - i);
        given.vLines[0].vLinePaths[1][2] = QString(); // no node has this name
        QCOMPARE(bytesOf(saved), bytesOf(given));
        QVERIFY(saved.links.first().bandWidth.isNull());
        QCOMPARE(saved.nodes.first().portNum, u("8"));
        QVERIFY(saved.nodes.at(1).nodeMac.isNull());
        QVERIFY(!saved.nodes.at(1).bufferNum.isNull());
    }

    void neverFilledFieldsOfADrawnNodeAreNull()
    {
        ProjectStudio project;
        project.studio.editor.insertNode(DiagramItem::Endpoint, QPointF(200, 200));
        const Project saved = projectFrom(project.save());
        QVERIFY(saved.nodes.first().nodeMac.isNull());
        QVERIFY(saved.nodes.first().portNum.isNull());
        QVERIFY(saved.nodes.first().mtu.isNull());
        QVERIFY(saved.nodes.first().bufferNum.isNull());
    }

    void fileCutInItsNodesLeavesNothingDrawn()
    {
        ProjectStudio project;
        const Project whole = smallProject();
        project.open(bytesOf(whole)); // whose names stay known, with nodes that are gone
        const int cut = ProjectBytes().links(whole.links).nodes(whole.nodes).size() - 1;
        project.open(bytesOf(whole).left(cut));
        QVERIFY(project.studio.editor.scene()->items().isEmpty());
        QVERIFY(project.studio.probe.vLineInfoList().isEmpty());
        QVERIFY(project.studio.probe.flowInfoList().isEmpty());
        QCOMPARE(project.studio.probe.flowTable()->rowCount(), 0);
    }

    void virtualLinkToAMissingNodeGetsANullEntry()
    {
        ProjectStudio project;
        project.open(bytesOf(smallProject()));
        const QList<VLineInfo>& vLines = project.studio.probe.vLineInfoList();
        QCOMPARE(vLines.size(), 2);
        const VLineItems path = vLines.first().vLinePaths.last();
        QCOMPARE(path.size(), 3);
        QCOMPARE(path.at(0), project.studio.node("A"));
        QVERIFY(!path.at(1));
        QVERIFY(!path.at(2));
        auto* paths = qobject_cast<QComboBox*>(project.studio.probe.vLineTable()->cellWidget(0, 2));
        QCOMPARE(paths->itemText(1), u("{发送端:A, 接收端:, 跳数:1}"));
        const Project saved = projectFrom(project.save());
        QVERIFY(saved.vLines.first().vLinePaths.last().last().isNull());
    }

    void hugeCountReadsAsNothing()
    {
        ProjectStudio project;
        project.studio.drawSmallNetwork();
        project.open(QByteArray::fromHex("7fffffff") + QByteArray(400, 'x'));
        QVERIFY(project.studio.editor.scene()->items().isEmpty());
        QCOMPARE(project.save(), QByteArray(16, '\0'));
    }

    void fileOfAnotherKindOpensAsFarAsItGoes()
    {
        ProjectStudio project;
        for (const char* bytes : {"", "\x89PNG\r\n\x1a\n", "<vek_input></vek_input>", "0"}) {
            project.studio.editor.insertNode(DiagramItem::Endpoint, QPointF(200, 200));
            project.open(bytes);
            QVERIFY(project.studio.editor.scene()->items().isEmpty());
        }
    }

    void openingReplacesTheProjectBeforeIt()
    {
        ProjectStudio project;
        project.studio.drawSmallNetwork();
        project.studio.defineVLine("9", {{u("A"), u("S1"), u("S2"), u("B")}});
        project.open(bytesOf(smallProject()));
        QCOMPARE(project.studio.editor.nodes().size(), 3);
        QCOMPARE(project.studio.editor.links().size(), 2);
        QCOMPARE(project.studio.probe.vLineTable()->rowCount(), 2);
        QCOMPARE(project.studio.probe.vLineTable()->item(0, 1)->text(), u("1"));
        QCOMPARE(project.studio.probe.flowTable()->rowCount(), 2);
        QCOMPARE(project.studio.probe.flowTable()->item(1, 1)->text(), u("RC"));
        QCOMPARE(project.studio.probe.flowInfoList().size(), 2);
    }

    void openedDrawingIsInViewAndTheViewStaysWhenPartOfItIs()
    {
        ProjectStudio project;
        QGraphicsView* view = project.studio.editor.view();
        view->centerOn(4000, 4000);
        project.open(bytesOf(smallProject()));
        QVERIFY(!view->items(view->viewport()->rect()).isEmpty());
        view->centerOn(500, 300);
        const QPointF before = view->mapToScene(0, 0);
        project.open(bytesOf(smallProject()));
        QCOMPARE(view->mapToScene(0, 0), before);
        view->centerOn(4000, 4000);
        const QPointF away = view->mapToScene(0, 0);
        project.open(QByteArray(16, '\0'));
        QCOMPARE(view->mapToScene(0, 0), away);
    }

    void scheduleAndItsDocumentsOutliveOpening()
    {
        ProjectStudio project;
        project.studio.drawSmallNetwork();
        project.studio.defineVLine("1", {{u("A"), u("S1"), u("S2"), u("B")}});
        project.studio.defineFlow("TT", "1", "5000", "1", {u("0"), u("2000")},
                                  {{u("400"), u("4000")}});
        {
            DialogAnswers answers;
            answers.expectMessageBox();
            project.studio.clickToolBar(u("调度规划"));
            clickButton(project.studio.probe.flowScheduleForm(), "RotundaButton");
        }
        const QByteArray output = readFile(u("OutputXML/vek_output.xml"));
        const QByteArray input = readFile(u("ResourceXML/vek_input.xml"));
        QVERIFY(!output.isEmpty());
        project.studio.clickToolBar(u("规划结果"));
        auto* nodes = project.studio.probe.planInfoDock()->findChild<QListWidget*>();
        QListWidgetItem* talker = nodes->findItems(u("A"), Qt::MatchExactly).value(0);
        QVERIFY(talker);
        QTest::mouseClick(nodes->viewport(), Qt::LeftButton, Qt::NoModifier,
                          nodes->visualItemRect(talker).center());
        auto* table =
            project.studio.probe.planInfoDock()->findChild<QTableWidget*>(u("timeSlotInfo_send"));
        const int rows = table->rowCount();
        QVERIFY(rows > 0);
        const NodeInfo_Xml received = project.studio.probe.rcvNodeInfo();
        const int slotCount = project.studio.probe.slotCount();
        const QSignalSpy built(&project.studio.window, &MainWindow::buildTopologyByProjectFile);
        project.open(bytesOf(smallProject()));
        QCOMPARE(built.count(), 0);
        QCOMPARE(nodes->currentItem(), talker);
        QCOMPARE(table->rowCount(), rows);
        QCOMPARE(project.studio.probe.rcvNodeInfo(), received);
        QCOMPARE(project.studio.probe.slotCount(), slotCount);
        QCOMPARE(readFile(u("OutputXML/vek_output.xml")), output);
        QCOMPARE(readFile(u("ResourceXML/vek_input.xml")), input);
        QCOMPARE(project.studio.probe.schedCycle(), 5000);
        QVERIFY(!project.studio.probe.sendNodeInfo().isEmpty());
    }

    void randomProjectsComeBackByteForByteAfterTwoRounds()
    {
        RandomSource random(4);
        ProjectStudio project;
        for (int i = 0; i < 20; ++i) {
            // The first opening drops links without nodes, forgets unknown names and numbers anew.
            // At the second one an entry without a node finds a node without a name, if any.
            const QByteArray first =
                project.roundOf(project.roundOf(bytesOf(randomProject(random))));
            const QByteArray second = project.roundOf(first);
            QCOMPARE(project.roundOf(second), first);
        }
    }

    void selfLinksAndDoubleNamesOpen()
    {
        ProjectStudio project;
        Project given;
        given.nodes = {{0, {100, 100}, u("A"), u("0"), {}, {}, {}, {}},
                       {1, {400, 100}, u("A"), u("1"), {}, {}, {}, {}}};
        given.links = {{u("self"), u("A"), u("A"), u("0"), u("1"), u("1000")}};
        given.vLines = {{u("1"), {{u("A"), u("A")}}}};
        project.open(bytesOf(given));
        QCOMPARE(project.studio.editor.nodes().size(), 2);
        project.studio.window.grab();
        const QByteArray first = project.save();
        QCOMPARE(project.roundOf(project.roundOf(first)), first);
    }
};

ROTUNDA_GUI_TEST_MAIN(ProjectsTest)
#include "ProjectsTest.moc"
