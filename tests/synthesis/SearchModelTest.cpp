#include "synthesis/SearchModel.h"
#include "synthesis/WaitingChoices.h"

#include "planner/PreProcess.h"

#include "tests/planner/Windows.h"
#include "tests/support/LogCapture.h"
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

// The ways in which a frame may travel, against what the planning makes of each single one.

using namespace synthesis;
using planner::BridgeHop;
using planner::PlanningContext;
using planner::SlotWindow;
using planner::TTFlow;
using planner::VirtualLinkPath;

namespace
{

using Windows = std::map<quint32, SlotWindow>; // by port
using Delays = std::vector<qint32>;

/// The windows that the planning derives from a send slot and delays; none when it changes them, or
/// when the frame would not go forward.
std::optional<Windows> windowsOfPlanning(const TTFlow& flow, quint16 buffers, qint32 slot,
                                         const Delays& delays)
{
    PlanningContext context;
    context.switchBufferNum = buffers;
    context.flows.push_back(flow);
    auto delay = delays.begin();
    for (VirtualLinkPath& path : context.flows.front().paths) {
        path.schedtxwin = window(slot, slot);
        path.schedrxwin = window(slot + *delay, slot + *delay);
        ++delay;
    }
    if (planner::checkTimeWindows(context) != planner::code::ok)
        return {};
    Windows windows;
    delay = delays.begin();
    for (const VirtualLinkPath& path : context.flows.front().paths) {
        const qint32 arrival = slot + *delay++;
        if (!(path.schedtxwin == window(slot, slot)) ||
            !(path.schedrxwin == window(arrival, arrival)))
            return {};
        windows.emplace(planner::pairKey(path.talkerNodeID, path.talkerOutport), path.schedtxwin);
        qint32 before = slot;
        for (const BridgeHop& hop : path.bridges) {
            const SlotWindow& own = hop.schedtxwin;
            const qint32 longest = hop.buffernum > 0 ? hop.buffernum : buffers;
            if (own.start <= before || own.start > own.end || own.start - before > longest)
                return {};
            const auto known =
                windows.emplace(planner::pairKey(hop.nodeID, hop.outport), own).first;
            if (known->second.start != own.start)
                return {};
            known->second.end = std::max(known->second.end, own.end);
            before = own.start;
        }
        if (before != arrival)
            return {};
    }
    return windows;
}

/// The cells of a flow's ring that the windows take up, by port; none when two share one.
std::optional<std::map<quint32, std::set<quint32>>>
cellsOf(const Windows& windows, const TTFlow& flow, const Repetition& repetition)
{
    std::map<quint32, std::set<quint32>> cells;
    const qint64 ring = repetition.ringLength(flow);
    const qint64 perSlot = repetition.cellsPerSlot();
    for (const auto& port : windows) {
        for (quint32 seq = 0; seq < repetition.transmissionsOnRing(flow); ++seq) {
            const qint64 shift = qint64(seq) * (flow.period / 200);
            for (qint64 cell = (port.second.start + shift) * perSlot;
                 cell < (port.second.end + shift + 1) * perSlot; ++cell) {
                if (!cells[port.first].insert(quint32((cell % ring + ring) % ring)).second)
                    return {};
            }
        }
    }
    return cells;
}

std::map<quint32, std::set<quint32>> cellsOf(const SearchModel& model, const SearchFlow& flow,
                                             const Pattern& pattern, qint32 slot)
{
    std::map<quint32, std::set<quint32>> cells;
    for (const Reservation& own : pattern.reservations) {
        const quint32 key = planner::pairKey(model.portNode(own.port), model.portOutport(own.port));
        for (quint32 i = 0; i < own.length; ++i)
            cells[key].insert((model.cellOf(flow, own, slot) + i) % flow.ring);
    }
    return cells;
}

/// Where no slot is negative, or all are; a plan holds no others.
bool maySend(const TTFlow& flow, const Delays& delays, qint32 slot)
{
    qint32 last = std::numeric_limits<qint32>::max();
    auto delay = delays.begin();
    for (const VirtualLinkPath& path : flow.paths) {
        if (slot < path.schedtxwin.start || slot > path.schedtxwin.end ||
            slot + *delay < path.schedrxwin.start || slot + *delay > path.schedrxwin.end)
            return false;
        last = std::min({last, path.schedtxwin.end, path.schedrxwin.end - *delay});
        ++delay;
    }
    return slot >= 0 || last < 0;
}

PlantedStyle styleOf(RandomSource& random)
{
    static const std::vector<std::vector<quint32>> pools = {
        {2000, 3000}, {1000}, {1200, 1800}, {500, 750}, {700, 1400}, {600, 800}, {700, 200}};
    PlantedStyle style;
    style.shape = random.pick({PlantedStyle::Line, PlantedStyle::Ring, PlantedStyle::Mesh});
    style.periods = random.pick(pools);
    style.switches = random.between(1, 4);
    style.hosts = random.between(2, 4);
    style.flows = random.between(1, 5);
    style.windows = random.pick({PlantedStyle::Tight, PlantedStyle::Wide});
    style.reach = random.between(0, 3);
    style.buffers = random.between(1, 5);
    style.multicastPercent = 50;
    style.waitPercent = 60;
    return style;
}

/// Moves windows, and gives some switches other buffers.
void disturb(RandomSource& random, PlanningContext& context)
{
    for (TTFlow& flow : context.flows) {
        const qint32 shift = random.between(-6, 3);
        for (VirtualLinkPath& path : flow.paths) {
            path.schedtxwin.start += shift;
            path.schedtxwin.end += shift;
            path.schedrxwin.start += shift + random.between(0, 1);
            path.schedrxwin.end += shift + random.between(0, 2);
            for (BridgeHop& hop : path.bridges) {
                if (random.chance(20))
                    hop.buffernum = static_cast<quint16>(random.between(0, 3));
            }
        }
    }
}

/// What is wrong with a choice, or an empty text; no pattern where the model has none.
QString differenceAt(const SearchModel& model, const SearchFlow& flow, const Pattern* pattern,
                     const std::optional<Windows>& windows, qint32 slot)
{
    const auto cells = windows ? cellsOf(*windows, *flow.flow, model.repetition()) : std::nullopt;
    const bool isListed = pattern && slot >= pattern->first && slot <= pattern->last;
    if (isListed != cells.has_value())
        return isListed ? QStringLiteral("is not taken") : QStringLiteral("is left out");
    if (isListed && cellsOf(model, flow, *pattern, slot) != *cells)
        return QStringLiteral("has other cells");
    return QString();
}

/// Compares the patterns of a flow with all that could be, and counts those.
QString differenceOf(const SearchModel& model, const SearchFlow& flow, quint16 buffers, int& met)
{
    std::map<Delays, const Pattern*> patterns;
    for (const Pattern& pattern : flow.patterns)
        patterns[pattern.delays] = &pattern;
    WaitingChoices all(*flow.flow, buffers);
    Delays delays;
    while (all.next(delays)) {
        const auto found = patterns.find(delays);
        const Pattern* pattern = found == patterns.end() ? nullptr : found->second;
        for (qint32 slot = -15; slot < 40; ++slot) {
            std::optional<Windows> windows;
            if (maySend(*flow.flow, delays, slot))
                windows = windowsOfPlanning(*flow.flow, buffers, slot, delays);
            met += windows.has_value();
            const QString difference = differenceAt(model, flow, pattern, windows, slot);
            if (!difference.isEmpty())
                return QStringLiteral("flow %1 in slot %2 %3")
                    .arg(QString::number(flow.place), QString::number(slot), difference);
        }
    }
    return QString();
}

/// A flow with two listeners whose delays are listed in so many ways each, of which few fit both.
SearchModel modelOfChoices(PlanningContext& context, int nearWays, int farWays)
{
    TestNetwork network;
    for (DraftNode& node : network.draft.nodes)
        node.buffernum = 1000;
    network.addFlow(words("A S Y"), 2000000, u("[0,200000]"), u("[0,200000]"));
    network.addListener(words("A S T Z"), u("[0,200000]"));
    context = parsed(documentOf(network.draft)).network.context;
    VirtualLinkPath& near = context.flows.front().paths.front();
    VirtualLinkPath& far = context.flows.front().paths.back();
    near.schedtxwin = far.schedtxwin = window(0, 0);
    near.schedrxwin = window(5, 4 + nearWays);
    far.schedrxwin = window(5, 4 + farWays);
    return SearchModel(context, Repetition(context), {0});
}

} // namespace

