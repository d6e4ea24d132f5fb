#include "tests/planner/twin/ConflictAnalysis.h"
#include "tests/planner/twin/ConflictResolution.h"
#include "tests/planner/twin/FirstStage.h"
#include "tests/planner/twin/InputReader.h"
#include "tests/support/LogCapture.h"

#include <QtTest>

using namespace twin;

Q_DECLARE_METATYPE(twin::Window)

/// Proves the twin by hand-worked numbers, so that agreeing with it means something.
class TwinSelfTest : public QObject
{
    Q_OBJECT

private slots:
    void readsWindowTexts();
    void convertsWindowsToSlots();
    void reducesPeriodsPairByPair();
    void narrowsWindowsOfTwoHops();
    void refusesFirstUnreasonableFlow();
    void joinsBranchesForwardOnly();
    void bridgesBehindTheFirstTakeFourSlots();
    void shiftsInstancesByPeriod();
    void countsOverlappingNeighbours();
    void emptyListHasNoConflict();
    void listsSharedPortOnce();
    void resolvesFirstOfEqualPorts();
    void revisesFromFixedTalker();
    void revisesFromFixedBridge();
    void resolvesPort_data();
    void resolvesPort();
    void bridgeMayPassTheTable();
    void talkerMayNotPassTheTable();
    void unknownPortNeedsNothing();
};

namespace
{

Window window(qint32 start, qint32 end)
{
    return {end, start};
}

Hop hop(quint16 nodeID, Window schedtxwin)
{
    Hop made;
    made.nodeID = nodeID;
    made.schedtxwin = schedtxwin;
    return made;
}

/// Talker 1, switches 10, 11, ..., listener 2.
Path path(Window send, const std::vector<Window>& bridges, Window receive)
{
    Path made;
    made.talkerNodeID = 1;
    made.schedtxwin = send;
    quint16 nodeID = 10;
    for (const Window& bridge : bridges)
        made.bridges.push_back(hop(nodeID++, bridge));
    made.listenerNodeID = 2;
    made.schedrxwin = receive;
    return made;
}

Instance instance(quint16 flowID, const std::list<Path>& paths)
{
    Instance made;
    made.flowID = flowID;
    made.paths = paths;
    return made;
}

/// Instances that meet at node 1 as talkers, or at node 10 as bridges.
Planner plannerOf(const std::vector<Window>& windows, bool bridge, qint32 maxRxSlot)
{
    Planner planner;
    planner.maxRxSlot = maxRxSlot;
    quint16 number = 1;
    for (const Window& w : windows) {
        Path made = bridge ? path(window(-1, -1), {w}, window(0, maxRxSlot))
                           : path(w, {window(0, maxRxSlot)}, window(0, maxRxSlot));
        if (bridge)
            made.talkerNodeID = static_cast<quint16>(100 + number);
        planner.instances.push_back(instance(number++, {made}));
    }
    const LogCapture log;
    planner.nodeList = convertInstancesToNodes(planner.instances);
    return planner;
}

/// Slots of the instances at the port, or one "-3" with the number of the exit.
QString resolve(Planner& planner, quint16 nodeID)
{
    const LogCapture log;
    if (conflictResolve(planner, nodeID, 0) != 0) {
        const QString last = log.lines().last();
        return last.startsWith(QStringLiteral(u"line:")) ? last.section(QLatin1Char(' '), 1, 1)
                                                         : QStringLiteral(u"silent");
    }
    QStringList found;
    for (const Node& node : planner.nodeList) {
        if (node.nodeID != nodeID)
            continue;
        for (const Instance& i : node.outports.front().instances) {
            const Path& p = i.paths.front();
            const Window& w = nodeID == 1 ? p.schedtxwin : p.bridges.front().schedtxwin;
            const quint32 slot = nodeID == 1 ? p.txslotID : p.bridges.front().txslotID;
            found.append(w.start == w.end && static_cast<qint32>(slot) == w.start
                             ? QString::number(w.start)
                             : QStringLiteral(u"?"));
        }
    }
    return found.join(QLatin1Char(' '));
}

void compare(const Window& found, const Window& expected)
{
    QCOMPARE(found.start, expected.start);
    QCOMPARE(found.end, expected.end);
}

} // namespace

void TwinSelfTest::readsWindowTexts()
{
    compare(parseSlotWindow(QStringLiteral(u"[12,30]")), window(12, 30));
    compare(parseSlotWindow(QStringLiteral(u"x[a,30]y")), window(0, 30));
    compare(parseSlotWindow(QStringLiteral(u"[-5]")), window(-5, 0));
    compare(parseSlotWindow(QStringLiteral(u"12,30")), window(0, 0));
}

