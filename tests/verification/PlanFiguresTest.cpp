#include "verification/PlanFigures.h"

#include "tests/support/Documents.h"

#include <QtTest>

using namespace verification;

static QString fileOf(const char* name, const char* document)
{
    return QStringLiteral(ROTUNDA_SOURCE_FOLDER "/tests/verification/cases/%1/%2")
        .arg(QString::fromLatin1(name), QString::fromLatin1(document));
}

static PlanRecords planOf(const char* name)
{
    return readPlan(QStringList{fileOf(name, "vek_input.xml")},
                    QStringList{fileOf(name, "vek_output.xml")});
}

static PlanFigures figuresOfCase(const char* name)
{
    return figuresOf(planOf(name));
}

namespace
{

/// When a frame comes and goes, and at which port it comes.
struct Row {
    int receive = 0;
    int send = 0;
    int inport = 1;
    int node = 12;
};

/// A plan with the one switch 12 and the host 5, and a transmission of these rows.
PlanRecords planOfRows(const std::vector<Row>& rows, qint64 cycle_us)
{
    PlanRecords plan;
    NetworkNode node;
    node.nodeID = 5;
    plan.network.nodes.push_back(node);
    node.nodeID = 12;
    node.isSwitch = true;
    plan.network.nodes.push_back(node);
    plan.schedule.cycle_us = cycle_us;
    ScheduledTransmission transmission;
    transmission.hopCount = rows.size();
    plan.schedule.transmissions.push_back(transmission);
    for (const Row& row : rows)
        plan.schedule.hops.push_back({row.node, row.inport, 1, row.receive, row.send});
    return plan;
}

} // namespace

Q_DECLARE_METATYPE(std::vector<Row>)

class PlanFiguresTest : public QObject
{
    Q_OBJECT

private slots:
    void loadCountsSlotsOfEachSendingPort();
    void sharedSlotIsUsedOnce();
    void slotsBeyondTheCycleCountInIt();
    void latencyRunsFromTalkerToArrival();
    void jitterIsTheSpreadOfLatencies();
    void talkerPortWithoutRowCountsAsLoad();
    void switchHoldsFramesFromArrivalToLeaving();
    void frameHeldOverTheCyclesEndCountsOnBothSides();
    void frameThatBranchesIsHeldOnce();
    void frameIsHeldInEachSlotBetween_data();
    void frameIsHeldInEachSlotBetween();
    void whatIsNoFrameInASwitchIsNotHeld();
    void switchesAreInTheOrderOfTheirNumbers();
    void fullestPortIsFirst();
    void listenerOfTwoBranchesHasTheLatenciesOfBoth();
    void latencyMayBeLessThanNone();
    void hopWithoutARowIsNotMeasured();
    void figuresBeginAtZero();
    void emptyPlanHasNoFigures();
};

void PlanFiguresTest::loadCountsSlotsOfEachSendingPort()
{
    const std::vector<PortLoad> loads = figuresOfCase("sound-plan").loads;
    QCOMPARE(loads.size(), size_t(4));
    for (size_t i = 0; i < 3; ++i) {
        QCOMPARE(loads[i].usedSlots, qint64(3));
        QCOMPARE(loads[i].cycleSlots, qint64(20));
    }
    QCOMPARE(loads[0].node, 1);
    QCOMPARE(loads[1].node, 11);
    QCOMPARE(loads[2].port, 2);
    QCOMPARE(loads[3].node, 12);
    QCOMPARE(loads[3].port, 3);
    QCOMPARE(loads[3].usedSlots, qint64(1));
}

void PlanFiguresTest::sharedSlotIsUsedOnce()
{
    QCOMPARE(figuresOfCase("slot-shared-on-a-port").loads.front().usedSlots, qint64(2));
    QCOMPARE(figuresOfCase("slot-shared-over-the-cycles-end").loads.front().usedSlots, qint64(2));
}

void PlanFiguresTest::slotsBeyondTheCycleCountInIt()
{
    QCOMPARE(figuresOfCase("slot-behind-the-cycle").loads.front().usedSlots, qint64(3));
}

void PlanFiguresTest::latencyRunsFromTalkerToArrival()
{
    const std::vector<FlowLatency> latencies = figuresOfCase("sound-plan").latencies;
    QCOMPARE(latencies.size(), size_t(3));
    QCOMPARE(latencies[0].flowID, 1);
    QCOMPARE(latencies[0].talker, 1);
    QCOMPARE(latencies[0].listener, 2);
    QCOMPARE(latencies[0].transmissions, size_t(2));
    QCOMPARE(latencies[0].smallest, qint64(2));
    QCOMPARE(latencies[0].largest, qint64(2));
    QCOMPARE(latencies[0].jitter(), qint64(0));
    QCOMPARE(latencies[0].sendWindow.first, qint64(0));
    QCOMPARE(latencies[0].sendWindow.last, qint64(1));
    QCOMPARE(latencies[0].receiveWindow.first, qint64(2));
    QCOMPARE(latencies[0].receiveWindow.last, qint64(4));
    QVERIFY(latencies[0].hasReceiveWindow);
    QCOMPARE(latencies[2].listener, 3);
    QVERIFY(!figuresOfCase("listener-without-a-window").latencies[2].hasReceiveWindow);
}

