#include "app/FlowScheduleForm.h"
#include "planner/TTPlanner.h"

#include "tests/driver/MainWindowProbe.h"
#include "tests/support/DialogAnswers.h"
#include "tests/support/Documents.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TemporaryFolder.h"

#include <QDir>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>

// Drives the real window by real clicks: tool bar, dialog, file dialog and boxes.

static QString exampleDocument(const char* name)
{
    return QStringLiteral(ROTUNDA_SOURCE_FOLDER "/examples/%1/vek_input.xml")
        .arg(QString::fromUtf8(name));
}

static QString inputFile()
{
    return QStringLiteral("ResourceXML/vek_input.xml");
}

static QString hsFile()
{
    return QStringLiteral("OutputXML/vek_hs.xml");
}

static QString outputFile()
{
    return QStringLiteral("OutputXML/vek_output.xml");
}

static QString successBox()
{
    return QStringLiteral(u"rotunda 流量规划: 规划成功");
}

static qint32 leaveDamagedIntermediateDocument(planner::PlanningContext&)
{
    writeFile(hsFile(), "<vek_hs>");
    return 0;
}

static qint32 leaveNoIntermediateDocument(planner::PlanningContext&)
{
    return 0;
}

static qint32 answerOne(planner::TTPlanner&)
{
    writeFile(outputFile(), "<vek_output><schedCycle>600</schedCycle><slotLen>200</slotLen>"
                            "<flows/></vek_output>");
    return 1;
}

/// Counts how often a widget is raised.
class RaiseCounter : public QObject
{
public:
    explicit RaiseCounter(QWidget* watched) { watched->installEventFilter(this); }

    int count() const { return m_count; }

    bool eventFilter(QObject*, QEvent* event) override
    {
        m_count += event->type() == QEvent::ZOrderChange ? 1 : 0;
        return false;
    }

private:
    int m_count = 0;
};

class SchedulingRunTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<TemporaryFolder>();
        m_log = std::make_unique<LogCapture>();
        m_window = std::make_unique<MainWindow>(QMap<QString, QString>(), nullptr);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }

    void cleanup()
    {
        m_window.reset();
        m_log.reset();
        m_folder.reset();
    }

    void goodDocumentIsPlannedAndLoaded()
    {
        DialogAnswers answers;
        answers.expectFile(exampleDocument("avionics-line"));
        answers.expectMessageBox();
        planByDialog();
        QVERIFY(answers.allAnswered());
        QCOMPARE(answers.seen(), (QStringList{QStringLiteral(u"导入xml [vek_input(vek_input.xml)]"),
                                              successBox()}));
        QVERIFY(!answers.allFileDialogsWereOwn()); // the desktop's own, where it has one
        QCOMPARE(readFile(inputFile()), readFile(exampleDocument("avionics-line")));
        QVERIFY(!readFile(hsFile()).isEmpty());
        QVERIFY(!readFile(outputFile()).isEmpty());
        QCOMPARE(probe().schedCycle(), 80000);
        QCOMPARE(probe().slotCount(), 400);
        QVERIFY(!probe().sendNodeInfo().isEmpty());
        QVERIFY(!probe().rcvNodeInfo().isEmpty());
        QVERIFY(!probe().flowScheduleForm());
    }

    void statusTextsFollowTheStages()
    {
        QSignalSpy texts(probe().statusBar(), &QStatusBar::messageChanged);
        runOn("avionics-line");
        QStringList seen;
        for (const QList<QVariant>& arguments : texts)
            seen.append(arguments.first().toString());
        QCOMPARE(seen, (QStringList{QStringLiteral(u"调度算法预处理中..."),
                                    QStringLiteral(u"调度算法预处理完毕"),
                                    QStringLiteral(u"调度算法规划中..."),
                                    QStringLiteral(u"调度算法规划完毕")}));
        QCOMPARE(probe().statusBar()->currentMessage(), seen.last());
        // A text that goes after a while would have started a timer.
        QVERIFY(probe().statusBar()->findChildren<QTimer*>().isEmpty());
    }

    void statusTextsCanBeSeenBeforeTheNextStage()
    {
        static QStringList order;
        order.clear();
        probe().replaceFirstStage([](planner::PlanningContext&) {
            order.append(QStringLiteral("first stage"));
            return 0;
        });
        probe().replaceSecondStage([](planner::TTPlanner&) {
            order.append(QStringLiteral("second stage"));
            return -3;
        });
        // What was posted with a text is delivered when the window may paint it.
        connect(
            probe().statusBar(), &QStatusBar::messageChanged, this,
            [](const QString& text) { order.append(text); }, Qt::QueuedConnection);
        runOn("ring");
        QCOMPARE(order,
                 (QStringList{QStringLiteral(u"调度算法预处理中..."), QStringLiteral("first stage"),
                              QStringLiteral(u"调度算法预处理完毕"),
                              QStringLiteral(u"调度算法规划中..."), QStringLiteral("second stage"),
                              QStringLiteral(u"调度算法规划完毕")}));
    }

    void unreasonableWindowEndsTheRunAfterTheFirstStage()
    {
        runOn("avionics-line");
        const NodeInfo_Xml earlier = probe().sendNodeInfo();
        QCOMPARE(runOn("fails-window-check"),
                 QStringList{QStringLiteral(u"rotunda 预处理: 输入的时间窗口不合理")});
        QCOMPARE(probe().statusBar()->currentMessage(), QStringLiteral(u"调度算法预处理完毕"));
        QVERIFY(!QFile::exists(hsFile()));
        QVERIFY(!QFile::exists(outputFile()));
        QCOMPARE(probe().sendNodeInfo(), earlier);
    }

    void failedResolutionIsReported()
    {
        QCOMPARE(runOn("fails-resolution"),
                 QStringList{QStringLiteral(u"rotunda 流量规划: 冲突消解失败，规划终止")});
        QVERIFY(QFile::exists(hsFile()));
        QVERIFY(!QFile::exists(outputFile()));
    }

    void documentThatDoesNotParseIsReported()
    {
        const QString document = m_folder->path(QStringLiteral("elsewhere/vek_input.xml"));
        writeFile(document, "this is no document");
        QCOMPARE(runOnDocument(document),
                 QStringList{
                     QStringLiteral(u"rotunda 预处理: vek_input.xml文件解析错误，请检查文件格式")});
    }

    void missingFolderIsReported()
    {
        DialogAnswers answers;
        answers.expectMessageBox();
        QCOMPARE(probe().callAlgorithm(), -2);
        QCOMPARE(answers.seen(),
                 QStringList{QStringLiteral(u"rotunda 预处理: 找不到vek_input.xml文件")});
        QVERIFY(!QDir().exists(QStringLiteral("OutputXML")));
    }

    void missingIntermediateFolderIsReported()
    {
        probe().replaceFirstStage(&leaveNoIntermediateDocument);
        QCOMPARE(runOn("ring"),
                 QStringList{QStringLiteral(u"rotunda 流量规划: 找不到vek_hs.xml文件")});
    }

    void damagedIntermediateDocumentIsReported()
    {
        probe().replaceFirstStage(&leaveDamagedIntermediateDocument);
        QCOMPARE(runOn("ring"), QStringList{QStringLiteral(
                                    u"rotunda 流量规划: vek_hs.xml文件解析错误，请检查文件格式")});
    }

    void unknownCodeOfTheSecondStageCountsAsSuccessUnsaid()
    {
        probe().replaceSecondStage(&answerOne);
        QCOMPARE(runOn("ring"), QStringList());
        QCOMPARE(probe().schedCycle(), 600);
        QCOMPARE(probe().slotCount(), 3);
    }

    void cancelledFileDialogLeavesEverythingAsItWas()
    {
        writeFile(inputFile(), "input");
        writeFile(hsFile(), "hs");
        writeFile(outputFile(), "output");
        DialogAnswers answers;
        answers.expectCancelledFileDialog();
        planByDialog();
        QVERIFY(answers.allAnswered());
        QCOMPARE(readFile(inputFile()), QByteArray("input"));
        QCOMPARE(readFile(hsFile()), QByteArray("hs"));
        QCOMPARE(readFile(outputFile()), QByteArray("output"));
        QVERIFY(!probe().flowScheduleForm());
    }

    void targetItselfCanBePicked()
    {
        const QByteArray document = readFile(exampleDocument("ring"));
        writeFile(inputFile(), document);
        QCOMPARE(runOnDocument(m_folder->path(inputFile())), QStringList{successBox()});
        QCOMPARE(readFile(inputFile()), document);
    }

    void targetPickedByADetourIsKept()
    {
        const QByteArray document = readFile(exampleDocument("ring"));
        writeFile(inputFile(), document);
        QVERIFY(QFile::link(m_folder->path(QStringLiteral("ResourceXML")),
                            m_folder->path(QStringLiteral("other"))));
        QCOMPARE(runOnDocument(m_folder->path(QStringLiteral("other/vek_input.xml"))),
                 QStringList{successBox()});
        QCOMPARE(readFile(inputFile()), document);
    }

    void linkToThePickedDocumentIsReplacedByACopy()
    {
        const QByteArray document = readFile(exampleDocument("ring"));
        writeFile(QStringLiteral("mine/vek_input.xml"), document);
        QVERIFY(QDir().mkpath(QStringLiteral("ResourceXML")));
        QVERIFY(QFile::link(m_folder->path(QStringLiteral("mine/vek_input.xml")),
                            m_folder->path(inputFile())));
        QCOMPARE(runOnDocument(m_folder->path(QStringLiteral("mine/vek_input.xml"))),
                 QStringList{successBox()});
        QVERIFY(!QFileInfo(inputFile()).isSymLink());
        QCOMPARE(readFile(inputFile()), document);
    }

    void pickedReadOnlyDocumentCanBeReplacedByTheNextRun()
    {
        const QString mine = m_folder->path(QStringLiteral("mine/vek_input.xml"));
        writeFile(mine, readFile(exampleDocument("ring")));
        QVERIFY(QFile::setPermissions(mine, QFile::ReadOwner | QFile::ReadUser));
        runOnDocument(mine);
        QVERIFY(QFile::permissions(inputFile()) & QFile::WriteOwner);
    }

    void pickedDocumentReplacesTheEarlierOne()
    {
        writeFile(inputFile(), "earlier");
        runOn("ring");
        QCOMPARE(readFile(inputFile()), readFile(exampleDocument("ring")));
    }

    void everyExampleRunsInTheWindow()
    {
        QCOMPARE(runOn("industrial-tree"), QStringList{successBox()});
        QListWidget list;
        probe().fillNodeList(&list);
        QStringList names;
        for (int row = 0; row < list.count(); ++row)
            names.append(list.item(row)->text());
        QVERIFY(names.contains(QStringLiteral("PLANT")));
        QVERIFY(names.contains(QStringLiteral("PLC1")));
    }

    void boxesHaveNoParentAndFailuresWarn()
    {
        DialogAnswers answers;
        int parents = 0;
        for (const char* example : {"ring", "fails-window-check", "fails-resolution"}) {
            answers.expectFile(exampleDocument(example));
            answers.expectMessageBox([&parents] {
                if (QApplication::activeModalWidget()->parentWidget())
                    ++parents;
            });
            planByDialog();
        }
        QVERIFY(answers.allAnswered());
        QCOMPARE(parents, 0);
        QCOMPARE(answers.icons(), (QList<int>{QMessageBox::Information, QMessageBox::Warning,
                                              QMessageBox::Warning}));
    }

    void deletingDocumentsOfNoFolderCreatesNothing()
    {
        QMetaObject::invokeMethod(m_window.get(), "delHsXml");
        QMetaObject::invokeMethod(m_window.get(), "delOutputXml");
        QVERIFY(QDir(QDir::currentPath()).isEmpty());
    }

    void oldDocumentsAreDeletedAndOthersKept()
    {
        writeFile(hsFile(), "hs");
        writeFile(outputFile(), "output");
        writeFile(QStringLiteral("OutputXML/note.txt"), "note");
        QMetaObject::invokeMethod(m_window.get(), "delHsXml");
        QMetaObject::invokeMethod(m_window.get(), "delOutputXml");
        QVERIFY(!QFile::exists(hsFile()) && !QFile::exists(outputFile()));
        QCOMPARE(readFile(QStringLiteral("OutputXML/note.txt")), QByteArray("note"));
    }

    void secondPressNeitherOpensNorRaisesADialog()
    {
        FlowScheduleForm* form = openDialog();
        QVERIFY(form);
        QVERIFY(!form->isModal());
        const RaiseCounter raises(form);
        clickScheduleAction();
        QCOMPARE(raises.count(), 0);
        form->raise();
        QCOMPARE(raises.count(), 1); // so the counter would have noticed
        QCOMPARE(probe().flowScheduleForm(), form);
        QCOMPARE(m_window->findChildren<FlowScheduleForm*>().size(), 1);
    }

    void closedDialogIsForgottenAndCanBeOpenedAgain()
    {
        QPointer<FlowScheduleForm> form = openDialog();
        QTest::keyClick(form.data(), Qt::Key_Escape);
        QVERIFY(!probe().flowScheduleForm());
        QTRY_VERIFY(form.isNull());
        form = openDialog();
        form->close();
        form->close(); // once more before it is deleted
        QVERIFY(!probe().flowScheduleForm());
        QVERIFY(openDialog());
    }

    void dialogStandsAsDesigned()
    {
        const FlowScheduleForm* form = openDialog();
        QCOMPARE(form->windowTitle(), QStringLiteral(u"调度规划"));
        QCOMPARE(form->size(), QSize(333, 137));
        for (const QPushButton* button : form->findChildren<QPushButton*>()) {
            const int textWidth = button->fontMetrics().horizontalAdvance(button->text());
            QVERIFY2(textWidth <= button->width() - 8, qPrintable(button->objectName()));
        }
    }

    void secondRunIsNotStartedInsideTheFirst()
    {
        DialogAnswers answers;
        answers.expectFile(exampleDocument("ring"));
        answers.expectMessageBox();
        openDialog();
        onFirstStatusText([this] {
            probe().planByUserInput();
            QMetaObject::invokeMethod(m_window.get(), "Rotunda");
            QCOMPARE(probe().callAlgorithm(), -1);
            clickDialogButton("RotundaButton");
        });
        clickDialogButton("PlanByUserInputButton");
        QVERIFY(answers.allAnswered());
        QCOMPARE(answers.seen().size(), 2);
        QCOMPARE(probe().schedCycle(), 20000);
    }

    void closingTheWindowWaitsForTheRun()
    {
        DialogAnswers answers;
        answers.expectFile(exampleDocument("ring"));
        bool visibleAtTheEnd = false;
        answers.expectMessageBox([&] { visibleAtTheEnd = m_window->isVisible(); });
        openDialog();
        onFirstStatusText([this] { m_window->close(); });
        clickDialogButton("PlanByUserInputButton");
        QVERIFY(answers.allAnswered());
        QVERIFY(visibleAtTheEnd);
        QCOMPARE(probe().schedCycle(), 20000);
        QTRY_VERIFY(!m_window->isVisible());
    }

    void closingTheDialogWaitsForTheRun()
    {
        DialogAnswers answers;
        answers.expectFile(exampleDocument("ring"));
        bool visibleAtTheEnd = false;
        answers.expectMessageBox(
            [&] { visibleAtTheEnd = probe().flowScheduleForm()->isVisible(); });
        openDialog();
        onFirstStatusText([this] { probe().flowScheduleForm()->close(); });
        clickDialogButton("PlanByUserInputButton");
        QVERIFY(answers.allAnswered());
        QVERIFY(visibleAtTheEnd);
        QVERIFY(!probe().flowScheduleForm());
    }

