#include "tests/planner/Windows.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Spoken.h"
#include "tests/support/Text.h"
#include "tests/synthesis/EngineProof.h"
#include "tests/synthesis/PlantedNetwork.h"
#include "tests/synthesis/TestNetwork.h"

#include <QtTest>

namespace QTest
{

template <>
inline char* toString(const synthesis::NoSlot::Side& side)
{
    return qstrdup(side == synthesis::NoSlot::Send ? "send" : "receive");
}

} // namespace QTest

Q_DECLARE_METATYPE(planner::SlotWindow)

// What a search answers on networks that can be counted by hand, and how it is stopped.

using namespace synthesis;

static Outcome search(const TestNetwork& network, const Options& options = {})
{
    return synthesizeWindows(parsed(documentOf(network.draft)).network.context, options);
}

/// Two talkers whose frames must leave S for T in the same slot.
static TestNetwork crowded()
{
    TestNetwork network;
    network.addFlow(words("A S T Z"), 2000, u("[0,200]"), u("[0,600]"));
    network.addFlow(words("B S T Z"), 2000, u("[0,200]"), u("[0,600]"));
    return network;
}

/// A network on which the first quick search does not end.
static ParsedNetwork hardNetwork()
{
    PlantedStyle style;
    style.windows = PlantedStyle::Tight;
    style.flows = 80;
    style.reach = 1;
    return parsed(documentOf(plantedNetwork(style, 1).draft));
}

/// Every second slot and every third one of a port, which always meet, though there is room.
static TestNetwork endless()
{
    TestNetwork network;
    network.addFlow(words("A S T Z"), 400, u("[0,400]"), u("[0,4000]"));
    network.addFlow(words("B S T Z"), 600, u("[0,600]"), u("[0,4000]"));
    return network;
}

class WindowSynthesisTest : public QObject
{
    Q_OBJECT

private slots:
    void withoutFlowsThereIsAnEmptyPlan()
    {
        const Outcome outcome = search(TestNetwork());
        QVERIFY(std::holds_alternative<Found>(outcome));
        QVERIFY(std::get<Found>(outcome).flows.empty());
    }

    void aFlowAloneIsSentWithoutWaiting()
    {
        TestNetwork network;
        network.addFlow(words("A S T Z"), 2000, u("[400,2000]"), u("[0,4000]"));
        const auto plan = std::get<Found>(search(network));
        QCOMPARE(plan.waiting, qint64(0));
        QVERIFY(!plan.restsOnResolution);
        QCOMPARE(plan.flows.front().send.start, 2);
        QCOMPARE(plan.flows.front().send.end, 2);
        QCOMPARE(plan.flows.front().receive.front().start, 4);
        QCOMPARE(plan.flows.front().receive.front().end, 4);
    }

    void aFrameWaitsWhereItsListenerIsNotReadyBefore()
    {
        TestNetwork network;
        network.addFlow(words("A S T Z"), 4000, u("[0,200]"), u("[1000,2000]"));
        const auto plan = std::get<Found>(search(network));
        QCOMPARE(plan.flows.front().send.start, 0);
        QCOMPARE(plan.flows.front().receive.front().start, 5);
        QCOMPARE(plan.waiting, qint64(3));
    }

    void twoFramesOfOneSlotGetTwo()
    {
        TestNetwork network = crowded();
        network.draft.flows.back().txwin = u("[0,400]");
        network.draft.flows.back().listeners.back().rxwin = u("[0,800]");
        const auto plan = std::get<Found>(search(network));
        QCOMPARE(plan.flows[0].send.start, 0);
        QCOMPARE(plan.flows[1].send.start, 1);
    }

    void slotsAreComparedOverTheCycle()
    {
        // Slot 10 of a cycle of ten slots is slot 0 again.
        TestNetwork network;
        network.addFlow(words("A S T Z"), 2000, u("[0,200]"), u("[0,600]"));
        network.addFlow(words("B S T Z"), 2000, u("[2000,2200]"), u("[2000,2600]"));
        const auto proof = std::get<Overfull>(search(network));
        QCOMPARE(proof.flows, (std::vector<std::size_t>{0, 1}));
        QCOMPARE(proof.interval.start, 1);
        QCOMPARE(proof.interval.end, 1);
    }