void TwinSelfTest::convertsWindowsToSlots()
{
    compare(windowToSlots(window(0, 1000)), window(0, 4));
    compare(windowToSlots(window(100, 1030)), window(1, 5));
    compare(windowToSlots(window(100, 1029)), window(1, 4));
    compare(windowToSlots(window(200, 400)), window(1, 1));
    compare(windowToSlots(window(0, 0)), window(0, -1));
    compare(windowToSlots(window(-100, -100)), window(0, -2));
}

void TwinSelfTest::reducesPeriodsPairByPair()
{
    Context context;
    const LogCapture log;
    QCOMPARE(lcmReduce(context, {1000, 3000, 2000}), quint32(6000));
    QCOMPARE(log.lines(), QStringList({QStringLiteral(u"std::vector(1000, 3000, 2000)"),
                                       QStringLiteral(u"std::vector(3000, 6000)"),
                                       QStringLiteral(u"std::vector(6000)")}));
    QCOMPARE(lcmReduce(context, {700}), quint32(700));
    context.clusterCycle = 0;
    QCOMPARE(lcmReduce(context, {}), quint32(0));
    // 65537 * 65539 is 4295229443, which is 262147 beyond 32 bits.
    QCOMPARE(lcmReduce(context, {65537, 65539}), quint32(262147));
}

void TwinSelfTest::narrowsWindowsOfTwoHops()
{
    Context context;
    context.switchBufferNum = 4;
    Flow flow;
    flow.paths.push_back(path(window(10, 20), {{}, {}}, window(13, 40)));
    context.flows.push_back(flow);
    QCOMPARE(checkTimeWindows(context), 0);
    const Path& checked = context.flows.front().paths.front();
    compare(checked.schedtxwin, window(10, 20));
    compare(checked.schedrxwin, window(13, 28));
    compare(checked.bridges.front().schedtxwin, window(11, 24));
    compare(checked.bridges.back().schedtxwin, window(13, 28));
}

void TwinSelfTest::refusesFirstUnreasonableFlow()
{
    Context context;
    context.switchBufferNum = 4;
    Flow flow;
    flow.paths.push_back(path(window(5, 5), {{}}, window(6, 6)));
    context.flows.push_back(flow);
    QCOMPARE(checkTimeWindows(context), 0);
    compare(context.flows.front().paths.front().schedtxwin, window(5, 5));
    context.flows.push_back(flow);
    context.flows.back().paths.front().schedrxwin = window(6, 5);
    const LogCapture log;
    QCOMPARE(checkTimeWindows(context), -3);
    QCOMPARE(log.lines(),
             QStringList({QStringLiteral(u"5 4"), QStringLiteral(u"TIMEWINDOW_UNREASONABLE")}));
}

void TwinSelfTest::joinsBranchesForwardOnly()
{
    Context context;
    context.switchBufferNum = 4;
    Flow flow;
    flow.paths.push_back(path(window(0, 10), {{}}, window(3, 9)));
    flow.paths.push_back(path(window(0, 10), {{}}, window(5, 12)));
    context.flows.push_back(flow);
    QCOMPARE(checkTimeWindows(context), 0);
    // The send window of both becomes [1,8]; the first bridge alone carries the intersection.
    const Flow& checked = context.flows.front();
    compare(checked.paths.front().schedtxwin, window(1, 8));
    compare(checked.paths.back().schedtxwin, window(1, 8));
    compare(checked.paths.front().bridges.front().schedtxwin, window(5, 9));
    compare(checked.paths.back().bridges.front().schedtxwin, window(5, 12));
}

void TwinSelfTest::bridgesBehindTheFirstTakeFourSlots()
{
    Context context;
    context.switchBufferNum = 9;
    Flow flow;
    flow.paths.push_back(path(window(0, 2), {{}, {}, {}}, window(0, 90)));
    context.flows.push_back(flow);
    QCOMPARE(checkTimeWindows(context), 0);
    const Path& checked = context.flows.front().paths.front();
    compare(checked.schedrxwin, window(3, 29));
    auto bridge = checked.bridges.begin();
    compare((bridge++)->schedtxwin, window(1, 11));
    compare((bridge++)->schedtxwin, window(2, 15));
    compare(bridge->schedtxwin, window(3, 19));
}

