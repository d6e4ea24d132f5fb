#include "synthesis/WindowSynthesis.h"

#include "tests/support/RandomSource.h"
#include "tests/support/Spoken.h"
#include "tests/support/Text.h"
#include "tests/synthesis/EngineProof.h"
#include "tests/synthesis/PlantedNetwork.h"
#include "tests/synthesis/TestNetwork.h"

#include <QtTest>

// Whole searches go the same way on every machine, and end when they are told to.

using namespace synthesis;

namespace
{

/// A network with a plan that is hard to find.
NetworkDraft hidden(RandomSource& random, quint64 seed)
{
    using Style = PlantedStyle;
    static const std::vector<std::vector<quint32>> pools = {
        {2000, 4000}, {1000, 2000}, {2000, 3000}, {1200, 1800}, {1500, 1000}};
    Style style;
    style.shape = random.pick({Style::Line, Style::Star, Style::Tree, Style::Mesh});
    style.windows = Style::Tight;
    style.switches = random.between(1, 5);
    style.hosts = random.between(2, 6);
    style.flows = random.between(20, 70);
    style.reach = random.between(0, 3);
    style.multicastPercent = random.pick({0, 30});
    style.waitPercent = random.pick({0, 60});
    style.periods = random.pick(pools);
    return plantedNetwork(style, seed).draft;
}

/// Frames that leave together over one port; often more than it has room for.
NetworkDraft crowded(RandomSource& random)
{
    TestNetwork network;
    const auto upTo = [&random](int fewest, int most) {
        return QStringLiteral("[0,%1]").arg(random.between(fewest, most) * 200);
    };
    for (int flow = random.between(2, 6); flow > 0; --flow) {
        const char* path = random.pick({"A S T Z", "B S T Z", "Y S T Z", "A S Y"});
        network.addFlow(words(path), random.pick({1000U, 1200U, 800U, 500U}), upTo(1, 4),
                        upTo(4, 14));
        if (path == std::string("A S Y") && random.chance(50))
            network.addListener(words("A S T Z"), upTo(2, 10));
    }
    return network.draft;
}

void take(quint32& digest, qint64 number)
{
    digest = digest * 31 + static_cast<quint32>(number);
}

quint32 digestOf(const Found& plan)
{
    quint32 digest = 0;
    for (const FlowWindows& flow : plan.flows) {
        take(digest, flow.send.start);
        take(digest, flow.send.end);
        take(digest, flow.waiting);
        for (const planner::SlotWindow& window : flow.receive) {
            take(digest, window.start);
            take(digest, window.end);
        }
    }
    take(digest, plan.waiting);
    return digest;
}

QString spoken(const Outcome& outcome)
{
    if (const auto* plan = std::get_if<Found>(&outcome))
        return QStringLiteral("%1 %2")
            .arg(plan->restsOnResolution ? u("resolved") : u("found"))
            .arg(digestOf(*plan), 0, 16);
    if (const auto* spent = std::get_if<BudgetSpent>(&outcome)) {
        quint32 digest = 0;
        for (const std::size_t flow : spent->unplaced)
            take(digest, qint64(flow));
        return QStringLiteral("%1 %2")
            .arg(spent->noneWithoutOverlap ? u("none") : u("spent"))
            .arg(digest, 0, 16);
    }
    if (const auto* proof = std::get_if<Overfull>(&outcome))
        return QStringLiteral("overfull %1").arg(proof->transmissions);
    return std::holds_alternative<NoSlot>(outcome) ? u("no slot") : u("stopped");
}

/// A search of the seed's network, which is stopped at that report; 0 for never.
struct Search {
    explicit Search(quint64 seed, int stopAt)
    {
        RandomSource random(seed);
        const ParsedNetwork network =
            parsed(documentOf(seed % 2 == 0 ? hidden(random, seed) : crowded(random)));
        Options options;
        options.steps = seed % 5 == 0 ? 60000 : 3000000;
        options.progress = [&](const Progress& progress) {
            steps = progress.steps;
            isPlaced = progress.placed == progress.total;
            return ++reports != stopAt;
        };
        if (seed % 4 < 2)
            options.isFaultless = judgeFor(network);
        outcome = spoken(synthesizeWindows(network.network.context, options));
    }

