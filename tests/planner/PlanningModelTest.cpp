#include "planner/DebugDump.h"
#include "planner/InputDocument.h"
#include "planner/PreProcess.h"
#include "planner/passes/BoardIndex.h"

#include "tests/planner/InputText.h"
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

class PlanningModelTest : public QObject
{
    Q_OBJECT

private slots:
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
