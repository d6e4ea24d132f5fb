#include "planner/ConflictAnalysis.h"
#include "planner/DebugDump.h"
#include "planner/InputDocument.h"
#include "planner/IntermediateDocument.h"
#include "planner/PreProcess.h"
#include "planner/passes/BoardIndex.h"
#include "planner/search/PairKey.h"

#include "tests/planner/InputText.h"
#include "tests/planner/Windows.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TemporaryFolder.h"

#include <QtTest>

using namespace planner;

// Numbers of different kinds, and windows of different units, do not take each other's place.
static_assert(!std::is_convertible_v<InstanceIndex, HopIndex>);
static_assert(!std::is_convertible_v<PathIndex, PortIndex>);
static_assert(!std::is_convertible_v<quint32, PortIndex>);
static_assert(!std::is_convertible_v<Turn, InstanceIndex>);
static_assert(!std::is_convertible_v<RawWindow, SlotWindow>);
static_assert(!std::is_convertible_v<SlotWindow, RawWindow>);

static VirtualLinkPath pathOverOneSwitch()
{
    VirtualLinkPath path;
    path.talkerNodeID = 1;
    path.talkerOutport = 2;
    path.schedtxwin = window(10, 20);
    path.bridges.emplace_back();
    path.bridges.back().nodeID = 11;
    path.bridges.back().outport = 4;
    path.bridges.back().schedtxwin = window(11, 21);
    path.listenerNodeID = 3;
    path.listenerInport = 1;
    path.schedrxwin = window(12, 22);
    return path;
}

static QStringList linesOfPath()
{
    return {QStringLiteral("  talker  : 1 2"),
            QStringLiteral("    talker schedtxwin: 10 20"),
            QStringLiteral("  bridge  : 11 4"),
            QStringLiteral("    bridge schedtxwin: 11 21"),
            QStringLiteral("  listener: 3 1"),
            QStringLiteral("    listener schedrxwin: 12 22"),
            QStringLiteral("    -----------------------"),
            QString()};
}

class PlanningModelTest : public QObject
{
    Q_OBJECT

private slots:
    void pairsHaveKeysOfTheirOwn()
    {
        QCOMPARE(pairKey(0, 0), 0U);
        QCOMPARE(pairKey(0, 65535), 65535U);
        QCOMPARE(pairKey(1, 0), 65536U);
        QCOMPARE(pairKey(65535, 65535), 0xFFFFFFFFU);
    }

    void emptyDocumentGivesEmptyListsAndNoCycle()
    {
        const TemporaryFolder folder;
        const LogCapture log;
        InputText().save();
        PlanningContext context;
        context.clusterCycle = 7;
        context.hosts.emplace_back();
        QCOMPARE(preProcess(context), code::ok);
        QVERIFY(context.hosts.empty() && context.switches.empty() && context.links.empty());
        QVERIFY(context.virtualLinks.empty() && context.flows.empty());
        QVERIFY(context.TTStreamInstanceList.empty());
        QCOMPARE(context.clusterCycle, quint64(0));
    }

    void unknownNameIsAllOnesAndCutWhereItIsStored()
    {
        PlanningContext context;
        QCOMPARE(TopologyIndex(context).nodeIdOfName(QStringLiteral("A")), 0xFFFFFFFFU);
        QCOMPARE(context.nodeIdOfName(QStringLiteral("A")), 0xFFFFFFFFU);
        const VirtualLinkPath path = parseDatapath(context, QStringLiteral("A,S,B"));
        QCOMPARE(path.talkerNodeID, quint16(0xFFFF));
        QCOMPARE(path.bridges.front().nodeID, quint16(0xFFFF));
        QCOMPARE(path.listenerNodeID, quint16(0xFFFF));
    }