private:
    MainWindowProbe probe() { return MainWindowProbe(*m_window); }

    void clickScheduleAction()
    {
        auto* bar = m_window->findChild<QToolBar*>(QStringLiteral("Toolbar"));
        for (QAction* action : bar->actions()) {
            if (action->text() == QStringLiteral(u"调度规划"))
                QTest::mouseClick(bar->widgetForAction(action), Qt::LeftButton);
        }
    }

    FlowScheduleForm* openDialog()
    {
        clickScheduleAction();
        return probe().flowScheduleForm();
    }

    void clickDialogButton(const char* name)
    {
        auto* button = probe().flowScheduleForm()->findChild<QPushButton*>(QString::fromUtf8(name));
        QTest::mouseClick(button, Qt::LeftButton);
    }

    void planByDialog()
    {
        openDialog();
        clickDialogButton("PlanByUserInputButton");
    }

    // The texts are shown just before the run lets events through.
    void onFirstStatusText(const std::function<void()>& act)
    {
        auto* context = new QObject(m_window.get());
        connect(probe().statusBar(), &QStatusBar::messageChanged, context, [act, context] {
            delete context;
            QTimer::singleShot(0, act);
        });
    }

    /// Plans a document; the boxes that were shown.
    QStringList runOnDocument(const QString& document)
    {
        DialogAnswers answers;
        answers.expectFile(document);
        answers.expectMessageBox();
        planByDialog();
        return answers.seen().mid(1);
    }

    QStringList runOn(const char* example) { return runOnDocument(exampleDocument(example)); }

    std::unique_ptr<TemporaryFolder> m_folder;
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<MainWindow> m_window;
};

ROTUNDA_GUI_TEST_MAIN(SchedulingRunTest)
#include "SchedulingRunTest.moc"
