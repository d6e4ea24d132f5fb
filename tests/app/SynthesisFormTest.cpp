#include "tests/app/SynthesisStudio.h"
#include "tests/support/GuiTestMain.h"

#include "topology/DiagramItem.h"

#include <QProgressBar>

#include <atomic>
#include <thread>

// Windows with a plan: searched from the flow table, adopted, planned and given back.

using synthesis::BudgetSpent;
using synthesis::Options;
using synthesis::Outcome;
using synthesis::Stopped;

static std::atomic<bool> isHeld;
static std::atomic<int> searches; ///< that are running

/// A search that takes as long as the test wants.
static Outcome heldSearch(const planner::PlanningContext& context, const Options& options)
{
    ++searches;
    bool goesOn = true;
    while (goesOn && isHeld) {
        goesOn = options.progress({2, 3, 1});
        std::this_thread::yield();
    }
    const Outcome outcome = goesOn ? synthesizeWindows(context, options) : Outcome(Stopped());
    --searches;
    return outcome;
}

static Outcome shortSearch(const planner::PlanningContext& context, const Options& options)
{
    Options few = options;
    few.steps = 1;
    return synthesizeWindows(context, few);
}

static Outcome searchWithoutOverlap(const planner::PlanningContext&, const Options&)
{
    return BudgetSpent{{1}, true};
}

static QString successBox()
{
    return QStringLiteral(u"rotunda 流量规划: 规划成功");
}

static QString refusalBox()
{
    return QStringLiteral(u"rotunda 流量规划: 冲突消解失败，规划终止");
}

class SynthesisFormTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { isHeld = true; }

    // ---- The menu

    void rightButtonOffersTheSearchAndNothingToRestore()
    {
        SynthesisStudio studio;
        studio.openExample(QStringLiteral("ring"));
        QMenu* menu = studio.openFlowMenu();
        QCOMPARE(entriesOf(menu),
                 (QStringList{SynthesisStudio::solve(), SynthesisStudio::giveBack()}));
        QVERIFY(menu->actions().at(0)->isEnabled());
        QVERIFY(!menu->actions().at(1)->isEnabled());
        menu->close();
        QVERIFY(!studio.form());
    }

    void menuKeyOpensTheForm()
    {
        SynthesisStudio studio;
        studio.openExample(QStringLiteral("ring"));
        openMenuByKey(*studio.flows());
        chooseByKeys(openMenu(), SynthesisStudio::solve());
        QVERIFY(studio.form());
        QVERIFY(studio.form()->isVisible());
        QVERIFY(!studio.form()->isModal());
        QCOMPARE(studio.form()->windowTitle(), QStringLiteral(u"窗口求解"));
        QTRY_VERIFY(!studio.isSearching());
    }

    // ---- A plan

    void refusedPlantIsPlannedWithTheWindowsThatAreAdopted()
    {
        SynthesisStudio studio;
        studio.openExample(QStringLiteral("busy-plant"));
        QCOMPARE(studio.planDrawn(), QStringList{refusalBox()});
        const QList<QStringList> before = shownWindows(studio);
        solveAndWait(studio);
        const QStringList rows = studio.rows("resultTable");
        clickButton(studio.form(), "adoptButton");
        QVERIFY(!studio.form());
        int changed = 0;
        for (int row = 0; row < before.size(); ++row)
            changed += studio.shownWindows(row) != before.at(row) ? 1 : 0;
        QVERIFY(changed > 50);
        QCOMPARE(rows.size(), changed);
        studio.log.clear();
        QCOMPARE(studio.planDrawn(), QStringList{successBox()});
        const QString verified = studio.log.lines().join(QLatin1Char('\n'));
        QVERIFY(verified.contains(QStringLiteral("\nverification: ")));
        QVERIFY2(!verified.contains(QStringLiteral("verification: fault")), qPrintable(verified));
    }

    void adoptedWindowsStandInRecordsAndRowsAsInTheTableOfTheForm()
    {
        SynthesisStudio studio;
        studio.drawNetwork();
        studio.addFlow("TT", "1", "1", "A", "4000", {"6000", "6000"});
        studio.addFlow("TT", "2", "2", "C", "4000", {"6000"});
        const QWidget* listeners = studio.flows()->cellWidget(0, 7);
        studio.flows()->selectRow(1);
        solveAndWait(studio);
        QVERIFY(studio.summary().contains(QStringLiteral(u"2 条流")));
        QVERIFY(studio.summary().contains(QStringLiteral(u"最小时延，无抖动")));
        QVERIFY(studio.summary().contains(QStringLiteral(u"不依靠冲突消解")));
        const QStringList rows = studio.rows("resultTable");
        clickButton(studio.form(), "adoptButton");
        QStringList expected;
        for (int row = 0; row < 2; ++row) {
            const QStringList after = studio.shownWindows(row);
            const FlowInfo& flow = studio.probe.flowInfoList().at(row);
            QCOMPARE(after.first(),
                     QStringLiteral("{%1,[%2,%3]}")
                         .arg(flow.srcNode, flow.sendWindowLow, flow.sendWindowHigh));
            QVERIFY(flow.sendWindowHigh.toInt() - flow.sendWindowLow.toInt() <= 200);
            for (int i = 0; i < flow.dstNodes.size(); ++i) {
                const DstNodeInfo& node = flow.dstNodes.at(i);
                QCOMPARE(after.at(i + 1),
                         QStringLiteral("{%1,[%2,%3]}")
                             .arg(node.dstNodeName, node.rcvWindowLow, node.rcvWindowHigh));
            }
            const QStringList parts = rows.at(row).split(QLatin1Char(' '));
            QCOMPARE(parts.at(0), QString::number(row + 1));
            QCOMPARE(parts.at(1), flow.flowId);
            QCOMPARE(parts.at(3), after.first());
            QCOMPARE(parts.at(5), after.mid(1).join(QLatin1Char('\n')));
        }
        QCOMPARE(studio.flows()->cellWidget(0, 7), listeners);
        QCOMPARE(studio.selectedFlows(), QList<int>{1});
    }

    void restoringGivesTheOldWindowsAndTheOldDocumentBack()
    {
        SynthesisStudio studio;
        studio.openExample(QStringLiteral("busy-plant"));
        const QByteArray before = studio.document();
        const QList<QStringList> shown = shownWindows(studio);
        solveAndAdopt(studio);
        QVERIFY(studio.document() != before);
        studio.choose(SynthesisStudio::giveBack());
        QCOMPARE(studio.document(), before);
        QCOMPARE(shownWindows(studio), shown);
        QVERIFY(!studio.offers(SynthesisStudio::giveBack()));
    }

    void restoringLeavesFlowsAloneThatTheUserRemovedOrEnteredAnew()
    {
        SynthesisStudio studio;
        studio.drawNetwork();
        studio.addFlow("TT", "1", "1", "A", "4000", {"6000", "6000"});
        studio.addFlow("TT", "2", "2", "C", "4000", {"6000"});
        studio.addFlow("TT", "3", "2", "C", "4400", {"6000"});
        solveAndAdopt(studio);
        studio.flows()->selectRow(0);
        QTest::mouseClick(Studio::dockButton(studio.probe.flowDock(), QStringLiteral(u"删除")),
                          Qt::LeftButton);
        studio.probe.flowInfoList()[0].flowSize = QStringLiteral("65");
        const QStringList changed = studio.shownWindows(0);
        studio.choose(SynthesisStudio::giveBack());
        QCOMPARE(studio.shownWindows(0), changed);
        QCOMPARE(studio.shownWindows(1),
                 (QStringList{QStringLiteral("{C,[0,4400]}"), QStringLiteral("{B,[0,6000]}")}));
    }

    void solvingTwiceStillRestoresTheFirstWindows()
    {
        SynthesisStudio studio;
        studio.drawNetwork();
        studio.addFlow("TT", "1", "2", "C", "4000", {"6000"});
        const QByteArray before = studio.document();
        solveAndAdopt(studio);
        solveAndWait(studio);
        QVERIFY(!studio.button("adoptButton")->isEnabled());
        QVERIFY(studio.summary().contains(QStringLiteral(u"窗口无须改动")));
        studio.form()->close();
        studio.choose(SynthesisStudio::giveBack());
        QCOMPARE(studio.document(), before);
    }

    void anotherProjectHasNothingToRestore()
    {
        SynthesisStudio studio;
        studio.openExample(QStringLiteral("busy-plant"));
        solveAndAdopt(studio);
        const QString saved = studio.folder.path(QStringLiteral("solved.rotpro"));
        studio.saveProject(saved);
        QVERIFY(studio.offers(SynthesisStudio::giveBack()));
        studio.openProject(saved);
        QVERIFY(!studio.offers(SynthesisStudio::giveBack()));
    }

    void searchWritesNeitherDocumentsNorLogLines()
    {
        SynthesisStudio studio;
        studio.openExample(QStringLiteral("busy-plant"));
        studio.log.clear();
        solveAndWait(studio);
        QCOMPARE(studio.log.lines(), QStringList());
        QVERIFY(!QFile::exists(QStringLiteral("ResourceXML/vek_input.xml")));
        QVERIFY(!QFile::exists(QStringLiteral("OutputXML/vek_output.xml")));
    }

    // ---- While it searches

    void progressIsShownAndCancellingChangesNothing()
    {
        SynthesisStudio studio;
        openHeldSearch(studio);
        auto* bar = studio.formPart<QProgressBar>("progressBar");
        QTRY_COMPARE(bar->value(), 2);
        QCOMPARE(bar->maximum(), 3);
        QVERIFY(bar->isVisible());
        QVERIFY(!studio.button("adoptButton")->isEnabled());
        const QByteArray before = studio.document();
        clickButton(studio.form(), "cancelButton");
        QTRY_VERIFY(!studio.isSearching());
        QCOMPARE(searches.load(), 0);
        QCOMPARE(studio.summary(), QStringLiteral(u"已取消，没有改动。"));
        QVERIFY(!studio.button("adoptButton")->isEnabled());
        QCOMPARE(studio.document(), before);
    }

    void closingTheFormEndsTheSearch()
    {
        SynthesisStudio studio;
        openHeldSearch(studio);
        QTest::keyClick(studio.form(), Qt::Key_Escape);
        QVERIFY(!studio.form());
        QCOMPARE(searches.load(), 0);
        isHeld = false;
        solveAndWait(studio); // and another one can be begun
        QVERIFY(studio.button("adoptButton")->isEnabled());
    }

    void closingTheMainWindowEndsTheSearch()
    {
        SynthesisStudio studio;
        openHeldSearch(studio);
        studio.window.close();
        QVERIFY(!studio.form());
        QCOMPARE(searches.load(), 0);
    }

    void destroyingTheMainWindowEndsTheSearch()
    {
        {
            SynthesisStudio studio;
            openHeldSearch(studio);
        }
        QCOMPARE(searches.load(), 0);
    }

    void openingAnotherProjectClosesTheForm()
    {
        SynthesisStudio studio;
        openHeldSearch(studio);
        studio.openExample(QStringLiteral("ring"));
        QVERIFY(!studio.form());
        QCOMPARE(searches.load(), 0);
    }

    void windowsForFlowsThatHaveChangedCannotBeAdopted()
    {
        SynthesisStudio studio;
        openHeldSearch(studio);
        QVERIFY(studio.formPart<QLabel>("outdatedLabel")->isHidden());
        studio.flows()->selectRow(0);
        QTest::mouseClick(Studio::dockButton(studio.probe.flowDock(), QStringLiteral(u"删除")),
                          Qt::LeftButton);
        QVERIFY(!studio.formPart<QLabel>("outdatedLabel")->isHidden());
        isHeld = false;
        QTRY_VERIFY(!studio.isSearching());
        QVERIFY(!studio.rows("resultTable").isEmpty());
        QVERIFY(!studio.button("adoptButton")->isEnabled());
    }

    void windowsForANetworkThatHasChangedAreNotAdopted()
    {
        SynthesisStudio studio;
        studio.drawNetwork();
        studio.addFlow("TT", "1", "2", "C", "4000", {"6000"});
        solveAndWait(studio);
        studio.node("S2")->bufferNum = QStringLiteral("1");
        const QByteArray before = studio.document();
        clickButton(studio.form(), "adoptButton");
        QVERIFY(studio.form());
        QVERIFY(!studio.formPart<QLabel>("outdatedLabel")->isHidden());
        QVERIFY(!studio.button("adoptButton")->isEnabled());
        QCOMPARE(studio.document(), before);
    }

    // ---- No plan

    void flowWhoseWindowsLeaveNoSlotIsNamed()
    {
        SynthesisStudio studio;
        studio.drawNetwork();
        studio.addFlow("TT", "1", "2", "C", "4000", {"6000"});
        studio.addFlow("TT", "2", "1", "A", "4000", {"6000", "400"});
        solveAndWait(studio);
        QCOMPARE(studio.summary(),
                 QStringLiteral(u"已证明无解：流 2 的窗口没有留下接收时隙。接收端 C："
                                u"最早是时隙 2（400us），最晚是时隙 1（200us）。"));
        expectNoPlan(studio, {1});
    }

    void listenersThatAskForDifferentSlotsAreBothNamed()
    {
        SynthesisStudio studio;
        studio.drawNetwork();
        studio.addFlow("TT", "1", "1", "A", "9000", {"9000", "800"});
        studio.probe.flowInfoList()[0].dstNodes[0].rcvWindowLow = QStringLiteral("8000");
        solveAndWait(studio);
        const QString summary = studio.summary();
        QVERIFY2(summary.startsWith(QStringLiteral(u"已证明无解：流 1 的窗口没有留下发送时隙。")),
                 qPrintable(summary));
        const QRegularExpression both(QStringLiteral(
            u"最早是时隙 \\d+（\\d+us，接收端 B），最晚是时隙 \\d+（\\d+us，接收端 C）。$"));
        QVERIFY2(summary.contains(both), qPrintable(summary));
        expectNoPlan(studio, {0});
    }

    void portAndIntervalThatHoldTooLittleAreNamed()
    {
        SynthesisStudio studio;
        studio.drawNetwork();
        studio.addFlow("TT", "1", "1", "A", "400", {"6000", "6000"});
        studio.addFlow("TT", "2", "2", "C", "4000", {"6000"});
        studio.addFlow("TT", "3", "1", "A", "400", {"6000", "6000"});
        studio.addFlow("TT", "4", "1", "A", "400", {"6000", "6000"});
        solveAndWait(studio);
        QCOMPARE(studio.summary(),
                 QStringLiteral(u"已证明无解：A 的端口0 在时隙 0 到 1（0us 到 400us）"
                                u"只有 2 个时隙，必须发送 3 次。涉及流 1、3、4。"));
        expectNoPlan(studio, {0, 2, 3});
    }

    void spentStepsAreNoProof()
    {
        SynthesisStudio studio;
        studio.openExample(QStringLiteral("busy-plant"));
        studio.probe.replaceWindowSearch(&shortSearch);
        solveAndWait(studio);
        QVERIFY(studio.summary().startsWith(
            QStringLiteral(u"步数用尽，没有找到调度。是否有解，尚不知道。没有位置的流：")));
        QVERIFY(!studio.summary().contains(QStringLiteral(u"证明")));
        QVERIFY(!studio.selectedFlows().isEmpty());
        expectNoPlan(studio, studio.selectedFlows());
    }

    void spentStepsTellWhatIsKnownOfOverlaps()
    {
        SynthesisStudio studio;
        studio.drawNetwork();
        studio.addFlow("TT", "1", "2", "C", "4000", {"6000"});
        studio.addFlow("TT", "2", "2", "C", "4000", {"6000"});
        studio.probe.replaceWindowSearch(&searchWithoutOverlap);
        solveAndWait(studio);
        QCOMPARE(studio.summary(),
                 QStringLiteral(u"步数用尽，没有找到调度。已证明窗口不能互不重叠；"
                                u"依靠冲突消解是否有解，尚不知道。没有位置的流：2。"));
        expectNoPlan(studio, {1});
    }

    // ---- Flows that take no part

    void flowsOfOtherTypesAreNamedAndLeftOut()
    {
        SynthesisStudio studio;
        studio.drawNetwork();
        studio.addFlow("RC", "1", "2", "C", "4000", {"6000"});
        studio.addFlow("TT", "2", "2", "C", "4000", {"6000"});
        solveAndWait(studio);
        QCOMPARE(studio.rows("obstacleTable"),
                 QStringList{QStringLiteral(u"1 1 RC 不是 TT 流，不参与规划")});
        QCOMPARE(studio.rows("resultTable").size(), 1);
        clickButton(studio.form(), "adoptButton");
        QCOMPARE(studio.shownWindows(0),
                 (QStringList{QStringLiteral("{C,[0,4000]}"), QStringLiteral("{B,[0,6000]}")}));
        QVERIFY(studio.shownWindows(1).first() != QStringLiteral("{C,[0,4000]}"));
    }

    void flowsThatDisagreeWithTheirLinkAreNamedWithThoseBehindThem()
    {
        SynthesisStudio studio;
        studio.drawNetwork();
        studio.addFlow("TT", "1", "2", "C", "4000", {"6000"});
        studio.addFlow("TT", "2", "2", "A", "4000", {"6000"});
        studio.addFlow("TT", "3", "2", "C", "4000", {"6000"});
        solveAndWait(studio);
        QCOMPARE(studio.rows("obstacleTable"),
                 (QStringList{QStringLiteral(u"2 2 TT 发送端与虚链路不符，从它起的流都被舍弃"),
                              QStringLiteral(u"3 3 TT 排在与虚链路不符的流之后，一并舍弃")}));
        QCOMPARE(studio.rows("resultTable").size(), 1);
    }

    void repeatedFlowNumbersPreventTheSearch()
    {
        SynthesisStudio studio;
        studio.drawNetwork();
        studio.addFlow("TT", "1", "2", "C", "4000", {"6000"});
        studio.addFlow("TT", "2", "2", "C", "4000", {"6000"});
        studio.addFlow("TT", "1", "2", "C", "4000", {"6000"});
        expectRefusal(studio,
                      {QStringLiteral(u"1 1 TT 流标识重复，规划会把它们混为一条"),
                       QStringLiteral(u"3 1 TT 流标识重复，规划会把它们混为一条")},
                      {0, 2});
    }

    void switchesWithoutBuffersPreventTheSearch()
    {
        SynthesisStudio studio;
        studio.drawNetwork();
        studio.addFlow("TT", "1", "2", "C", "4000", {"6000"});
        for (const char* name : {"S1", "S2"})
            studio.node(name)->bufferNum = QStringLiteral("0");
        expectRefusal(studio, {QStringLiteral(u"1 1 TT 交换机缓冲区为 0，帧无法转发")}, {0});
    }

    void flowWithoutPeriodPreventsTheSearch()
    {
        SynthesisStudio studio;
        studio.drawNetwork();
        studio.addFlow("TT", "1", "2", "C", "4000", {"6000"});
        studio.probe.flowInfoList()[0].flowPeriod = QStringLiteral("0");
        expectRefusal(studio, {QStringLiteral(u"1 1 TT 周期为 0")}, {0});
    }

