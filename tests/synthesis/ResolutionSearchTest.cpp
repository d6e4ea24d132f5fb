#include "synthesis/ResolutionSearch.h"

#include "planner/search/PairKey.h"

#include "tests/support/RandomSource.h"
#include "tests/support/Spoken.h"
#include "tests/support/Text.h"
#include "tests/synthesis/ModelOfNetwork.h"
#include "tests/synthesis/TestNetwork.h"

#include <QtTest>

#include <map>
#include <numeric>
#include <optional>
#include <set>

// Which placements are offered for a trial, and which never again after one that failed.

using namespace synthesis;

namespace
{

NetworkDraft oneMustOverlap()
{
    TestNetwork network;
    network.addOverlappingPair(0, 2000);
    return network.draft;
}

/// A longer line: hosts W at T, and Q and R at a third switch U.
TestNetwork longLine()
{
    TestNetwork network;
    const auto addNode = [&network](const char* name, bool isSwitch) {
        DraftNode node = network.draft.nodes[4];
        node.name = QString::fromLatin1(name);
        node.isSwitch = isSwitch;
        node.nodeID = static_cast<int>(network.draft.nodes.size());
        node.ports = 0;
        network.draft.nodes.push_back(node);
        return node.nodeID;
    };
    const auto connect = [&network](int a, int b) {
        network.draft.links.push_back(
            {a, b, network.draft.nodes[size_t(a)].ports++, network.draft.nodes[size_t(b)].ports++});
    };
    const int t = 5;
    const int u = addNode("U", true);
    connect(t, u);
    connect(addNode("W", false), t);
    connect(u, addNode("Q", false));
    connect(u, addNode("R", false));
    return network;
}

/// Adds a flow that sends in one slot and goes on without waiting.
void addFixed(TestNetwork& network, const char* path, int slot)
{
    const QStringList names = words(path);
    const int arrival = slot + names.size() - 2;
    const auto only = [](int at) {
        return QStringLiteral("[%1,%2]").arg(at * 200).arg(at * 200 + 200);
    };
    network.addFlow(names, 4000, only(slot), only(arrival));
}

/// A cell on a ring of a port; two meet where they agree modulo what divides both rings.
struct Use {
    quint32 port; ///< number in the model
    qint64 cell;
    qint64 ring;
};

bool meet(const Use& a, const Use& b)
{
    return a.port == b.port && (a.cell - b.cell) % std::gcd(a.ring, b.ring) == 0;
}

bool meetAny(const std::vector<Use>& some, const std::vector<Use>& others)
{
    return std::any_of(some.begin(), some.end(), [&](const Use& one) {
        return std::any_of(others.begin(), others.end(),
                           [&](const Use& other) { return meet(one, other); });
    });
}

/// What a network allows, by trying.
class Trier
{
public:
    explicit Trier(const SearchModel& model) : m_model(model) {}

    /// All cells of a flow's windows.
    std::vector<Use> windows(std::size_t number, const Placement& placement) const
    {
        const SearchFlow& flow = m_model.flows()[number];
        std::vector<Use> uses;
        for (const Reservation& own : flow.patterns[placement.pattern].reservations) {
            const qint64 first = m_model.cellOf(flow, own, placement.slot);
            for (quint32 i = 0; i < own.length; ++i)
                uses.push_back({own.port, first + i, flow.ring});
        }
        return uses;
    }

    /// The flows whose windows share a cell with those of another one on the port, which is the
    /// first such one; none when nothing overlaps.
    std::vector<std::size_t> overlapping(const std::vector<Placement>& placements,
                                         std::optional<quint32>& port) const
    {
        std::set<std::size_t> flows;
        port.reset();
        for (quint32 number = 0; number < m_model.portCount() && flows.empty(); ++number) {
            for (std::size_t a = 0; a < placements.size(); ++a) {
                for (std::size_t b = 0; b < placements.size(); ++b) {
                    if (a != b &&
                        meetAny(on(number, windows(a, placements[a])), windows(b, placements[b])))
                        flows.insert(a);
                }
            }
            if (!flows.empty())
                port = planner::pairKey(m_model.portNode(number), m_model.portOutport(number));
        }
        return {flows.begin(), flows.end()};
    }

    /// Whether each hop can have a slot of its own inside its window, in order along the paths.
    bool isResolvable(const std::vector<Placement>& placements) const
    {
        std::vector<Use> taken;
        return tryFlow(0, placements, taken);
    }

private:
    static std::vector<Use> on(quint32 port, const std::vector<Use>& uses)
    {
        std::vector<Use> some;
        std::copy_if(uses.begin(), uses.end(), std::back_inserter(some),
                     [port](const Use& use) { return use.port == port; });
        return some;
    }

