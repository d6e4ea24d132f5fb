#include "planner/ConflictAnalysis.h"
#include "planner/ConflictResolution.h"
#include "planner/DebugDump.h"
#include "planner/TTPlanning.h"
#include "planner/passes/PortDegrees.h"

#include "tests/planner/PortInstances.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RandomSource.h"

#include <QtTest>

using namespace planner;

static quint32 overlaps(std::vector<SlotWindow> windows)
{
    return countWindowOverlaps(windows);
}

static BridgeHop hop(quint16 nodeID, quint16 outport, SlotWindow sendWindow, quint16 inport = 1)
{
    BridgeHop made;
    made.nodeID = nodeID;
    made.inport = inport;
    made.outport = outport;
    made.schedtxwin = sendWindow;
    return made;
}

static VirtualLinkPath path(quint16 talker, SlotWindow send, std::list<BridgeHop> bridges,
                            SlotWindow receive)
{
    VirtualLinkPath made;
    made.talkerNodeID = talker;
    made.talkerOutport = 1;
    made.schedtxwin = send;
    made.bridges = std::move(bridges);
    made.listenerNodeID = 99;
    made.schedrxwin = receive;
    return made;
}

static TTStreamInstance instance(quint16 flowID, std::list<VirtualLinkPath> paths)
{
    TTStreamInstance made;
    made.flowID = flowID;
    made.paths = std::move(paths);
    return made;
}

/// A planner whose instances of one path are given; grouped, with maxRxSlot 1000.
static TTPlanner plannerOf(std::list<TTStreamInstance> instances, quint16 bufferNum = 2)
{
    TTPlanner planner;
    planner.hopBufferNum = bufferNum;
    planner.maxRxSlot = 1000;
    planner.TTStreamInstanceList = std::move(instances);
    group(planner);
    return planner;
}

static std::list<TTStreamInstance> randomInstances(RandomSource& random)
{
    std::list<TTStreamInstance> instances;
    for (int id = random.between(1, 60); id > 0; --id) {
        const SlotWindow send = window(random.below(9), random.below(12));
        const auto talker = static_cast<quint16>(random.between(1, 4));
        const auto bridge = static_cast<quint16>(random.between(5, 7));
        instances.push_back(
            instance(static_cast<quint16>(id), {path(talker, send, {hop(bridge, 1, send)}, send)}));
    }
    return instances;
}

static WorstPort worstByWalk(const PortGroups& groups)
{
    WorstPort worst;
    for (const PortGroup& port : groups.ports) {
        std::vector<SlotWindow> windows;
        for (const PortEntry& entry : port.entries)
            windows.push_back(groups.board.hop(entry.hop).window);
        const quint32 degree = 2 * countWindowOverlaps(windows);
        if (worst.maxDegree < degree)
            worst = {degree, port.nodeID, port.outport};
    }
    return worst;
}

class ConflictAnalysisTest : public QObject
{
    Q_OBJECT

private slots:
    void emptyListHasNoConflict()
    {
        const LogCapture log;
        TTPlanner planner = plannerOf({});
        QVERIFY(planner.nodeList.empty());
        QCOMPARE(calculateConflictDegree(planner), 0);
        const QStringList lines{
            QStringLiteral("converting Instance to Node----------"),
            QStringLiteral("converting Instance to Node End----------"),
            QStringLiteral("Conflict Degree Calculating----------"),
            QStringLiteral("Conflict Degree Calculating End----------"),
            QStringLiteral("maxDegree: 0 node: 0 outport: 0"),
        };
        QCOMPARE(log.lines(), lines);
    }