    void freshRecordsHoldZeros()
    {
        const SlotWindow none{0, 0};
        const BridgeHop hop;
        QCOMPARE(int(hop.nodeID + hop.inport + hop.outport + hop.buffernum), 0);
        QCOMPARE(hop.rxslotID + hop.txslotID, 0U);
        QCOMPARE(hop.schedtxwin, none);
        const VirtualLinkPath path;
        QCOMPARE(path.talkerNodeID + path.talkerOutport + path.talkerBuffernum, 0);
        QCOMPARE(path.listenerNodeID + path.listenerInport + path.listenerBuffernum, 0);
        QCOMPARE(path.txslotID + path.rxslotID, 0U);
        QCOMPARE(path.schedtxwin, none);
        QCOMPARE(path.schedrxwin, none);
        const LinkInfo link;
        QCOMPARE(link.srcnode + link.dstnode + link.srcport + link.dstport + link.bandwidth, 0);
        const TTFlow flow;
        QCOMPARE(flow.flowID + flow.vlid + flow.size, 0);
        QCOMPARE(flow.period, 0U);
        const TTStreamInstance instance;
        QCOMPARE(instance.flowID + instance.vlid + instance.size + instance.seq, 0);
        QCOMPARE(instance.period, 0U);
        QCOMPARE(int(VirtualLink().vlid), 0);
        QCOMPARE(int(Node().nodeID), 0);
        const NodeOutport port;
        QCOMPARE(int(port.outport), 0);
        QCOMPARE(port.degree, 0U);
    }

    void freshNodesHoldZeros()
    {
        const std::array<quint8, 6> noAddress{};
        const HostInfo host;
        QCOMPARE(host.nodeID + host.MTU + host.buffernum, 0);
        QCOMPARE(host.MAC, noAddress);
        const SwitchInfo info;
        QCOMPARE(info.nodeID + info.portnum + info.MTU + info.buffernum, 0);
        QCOMPARE(info.MAC, noAddress);
    }

    void resetLeavesNothingOfTheRunBefore()
    {
        PlanningContext context;
        QCOMPARE(context.clusterCycle + context.switchBufferNum, quint64(0));
        context.switchBufferNum = 4;
        context.clusterCycle = 1000;
        context.hosts.emplace_back();
        context.switches.emplace_back();
        context.links.emplace_back();
        context.virtualLinks.emplace_back();
        context.flows.emplace_back();
        context.TTStreamInstanceList.emplace_back();
        context.reset();
        QCOMPARE(context.clusterCycle + context.switchBufferNum, quint64(0));
        QVERIFY(context.hosts.empty() && context.switches.empty() && context.links.empty());
        QVERIFY(context.virtualLinks.empty() && context.flows.empty());
        QVERIFY(context.TTStreamInstanceList.empty());
    }

    void plannerTakesOverNothingOfTheRunBefore()
    {
        PlanningContext context;
        context.clusterCycle = 1000;
        TTPlanner planner;
        QCOMPARE(planner.slotLen + planner.schedCycle + planner.hopBufferNum, 0U);
        QCOMPARE(planner.maxRxSlot, 0);
        planner.maxRxSlot = 99;
        planner.hopBufferNum = 9;
        planner.nodeList.emplace_back();
        planner.TTStreamInstanceList.emplace_back();
        takeInstances(planner, context);
        QCOMPARE(planner.maxRxSlot, 0);
        QCOMPARE(int(planner.hopBufferNum), 0);
        QVERIFY(planner.nodeList.empty() && planner.TTStreamInstanceList.empty());
        QCOMPARE(planner.schedCycle, 1000U);
        QCOMPARE(planner.slotLen, 200U);
    }

    void dumpsStandBetweenTheirBanners()
    {
        PlanningContext context;
        context.hosts.push_back({QStringLiteral("A"), 1, {}, 1500, 4});
        context.virtualLinks.push_back({7, {VirtualLinkPath()}});
        LogCapture log;
        printTopologyInfo(context);
        QCOMPARE(log.lines(), (QStringList{QStringLiteral("printTopologyInfo-------"),
                                           QStringLiteral("host: \"A\" 1 1500 4"),
                                           QStringLiteral("printTopologyInfo end-------")}));
        log.clear();
        printVirtualLink(context);
        QCOMPARE(log.lines().first(), QStringLiteral("printVirtualLink-------"));
        QCOMPARE(log.lines().at(1), QStringLiteral("vlid: 7"));
        QCOMPARE(log.lines().last(), QStringLiteral("printVirtualLink end-------"));
    }