    void aCycleThatEndsInsideASlotIsComparedInMicroseconds()
    {
        // Slot 2 lasts to 600 us, a cycle of 500 us repeats slot 0 from 500 us on.
        TestNetwork network;
        network.addFlow(words("A S Y"), 500, u("[0,200]"), u("[0,400]"));
        network.addFlow(words("A S Y"), 500, u("[400,600]"), u("[400,800]"));
        QVERIFY(!std::holds_alternative<Found>(search(network)));
        network.draft.flows.back().txwin = u("[200,600]");
        network.draft.flows.back().listeners.back().rxwin = u("[200,800]");
        const auto plan = std::get<Found>(search(network));
        QCOMPARE(plan.flows.back().send.start, 1);
    }

    void branchesShareTheirWay()
    {
        TestNetwork network;
        network.addFlow(words("A S T Z"), 2000, u("[0,2000]"), u("[0,2000]"));
        network.addListener(words("A S Y"), u("[0,2000]"));
        const auto plan = std::get<Found>(search(network));
        QCOMPARE(plan.flows.front().receive[0].start, plan.flows.front().send.start + 2);
        QCOMPARE(plan.flows.front().receive[1].start, plan.flows.front().send.start + 1);
    }

    void aFlowWithoutASlotIsNamedWithItsListener()
    {
        TestNetwork network;
        network.addFlow(words("B S Y"), 2000, u("[0,2000]"), u("[0,2000]"));
        network.addFlow(words("A S Y"), 4000, u("[1000,2000]"), u("[0,4000]"));
        network.addListener(words("A S T Z"), u("[0,1200]"));
        const auto proof = std::get<NoSlot>(search(network));
        QCOMPARE(proof.flow, std::size_t(1));
        QCOMPARE(proof.earliestPath, std::size_t(1));
        QCOMPARE(proof.latestPath, std::size_t(1));
        QCOMPARE(proof.side, NoSlot::Receive);
        QCOMPARE(proof.earliest, 7);
        QCOMPARE(proof.latest, 5);
    }

    void twoListenersThatCannotBothBeServedAreNamed()
    {
        TestNetwork network;
        network.addFlow(words("A S Y"), 8000, u("[0,8000]"), u("[0,1000]"));
        network.addListener(words("A S T Z"), u("[4000,8000]"));
        const auto proof = std::get<NoSlot>(search(network));
        QCOMPARE(proof.side, NoSlot::Send);
        QCOMPARE(proof.earliestPath, std::size_t(1));
        QCOMPARE(proof.latestPath, std::size_t(0));
        QCOMPARE(proof.earliest, 12); // full buffers before slot 20
        QCOMPARE(proof.latest, 3);
        network.draft.virtualLinks.clear();
        network.draft.flows.clear();
        network.addFlow(words("A S T Z"), 8000, u("[0,8000]"), u("[4000,8000]"));
        network.addListener(words("A S Y"), u("[0,1000]"));
        const auto mirrored = std::get<NoSlot>(search(network));
        QCOMPARE(mirrored.side, NoSlot::Send);
        QCOMPARE(mirrored.earliestPath, std::size_t(0));
        QCOMPARE(mirrored.latestPath, std::size_t(1));
        QCOMPARE(mirrored.earliest, 12);
        QCOMPARE(mirrored.latest, 3);
    }