void TwinSelfTest::shiftsInstancesByPeriod()
{
    Context context;
    context.clusterCycle = 15000;
    Flow flow;
    flow.flowID = 4;
    flow.period = 5000;
    flow.paths.push_back(path(window(1, 2), {window(3, 4)}, window(5, 6)));
    context.flows.push_back(flow);
    flow.period = 300;
    context.flows.push_back(flow);
    expandInstances(context);
    QCOMPARE(context.instances.size(), size_t(3 + 50));
    const Instance& third = *std::next(context.instances.begin(), 2);
    QCOMPARE(third.seq, quint16(2));
    QCOMPARE(third.period, quint32(25));
    compare(third.paths.front().schedtxwin, window(51, 52));
    compare(third.paths.front().bridges.front().schedtxwin, window(53, 54));
    compare(third.paths.front().schedrxwin, window(55, 56));
    QCOMPARE(context.instances.back().period, quint32(1));
    compare(context.instances.back().paths.front().schedtxwin, window(50, 51));
}

void TwinSelfTest::countsOverlappingNeighbours()
{
    const auto count = [](std::vector<Window> windows) { return countWindowOverlaps(windows); };
    QCOMPARE(count({}), quint32(0));
    QCOMPARE(count({window(1, 4)}), quint32(0));
    QCOMPARE(count({window(1, 10), window(5, 6), window(2, 3)}), quint32(1));
    QCOMPARE(count({window(9, 9), window(1, 4), window(2, 3)}), quint32(1));
    QCOMPARE(count({window(1, 4), window(5, 8)}), quint32(0));
    QCOMPARE(count({window(5, 5), window(5, 5)}), quint32(1));
    QCOMPARE(count(std::vector<Window>(7, window(3, 8))), quint32(6));
}

void TwinSelfTest::emptyListHasNoConflict()
{
    Planner planner;
    const LogCapture log;
    QCOMPARE(calculateConflictDegree(planner), 0);
    QCOMPARE(log.lines().last(), QStringLiteral(u"maxDegree: 0 node: 0 outport: 0"));
}

void TwinSelfTest::listsSharedPortOnce()
{
    Path first = path(window(0, 0), {window(1, 1), window(2, 2)}, window(2, 9));
    Path second = first;
    second.bridges.back().outport = 3;
    const LogCapture log;
    const std::list<Node> nodes = convertInstancesToNodes({instance(1, {first, second})});
    QCOMPARE(nodes.size(), size_t(3));
    const Node& shared = *std::next(nodes.begin());
    QCOMPARE(shared.outports.size(), size_t(1));
    QCOMPARE(shared.outports.front().instances.size(), size_t(1));
    const Node& parting = nodes.back();
    QCOMPARE(parting.outports.size(), size_t(2));
    QCOMPARE(parting.outports.back().instances.size(), size_t(1));
}

void TwinSelfTest::resolvesFirstOfEqualPorts()
{
    // Node 1 and node 10 both have degree 2.
    Planner planner;
    planner.maxRxSlot = 20;
    planner.hopBufferNum = 9;
    const Path one = path(window(0, 3), {window(5, 8)}, window(5, 20));
    planner.instances = {instance(1, {one}), instance(2, {one})};
    const LogCapture log;
    planner.nodeList = convertInstancesToNodes(planner.instances);
    QCOMPARE(calculateConflictDegree(planner), 2);
    QVERIFY(log.contains(QStringLiteral(u"maxDegree: 2 node: 1 outport: 0")));
    QCOMPARE(calculateConflictDegree(planner), 2);
    QVERIFY(log.contains(QStringLiteral(u"maxDegree: 2 node: 10 outport: 0")));
    QCOMPARE(calculateConflictDegree(planner), 0);
    compare(planner.instances.front().paths.front().schedtxwin, window(0, 0));
    compare(planner.instances.back().paths.front().schedtxwin, window(1, 1));
}

void TwinSelfTest::revisesFromFixedTalker()
{
    Planner planner;
    planner.hopBufferNum = 2;
    Path fixed = path(window(10, 10), {window(0, 99), window(0, 99), window(0, 99)}, window(0, 99));
    fixed.txslotID = 10;
    Instance revised = instance(1, {fixed});
    reviseWindows(planner, 1, 0, revised);
    const Path& result = revised.paths.front();
    compare(result.schedrxwin, window(13, 16));
    auto bridge = result.bridges.begin();
    compare((bridge++)->schedtxwin, window(11, 12));
    compare((bridge++)->schedtxwin, window(12, 14));
    compare(bridge->schedtxwin, window(13, 16));
}

