#include "synthesis/RandomSequence.h"
#include "synthesis/Repetition.h"
#include "synthesis/SearchBudget.h"
#include "synthesis/WaitingChoices.h"

#include "tests/planner/Windows.h"
#include "tests/support/RandomSource.h"
#include "tests/support/Spoken.h"

#include <QtTest>

#include <algorithm>
#include <numeric>

// The small parts of the search, each for itself: counting steps, how transmissions recur, delays.

using namespace synthesis;
using planner::PlanningContext;
using planner::TTFlow;
using planner::VirtualLinkPath;

/// A context with one flow for each period in microseconds.
static PlanningContext contextOf(const std::vector<quint32>& periods)
{
    PlanningContext context;
    for (const quint32 period : periods) {
        TTFlow flow;
        flow.period = period;
        context.flows.push_back(flow);
    }
    return context;
}

/// One of a few listeners, with a path of random length and windows.
static VirtualLinkPath randomPath(RandomSource& random)
{
    VirtualLinkPath path;
    path.listenerNodeID = static_cast<quint16>(random.between(1, 3));
    path.bridges.resize(static_cast<std::size_t>(random.between(1, 3)));
    const int send = random.between(-3, 5);
    const int receive = random.between(-3, 6);
    path.schedtxwin = window(send, send + random.between(0, 5));
    path.schedrxwin = window(receive, receive + random.between(2, 9));
    return path;
}

/// All delays of a flow in the order that is promised, by trying all up to a limit.
static std::vector<std::vector<qint32>> delaysByTrying(const TTFlow& flow, int buffers)
{
    std::vector<quint16> listeners;
    for (const VirtualLinkPath& path : flow.paths) {
        if (std::find(listeners.begin(), listeners.end(), path.listenerNodeID) == listeners.end())
            listeners.push_back(path.listenerNodeID);
    }
    const auto isPossible = [&](quint16 listener, qint32 delay) {
        return std::all_of(flow.paths.begin(), flow.paths.end(), [&](const VirtualLinkPath& path) {
            const auto hops = static_cast<qint32>(path.bridges.size());
            return path.listenerNodeID != listener ||
                   (delay >= hops && delay <= hops * buffers &&
                    delay >= path.schedrxwin.start - path.schedtxwin.end &&
                    delay <= path.schedrxwin.end - path.schedtxwin.start);
        });
    };
    std::vector<std::vector<qint32>> all{{}}; // by listener
    for (const quint16 listener : listeners) {
        std::vector<std::vector<qint32>> longer;
        for (const std::vector<qint32>& delays : all) {
            for (qint32 delay = 0; delay < 20; ++delay) {
                if (!isPossible(listener, delay))
                    continue;
                longer.push_back(delays);
                longer.back().push_back(delay);
            }
        }
        all = longer;
    }
    std::stable_sort(all.begin(), all.end(), [](const auto& a, const auto& b) {
        return std::accumulate(a.begin(), a.end(), 0) < std::accumulate(b.begin(), b.end(), 0);
    });
    for (std::vector<qint32>& delays : all) {
        std::vector<qint32> byPath;
        for (const VirtualLinkPath& path : flow.paths) {
            const auto listener =
                std::find(listeners.begin(), listeners.end(), path.listenerNodeID);
            byPath.push_back(delays[static_cast<std::size_t>(listener - listeners.begin())]);
        }
        delays = byPath;
    }
    return all;
}

class SearchPartsTest : public QObject
{
    Q_OBJECT

private slots:
    void randomNumbersAreThoseOfEveryMachine()
    {
        RandomSequence sequence(1);
        RandomSource same(1);
        for (int i = 0; i < 100; ++i)
            QCOMPARE(sequence.next(), same.next());
        for (quint32 count = 1; count < 100; ++count)
            QCOMPARE(int(sequence.below(count)), same.below(int(count)));
    }

    void progressIsToldAtFirstAndThenAfterSoManySteps()
    {
        std::vector<qint64> told;
        Options options;
        options.steps = 1000000;
        options.progress = [&told](const Progress& progress) {
            told.push_back(qint64(progress.steps));
            return progress.placed == 3 && progress.total == 7;
        };
        SearchBudget budget(options, 7);
        budget.setPlaced(3);
        for (const quint64 steps : {0, 199999, 1, 199999, 1})
            QVERIFY(budget.spend(steps));
        QCOMPARE(told, (std::vector<qint64>{0, 200000, 400000}));
        budget.report();
        QCOMPARE(budget.left(), quint64(600000));
        QVERIFY(budget.spend(599999));
        QVERIFY(!budget.spend(1));
        QVERIFY(!budget.mayGoOn());
        QVERIFY(!budget.isStopped());
        QCOMPARE(budget.left(), quint64(0));
    }