private:
    static QList<QStringList> shownWindows(const SynthesisStudio& studio)
    {
        QList<QStringList> shown;
        for (int row = 0; row < studio.flows()->rowCount(); ++row)
            shown.append(studio.shownWindows(row));
        return shown;
    }

    static void solveAndWait(SynthesisStudio& studio)
    {
        studio.choose(SynthesisStudio::solve());
        QVERIFY(studio.form());
        QTRY_VERIFY_WITH_TIMEOUT(!studio.isSearching(), 60000);
    }

    static void solveAndAdopt(SynthesisStudio& studio)
    {
        solveAndWait(studio);
        clickButton(studio.form(), "adoptButton");
        QVERIFY(!studio.form());
    }

    static void openHeldSearch(SynthesisStudio& studio)
    {
        studio.openExample(QStringLiteral("ring"));
        studio.probe.replaceWindowSearch(&heldSearch);
        studio.choose(SynthesisStudio::solve());
        QTRY_COMPARE(searches.load(), 1);
    }

    /// The flows are listed and selected, and nothing can be adopted.
    static void expectNoPlan(SynthesisStudio& studio, const QList<int>& flows)
    {
        QVERIFY(!studio.button("adoptButton")->isEnabled());
        QCOMPARE(studio.selectedFlows(), flows);
        const QStringList rows = studio.rows("resultTable");
        QCOMPARE(rows.size(), flows.size());
        for (int i = 0; i < flows.size(); ++i)
            QCOMPARE(rows.at(i).section(QLatin1Char(' '), 0, 0), QString::number(flows.at(i) + 1));
    }

    /// Nothing is searched; the flows are named with reasons and selected.
    static void expectRefusal(SynthesisStudio& studio, const QStringList& named,
                              const QList<int>& flows)
    {
        studio.probe.replaceWindowSearch(&searchWithoutOverlap);
        studio.choose(SynthesisStudio::solve());
        QVERIFY(!studio.isSearching());
        QCOMPARE(studio.summary(),
                 QStringLiteral(u"无法求解：有 %1 条流须先更正。").arg(flows.size()));
        QCOMPARE(studio.rows("obstacleTable"), named);
        QCOMPARE(studio.selectedFlows(), flows);
        QVERIFY(!studio.button("adoptButton")->isEnabled());
    }
};

ROTUNDA_GUI_TEST_MAIN(SynthesisFormTest)
#include "SynthesisFormTest.moc"