    void dumpNamesEveryRecord()
    {
        PlanningContext context;
        context.switches.push_back({QStringLiteral("S"), 11, {}, 8, 1500, 4});
        LinkInfo link;
        link.srcnode = 1;
        link.srcport = 2;
        link.dstnode = 11;
        link.dstport = 3;
        link.bandwidth = 100;
        context.links.push_back(link);
        context.virtualLinks.push_back({7, {pathOverOneSwitch()}});
        LogCapture log;
        printTopologyInfo(context);
        QVERIFY(log.lines().contains(QStringLiteral("switch: \"S\" 11 8 1500 4")));
        QVERIFY(log.lines().contains(QStringLiteral("link: 1 2 11 3 100")));
        log.clear();
        printVirtualLink(context);
        QCOMPARE(log.lines().mid(2, log.lines().size() - 3), linesOfPath());
    }

    void dumpOfPortsShowsTheInstancesAtEach()
    {
        TTPlanner planner;
        planner.TTStreamInstanceList.emplace_back();
        TTStreamInstance& instance = planner.TTStreamInstanceList.back();
        instance.flowID = 9;
        instance.seq = 6;
        instance.paths.push_back(pathOverOneSwitch());
        const QStringList lines =
            QStringList{QStringLiteral("print TTStreamInstanceList"), QStringLiteral("  flowID: 9"),
                        QStringLiteral("  seq: 6")} +
            linesOfPath();
        LogCapture log;
        printTTStreamInstanceList(planner.TTStreamInstanceList);
        QCOMPARE(log.lines(), lines);
        planner.nodeList = convertInstancesToNodes(planner.TTStreamInstanceList);
        log.clear();
        printNodeList(planner);
        const QStringList talker{QStringLiteral("nodeID: 1"), QStringLiteral("outport: 2")};
        const QStringList bridge{QStringLiteral("nodeID: 11"), QStringLiteral("outport: 4")};
        const QStringList ports = talker + lines + bridge + lines;
        QCOMPARE(log.lines(), QStringList{QStringLiteral("print nodeList")} + ports);
    }

    void dumpOfPortsThatAreNotGroupedYetIsEmpty()
    {
        TTPlanner planner;
        planner.TTStreamInstanceList.emplace_back();
        planner.TTStreamInstanceList.back().paths.emplace_back();
        const LogCapture log;
        printNodeList(planner);
        QCOMPARE(log.lines(), QStringList{QStringLiteral("print nodeList")});
    }

    void nameIsTakenFromHostsFirstAndWithItsCase()
    {
        PlanningContext context;
        context.switches.push_back({QStringLiteral("X"), 5, {}, 0, 0, 0});
        context.hosts.push_back({QStringLiteral("x"), 6, {}, 0, 0});
        QCOMPARE(TopologyIndex(context).nodeIdOfName(QStringLiteral("X")), 5U);
        QCOMPARE(context.nodeIdOfName(QStringLiteral("X")), 5U);
        context.hosts.push_back({QStringLiteral("X"), 7, {}, 0, 0});
        context.hosts.push_back({QStringLiteral("X"), 8, {}, 0, 0});
        QCOMPARE(TopologyIndex(context).nodeIdOfName(QStringLiteral("X")), 7U);
        QCOMPARE(context.nodeIdOfName(QStringLiteral("X")), 7U);
    }

    void instanceNumberWrapsWhileTheirCountDoesNot()
    {
        PlanningContext context;
        TTFlow flow;
        flow.flowID = 1;
        flow.period = 200;
        flow.paths.emplace_back();
        context.flows.push_back(flow);
        context.clusterCycle = quint64(65538) * 200;
        expandInstances(context);
        QCOMPARE(context.TTStreamInstanceList.size(), size_t(65538));
        const TTStreamInstance& last = context.TTStreamInstanceList.back();
        QCOMPARE(last.seq, quint16(1));
        QCOMPARE(last.paths.front().schedtxwin.start, 65537);
    }
};

QTEST_APPLESS_MAIN(PlanningModelTest)
#include "PlanningModelTest.moc"