    bool tryFlow(std::size_t number, const std::vector<Placement>& placements,
                 std::vector<Use>& taken) const
    {
        if (number == placements.size())
            return true;
        for (const std::vector<Use>& uses : waysOf(number, placements[number])) {
            if (meetAny(uses, taken))
                continue;
            const std::size_t before = taken.size();
            taken.insert(taken.end(), uses.begin(), uses.end());
            if (tryFlow(number + 1, placements, taken))
                return true;
            taken.resize(before);
        }
        return false;
    }

    /// The cells that a flow may use in the end: all of its windows, where they are many on a ring,
    /// or one slot of each.
    std::vector<std::vector<Use>> waysOf(std::size_t number, const Placement& placement) const
    {
        const SearchFlow& flow = m_model.flows()[number];
        if (m_model.repetition().cellsPerSlot() > 1 ||
            m_model.repetition().transmissionsOnRing(*flow.flow) > 1)
            return {windows(number, placement)};
        std::vector<std::map<quint32, qint32>> ways{{}}; // slot by port
        for (const PortWindow& own : m_model.windowsOf(flow, flow.patterns[placement.pattern])) {
            std::vector<std::map<quint32, qint32>> longer;
            for (const auto& way : ways) {
                for (qint32 slot = own.window.start; slot <= own.window.end; ++slot) {
                    longer.push_back(way);
                    longer.back()[own.port] = placement.slot + slot;
                }
            }
            ways = longer;
        }
        std::vector<std::vector<Use>> uses;
        for (const auto& way : ways) {
            if (!goesForward(flow, way))
                continue;
            uses.emplace_back();
            for (const auto& hop : way)
                uses.back().push_back({m_model.portNumber(hop.first), hop.second, flow.ring});
        }
        return uses;
    }

    bool goesForward(const SearchFlow& flow, const std::map<quint32, qint32>& way) const
    {
        for (const planner::VirtualLinkPath& path : flow.flow->paths) {
            qint32 before = way.at(planner::pairKey(path.talkerNodeID, path.talkerOutport));
            for (const planner::BridgeHop& hop : path.bridges) {
                const qint32 slot = way.at(planner::pairKey(hop.nodeID, hop.outport));
                if (slot <= before || slot - before > m_model.longestWait(hop))
                    return false;
                before = slot;
            }
        }
        return true;
    }

    const SearchModel& m_model;
};

using Forbidden = std::map<std::size_t, std::pair<quint32, qint32>>; // places by flow

bool contains(const std::vector<Placement>& placements, const Forbidden& forbidden)
{
    return std::all_of(forbidden.begin(), forbidden.end(), [&](const auto& flow) {
        const Placement& own = placements[flow.first];
        return own.pattern == flow.second.first && own.slot == flow.second.second;
    });
}

bool containsAny(const std::vector<Placement>& placements, const std::vector<Forbidden>& all)
{
    return std::any_of(all.begin(), all.end(),
                       [&](const Forbidden& one) { return contains(placements, one); });
}

/// Calls visit for all ways to place the flows of a model.
template <typename Visit>
void forEachPlacement(const SearchModel& model, std::vector<Placement>& placements,
                      const Visit& visit)
{
    if (placements.size() == model.flows().size()) {
        visit(placements);
        return;
    }
    const SearchFlow& flow = model.flows()[placements.size()];
    for (quint32 number = 0; number < flow.patterns.size(); ++number) {
        const Pattern& pattern = flow.patterns[number];
        for (quint32 i = 0; i < pattern.choices(flow.ringSlots); ++i) {
            placements.push_back({number, pattern.first + static_cast<qint32>(i)});
            forEachPlacement(model, placements, visit);
            placements.pop_back();
        }
    }
}

/// One search in which no trial passes, unless nothing overlaps, compared with all there is.
class FailingTrials
{
public:
    explicit FailingTrials(SearchModel& model) : m_model(model), m_trier(model)
    {
        for (std::size_t flow = 0; flow < model.flows().size(); ++flow)
            model.addWaitingPatterns(flow);
    }

    bool isSmall() const
    {
        double ways = 1;
        for (const SearchFlow& flow : m_model.flows()) {
            double choices = 0;
            for (const Pattern& pattern : flow.patterns)
                choices += pattern.choices(flow.ringSlots);
            ways *= choices;
        }
        return ways > 0 && ways <= 2000;
    }