void PlanFiguresTest::jitterIsTheSpreadOfLatencies()
{
    const FlowLatency latency = figuresOfCase("wait-longer-than-buffers").latencies.front();
    QCOMPARE(latency.smallest, qint64(2));
    QCOMPARE(latency.largest, qint64(6));
    QCOMPARE(latency.jitter(), qint64(4));
}

void PlanFiguresTest::talkerPortWithoutRowCountsAsLoad()
{
    bool found = false;
    for (const PortLoad& load : figuresOfCase("talker-of-two-ports").loads)
        found = found || (load.node == 1 && load.port == 2 && load.usedSlots == 1);
    QVERIFY(found);
}

void PlanFiguresTest::switchHoldsFramesFromArrivalToLeaving()
{
    const std::vector<SwitchOccupancy> switches =
        figuresOfCase("more-frames-than-buffers").switches;
    QCOMPARE(switches.size(), size_t(2));
    QCOMPARE(switches[0].node, 11);
    QCOMPARE(switches[0].mostFrames, qint64(1));
    QCOMPARE(switches[0].slot, qint64(1));
    QCOMPARE(switches[0].buffers, 4);
    QCOMPARE(switches[1].mostFrames, qint64(2));
    QCOMPARE(switches[1].slot, qint64(2));
    QCOMPARE(switches[1].buffers, 1);
}

// A frame that comes in slot 19 of 20 and goes in slot 22 is there in slots 0, 1 and 2; one that
// comes in slot 1 and goes in slot 2 meets it.
void PlanFiguresTest::frameHeldOverTheCyclesEndCountsOnBothSides()
{
    PlanRecords plan = planOf("sound-plan");
    plan.schedule.transmissions.resize(2);
    plan.schedule.hops[5].receiveSlot = 19;
    plan.schedule.hops[5].sendSlot = 22;
    const std::vector<SwitchOccupancy> switches = figuresOf(plan).switches;
    QCOMPARE(switches[1].node, 12);
    QCOMPARE(switches[1].mostFrames, qint64(2));
    QCOMPARE(switches[1].slot, qint64(2));
}

void PlanFiguresTest::frameThatBranchesIsHeldOnce()
{
    PlanRecords plan = planOf("sound-plan");
    plan.schedule.transmissions.erase(plan.schedule.transmissions.begin(),
                                      plan.schedule.transmissions.begin() + 2);
    for (const SwitchOccupancy& occupancy : figuresOf(plan).switches)
        QCOMPARE(occupancy.mostFrames, qint64(1));
}

void PlanFiguresTest::frameIsHeldInEachSlotBetween_data()
{
    QTest::addColumn<std::vector<Row>>("rows");
    QTest::addColumn<qint64>("most");
    QTest::addColumn<qint64>("slot");
    QTest::addColumn<qint64>("cycle_us");
    const auto row = [](const char* name, const std::vector<Row>& rows, qint64 most, qint64 slot,
                        qint64 cycle_us = 4000) {
        QTest::newRow(name) << rows << most << slot << cycle_us;
    };
    row("one", {{3, 5}}, 1, 4);
    row("one goes as the next one comes", {{3, 5}, {5, 7, 2}}, 1, 4);
    row("one meets the next one", {{3, 6}, {5, 7, 2}}, 2, 6);
    row("the first of two meetings counts", {{3, 6}, {5, 7, 2}, {9, 12, 3}, {10, 12, 4}}, 2, 6);
    row("until the cycle's end", {{17, 19}}, 1, 18);
    row("until the cycle's end, and from its start", {{17, 19}, {-1, 2, 2}}, 1, 0);
    row("over the cycle's end", {{18, 22}, {1, 2, 2}}, 2, 2);
    row("before the cycle", {{-3, 1}, {19, 20, 2}}, 2, 0);
    row("a whole cycle", {{0, 20}}, 1, 0);
    row("more than a cycle", {{0, 25}}, 2, 1);
    row("more than two cycles", {{0, 45}, {3, 4, 2}}, 4, 4);
    row("to a microsecond behind the cycle's start", {{18, 19}}, 1, 0, 3999);
    row("a whole cycle from its start", {{-1, 19}}, 1, 0);
    row("before the cycle is at its end", {{-3, 1}, {17, 19, 2}}, 2, 18);
    row("who has gone counts no more", {{3, 5}, {6, 9, 2}, {7, 9, 3}}, 2, 8);
    row("cycle of a microsecond", {{3, 5}}, 400, 0, 1);
    row("two rows of one port", {{3, 5}, {2, 8}}, 1, 3);
    row("two rows of one port until the last", {{3, 5}, {2, 8}, {6, 7, 2}}, 2, 7);
    row("two rows of one port from the first", {{3, 8}, {2, 5}, {1, 3, 2}}, 2, 3);
    row("rows of two ports in any order", {{3, 5, 2}, {3, 6, 1}, {4, 5, 2}, {3, 5, 1}}, 2, 4);
}