    void overlapsAreCountedBetweenNeighboursOnly()
    {
        QCOMPARE(overlaps({}), 0U);
        QCOMPARE(overlaps({window(1, 9)}), 0U);
        QCOMPARE(overlaps({window(1, 10), window(2, 3), window(5, 6)}), 1U);
        QCOMPARE(overlaps({window(1, 4), window(2, 3), window(9, 9)}), 1U);
        QCOMPARE(overlaps({window(1, 4), window(5, 8)}), 0U);
        QCOMPARE(overlaps({window(5, 5), window(5, 5)}), 1U);
        QCOMPARE(overlaps({window(3, 4), window(5, 6)}), 0U);
        QCOMPARE(overlaps(std::vector<SlotWindow>(7, window(2, 8))), 6U);
    }

    void degreeIsTwiceTheOverlapsAndZeroForASingleInstance()
    {
        const LogCapture log;
        std::list<TTStreamInstance> instances;
        for (quint16 id = 1; id <= 4; ++id) {
            const auto node = static_cast<quint16>(100 + id);
            instances.push_back(instance(
                id, {path(1, window(0, 20), {hop(node, 1, window(1, 30))}, window(2, 40))}));
        }
        TTPlanner planner = plannerOf(instances);
        QCOMPARE(calculateConflictDegree(planner), 6);
        QVERIFY(log.contains(QStringLiteral("maxDegree: 6 node: 1 outport: 1")));
        QVERIFY(log.contains(QStringLiteral("Resolve: 0")));
    }

    void firstOfEquallyBadPortsIsResolvedFirst()
    {
        const LogCapture log;
        const auto talkOn = [](quint16 id, quint16 node) {
            return instance(id, {path(node, window(0, 20), {hop(node + 100, id, window(1, 30))},
                                      window(2, 40))});
        };
        TTPlanner planner = plannerOf({talkOn(1, 7), talkOn(2, 3), talkOn(3, 3), talkOn(4, 7)});
        QCOMPARE(calculateConflictDegree(planner), 2);
        QVERIFY(log.contains(QStringLiteral("maxDegree: 2 node: 7 outport: 1")));
        QCOMPARE(calculateConflictDegree(planner), 2);
        QVERIFY(log.contains(QStringLiteral("maxDegree: 2 node: 3 outport: 1")));
        QCOMPARE(calculateConflictDegree(planner), 0);
    }

    void multicastIsListedOnceUnderAPortItsPathsShare()
    {
        const LogCapture log;
        const SlotWindow wide = window(0, 50);
        std::list<TTStreamInstance> instances{
            instance(1, {path(1, wide, {hop(11, 2, wide), hop(12, 3, wide)}, wide),
                         path(1, wide, {hop(11, 2, wide), hop(12, 4, wide)}, wide)})};
        const std::list<Node> nodes = convertInstancesToNodes(instances);
        QCOMPARE(nodes.size(), size_t(3));
        QCOMPARE(nodes.front().outports.front().instances.size(), size_t(1));
        const Node& second = *std::next(nodes.begin());
        QCOMPARE(int(second.nodeID), 11);
        QCOMPARE(second.outports.size(), size_t(1));
        QCOMPARE(second.outports.front().instances.size(), size_t(1));
        const Node& third = nodes.back();
        QCOMPARE(third.outports.size(), size_t(2));
        QCOMPARE(int(third.outports.front().outport), 3);
        QCOMPARE(third.outports.back().instances.size(), size_t(1));
        const InstanceCopy& diverged = third.outports.back().instances.front();
        QCOMPARE(diverged->flowID, quint16(1));
        QCOMPARE(diverged->paths.size(), size_t(2));
    }

    void groupingKnowsWhereEachInstanceMeetsThePort()
    {
        const LogCapture log;
        const SlotWindow wide = window(0, 50);
        const PortGroups groups =
            groupByPort({instance(1, {path(1, wide, {hop(11, 2, wide), hop(12, 3, wide)}, wide),
                                      path(1, wide, {hop(11, 2, wide), hop(12, 4, wide)}, wide)})});
        QCOMPARE(groups.ports.size(), size_t(4));
        QVERIFY(!groups.ports[1].entries.front().meetsOnce);
        const PortEntry& diverged = groups.ports[3].entries.front();
        QCOMPARE(diverged.instance.value(), 0U);
        QCOMPARE(diverged.path.value(), 1U);
        // Talker, two switches and listener, then talker and a switch.
        QCOMPARE(diverged.hop.value(), 6U);
        QVERIFY(diverged.meetsOnce);
    }