class SearchModelTest : public QObject
{
    Q_OBJECT

private slots:
    void patternsAreAllThatThePlanningTakes()
    {
        const LogCapture quiet;
        int met = 0;
        for (quint64 seed = 1; seed <= 300; ++seed) {
            RandomSource random(seed);
            ParsedNetwork network = parsed(documentOf(plantedNetwork(styleOf(random), seed).draft));
            PlanningContext& context = network.network.context;
            disturb(random, context);
            std::vector<std::size_t> places(context.flows.size());
            std::iota(places.begin(), places.end(), std::size_t(0));
            SearchModel model(context, Repetition(context), places);
            for (std::size_t place = 0; place < places.size(); ++place) {
                model.addWaitingPatterns(place);
                const QString difference =
                    differenceOf(model, model.flows()[place], context.switchBufferNum, met);
                QVERIFY2(difference.isEmpty(),
                         qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(difference)));
            }
        }
        QVERIFY(met > 1000);
    }

    void patternsComeByWaitingAndOnce()
    {
        PlanningContext context;
        SearchModel model = modelOfChoices(context, 12, 12);
        const SearchFlow& flow = model.flows().front();
        QCOMPARE(flow.patterns.size(), std::size_t(1));
        QVERIFY(!flow.hasAllPatterns);
        QVERIFY(model.addWaitingPatterns(0));
        QVERIFY(flow.hasAllPatterns);
        QVERIFY(flow.isComplete);
        const std::size_t all = flow.patterns.size();
        QVERIFY(!model.addWaitingPatterns(0));
        QCOMPARE(flow.patterns.size(), all);
        for (std::size_t i = 1; i < all; ++i) {
            QVERIFY(flow.patterns[i - 1].waiting <= flow.patterns[i].waiting);
            QVERIFY(flow.patterns[i - 1].delays != flow.patterns[i].delays);
        }
    }

    void onlySoManyPatternsAreKept()
    {
        for (const int ways : {255, 256, 257}) {
            PlanningContext context;
            SearchModel model = modelOfChoices(context, 1, ways);
            model.addWaitingPatterns(0);
            QCOMPARE(model.flows().front().patterns.size(), std::size_t(std::min(ways, 256)));
            QCOMPARE(model.flows().front().isComplete, ways <= 256);
        }
    }

    // The frame never gets to the far listener, so that each way is a try and none a pattern.
    void onlySoManyWaysAreTried()
    {
        const int ways[][2] = {{3, 683}, {41, 50}};
        for (const auto& each : ways) {
            PlanningContext context;
            modelOfChoices(context, each[0], each[1]);
            context.flows.front().paths.back().bridges.back().buffernum = 1;
            SearchModel model(context, Repetition(context), {0});
            QVERIFY(!model.addWaitingPatterns(0));
            QVERIFY(model.flows().front().patterns.empty());
            QCOMPARE(model.flows().front().isComplete, each[0] * each[1] <= 2049);
        }
    }

    void patternsOfManyTransmissionsAreFewer()
    {
        for (const quint32 transmissions : {6250, 6251}) {
            TestNetwork network;
            for (DraftNode& node : network.draft.nodes)
                node.buffernum = 10;
            network.addFlow(words("A S Y"), 500, u("[0,200]"), u("[0,4000]"));
            network.addFlow(words("A S Y"), 500 * transmissions, u("[0,200]"), u("[0,4000]"));
            const ParsedNetwork read = parsed(documentOf(network.draft));
            const PlanningContext& context = read.network.context;
            SearchModel model(context, Repetition(context), {0});
            model.addWaitingPatterns(0);
            QCOMPARE(model.flows().front().patterns.size(),
                     std::size_t(transmissions == 6250 ? 5 : 4));
            QVERIFY(!model.flows().front().isComplete);
        }
    }

    void slotsBeforeTheStartAreLeftOutAndMissedUnlessTheyComeAgain()
    {
        for (const int last : {8, 9, 10}) {
            TestNetwork network;
            network.addFlow(words("A S Y"), 2000, u("[0,4000]"), u("[0,4000]"));
            ParsedNetwork read = parsed(documentOf(network.draft));
            PlanningContext& context = read.network.context;
            context.flows.front().paths.front().schedtxwin = window(-3, last);
            SearchModel model(context, Repetition(context), {0});
            const SearchFlow& flow = model.flows().front();
            QCOMPARE(flow.patterns.front().first, 0);
            QCOMPARE(flow.patterns.front().last, last);
            QCOMPARE(flow.patterns.front().choices(flow.ringSlots), quint32(std::min(last, 9) + 1));
            QCOMPARE(flow.isComplete, last >= 9);
        }
    }

    // With one slot of waiting at the second listener the last slot of the ring is missed.
    void modelThatHasMissedASlotStaysIncomplete()
    {
        TestNetwork network;
        network.addFlow(words("A S Y"), 2000, u("[0,4000]"), u("[0,4000]"));
        network.addListener(words("A S T Z"), u("[0,4000]"));
        ParsedNetwork read = parsed(documentOf(network.draft));
        PlanningContext& context = read.network.context;
        VirtualLinkPath& near = context.flows.front().paths.front();
        VirtualLinkPath& far = context.flows.front().paths.back();
        near.schedtxwin = far.schedtxwin = window(-3, 9);
        near.schedrxwin = window(-2, 30);
        far.schedrxwin = window(-1, 11);
        SearchModel model(context, Repetition(context), {0});
        QVERIFY(model.flows().front().isComplete);
        model.addWaitingPatterns(0);
        QVERIFY(!model.flows().front().isComplete);
    }
};

QTEST_GUILESS_MAIN(SearchModelTest)
#include "SearchModelTest.moc"