    void boundsThatLeaveNoSlotAreTold_data()
    {
        using planner::SlotWindow;
        QTest::addColumn<SlotWindow>("send");
        QTest::addColumn<SlotWindow>("near"); // by way of one switch
        QTest::addColumn<SlotWindow>("far");  // of two
        QTest::addColumn<QString>("told");
        QTest::newRow("own window of the near")
            << window(0, 9) << window(0, -1) << window(2, 9) << u("receive [0,-1] of 0 and 0");
        QTest::newRow("own window of the far")
            << window(0, 9) << window(1, 9) << window(1, 0) << u("receive [1,0] of 1 and 1");
        QTest::newRow("own window far behind")
            << window(0, 0) << window(1, 4) << window(60, 50) << u("receive [60,50] of 1 and 1");
        QTest::newRow("too late for the buffers")
            << window(0, 0) << window(1, 4) << window(20, 50) << u("receive [20,8] of 1 and 1");
        QTest::newRow("too early for the way")
            << window(5, 9) << window(6, 9) << window(0, 6) << u("receive [7,6] of 1 and 1");
        QTest::newRow("both before the start") << window(-20, 20) << window(-14, -14)
                                               << window(-3, -3) << u("send [-11,-15] of 1 and 0");
        QTest::newRow("the near one later")
            << window(0, 20) << window(15, 15) << window(3, 3) << u("send [11,1] of 0 and 1");
    }
    void boundsThatLeaveNoSlotAreTold()
    {
        QFETCH(planner::SlotWindow, send);
        QFETCH(planner::SlotWindow, near);
        QFETCH(planner::SlotWindow, far);
        TestNetwork network;
        network.addFlow(words("A S Y"), 4000, u("[0,200]"), u("[0,4000]"));
        network.addListener(words("A S T Z"), u("[0,4000]"));
        ParsedNetwork read = parsed(documentOf(network.draft));
        planner::PlanningContext& context = read.network.context;
        std::list<planner::VirtualLinkPath>& paths = context.flows.front().paths;
        paths.front().schedtxwin = paths.back().schedtxwin = send;
        paths.front().schedrxwin = near;
        paths.back().schedrxwin = far;
        const auto proof = std::get<NoSlot>(synthesizeWindows(context, {}));
        QTEST(QStringLiteral("%1 [%2,%3] of %4 and %5")
                  .arg(proof.side == NoSlot::Send ? u("send") : u("receive"))
                  .arg(proof.earliest)
                  .arg(proof.latest)
                  .arg(proof.earliestPath)
                  .arg(proof.latestPath),
              "told");
    }

    void aTalkerWithoutASlotIsNamedFirst()
    {
        TestNetwork network;
        network.addFlow(words("A S Y"), 2000, u("[1000,600]"), u("[1200,600]"));
        const auto proof = std::get<NoSlot>(search(network));
        QCOMPARE(proof.side, NoSlot::Send);
        QCOMPARE(proof.earliest, 5);
        QCOMPARE(proof.latest, 2);
        QCOMPARE(proof.earliestPath, std::size_t(0));
        QCOMPARE(proof.latestPath, std::size_t(0));
    }

    void moreFramesThanSlotsAreNamedWithTheirPort()
    {
        const auto proof = std::get<Overfull>(search(crowded()));
        QCOMPARE(int(proof.nodeID), 4);
        QCOMPARE(int(proof.outport), 3);
        QCOMPARE(proof.transmissions, std::size_t(2));
        QCOMPARE(proof.interval.start, 1);
        QCOMPARE(proof.interval.end, 1);
    }

    void framesThatOnlyJustFitAreNoProof()
    {
        TestNetwork network = crowded();
        network.draft.flows.back().txwin = u("[200,400]");
        network.draft.flows.back().listeners.back().rxwin = u("[600,800]");
        QVERIFY(std::holds_alternative<Found>(search(network)));
    }