    void onlyTheFirstPathThroughThePortGivesItsWindow()
    {
        const LogCapture log;
        const TTPlanner planner = plannerOf(
            {instance(1, {path(1, window(0, 9), {hop(11, 1, window(1, 9))}, window(2, 9)),
                          path(2, window(0, 9), {hop(12, 1, window(2, 9))}, window(2, 9)),
                          path(3, window(0, 9), {hop(12, 1, window(3, 9))}, window(2, 9))}),
             instance(2, {})});
        const auto node = std::next(planner.nodeList.begin(), 3);
        QCOMPARE(int(node->nodeID), 12);
        const std::vector<SlotWindow> windows = collectPortWindows(*node, node->outports.front());
        QCOMPARE(windows.size(), size_t(1));
        QCOMPARE(windows.front(), window(2, 9));
    }

    void fixedTalkerTightensTheWholePath()
    {
        const SlotWindow wide = window(0, 100);
        const LogCapture log;
        TTStreamInstance fixed =
            instance(1, {path(1, window(10, 10),
                              {hop(11, 1, wide), hop(12, 1, wide), hop(13, 1, wide)}, wide)});
        fixed.paths.front().txslotID = 10;
        TTPlanner planner = plannerOf({fixed});
        QCOMPARE(reviseWindows(planner, 1, 1, fixed), 0);
        const VirtualLinkPath& way = fixed.paths.front();
        QCOMPARE(way.schedrxwin, window(13, 16));
        QCOMPARE(way.bridges.front().schedtxwin, window(11, 12));
        QCOMPARE(std::next(way.bridges.begin())->schedtxwin, window(12, 14));
        QCOMPARE(way.bridges.back().schedtxwin, window(13, 16));
    }

    void fixedHopTightensBothSidesAndStaysItself()
    {
        const SlotWindow wide = window(0, 100);
        const LogCapture log;
        TTStreamInstance fixed = instance(
            1,
            {path(1, wide, {hop(11, 1, wide), hop(12, 1, window(20, 20)), hop(13, 1, wide)}, wide),
             path(1, wide, {hop(11, 1, wide), hop(14, 1, wide)}, wide)});
        std::next(fixed.paths.front().bridges.begin())->txslotID = 20;
        TTPlanner planner = plannerOf({fixed});
        reviseWindows(planner, 12, 1, fixed);
        const VirtualLinkPath& way = fixed.paths.front();
        QCOMPARE(way.schedtxwin, window(16, 18));
        QCOMPARE(way.bridges.front().schedtxwin, window(18, 19));
        QCOMPARE(std::next(way.bridges.begin())->schedtxwin, window(20, 20));
        QCOMPARE(way.bridges.back().schedtxwin, window(21, 22));
        QCOMPARE(way.schedrxwin, window(21, 22));
        const VirtualLinkPath& other = fixed.paths.back();
        QCOMPARE(other.schedtxwin, wide);
        QCOMPARE(other.bridges.front().schedtxwin, wide);
        QCOMPARE(other.schedrxwin, wide);
    }

    void windowsWithoutConflictKeepTheirWidth()
    {
        const LogCapture log;
        TTPlanner planner = plannerOf(
            {instance(1, {path(1, window(0, 4), {hop(11, 1, window(1, 8))}, window(2, 9))}),
             instance(2, {path(2, window(9, 14), {hop(11, 1, window(10, 18))}, window(11, 19))})});
        QCOMPARE(calculateConflictDegree(planner), 0);
        QCOMPARE(planner.TTStreamInstanceList.front().paths.front().schedtxwin, window(0, 4));
    }

