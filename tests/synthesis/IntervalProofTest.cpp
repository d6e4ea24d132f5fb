#include "synthesis/IntervalProof.h"
#include "synthesis/HopWindows.h"

#include "planner/PreProcess.h"

#include "tests/planner/Windows.h"
#include "tests/support/RandomSource.h"
#include "tests/support/Spoken.h"
#include "tests/support/Text.h"
#include "tests/synthesis/EngineProof.h"
#include "tests/synthesis/PlantedNetwork.h"
#include "tests/synthesis/TestNetwork.h"

#include <QtTest>

#include <map>
#include <numeric>
#include <set>
#include <tuple>

// Intervals of a port that must hold too much, against a search of all intervals there are.

using namespace synthesis;
using planner::BridgeHop;
using planner::PlanningContext;
using planner::SlotWindow;
using planner::TTFlow;
using planner::VirtualLinkPath;

namespace
{

struct Demand {
    qint64 start;
    qint64 end;
    std::size_t flow;
};

using Demands = std::map<quint32, std::vector<Demand>>; // by port

Demands demandsOf(const PlanningContext& context, const std::vector<std::size_t>& places)
{
    Demands demands;
    std::size_t place = 0;
    const quint32 cycle_us = planner::clusterCycleOf(context);
    for (const TTFlow& flow : context.flows) {
        const std::size_t own = place++;
        if (std::find(places.begin(), places.end(), own) == places.end())
            continue;
        for (const PortWindow& hop : possibleHopWindows(flow, context.switchBufferNum)) {
            for (quint32 seq = 0; seq < cycle_us / flow.period; ++seq) {
                const qint64 shift = qint64(seq) * (flow.period / 200);
                demands[hop.port].push_back(
                    {hop.window.start + shift, hop.window.end + shift, own});
            }
        }
    }
    return demands;
}

/// The demands that must be met inside an interval; they come again with the cycle, if it has whole
/// times.
std::vector<std::size_t> within(const std::vector<Demand>& demands, qint64 start, qint64 end,
                                qint64 cycle)
{
    std::vector<std::size_t> flows;
    for (const Demand& demand : demands) {
        qint64 moved = 0;
        if (cycle > 0)
            moved = ((demand.start - start) % cycle + cycle) % cycle + start - demand.start;
        if (demand.start + moved >= start && demand.end + moved <= end)
            flows.push_back(demand.flow);
    }
    return flows;
}

/// Takes up a proof that is shorter than the one known.
void offer(std::optional<Overfull>& best, quint32 port, qint64 start, qint64 end,
           const std::vector<std::size_t>& flows)
{
    const std::set<std::size_t> different(flows.begin(), flows.end());
    Overfull proof;
    proof.nodeID = static_cast<quint16>(port >> 16);
    proof.outport = static_cast<quint16>(port & 0xFFFF);
    proof.interval = window(static_cast<qint32>(start), static_cast<qint32>(end));
    proof.transmissions = flows.size();
    proof.flows.assign(different.begin(), different.end());
    const auto size = [](const Overfull& one) {
        return std::make_tuple(one.flows.size(), one.transmissions, one.interval.start);
    };
    if (!best || size(proof) < size(*best))
        best = proof;
}

std::optional<Overfull> proofByTrying(const PlanningContext& context,
                                      const std::vector<std::size_t>& places)
{
    const quint32 cycle_us = planner::clusterCycleOf(context);
    const qint64 cycle = cycle_us % 200 == 0 ? cycle_us / 200 : 0;
    std::optional<Overfull> best;
    for (const auto& port : demandsOf(context, places)) {
        const std::vector<Demand>& demands = port.second;
        if (cycle > 0 && qint64(demands.size()) > cycle) {
            std::vector<std::size_t> all;
            std::transform(demands.begin(), demands.end(), std::back_inserter(all),
                           [](const Demand& demand) { return demand.flow; });
            offer(best, port.first, 0, cycle - 1, all);
        }
        for (const Demand& demand : demands) {
            const qint64 start = cycle > 0 ? (demand.start % cycle + cycle) % cycle : demand.start;
            const qint64 longest = cycle > 0 ? cycle : 1000;
            for (qint64 length = 1; length <= longest; ++length) {
                const auto flows = within(demands, start, start + length - 1, cycle);
                if (qint64(flows.size()) <= length)
                    continue;
                offer(best, port.first, start, start + length - 1, flows);
                break;
            }
        }
    }
    return best;
}

QString spoken(const std::optional<Overfull>& proof)
{
    if (!proof)
        return QStringLiteral("none");
    QString text = QStringLiteral("%1 at port %2 of %3 in [%4,%5]:")
                       .arg(proof->transmissions)
                       .arg(proof->outport)
                       .arg(proof->nodeID)
                       .arg(proof->interval.start)
                       .arg(proof->interval.end);
    for (const std::size_t flow : proof->flows)
        text += QStringLiteral(" %1").arg(flow);
    return text;
}

std::optional<Overfull> proofOf(const PlanningContext& context,
                                const std::vector<std::size_t>& places)
{
    const Options options;
    SearchBudget budget(options, places.size());
    return findOverfullInterval(context, Repetition(context), places, budget);
}

/// A crowded network; windows that begin before the cycle, and flows that are left out.
PlanningContext crowdedNetwork(RandomSource& random, quint64 seed)
{
    PlantedStyle style;
    static const std::vector<std::vector<quint32>> pools = {{1000},     {1200, 1800}, {600, 800},
                                                            {500, 750}, {700, 1400},  {2000, 400}};
    style.periods = random.pick(pools);
    style.switches = random.between(1, 3);
    style.hosts = random.between(2, 3);
    style.flows = random.between(4, 12);
    style.windows = PlantedStyle::Tight;
    style.reach = random.between(0, 1);
    style.multicastPercent = 30;
    PlanningContext context = parsed(documentOf(plantedNetwork(style, seed).draft)).network.context;
    for (TTFlow& flow : context.flows) {
        const qint32 shift = random.chance(60) ? random.between(-4, 4) : 0;
        for (VirtualLinkPath& path : flow.paths) {
            for (SlotWindow* one : {&path.schedtxwin, &path.schedrxwin}) {
                one->start += shift;
                one->end += shift;
            }
        }
    }
    return context;
}

/// Slots of all hops of a path in any plan at all, by trying.
std::vector<std::set<qint32>> hopSlotsByTrying(const VirtualLinkPath& path, qint32 longestWait)
{
    std::vector<std::set<qint32>> times(path.bridges.size() + 1);
    const std::function<bool(std::size_t, qint32)> tryFrom = [&](std::size_t hop, qint32 slot) {
        bool arrives = hop == path.bridges.size() && slot >= path.schedrxwin.start &&
                       slot <= path.schedrxwin.end;
        for (qint32 wait = 1; hop < path.bridges.size() && wait <= longestWait; ++wait)
            arrives = tryFrom(hop + 1, slot + wait) || arrives;
        if (arrives)
            times[hop].insert(slot);
        return arrives;
    };
    for (qint32 slot = path.schedtxwin.start; slot <= path.schedtxwin.end; ++slot)
        tryFrom(0, slot);
    return times;
}

VirtualLinkPath pathOver(const std::vector<quint16>& switches, quint16 listener,
                         const SlotWindow& send, const SlotWindow& receive)
{
    VirtualLinkPath path;
    path.talkerNodeID = 9;
    path.schedtxwin = send;
    path.schedrxwin = receive;
    path.listenerNodeID = listener;
    for (const quint16 node : switches) {
        BridgeHop hop;
        hop.nodeID = node;
        path.bridges.push_back(hop);
    }
    return path;
}

/// "port [start,end]" for each window, ports by their node.
QString windowsOf(const TTFlow& flow, quint16 buffers)
{
    QStringList texts;
    for (const PortWindow& hop : possibleHopWindows(flow, buffers))
        texts.append(QStringLiteral("%1 [%2,%3]")
                         .arg(hop.port >> 16)
                         .arg(hop.window.start)
                         .arg(hop.window.end));
    return texts.join(QLatin1Char(' '));
}

} // namespace