    void whatCannotBeSearchedIsRefused_data()
    {
        QTest::addColumn<int>("obstacle");
        QTest::newRow("shared number") << int(Obstacle::SharedNumber);
        QTest::newRow("no buffers") << int(Obstacle::NoBuffers);
        QTest::newRow("period below a slot") << int(Obstacle::PeriodBelowSlot);
        QTest::newRow("cycle too long") << int(Obstacle::CycleTooLong);
    }
    void whatCannotBeSearchedIsRefused()
    {
        QFETCH(int, obstacle);
        TestNetwork network;
        network.addFlow(words("A S Y"), 2000, u("[0,2000]"), u("[0,2000]"));
        DraftFlow& flow = network.addFlow(words("B S T Z"), 2000, u("[0,2000]"), u("[0,2000]"));
        std::vector<std::size_t> named{1};
        switch (Obstacle(obstacle)) {
        case Obstacle::SharedNumber:
            flow.flowID = 1;
            named = {0, 1};
            break;
        case Obstacle::NoBuffers:
            network.draft.nodes.back().buffernum = 0;
            std::swap(network.draft.nodes[4], network.draft.nodes[5]); // T is no longer the last
            for (DraftLink& link : network.draft.links) {
                for (int* end : {&link.a, &link.b})
                    *end = *end == 4 ? 5 : *end == 5 ? 4 : *end;
            }
            break;
        case Obstacle::PeriodBelowSlot:
            flow.period = 100;
            break;
        default:
            network.draft.flows.front().period = 1999993;
            flow.period = 1999979;
            named = {0, 1};
        }
        const auto refused = std::get<Refused>(search(network));
        QCOMPARE(refused.flows.size(), named.size());
        for (std::size_t i = 0; i < named.size(); ++i) {
            QCOMPARE(refused.flows[i].flow, named[i]);
            QCOMPARE(int(refused.flows[i].obstacle), obstacle);
        }
    }

    void flowsThatTheDocumentsLoseTakeNoSlots()
    {
        TestNetwork network = crowded();
        network.draft.flows.front().flowID = 0;
        const auto plan = std::get<Found>(search(network));
        QCOMPARE(plan.flows[0].send.start, 0); // as it was
        QCOMPARE(plan.flows[1].send.start, 0);
        TestNetwork more;
        for (int i = 0; i < 3; ++i)
            more.addFlow(words("A S T Z"), 4000, u("[0,400]"), u("[0,4000]")).flowID = i / 2;
        const auto next = std::get<Found>(search(more));
        QCOMPARE(next.flows[1].send.end, 1); // as it was
        QCOMPARE(next.flows[2].send.end, 0);
    }

    // Its listeners get the frame at the same time only when it waits for the one that is later.
    void aFlowThatHasToWaitIsPlacedAtOnce()
    {
        TestNetwork network;
        network.addFlow(words("A S Y"), 4000, u("[0,800]"), u("[400,600]"));
        network.addListener(words("A S T Z"), u("[800,1000]"));
        quint64 last = 0;
        Options options;
        options.progress = [&last](const Progress& progress) {
            last = progress.steps;
            return true;
        };
        const auto plan = std::get<Found>(search(network, options));
        QVERIFY(plan.waiting > 0);
        QVERIFY2(last < 1000, qPrintable(QString::number(last)));
    }

    void aSearchIsStoppedBetweenSteps()
    {
        const ParsedNetwork network = hardNetwork();
        int calls = 0;
        Options options;
        options.progress = [&calls](const Progress& progress) {
            return ++calls < 3 && progress.placed <= progress.total;
        };
        QVERIFY(
            std::holds_alternative<Stopped>(synthesizeWindows(network.network.context, options)));
        QCOMPARE(calls, 3);
    }

    void anySearchCanBeStoppedAtItsFirstReport()
    {
        Options options;
        options.progress = [](const Progress&) { return false; };
        TestNetwork network;
        network.addFlow(words("A S Y"), 2000, u("[0,2000]"), u("[0,2000]"));
        QVERIFY(std::holds_alternative<Stopped>(search(network, options)));
    }

    void stepsOnlyGrowAndEndWithTheBudget()
    {
        const ParsedNetwork network = hardNetwork();
        quint64 last = 0;
        Options options;
        options.steps = 10000000;
        options.progress = [&last](const Progress& progress) {
            const bool grows = progress.steps >= last;
            last = progress.steps;
            return grows && progress.total == 80;
        };
        const auto spent =
            std::get<BudgetSpent>(synthesizeWindows(network.network.context, options));
        QVERIFY(!spent.unplaced.empty());
        QVERIFY(std::is_sorted(spent.unplaced.begin(), spent.unplaced.end()));
        QVERIFY(last > 0);
    }