void PlanFiguresTest::frameIsHeldInEachSlotBetween()
{
    QFETCH(std::vector<Row>, rows);
    QFETCH(qint64, cycle_us);
    const std::vector<SwitchOccupancy> switches = figuresOf(planOfRows(rows, cycle_us)).switches;
    QCOMPARE(switches.size(), size_t(1));
    QCOMPARE(switches[0].node, 12);
    QTEST(switches[0].mostFrames, "most");
    QTEST(switches[0].slot, "slot");
}

void PlanFiguresTest::whatIsNoFrameInASwitchIsNotHeld()
{
    const std::vector<Row> rows{
        {3, 3}, {5, 3, 2}, {3, 5, FlowHop::noPort}, {3, 5, 1, 5}, {3, 5, 1, 99}};
    QVERIFY(figuresOf(planOfRows(rows, 4000)).switches.empty());
    for (const qint64 cycle_us : {0, -4000})
        QVERIFY(figuresOf(planOfRows({{3, 5}}, cycle_us)).switches.empty());
}

void PlanFiguresTest::switchesAreInTheOrderOfTheirNumbers()
{
    std::vector<Row> rows;
    for (const int node : {31, 3, 12, 100, 7, 55})
        rows.push_back({3, 5, 1, node});
    PlanRecords plan = planOfRows(rows, 4000);
    for (const Row& row : rows) {
        NetworkNode node;
        node.nodeID = row.node;
        node.isSwitch = true;
        plan.network.nodes.push_back(node);
    }
    QList<int> nodes;
    for (const SwitchOccupancy& occupancy : figuresOf(plan).switches)
        nodes.append(occupancy.node);
    QCOMPARE(nodes, (QList<int>{3, 7, 12, 31, 55, 100}));
}

void PlanFiguresTest::fullestPortIsFirst()
{
    PlanRecords plan = planOf("sound-plan");
    plan.schedule.hops[3].outport = 4;
    QStringList loads;
    for (const PortLoad& load : figuresOf(plan).loads)
        loads.append(QStringLiteral("%1.%2 %3").arg(load.node).arg(load.port).arg(load.usedSlots));
    QCOMPARE(loads, (QStringList{QStringLiteral("11.2 3"), QStringLiteral("12.2 3"),
                                 QStringLiteral("1.1 2"), QStringLiteral("1.4 1"),
                                 QStringLiteral("12.3 1")}));
}

void PlanFiguresTest::listenerOfTwoBranchesHasTheLatenciesOfBoth()
{
    PlanRecords plan = planOf("sound-plan");
    std::vector<FlowEnd>& ends = plan.network.flows[1].ends;
    ends.insert(ends.begin(), {1, 1, 0});
    const FlowLatency latency = figuresOf(plan).latencies[2];
    QCOMPARE(latency.transmissions, size_t(2));
    QCOMPARE(latency.smallest, qint64(1));
    QCOMPARE(latency.largest, qint64(2));
    QCOMPARE(latency.jitter(), qint64(1));
}

// Only of a plan with faults.
void PlanFiguresTest::latencyMayBeLessThanNone()
{
    PlanRecords plan = planOf("sound-plan");
    plan.schedule.hops[2].sendSlot = -5;
    plan.schedule.hops[5].sendSlot = 6;
    const FlowLatency latency = figuresOf(plan).latencies[0];
    QCOMPARE(latency.smallest, qint64(-5));
    QCOMPARE(latency.largest, qint64(-4));
}

void PlanFiguresTest::hopWithoutARowIsNotMeasured()
{
    QCOMPARE(figuresOfCase("talker-row-missing").latencies[0].transmissions, size_t(1));
    PlanRecords plan = planOf("sound-plan");
    --plan.schedule.transmissions[2].hopCount;
    QCOMPARE(figuresOf(plan).loads.size(), size_t(3));
    const std::vector<FlowLatency> latencies = figuresOf(plan).latencies;
    QCOMPARE(latencies.size(), size_t(2));
    QCOMPARE(latencies[1].listener, 2);
    QCOMPARE(latencies[1].flowID, 2);
}

void PlanFiguresTest::figuresBeginAtZero()
{
    const PortLoad load;
    QVERIFY(load.node == 0 && load.port == 0 && load.usedSlots == 0 && load.cycleSlots == 0);
    const FlowLatency latency;
    QVERIFY(latency.flowID == 0 && latency.talker == 0 && latency.listener == 0);
    QVERIFY(latency.transmissions == 0 && latency.smallest == 0 && latency.largest == 0);
    QVERIFY(!latency.hasReceiveWindow);
    const SwitchOccupancy occupancy;
    QVERIFY(occupancy.node == 0 && occupancy.mostFrames == 0 && occupancy.slot == 0);
    QCOMPARE(occupancy.buffers, 0);
}

void PlanFiguresTest::emptyPlanHasNoFigures()
{
    const PlanFigures figures = figuresOf(PlanRecords());
    QVERIFY(figures.loads.empty() && figures.latencies.empty() && figures.switches.empty());
}

QTEST_GUILESS_MAIN(PlanFiguresTest)
#include "PlanFiguresTest.moc"