class IntervalProofTest : public QObject
{
    Q_OBJECT

private slots:
    void proofIsTheSmallestOfAllIntervals()
    {
        int proofs = 0;
        for (quint64 seed = 1; seed <= 200; ++seed) {
            RandomSource random(seed);
            const PlanningContext context = crowdedNetwork(random, seed);
            std::vector<std::size_t> places;
            for (std::size_t place = 0; place < context.flows.size(); ++place) {
                if (random.chance(90))
                    places.push_back(place);
            }
            const QString expected = spoken(proofByTrying(context, places));
            QCOMPARE(spoken(proofOf(context, places)), expected);
            proofs += expected != QLatin1String("none");
        }
        QVERIFY(proofs > 40);
    }

    void hopsHaveTheSlotsOfAnyPlan()
    {
        RandomSource random(3);
        int reachable = 0;
        for (int i = 0; i < 500; ++i) {
            std::vector<quint16> switches(static_cast<std::size_t>(random.between(0, 3)));
            std::iota(switches.begin(), switches.end(), quint16(0));
            const int send = random.between(-2, 4);
            const int receive = random.between(0, 12);
            const auto buffers = static_cast<quint16>(random.between(4, 6));
            TTFlow flow;
            flow.paths = {pathOver(switches, 1, window(send, send + random.between(0, 6)),
                                   window(receive, receive + random.between(0, 6)))};
            const auto times = hopSlotsByTrying(flow.paths.front(), buffers);
            const std::vector<PortWindow> windows = possibleHopWindows(flow, buffers);
            if (times.front().empty())
                continue;
            ++reachable;
            QCOMPARE(windows.size(), times.size());
            for (std::size_t hop = 0; hop < times.size(); ++hop) {
                QCOMPARE(windows[hop].port >> 16, hop == 0 ? 9U : quint32(hop) - 1);
                QCOMPARE(windows[hop].window, window(*times[hop].begin(), *times[hop].rbegin()));
            }
        }
        QVERIFY(reachable > 200);
    }