    QString run()
    {
        const Options options;
        SearchBudget budget(options, m_model.flows().size());
        ResolutionSearch search(m_model, budget);
        const auto passed =
            search.run(options.steps, [this](const auto& placements) { return judge(placements); });
        if (!m_difference.isEmpty() || !passed.empty())
            return m_difference;
        std::vector<Placement> none;
        forEachPlacement(m_model, none, [this](const std::vector<Placement>& placements) {
            if (m_trier.isResolvable(placements) && !containsAny(placements, m_forbidden))
                m_difference = QStringLiteral("some were not offered");
        });
        return m_difference;
    }

    int trials() const { return m_trials; }

private:
    ResolutionSearch::Verdict judge(const std::vector<Placement>& placements)
    {
        ++m_trials;
        if (!m_trier.isResolvable(placements))
            m_difference = QStringLiteral("offered what cannot be resolved");
        if (containsAny(placements, m_forbidden))
            m_difference = QStringLiteral("offered again what has failed");
        ResolutionSearch::Verdict verdict;
        Forbidden forbidden;
        for (const std::size_t flow : m_trier.overlapping(placements, verdict.failedPort))
            forbidden[flow] = {placements[flow].pattern, placements[flow].slot};
        verdict.isFaultless = forbidden.empty();
        m_forbidden.push_back(forbidden);
        if (verdict.isFaultless && m_trials > 1)
            m_difference = QStringLiteral("overlapped although it need not");
        return verdict;
    }

    SearchModel& m_model;
    const Trier m_trier;
    std::vector<Forbidden> m_forbidden;
    QString m_difference;
    int m_trials = 0;
};

PlantedStyle styleOf(RandomSource& random)
{
    static const std::vector<std::vector<quint32>> pools = {{800},      {1000},      {400, 800},
                                                            {600, 900}, {500, 1000}, {500}};
    PlantedStyle style;
    style.shape = random.pick({PlantedStyle::Line, PlantedStyle::Star});
    style.periods = random.pick(pools);
    style.switches = random.between(1, 4);
    style.hosts = random.between(2, 3);
    style.flows = random.between(2, 4);
    style.windows = PlantedStyle::Tight;
    style.reach = random.between(0, 1);
    style.buffers = random.between(2, 5);
    style.multicastPercent = 20;
    style.waitPercent = 60;
    return style;
}

/// Lets all talkers send in the same slots.
void crowd(RandomSource& random, NetworkDraft& draft)
{
    const int last = random.between(1, 2) * 200;
    for (DraftFlow& flow : draft.flows) {
        flow.txwin = QStringLiteral("[0,%1]").arg(last);
        for (DraftListener& listener : flow.listeners)
            listener.rxwin = QStringLiteral("[200,%1]").arg(last + random.between(2, 7) * 200);
    }
}

/// "send-receive" of each flow.
QString spoken(const SearchModel& model, const std::vector<Placement>& placements)
{
    QStringList texts;
    for (std::size_t flow = 0; flow < placements.size(); ++flow) {
        const Placement& own = placements[flow];
        const qint32 arrival = own.slot + model.flows()[flow].patterns[own.pattern].delays.front();
        texts.append(QStringLiteral("%1-%2").arg(own.slot).arg(arrival));
    }
    return texts.join(QLatin1Char(' '));
}

/// All placements that are offered when none passes; the port is named for each that fails.
QStringList offered(const NetworkDraft& draft, const std::optional<quint32>& failedPort)
{
    ModelOfNetwork network(draft);
    for (std::size_t flow = 0; flow < network.places.size(); ++flow)
        network.model.addWaitingPatterns(flow);
    const Options options;
    SearchBudget budget(options, network.places.size());
    ResolutionSearch search(network.model, budget);
    QStringList all;
    const auto passed = search.run(options.steps, [&](const std::vector<Placement>& placements) {
        all.append(spoken(network.model, placements));
        return ResolutionSearch::Verdict{false, failedPort};
    });
    all.sort();
    return passed.empty() ? all : QStringList(u("one has passed"));
}

/// Frames that leave together for one listener; some may wait for the others.
NetworkDraft crowdedLine(RandomSource& random)
{
    TestNetwork network;
    for (int flow = random.between(3, 5); flow > 0; --flow) {
        const char* path = random.pick({"A S T Z", "B S T Z", "Y S T Z"});
        network.addFlow(words(path), random.pick({4000U, 4000U, 2000U}),
                        QStringLiteral("[0,%1]").arg(random.between(1, 2) * 200),
                        QStringLiteral("[0,%1]").arg(random.between(3, 8) * 200));
    }
    return network.draft;
}

/// "trials steps digest": how a search went in which no trial passes.
///
/// The digest is over all placements that were offered; every second search is told a port.
QString record(quint64 seed)
{
    RandomSource random(seed);
    ModelOfNetwork network(crowdedLine(random));
    for (std::size_t flow = 0; flow < network.places.size(); ++flow)
        network.model.addWaitingPatterns(flow);
    Options options;
    options.steps = seed % 3 == 0 ? 40000 : 4000000;
    SearchBudget budget(options, network.places.size());
    ResolutionSearch search(network.model, budget);
    const Trier trier(network.model);
    int trials = 0;
    quint32 digest = 0;
    search.run(400000, [&](const std::vector<Placement>& placements) {
        ++trials;
        for (const QChar c : spoken(network.model, placements))
            digest = digest * 31 + c.unicode();
        ResolutionSearch::Verdict verdict;
        if (seed % 2 == 0)
            trier.overlapping(placements, verdict.failedPort);
        return verdict;
    });
    return QStringLiteral("%1 %2 %3").arg(trials).arg(budget.steps()).arg(digest, 0, 16);
}

/// The records of the seeds from 1 on; they change only with the way of the search.
constexpr const char* recorded[] = {
    "0 9600 0",          "17 414610 b5c0901", "0 7260 0",         "0 8750 0",
    "0 20480 0",         "0 9320 0",          "0 7350 0",         "0 8310 0",
    "0 8610 0",          "0 19410 0",         "0 7740 0",         "1 42720 313bdf83",
    "0 8540 0",          "0 9350 0",          "0 16290 0",        "0 25010 0",
    "4 88150 60a893be",  "0 7920 0",          "1 17850 824d9f47", "0 7060 0",
    "0 18840 0",         "0 9360 0",          "0 8410 0",         "0 7290 0",
    "4 103600 2e4bf902", "0 8530 0",          "0 13900 0",        "2 59170 f337e000",
    "0 9060 0",          "0 9500 0",          "1 17930 824d9f47", "18 405930 2100ab42",
    "1 18050 31825506",  "0 8900 0",          "1 18220 225d3b86", "0 10210 0",
    "0 9960 0",          "1 18770 66689047",  "0 8490 0",         "0 17530 0",
};

} // namespace

