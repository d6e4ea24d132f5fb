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

void PlanFiguresTest::emptyPlanHasNoFigures()
{
    const PlanFigures figures = figuresOf(PlanRecords());
    QVERIFY(figures.loads.empty() && figures.latencies.empty() && figures.switches.empty());
}

QTEST_GUILESS_MAIN(PlanFiguresTest)
#include "PlanFiguresTest.moc"