    // The rules let windows grow by four slots a hop, however few buffers there are.
    void fewBuffersStillLetWindowsGrowAsTheRulesDo()
    {
        TTFlow flow;
        flow.paths = {pathOver({1, 2, 3}, 5, window(0, 1), window(0, 20))};
        QCOMPARE(windowsOf(flow, 2), u("9 [0,1] 1 [1,5] 2 [2,6] 3 [3,7]"));
        QCOMPARE(windowsOf(flow, 3), u("9 [0,1] 1 [1,5] 2 [2,9] 3 [3,10]"));
    }

    void branchesThatComeTheSameWayHaveWhatBothAllow()
    {
        TTFlow flow;
        flow.paths = {pathOver({1, 2}, 5, window(0, 9), window(2, 6)),
                      pathOver({1, 3}, 6, window(0, 9), window(9, 12))};
        QCOMPARE(windowsOf(flow, 4), u("9 [1,4] 1 [5,5] 2 [3,6] 3 [9,12]"));
        flow.paths.reverse();
        QCOMPARE(windowsOf(flow, 4), u("9 [1,4] 1 [5,5] 3 [9,12] 2 [3,6]"));
    }

    // Each could be served alone: the nearer listener too early for the way to the farther one.
    void portThatBranchesNeedAtDifferentTimesHasNoWindow()
    {
        TTFlow flow;
        flow.paths = {pathOver({1, 2}, 5, window(0, 30), window(0, 10)),
                      pathOver({1, 2, 3}, 6, window(0, 30), window(20, 40))};
        QCOMPARE(windowsOf(flow, 4), u("9 [8,8] 3 [20,20]"));
        flow.paths.reverse();
        QCOMPARE(windowsOf(flow, 4), u("9 [8,8] 3 [20,20]"));
    }

    void branchesThatComeInDifferentWaysHaveWhatEitherAllows()
    {
        TTFlow flow;
        flow.paths = {pathOver({1, 2, 4}, 5, window(0, 3), window(4, 6)),
                      pathOver({3, 4}, 6, window(0, 3), window(9, 11))};
        QCOMPARE(windowsOf(flow, 4), u("9 [1,3] 1 [2,4] 2 [3,5] 4 [4,11] 3 [5,7]"));
        flow.paths.push_back(pathOver({1, 2, 4}, 7, window(0, 3), window(4, 6)));
        QCOMPARE(windowsOf(flow, 4), u("9 [1,3] 1 [2,4] 2 [3,5] 4 [4,11] 3 [5,7]"));
        flow.paths.pop_back();
        flow.paths.reverse();
        QCOMPARE(windowsOf(flow, 4), u("9 [1,3] 3 [5,7] 4 [4,11] 1 [2,4] 2 [3,5]"));
    }