class ResolutionSearchTest : public QObject
{
    Q_OBJECT

private slots:
    void searchGoesTheWayThatWasRecorded()
    {
        quint64 seed = 0;
        for (const char* expected : recorded)
            QCOMPARE(record(++seed), u(expected));
    }

    void placementsThatPassAreTheAnswer()
    {
        ModelOfNetwork network(oneMustOverlap());
        for (std::size_t flow = 0; flow < network.places.size(); ++flow)
            network.model.addWaitingPatterns(flow);
        const Options options;
        SearchBudget budget(options, 2);
        ResolutionSearch search(network.model, budget);
        QString seen;
        const auto passed =
            search.run(options.steps, [&](const std::vector<Placement>& placements) {
                seen = spoken(network.model, placements);
                return ResolutionSearch::Verdict{true, {}};
            });
        QCOMPARE(spoken(network.model, passed), seen);
        QVERIFY(seen == QLatin1String("0-2 0-3") || seen == QLatin1String("0-2 0-4"));
    }

    // A frame that gets there at once has slot 1 of the port behind S; the other one must wait.
    void eachPlacementIsOfferedOnce()
    {
        QCOMPARE(offered(oneMustOverlap(), {}), (QStringList{u("0-2 0-3"), u("0-2 0-4")}));
    }

    void portThatIsNamedForbidsWhatMeetsThere()
    {
        const quint32 behindS = planner::pairKey(4, 3);
        QCOMPARE(offered(oneMustOverlap(), behindS), (QStringList{u("0-2 0-3"), u("0-2 0-4")}));
        const quint32 ofOneTalker = planner::pairKey(0, 0); // nothing meets
        QCOMPARE(offered(oneMustOverlap(), ofOneTalker).size(), 1);
    }

    void flowThatOverlapsNothingIsNotForbidden()
    {
        TestNetwork network;
        network.draft = oneMustOverlap();
        network.addFlow(words("A S Y"), 2000, u("[1000,1800]"), u("[1200,2000]"));
        QCOMPARE(offered(network.draft, {}).size(), 2);
        QCOMPARE(offered(network.draft, planner::pairKey(4, 3)).size(), 2);
    }