void TwinSelfTest::revisesFromFixedBridge()
{
    Planner planner;
    planner.hopBufferNum = 2;
    Path fixed = path(window(0, 99), {window(0, 99), window(20, 20), window(0, 99)}, window(0, 99));
    std::next(fixed.bridges.begin())->txslotID = 20;
    Instance revised = instance(1, {fixed});
    reviseWindows(planner, 11, 0, revised);
    const Path& result = revised.paths.front();
    compare(result.schedtxwin, window(16, 18));
    auto bridge = result.bridges.begin();
    compare((bridge++)->schedtxwin, window(18, 19));
    compare((bridge++)->schedtxwin, window(20, 20));
    compare(bridge->schedtxwin, window(21, 22));
    compare(result.schedrxwin, window(21, 22));
}

void TwinSelfTest::resolvesPort_data()
{
    QTest::addColumn<std::vector<Window>>("windows");
    QTest::addColumn<qint32>("maxRxSlot");
    QTest::addColumn<QString>("asTalkers");
    QTest::addColumn<QString>("asBridges");

    const auto row = [](const char* name, const std::vector<Window>& windows, qint32 maxRxSlot,
                        const char* talkers, const char* bridges) {
        QTest::newRow(name) << windows << maxRxSlot << QString::fromLatin1(talkers)
                            << QString::fromLatin1(bridges);
    };
    const Window C = window(3, 3);
    const Window D = window(4, 4);
    row("wider gives way", {window(3, 9), window(3, 5)}, 50, "4 3", "4 3");
    row("equals in order", {window(3, 5), window(3, 5)}, 50, "3 4", "3 4");
    row("tighter stays", {window(3, 5), window(3, 9)}, 50, "3 4", "3 4");
    row("earlier and tighter", {window(4, 9), window(2, 5)}, 50, "4 2", "4 2");
    row("steps aside", {C, window(4, 9), window(3, 5)}, 50, "3 5 4", "3 5 4");
    row("two tests", {C, D, window(4, 9), window(3, 5)}, 50, "3 4 6 5", "607");
    row("later start is ignored", {window(2, 9), window(3, 3)}, 50, "2 3", "2 3");
    row("later start loses", {window(3, 3), window(3, 9), window(4, 4)}, 50, "465", "556");
    row("two of one slot", {window(5, 5), window(5, 5)}, 50, "465", "556");
    row("two of the last slot", {window(5, 5), window(5, 5)}, 5, "silent", "silent");
    row("alone", {window(7, 7)}, 50, "7", "7");
    row("gives way beyond itself", {window(3, 4), C, C}, 50, "486", "580");
    row("later has no slot", {C, D, window(4, 9), window(3, 4)}, 50, "500", "594");
    row("pushed out", {window(6, 6), C, D, window(4, 6), window(3, 5)}, 50, "512", "607");
    row("below the table", {window(-3, 2), window(-3, 0)}, 50, "-2 -3", "-2 -3");
}

void TwinSelfTest::resolvesPort()
{
    QFETCH(std::vector<Window>, windows);
    QFETCH(qint32, maxRxSlot);
    QFETCH(QString, asTalkers);
    QFETCH(QString, asBridges);
    Planner talkers = plannerOf(windows, false, maxRxSlot);
    QCOMPARE(resolve(talkers, 1), asTalkers);
    Planner bridges = plannerOf(windows, true, maxRxSlot);
    QCOMPARE(resolve(bridges, 10), asBridges);
}

void TwinSelfTest::bridgeMayPassTheTable()
{
    // Nothing is remembered behind the table, so two may land on the same slot there.
    const std::vector<Window> windows = {window(2, 3), window(2, 3), window(2, 3), window(2, 2)};
    Planner planner = plannerOf(windows, true, 3);
    QCOMPARE(resolve(planner, 10), QStringLiteral(u"3 4 4 2"));
}

void TwinSelfTest::talkerMayNotPassTheTable()
{
    const std::vector<Window> windows = {window(2, 9), window(2, 8), window(2, 7)};
    Planner planner = plannerOf(windows, false, 3);
    QCOMPARE(resolve(planner, 1), QStringLiteral(u"486"));
}

void TwinSelfTest::unknownPortNeedsNothing()
{
    Planner planner = plannerOf({window(2, 3)}, false, 9);
    const LogCapture log;
    QCOMPARE(conflictResolve(planner, 77, 0), 0);
    QCOMPARE(log.lines(), QStringList(QStringLiteral(u"conflictResolve")));
}

QTEST_GUILESS_MAIN(TwinSelfTest)
#include "TwinSelfTest.moc"