    void flowsThatAreNotAskedForDemandNothing()
    {
        TestNetwork network;
        for (int i = 0; i < 3; ++i)
            network.addFlow(words("A S T Z"), 2000, u("[0,200]"), u("[0,600]"));
        const PlanningContext context = parsed(documentOf(network.draft)).network.context;
        QCOMPARE(spoken(proofOf(context, {0, 2})), u("2 at port 0 of 0 in [0,0]: 0 2"));
        QCOMPARE(spoken(proofOf(context, {1})), u("none"));
        std::vector<std::size_t> places = {1, 2};
        places.pop_back(); // the memory behind the end may still tell of it
        QCOMPARE(spoken(proofOf(context, places)), u("none"));
    }

    void longWindowsDoNotCountBeforeTheyEnd()
    {
        TestNetwork network;
        network.addFlow(words("A S Y"), 4000, u("[0,400]"), u("[0,4000]"));
        network.addFlow(words("A S Y"), 4000, u("[0,1200]"), u("[0,4000]"));
        network.addFlow(words("A S Y"), 4000, u("[200,600]"), u("[0,4000]"));
        network.addFlow(words("A S Y"), 4000, u("[200,600]"), u("[0,4000]"));
        const PlanningContext context = parsed(documentOf(network.draft)).network.context;
        QCOMPARE(spoken(proofOf(context, {0, 1, 2, 3})), u("none"));
    }

    // Twelve flows are too many for ten slots; the windows of all thirteen end behind the cycle.
    void windowsLongerThanTheCycleAreOnlyCounted()
    {
        TestNetwork network;
        for (int i = 0; i < 12; ++i)
            network.addFlow(words("A S Y"), 2000, u("[0,2400]"), u("[0,6000]"));
        network.addFlow(words("A S Y"), 2000, u("[0,6000]"), u("[0,8000]"));
        const PlanningContext context = parsed(documentOf(network.draft)).network.context;
        std::vector<std::size_t> places(13);
        std::iota(places.begin(), places.end(), std::size_t(0));
        QCOMPARE(spoken(proofOf(context, places)),
                 u("13 at port 0 of 0 in [0,9]: 0 1 2 3 4 5 6 7 8 9 10 11 12"));
    }

    // A port of 3,001 transmissions is only counted as a whole, and 3,000 do not take it all.
    void portsWithVeryManyTransmissionsAreOnlyCounted()
    {
        TestNetwork network;
        network.addFlow(words("A S Y"), 200, u("[0,200]"), u("[0,400]"));
        network.addFlow(words("A S T Z"), 600000, u("[0,200]"), u("[0,600]"));
        PlanningContext context = parsed(documentOf(network.draft)).network.context;
        QCOMPARE(spoken(proofOf(context, {0, 1})), u("3001 at port 0 of 0 in [0,2999]: 0 1"));
        context.flows.back().period = 599800;
        QCOMPARE(spoken(proofOf(context, {0, 1})), u("2 at port 0 of 0 in [0,0]: 0 1"));
    }

    // Four for each demand on the port, and again for the cycle behind, at each start.
    void searchOfIntervalsTakesItsSteps()
    {
        TestNetwork network;
        network.addFlow(words("A S Y"), 1000, u("[0,200]"), u("[0,400]"));
        network.addFlow(words("A S Y"), 2000, u("[400,600]"), u("[0,800]"));
        network.addFlow(words("A S Y"), 2000, u("[400,800]"), u("[0,1000]"));
        const PlanningContext context = parsed(documentOf(network.draft)).network.context;
        Options options;
        SearchBudget budget(options, 3);
        QVERIFY(!findOverfullInterval(context, Repetition(context), {0, 1, 2}, budget));
        QCOMPARE(budget.steps(), quint64(4 * 8 * 3 + 4 * 8 * 3));
        options.steps = quint64(4) * 8 * 3;
        SearchBudget few(options, 3);
        QVERIFY(!findOverfullInterval(context, Repetition(context), {0, 1, 2}, few));
        QCOMPARE(few.steps(), quint64(4 * 8 * 4));
    }
};

QTEST_GUILESS_MAIN(IntervalProofTest)
#include "IntervalProofTest.moc"