    // All three are to blame, but when the last one waits the others have a slot each.
    void flowsThatNeedNotOverlapDoNot()
    {
        TestNetwork network;
        network.addFlow(words("A S T Z"), 4000, u("[0,400]"), u("[400,1000]"));
        network.addFlow(words("B S T Z"), 4000, u("[0,400]"), u("[400,1000]"));
        network.addFlow(words("Y S T Z"), 4000, u("[0,200]"), u("[800,1200]"));
        QStringList ofTheLast;
        for (const QString& all : offered(network.draft, {}))
            ofTheLast.append(all.section(QLatin1Char(' '), 2));
        ofTheLast.sort();
        QCOMPARE(ofTheLast, (QStringList{u("0-4"), u("0-5")}));
    }

    // One of two frames in the ring of five slots; each would get slots of its own in the end.
    void flowsThatRecurWithTheCycleAloneDoNotOverlap()
    {
        TestNetwork network = longLine();
        network.addFlow(words("A S T Z"), 500, u("[0,200]"), u("[600,800]")); // 1 to 4 behind S
        network.addFlow(words("B S T W"), 1000, u("[0,200]"), u("[400,600]"));
        QCOMPARE(offered(network.draft, {}), QStringList());
        network.draft.flows.front().period = 1000; // 1 and 2 behind S
        QCOMPARE(offered(network.draft, {}), QStringList(u("0-3 0-2")));
    }

    void nothingIsWrittenDownWhenStepsAreSpent()
    {
        ModelOfNetwork network(oneMustOverlap());
        Options options;
        options.steps = 1;
        SearchBudget budget(options, 2);
        ResolutionSearch search(network.model, budget);
        QVERIFY(budget.steps() < 100);
        QVERIFY(search.run(1000,
                           [](const auto&) {
                               return ResolutionSearch::Verdict{true, {}};
                           })
                    .empty());
    }

    // The frame for Q waits a slot, in S or in T; what else passes there leaves it one order or
    // none.
    void hopsKeepTheirOrder()
    {
        TestNetwork network = longLine();
        network.addFlow(words("A S T U Q"), 4000, u("[0,200]"), u("[800,1000]"));
        addFixed(network, "B S T W", 0); // slot 1 behind S
        QCOMPARE(offered(network.draft, {}), QStringList(u("0-4 0-2")));
        addFixed(network, "W T U R", 2); // slot 3 behind T
        QCOMPARE(offered(network.draft, {}), QStringList());
    }

    // The frame for Q waits two slots, and no more than one of them in T.
    void hopsWaitNoLongerThanTheirBuffersLast()
    {
        TestNetwork network = longLine();
        network.draft.nodes[5].buffernum = 1;
        network.addFlow(words("A S T U Q"), 4000, u("[0,200]"), u("[1000,1200]"));
        addFixed(network, "B S T W", 1); // slot 2 behind S
        addFixed(network, "W T U R", 1); // slot 2 behind T
        QCOMPARE(offered(network.draft, {}), QStringList(u("0-5 1-3 1-3")));
        addFixed(network, "B S T W", 2); // slot 3 behind S
        QCOMPARE(offered(network.draft, {}), QStringList());
    }

    // Eleven pairs at different times, each with two ways to overlap: 2048 in all.
    void onlySoManyPlacementsAreTried()
    {
        TestNetwork network;
        for (int start = 0; start < 22000; start += 2000)
            network.addOverlappingPair(start, 24000);
        QStringList all = offered(network.draft, {});
        QCOMPARE(all.size(), 1000);
        QCOMPARE(all.removeDuplicates(), 0);
    }

    void offersAreAllThatCanBeResolvedButWhatHasFailed()
    {
        int trials = 0;
        for (quint64 seed = 1; seed <= 500; ++seed) {
            RandomSource random(seed);
            PlantedNetwork planted = plantedNetwork(styleOf(random), seed);
            crowd(random, planted.draft);
            ModelOfNetwork network(planted.draft);
            FailingTrials all(network.model);
            if (!all.isSmall())
                continue;
            const QString difference = all.run();
            QVERIFY2(difference.isEmpty(),
                     qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(difference)));
            trials += all.trials();
        }
        QVERIFY(trials > 100);
    }
};

QTEST_GUILESS_MAIN(ResolutionSearchTest)
#include "ResolutionSearchTest.moc"
