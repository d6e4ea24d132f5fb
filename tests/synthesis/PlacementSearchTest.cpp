#include "synthesis/PlacementSearch.h"
#include "synthesis/LessWaiting.h"

#include "tests/support/RandomSource.h"
#include "tests/support/Spoken.h"
#include "tests/support/Text.h"
#include "tests/synthesis/ModelOfNetwork.h"
#include "tests/synthesis/TestNetwork.h"

#include <QtTest>

// The quick search goes the same way on every machine, and what it places does not overlap.

using namespace synthesis;

namespace
{

constexpr quint64 patience = 300000;

PlantedStyle styleOf(quint64 seed)
{
    using Style = PlantedStyle;
    RandomSource random(seed ^ 0xC0FFEE);
    Style style;
    style.shape = random.pick({Style::Line, Style::Ring, Style::Star, Style::Tree, Style::Mesh});
    style.windows = random.pick({Style::Tight, Style::Tight, Style::Mixed});
    style.switches = random.between(1, 6);
    style.hosts = random.between(3, 10);
    style.flows = random.between(10, 60);
    style.reach = random.between(0, 4);
    style.multicastPercent = random.pick({0, 30});
    style.waitPercent = random.pick({0, 30, 60});
    style.buffers = random.pick({2, 4, 7});
    static const std::vector<std::vector<quint32>> pools = {
        {2000, 4000, 8000}, {1000, 2000}, {2000, 3000, 5000}, {4000}, {1500, 1000}, {2600, 3900}};
    style.periods = random.pick(pools);
    return style;
}

/// What a search did, in few letters: flows placed of all, steps, a number that the placements make
/// together, before and after waiting is made less, and one that the reports make.
QString record(quint64 seed)
{
    ModelOfNetwork network(plantedNetwork(styleOf(seed), seed).draft);
    Options options;
    quint64 reports = 0;
    options.progress = [&reports](const Progress& progress) {
        reports = reports * 31 + progress.placed;
        return true;
    };
    SearchBudget budget(options, network.places.size());
    PlacementSearch search(network.model, budget);
    const bool isDone = search.run(patience);
    budget.report();
    std::vector<Placement> placements = search.best();
    quint32 digest = 0;
    const auto take = [&digest, &placements] {
        for (const Placement& placement : placements)
            digest = (digest * 31 + placement.pattern) * 31 + static_cast<quint32>(placement.slot);
    };
    take();
    if (isDone) {
        placements = withLessWaiting(network.model, placements);
        take();
    }
    return QStringLiteral("%1/%2 %3 %4 %5")
        .arg(placements.size() - search.missing())
        .arg(placements.size())
        .arg(budget.steps())
        .arg(digest, 0, 16)
        .arg(reports, 0, 16);
}

/// The records of the seeds from 1 on; they change only with the way of the search.
constexpr const char* recorded[] = {
    "29/29 1653 40fcae32 1d",    "34/34 10815 c20cbce8 22",  "10/10 603 135c3618 a",
    "46/57 385825 e6142f7d 5c0", "19/34 302226 c91b706 260", "48/48 40358 47286d57 30",
    "12/12 662 c6005b9c c",      "11/11 887 73f58afe b",     "58/58 4953 72ce3628 3a",
    "31/31 3118 efd2a4a6 1f",    "34/34 1440 20ff40a2 22",   "15/21 301262 2c8d4107 1e0",
    "36/36 4237 d0e48d40 24",    "37/37 2087 58d8fb8 25",    "11/11 661 dde84856 b",
    "35/35 9166 ddb8969e 23",    "33/33 2237 7b5c3856 21",   "39/44 414943 958f128f 9747",
    "4/6 300251 3ee7f905 80",    "45/45 5629 c05d550a 2d",   "30/30 2352 9ed17ff6 1e",
    "44/44 6132 8f30d2d8 2c",    "15/15 1219 8b5a1b4e f",    "51/52 305000 5b08a63b 660",
};

/// Places flow after flow at random, where it overlaps none before; those that do not fit stay
/// unset.
std::vector<Placement> placedAtRandom(const SearchModel& model, RandomSource& random)
{
    std::vector<Placement> placements(model.flows().size());
    for (std::size_t number = 0; number < placements.size(); ++number) {
        const SearchFlow& flow = model.flows()[number];
        for (int i = 0; i < 40 && !flow.patterns.empty(); ++i) {
            const int pattern = random.below(static_cast<int>(flow.patterns.size()));
            const Pattern& chosen = flow.patterns[static_cast<std::size_t>(pattern)];
            const int choices = static_cast<int>(chosen.choices(flow.ringSlots));
            placements[number] = {static_cast<quint32>(pattern),
                                  chosen.first + random.below(std::max(1, choices))};
            if (sharedCell(model, placements).isEmpty())
                break;
            placements[number] = Placement();
        }
    }
    return placements;
}

/// Whether some flow could wait less if it alone were moved.
bool couldWaitLess(const SearchModel& model, std::vector<Placement> placements)
{
    for (std::size_t number = 0; number < placements.size(); ++number) {
        const SearchFlow& flow = model.flows()[number];
        const Placement kept = placements[number];
        for (quint32 other = 0; other < kept.pattern; ++other) {
            const Pattern& pattern = flow.patterns[other];
            for (quint32 i = 0; i < pattern.choices(flow.ringSlots); ++i) {
                placements[number] = {other, pattern.first + static_cast<qint32>(i)};
                if (pattern.waiting < flow.patterns[kept.pattern].waiting &&
                    sharedCell(model, placements).isEmpty())
                    return true;
            }
        }
        placements[number] = kept;
    }
    return false;
}

} // namespace