    void revisionReachesAllRecordsOfTheInstanceAndAllPorts()
    {
        const LogCapture log;
        const auto first =
            instance(1, {path(1, window(5, 9), {hop(11, 1, window(6, 30))}, window(7, 40))});
        TTPlanner planner = plannerOf({first, first, instance(2, first.paths)});
        QCOMPARE(calculateConflictDegree(planner), 2);
        const std::list<TTStreamInstance>& master = planner.TTStreamInstanceList;
        QCOMPARE(master.front().paths.front().schedtxwin, window(5, 5));
        QCOMPARE(std::next(master.begin())->paths.front().schedtxwin, window(5, 5));
        QCOMPARE(master.back().paths.front().schedtxwin, window(6, 6));
        const Node& talker = planner.nodeList.front();
        QCOMPARE(collectPortWindows(talker, talker.outports.front()),
                 (std::vector<SlotWindow>{window(5, 5), window(6, 6)}));
        QVERIFY(log.contains(QStringLiteral("flowStatusRevise-----")));
        QVERIFY(log.contains(QStringLiteral("flowStatusRevise end-----")));
    }

    void worstPortOfTouchedOnesIsThatOfAFullCount()
    {
        const LogCapture log;
        RandomSource random(21);
        for (int round = 0; round < 100; ++round) {
            PortGroups groups = groupByPort(randomInstances(random));
            PortDegrees degrees(static_cast<quint32>(groups.ports.size()));
            for (int step = 0; step < 20; ++step) {
                const WorstPort worst = degrees.measure(groups);
                const WorstPort walked = worstByWalk(groups);
                QCOMPARE(worst.maxDegree, walked.maxDegree);
                QCOMPARE(worst.nodeID, walked.nodeID);
                QCOMPARE(worst.outport, walked.outport);
                const int hops = static_cast<int>(groups.board.hops().size());
                Hop& changed = groups.board.hop(HopIndex(static_cast<quint32>(random.below(hops))));
                changed.window = window(random.below(9), random.below(12));
                if (changed.port != noPort)
                    degrees.touch(changed.port);
            }
        }
    }

    void stepsInTheirOrderLeadFromRecordsToSlots()
    {
        const LogCapture log;
        TTPlanner planner;
        planner.hopBufferNum = 2;
        planner.maxRxSlot = 40;
        planner.TTStreamInstanceList = {
            instance(1, {path(1, window(5, 9), {hop(11, 1, window(6, 30))}, window(7, 40))}),
            instance(2, {path(1, window(5, 9), {hop(11, 2, window(6, 30))}, window(7, 40))})};
        const auto talkerWindow = [](const TTStreamInstance& record) {
            return record.paths.front().schedtxwin;
        };
        {
            const std::list<TTStreamInstance> copy = planner.TTStreamInstanceList;
            planner.nodeList = convertInstancesToNodes(copy);
        }
        std::vector<SlotWindow> windows =
            collectPortWindows(planner.nodeList.front(), planner.nodeList.front().outports.front());
        QCOMPARE(countWindowOverlaps(windows), 1U);

        QCOMPARE(conflictResolve(planner, 1, 1), code::ok);
        QCOMPARE(talkerWindow(*copiesAt(planner, 1, 1).back()), window(6, 6));
        QCOMPARE(talkerWindow(*copiesAt(planner, 11, 2).back()), window(5, 9));
        QCOMPARE(talkerWindow(planner.TTStreamInstanceList.back()), window(5, 9));

        flowStatusRevise(planner, 1, 1);
        QCOMPARE(talkerWindow(planner.TTStreamInstanceList.back()), window(6, 6));
        QCOMPARE(planner.TTStreamInstanceList.back().paths.front().bridges.front().schedtxwin,
                 window(7, 8));
        QCOMPARE(talkerWindow(*copiesAt(planner, 11, 2).back()), window(5, 9));

        planner.nodeList = convertInstancesToNodes(planner.TTStreamInstanceList);
        QCOMPARE(talkerWindow(*copiesAt(planner, 11, 2).back()), window(6, 6));
        QCOMPARE(calculateConflictDegree(planner), 0);
        finalizeSlots(planner);
        QCOMPARE(planner.TTStreamInstanceList.back().paths.front().txslotID, 6U);
    }