    void whoHasStoppedIsNotAskedAgain()
    {
        int calls = 0;
        Options options;
        options.progress = [&calls](const Progress&) { return ++calls < 2; };
        SearchBudget budget(options, 1);
        QVERIFY(budget.spend(1));
        QVERIFY(!budget.spend(200000));
        QVERIFY(budget.isStopped());
        QVERIFY(!budget.spend(1000000));
        budget.report();
        QCOMPARE(calls, 2);
        QCOMPARE(budget.left(), quint64(0));
        QCOMPARE(budget.steps(), quint64(1200001));
    }

    void delaysComeInOrderAndNoneIsLeftOut()
    {
        RandomSource random(5);
        int lists = 0;
        for (int i = 0; i < 3000; ++i) {
            TTFlow flow;
            for (int paths = random.between(1, 4); paths > 0; --paths)
                flow.paths.push_back(randomPath(random));
            const int buffers = random.between(1, 4);
            WaitingChoices choices(flow, static_cast<quint16>(buffers));
            std::vector<qint32> delays;
            for (const std::vector<qint32>& expected : delaysByTrying(flow, buffers)) {
                QVERIFY(choices.next(delays));
                QCOMPARE(delays, expected);
                ++lists;
            }
            QVERIFY(!choices.next(delays));
            QVERIFY(!choices.next(delays));
        }
        QVERIFY(lists > 3000);
    }

    void flowsRecurWithTheirPeriodOrWithTheCycle_data()
    {
        QTest::addColumn<QList<int>>("periods");
        QTest::addColumn<int>("cellsPerSlot");
        QTest::addColumn<bool>("wholeSlots");
        QTest::addColumn<QList<int>>("rings");         // cells, by flow
        QTest::addColumn<QList<int>>("onRing");        // transmissions, by flow
        QTest::addColumn<QList<int>>("transmissions"); // in the cycle, by flow
        const auto row = [](const char* name, const QList<int>& periods, int cells, bool whole,
                            const QList<int>& rings, const QList<int>& onRing,
                            const QList<int>& transmissions) {
            QTest::newRow(name) << periods << cells << whole << rings << onRing << transmissions;
        };
        row("slots", {400, 600}, 1, true, {2, 3}, {1, 1}, {3, 2});
        row("a cycle that ends inside a slot", {250}, 4, false, {5}, {1}, {1});
        row("one with the cycle alone", {200, 300}, 1, true, {1, 3}, {1, 2}, {3, 2});
        row("all with the cycle", {500, 300}, 2, false, {15, 15}, {3, 5}, {3, 5});
        // The common cycle takes more than 32 bits; what is left of it is 52429400 us.
        row("a cycle that is cut", {13107400, 13107800}, 1, true, {262147, 262147}, {3, 3}, {3, 3});
    }
    void flowsRecurWithTheirPeriodOrWithTheCycle()
    {
        QFETCH(QList<int>, periods);
        QFETCH(int, cellsPerSlot);
        QFETCH(bool, wholeSlots);
        QFETCH(QList<int>, rings);
        QFETCH(QList<int>, onRing);
        QFETCH(QList<int>, transmissions);
        const PlanningContext context = contextOf({periods.begin(), periods.end()});
        const Repetition repetition(context);
        QCOMPARE(int(repetition.cellsPerSlot()), cellsPerSlot);
        QCOMPARE(repetition.cycleHoldsWholeSlots(), wholeSlots);
        QVERIFY(repetition.isSearchable());
        int number = 0;
        for (const TTFlow& flow : context.flows) {
            QCOMPARE(int(repetition.ringLength(flow)), rings[number]);
            QCOMPARE(int(repetition.transmissionsOnRing(flow)), onRing[number]);
            QCOMPARE(int(repetition.transmissions(flow)), transmissions[number]);
            ++number;
        }
    }

    void longRingsAndManyTransmissionsAreNotSearched()
    {
        const quint32 longest = 200U << 20; // a table of 4 MiB
        QVERIFY(Repetition(contextOf({longest})).isSearchable());
        QVERIFY(!Repetition(contextOf({longest + 200})).isSearchable());
        // 92 flows in each slot of the period of one more make as many transmissions as may be.
        std::vector<quint32> periods(92, 200);
        periods.push_back(12157400);
        QVERIFY(Repetition(contextOf(periods)).isSearchable());
        periods.push_back(12157400);
        QVERIFY(!Repetition(contextOf(periods)).isSearchable());
    }
};

QTEST_GUILESS_MAIN(SearchPartsTest)
#include "SearchPartsTest.moc"