class PlacementSearchTest : public QObject
{
    Q_OBJECT

private slots:
    void searchGoesTheWayThatWasRecorded()
    {
        quint64 seed = 0;
        for (const char* expected : recorded)
            QCOMPARE(record(++seed), u(expected));
    }

    void whatIsPlacedNeverOverlaps()
    {
        for (quint64 seed = 1; seed <= 24; ++seed) {
            ModelOfNetwork network(plantedNetwork(styleOf(seed), seed).draft);
            const Options options;
            SearchBudget budget(options, network.places.size());
            PlacementSearch search(network.model, budget);
            const bool isDone = search.run(patience / 10);
            const std::vector<Placement>& best = search.best();
            const auto missing =
                std::count_if(best.begin(), best.end(),
                              [](const Placement& placement) { return !placement.isSet(); });
            QCOMPARE(std::size_t(missing), search.missing());
            QCOMPARE(isDone, missing == 0);
            QCOMPARE(sharedCell(network.model, best), QString());
            if (isDone)
                QCOMPARE(sharedCell(network.model, withLessWaiting(network.model, best)),
                         QString());
        }
    }

    void flowWithoutAPatternStaysMissing()
    {
        TestNetwork network;
        network.addFlow(words("A S T Z"), 4000, u("[0,200]"), u("[2000,2200]"));
        network.addFlow(words("B S Y"), 4000, u("[0,200]"), u("[0,4000]"));
        ModelOfNetwork small(network.draft);
        QVERIFY(small.model.flows()[0].patterns.empty());
        const Options options;
        SearchBudget budget(options, 2);
        PlacementSearch search(small.model, budget);
        QVERIFY(!search.run(patience));
        QCOMPARE(search.missing(), std::size_t(1));
        QVERIFY(!search.best()[0].isSet());
        QVERIFY(search.best()[1].isSet());
    }

    void noFlowCouldWaitLessByMovingAlone()
    {
        int plans = 0;
        for (quint64 seed = 1; seed <= 600; ++seed) {
            RandomSource random(seed);
            PlantedStyle style;
            style.shape = PlantedStyle::Line;
            style.windows = PlantedStyle::Mixed;
            style.switches = 2;
            style.hosts = 3;
            style.flows = random.between(5, 9);
            style.reach = 2;
            style.buffers = random.between(2, 4);
            style.periods = {random.pick<quint32>({1000, 1200, 1600})};
            ModelOfNetwork network(plantedNetwork(style, seed).draft);
            for (std::size_t flow = 0; flow < network.places.size(); ++flow)
                network.model.addWaitingPatterns(flow);
            const std::vector<Placement> before = placedAtRandom(network.model, random);
            if (!std::all_of(before.begin(), before.end(),
                             [](const Placement& one) { return one.isSet(); }))
                continue;
            ++plans;
            const std::vector<Placement> after = withLessWaiting(network.model, before);
            QCOMPARE(sharedCell(network.model, after), QString());
            QVERIFY2(!couldWaitLess(network.model, after), qPrintable(QString::number(seed)));
        }
        QVERIFY(plans > 50);
    }
};

QTEST_GUILESS_MAIN(PlacementSearchTest)
#include "PlacementSearchTest.moc"