    void slotsThatAlwaysMeetAreProvenToHaveNoPlan()
    {
        const auto spent = std::get<BudgetSpent>(search(endless()));
        QVERIFY(spent.noneWithoutOverlap);
        QCOMPARE(spent.unplaced.size(), std::size_t(1));
    }

    void searchThatLeavesWaysOutProvesNothing()
    {
        TestNetwork network;
        for (DraftNode& node : network.draft.nodes)
            node.buffernum = 1000;
        network.addFlow(words("A S Y"), 2000000, u("[0,200]"), u("[0,200000]")); // 1000 ways
        network.addFlow(words("A S T Z"), 400, u("[0,400]"), u("[0,4000]"));
        network.addFlow(words("B S T Z"), 600, u("[0,600]"), u("[0,4000]"));
        Options options;
        options.steps = 20000000;
        QVERIFY(!std::get<BudgetSpent>(search(network, options)).noneWithoutOverlap);
        network.draft.flows.front().listeners.back().rxwin = u("[0,40000]"); // 200 ways
        QVERIFY(std::get<BudgetSpent>(search(network, options)).noneWithoutOverlap);
    }

    // Its frame would have to wait four slots in S, which holds it for one.
    void flowWithoutAWayIsProofWhateverElseThereIs()
    {
        TestNetwork network;
        network.draft.nodes[4].buffernum = 1;
        network.addFlow(words("A S T Z"), 4000, u("[0,200]"), u("[1600,1800]"));
        network.addFlow(words("B S Y"), 200 * 65537, u("[0,200]"), u("[0,4000]")); // no clauses
        const auto spent = std::get<BudgetSpent>(search(network));
        QVERIFY(spent.noneWithoutOverlap);
        QCOMPARE(spent.unplaced, (std::vector<std::size_t>{0}));
        TestNetwork open;
        open.draft.nodes[4].buffernum = 1;
        open.draft.nodes[5].buffernum = 1000;
        open.addFlow(words("A S T Z"), 400000, u("[0,200]"), u("[200400,200600]"));
        open.addFlow(words("B S Y"), 400000, u("[0,200]"), u("[0,200000]"));
        open.addListener(words("B S T Z"), u("[0,200000]")); // a million ways
        QVERIFY(!std::get<BudgetSpent>(search(open)).noneWithoutOverlap);
    }

    void ownWindowsAreTakenWhereTheRulesNeedNoHelp()
    {
        int calls = 0;
        Options options;
        options.isFaultless = [&calls](const Found& plan, const QByteArray& output) {
            ++calls;
            return plan.restsOnResolution && output.contains("<txslotID>");
        };
        const auto plan = std::get<Found>(search(endless(), options));
        QCOMPARE(calls, 1);
        QVERIFY(plan.restsOnResolution);
        QCOMPARE(plan.waiting, qint64(0));
        QCOMPARE(plan.flows[0].send.start, 0);
        QCOMPARE(plan.flows[0].send.end, 1);
        QCOMPARE(plan.flows[1].send.end, 2);
        QCOMPARE(plan.flows[1].receive.size(), std::size_t(1));
        QCOMPARE(plan.flows[1].receive[0].start, 0);
        QCOMPARE(plan.flows[1].receive[0].end, 19);
    }

    void planThatTheJudgeRefusesIsNone()
    {
        int calls = 0;
        int atRest = 0;
        Options options;
        options.isFaultless = [&](const Found& plan, const QByteArray& output) {
            ++calls;
            atRest += plan.restsOnResolution && !output.isEmpty();
            return false;
        };
        const auto spent = std::get<BudgetSpent>(search(endless(), options));
        QVERIFY(spent.noneWithoutOverlap);
        QCOMPARE(calls, 1); // the own windows; single slots always meet
        QCOMPARE(atRest, calls);
    }

    void onlyOwnWindowsAreTriedWhereNoClausesCanBeWritten()
    {
        TestNetwork network;
        network.addOverlappingPair(0, 2000);
        int calls = 0;
        Options options;
        options.steps = 5000000;
        options.isFaultless = [&calls](const Found&, const QByteArray&) { return ++calls < 0; };
        QVERIFY(std::holds_alternative<BudgetSpent>(search(network, options)));
        QVERIFY(calls > 1);
        calls = 0;
        network.addFlow(words("Z T S Y"), 200 * 65537, u("[0,200]"), u("[0,4000]"));
        QVERIFY(std::holds_alternative<BudgetSpent>(search(network, options)));
        QVERIFY(calls <= 1);
    }