    void passWritesTheMasterListAndGroupsItAnew()
    {
        const LogCapture log;
        TTPlanner planner = plannerOf(
            {instance(1, {path(1, window(5, 9), {hop(11, 1, window(6, 30))}, window(7, 40))}),
             instance(2, {path(1, window(5, 9), {hop(11, 2, window(6, 30))}, window(7, 40))})});
        QCOMPARE(calculateConflictDegree(planner), 2);
        QCOMPARE(planner.TTStreamInstanceList.back().paths.front().schedtxwin, window(6, 6));
        QCOMPARE(copiesAt(planner, 11, 2).front()->paths.front().schedtxwin, window(6, 6));
    }

    // A list of colliding instances that nobody has grouped must not pass for one without conflict.
    void passOverAListThatWasNotGroupedFindsTheConflict()
    {
        const LogCapture log;
        TTPlanner planner = plannerWithPort(false, {window(5, 9), window(5, 9)}, 99);
        planner.nodeList.clear();
        QCOMPARE(calculateConflictDegree(planner), 2);
        QCOMPARE(planner.TTStreamInstanceList.back().paths.front().schedtxwin, window(6, 6));
    }

    void wholeLoopLeavesListsThatAgree()
    {
        const LogCapture log;
        const auto talking = [](quint16 id) {
            return instance(id,
                            {path(1, window(5, 9), {hop(11, 1, window(6, 30))}, window(7, 40))});
        };
        TTPlanner planner = plannerOf({talking(1), talking(2), talking(3)}, 4);
        QCOMPARE(resolveConflicts(planner), code::ok);
        QCOMPARE(planner.nodeList.size(), size_t(2));
        auto record = planner.TTStreamInstanceList.begin();
        for (const InstanceCopy& copy : copiesAt(planner, 11, 1)) {
            QCOMPARE(copy->paths.front().bridges.front().schedtxwin,
                     record->paths.front().bridges.front().schedtxwin);
            ++record;
        }
        QCOMPARE(planner.TTStreamInstanceList.back().paths.front().schedtxwin, window(7, 7));
        QCOMPARE(planner.nodeList.back().outports.front().degree, 0U);
    }

    void failedResolutionLeavesTheMasterListAsItWas()
    {
        const LogCapture log;
        const auto twin = [](quint16 id) {
            return instance(id,
                            {path(1, window(5, 5), {hop(11, id, window(6, 30))}, window(7, 40))});
        };
        TTPlanner planner = plannerOf({twin(1), twin(2)});
        QCOMPARE(calculateConflictDegree(planner), code::refused);
        QVERIFY(log.contains(QStringLiteral("Resolve: -3")));
        QVERIFY(!log.contains(QStringLiteral("flowStatusRevise-----")));
        QCOMPARE(planner.TTStreamInstanceList.front().paths.front().txslotID, 0U);
    }

    void nodeListIsPrintedByPort()
    {
        const LogCapture grouping;
        const TTPlanner planner = plannerWithPort(false, {window(1, 2)}, 9);
        const LogCapture log;
        printNodeList(planner);
        QCOMPARE(log.lines().mid(0, 4),
                 (QStringList{QStringLiteral("print nodeList"), QStringLiteral("nodeID: 1"),
                              QStringLiteral("outport: 1"),
                              QStringLiteral("print TTStreamInstanceList")}));
    }
};

QTEST_APPLESS_MAIN(ConflictAnalysisTest)
#include "ConflictAnalysisTest.moc"