    QString outcome;
    int reports = 0;
    quint64 steps = 0; ///< at the last report
    bool isPlaced = false;
};

/// "outcome digest reports steps"
QString record(quint64 seed)
{
    const Search search(seed, 0);
    if (search.outcome.startsWith(u("found")) != search.isPlaced)
        return u("some are still to be placed");
    return QStringLiteral("%1 %2 %3").arg(search.outcome).arg(search.reports).arg(search.steps);
}

/// The records of the seeds from 1 on; they change only with the way of the search.
constexpr const char* recorded[] = {
    "no slot 0 0",
    "none cd 1 40",
    "no slot 0 0",
    "resolved b4d17a72 45 1416290",
    "overfull 3 1 40",
    "found bbdf9ba0 2 1997",
    "overfull 7 1 40",
    "found 8e61a000 2 330",
    "none 3 1 40",
    "spent dff63b1d 1 40",
    "overfull 7 1 40",
    "found 53920ea2 2 1726",
    "found 5f846400 2 227",
    "found bb67f060 2 669",
    "none 2 1 40",
    "found ad4afce 2 15239",
    "overfull 10 1 40",
    "found 503123c0 2 2215",
    "none 2 1 40",
    "spent a7b930 1 40",
    "overfull 30 1 40",
    "found 967907e0 2 1684",
    "none 0 1 40",
    "found 10d55a76 2 2016",
    "overfull 56 1 40",
    "found d4e4dba4 2 5159",
    "overfull 2 1 40",
    "found a46c2080 2 845",
    "no slot 0 0",
    "found f0d0f400 2 468",
    "found 3b51cc00 2 98",
    "found 3b809460 2 938",
    "none 1 1 40",
    "none b1a361cc 1 40",
    "found 398ed420 2 90",
    "found e3b9b280 2 868",
    "overfull 3 1 40",
    "found d6e22ca6 2 11169",
    "overfull 13 1 40",
    "found c176a3c0 2 52728",
    "overfull 2 1 40",
    "found 33333780 6 268532",
    "found 9e8a63e0 2 137",
    "found 4cc6daac 2 4356",
    "resolved 839bfeba 1 40",
    "found af53b86a 2 504",
    "none 1 1 40",
    "found f4151ee0 2 1320",
    "overfull 2 1 40",
    "none 2 1 40",
    "none 1 1 40",
    "none b72e28ee 2 200717",
    "overfull 17 1 40",
    "none 22 1 40",
    "overfull 7 1 40",
    "found 2cddf000 2 384",
    "overfull 11 1 40",
    "found 992ca16e 2 802",
    "none 1 1 40",
    "found 2f778000 2 702",
    "overfull 2 1 40",
    "found 89997fa0 2 636",
    "found 9e8a6000 2 86",
    "resolved 5ed89480 1 40",
    "overfull 3 1 40",
    "none 404 2 96990",
    "overfull 7 1 40",
    "none c1 1 40",
    "resolved 5befd39f 1 40",
    "found a3a66be0 2 1142",
    "overfull 8 1 40",
    "found 95d5ab20 2 116839",
    "no slot 0 0",
    "found b609a7e0 2 872",
    "found 3b51cc00 2 92",
    "found 88a017a0 2 1244",
    "found eecc1420 2 228",
    "none f13c5 1 40",
    "overfull 10 1 40",
    "found a9fcd780 2 564",
    "overfull 31 1 40",
    "found af5bcba0 2 9360",
    "overfull 2 1 40",
    "none 28 1 40",
    "spent 3 5 51807",
    "found f4feb808 2 13329",
    "overfull 3 1 40",
    "resolved 243b9f9e 1 40",
    "overfull 10 1 40",
    "found 240abba0 2 2026",
    "no slot 0 0",
    "resolved 64a31b4a 14 1045543",
    "resolved fd0c1edc 1 40",
    "found 245ec780 2 2086",
    "overfull 11 1 40",
    "found 7a32d3d2 20 416771",
    "found 3b51cc00 2 197",
    "none a1 1 40",
    "none 23 1 40",
    "found c1d9ebe0 2 1804",
};

} // namespace

class RecordedSearchesTest : public QObject
{
    Q_OBJECT

private slots:
    void searchesGoTheWayThatWasRecorded()
    {
        quint64 seed = 0;
        for (const char* expected : recorded)
            QCOMPARE(record(++seed), u(expected));
    }

    // Seven pairs of which one always has to overlap, each transmission with a single path.
    void trialsTakeStepsForEachTransmission()
    {
        TestNetwork network;
        for (int start = 0; start < 14000; start += 2000)
            network.addOverlappingPair(start, 14000);
        const ParsedNetwork read = parsed(documentOf(network.draft));
        QList<int> calls;
        for (const quint64 steps : {500000, 1000000, 2000000}) {
            calls.append(0);
            Options options;
            options.steps = steps;
            options.isFaultless = [&calls](const Found&, const QByteArray&) {
                ++calls.last();
                return false;
            };
            const auto outcome = synthesizeWindows(read.network.context, options);
            QVERIFY(std::holds_alternative<BudgetSpent>(outcome));
        }
        QCOMPARE(calls, (QList<int>{8, 17, 36}));
    }

    void searchThatIsStoppedSaysSoAtWhateverReport()
    {
        for (quint64 seed = 1; seed <= 40; ++seed) {
            const int reports = Search(seed, 0).reports;
            for (int stopAt = 1; stopAt <= reports; stopAt += 1 + reports / 10) {
                const Search stopped(seed, stopAt);
                QCOMPARE(stopped.outcome, u("stopped"));
                QCOMPARE(stopped.reports, stopAt);
            }
        }
    }
};

QTEST_GUILESS_MAIN(RecordedSearchesTest)
#include "RecordedSearchesTest.moc"