    void lastReportTellsThatAllArePlaced()
    {
        Progress last;
        Options options;
        options.progress = [&last](const Progress& progress) {
            last = progress;
            return true;
        };
        TestNetwork network;
        network.addFlow(words("A S Y"), 2000, u("[0,2000]"), u("[0,2000]"));
        network.addFlow(words("A S Y"), 2000, u("[0,2000]"), u("[0,2000]"));
        QVERIFY(std::holds_alternative<Found>(search(network, options)));
        QCOMPARE(last.placed, std::size_t(2));
        QCOMPARE(last.total, std::size_t(2));
    }

    // A hundredth of the steps without getting better, then the intervals, then a quarter.
    void stagesTakeTheirShareOfTheSteps()
    {
        TestNetwork network = endless();
        network.addFlow(words("A S Y"), 200 * 256, u("[0,400]"), u("[0,4000]"));
        network.addFlow(words("A S Y"), 200 * 257, u("[0,400]"), u("[0,4000]")); // no clauses
        const ParsedNetwork read = parsed(documentOf(network.draft));
        quint64 reports = 0;
        quint64 last = 0;
        quint32 digest = 0;
        Options options;
        options.steps = 40000000;
        options.progress = [&](const Progress& progress) {
            ++reports;
            last = progress.steps;
            digest = digest * 31 + static_cast<quint32>(progress.steps);
            return true;
        };
        const auto spent = std::get<BudgetSpent>(synthesizeWindows(read.network.context, options));
        QVERIFY(!spent.noneWithoutOverlap);
        QCOMPARE(QStringLiteral("%1 %2 %3").arg(reports).arg(last).arg(digest),
                 u("143 29238525 3811170488"));
    }

    void sameNetworkGivesTheSamePlan()
    {
        PlantedStyle style;
        style.windows = PlantedStyle::Tight;
        style.flows = 80;
        style.reach = 2;
        style.multicastPercent = 30;
        for (quint64 seed = 1; seed <= 5; ++seed) {
            const ParsedNetwork network = parsed(documentOf(plantedNetwork(style, seed).draft));
            Options options;
            options.steps = 5000000; // some of them end because these are spent
            options.isFaultless = judgeFor(network);
            const Outcome a = synthesizeWindows(network.network.context, options);
            const Outcome b = synthesizeWindows(network.network.context, options);
            QCOMPARE(a.index(), b.index());
            if (const auto* plan = std::get_if<Found>(&a))
                QCOMPARE(narrowedDocument(*network.document, network.network, *plan),
                         narrowedDocument(*network.document, network.network, std::get<Found>(b)));
        }
    }

    void searchLeavesNoLineOfARunInTheLog()
    {
        const ParsedNetwork network = hardNetwork();
        const LogCapture log;
        Options options;
        options.steps = 50000000;
        options.isFaultless = judgeFor(network);
        synthesizeWindows(network.network.context, options);
        QCOMPARE(log.lines(), QStringList());
    }

    void withoutAJudgeNothingRestsOnResolution()
    {
        PlantedStyle style;
        style.windows = PlantedStyle::Tight;
        style.flows = 80;
        style.reach = 1;
        const ParsedNetwork network = parsed(documentOf(plantedNetwork(style, 4).draft));
        Options options;
        const auto spent =
            std::get<BudgetSpent>(synthesizeWindows(network.network.context, options));
        QVERIFY(spent.noneWithoutOverlap);
        options.isFaultless = judgeFor(network);
        const auto plan = std::get<Found>(synthesizeWindows(network.network.context, options));
        QVERIFY(plan.restsOnResolution);
    }
};

QTEST_GUILESS_MAIN(WindowSynthesisTest)
#include "WindowSynthesisTest.moc"
