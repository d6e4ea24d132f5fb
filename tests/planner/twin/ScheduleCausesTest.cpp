#include "tests/planner/twin/ScheduleCauses.h"
#include "tests/planner/twin/NetworkDraft.h"
#include "tests/planner/twin/RunRecord.h"
#include "tests/support/Failure.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"

#include <QtTest>

/// The checker sees what is wrong with a schedule, and knows a reason only where there is one.
class ScheduleCausesTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanPlanHasNoFinding();
    void sharedSlotWithoutReasonIsUnexplained();
    void backwardHopWithoutReasonIsUnexplained();
    void revisionMayLetTwoInstancesShareSlot();
    void branchByOtherInportMayShareSlot();
};

namespace
{

DraftNode node(const char* name, int nodeID, int buffernum)
{
    DraftNode made;
    made.name = QString::fromLatin1(name);
    made.isSwitch = name[0] == 'S';
    made.nodeID = nodeID;
    made.buffernum = buffernum;
    made.ports = 4;
    return made;
}

DraftFlow flow(int flowID, int vlid, const char* talker, const char* txwin,
               const std::vector<std::pair<const char*, const char*>>& listeners)
{
    DraftFlow made;
    made.flowID = flowID;
    made.period = 10000;
    made.vlid = vlid;
    made.talker = QString::fromLatin1(talker);
    made.txwin = QString::fromLatin1(txwin);
    for (const auto& listener : listeners)
        made.listeners.push_back(
            {QString::fromLatin1(listener.first), QString::fromLatin1(listener.second)});
    return made;
}

/// Two flows from H0 over S0 to H1.
NetworkDraft pairOfFlows(const char* firstSend, const char* secondSend, const char* receive)
{
    NetworkDraft draft;
    draft.nodes = {node("H0", 0, 4), node("H1", 1, 4), node("S0", 2, 8)};
    draft.links = {{0, 2, 0, 0}, {2, 1, 1, 0}};
    draft.virtualLinks = {{1, {words("H0 S0 H1")}}};
    draft.flows = {flow(1, 1, "H0", firstSend, {{"H1", receive}}),
                   flow(2, 1, "H0", secondSend, {{"H1", receive}})};
    return draft;
}

ScheduleDocuments plan(const NetworkDraft& draft)
{
    const TemporaryFolder folder;
    RandomNetwork network;
    network.files.push_back({QStringLiteral(u"vek_input.xml"), documentOf(draft)});
    const RunRecord product = runProduct(network);
    const RunRecord twin = runTwin(network);
    if (!product.succeeded() || !firstDifference(product, twin).isEmpty())
        failTest("the plan of this test fails");
    return {product.windows, product.schedule, twin.finalWindows};
}

int count(const std::vector<ScheduleFinding>& findings, ScheduleFinding::Kind kind,
          ScheduleFinding::Cause cause)
{
    int found = 0;
    for (const ScheduleFinding& finding : findings)
        found += finding.kind == kind && finding.cause == cause ? 1 : 0;
    return found;
}

ScheduleDocuments withText(ScheduleDocuments documents, const char* before, const char* after)
{
    if (!documents.schedule.contains(before))
        failTest(QByteArray("the schedule has no ") + before);
    documents.schedule.replace(before, after);
    return documents;
}

} // namespace

void ScheduleCausesTest::cleanPlanHasNoFinding()
{
    const ScheduleDocuments documents = plan(pairOfFlows("[0,400]", "[600,1000]", "[200,1400]"));
    QVERIFY(explainSchedule(documents).empty());
}

void ScheduleCausesTest::sharedSlotWithoutReasonIsUnexplained()
{
    const ScheduleDocuments documents = plan(pairOfFlows("[0,400]", "[600,1000]", "[200,1400]"));
    const auto findings =
        explainSchedule(withText(documents, "<txslotID>3</txslotID>", "<txslotID>0</txslotID>"));
    QCOMPARE(count(findings, ScheduleFinding::SharedSlot, ScheduleFinding::Unexplained), 1);
    QVERIFY(findings.front().text.contains(QStringLiteral(u"slot 0: flow 1 seq 0 at node 0")));
}

void ScheduleCausesTest::backwardHopWithoutReasonIsUnexplained()
{
    const ScheduleDocuments documents = plan(pairOfFlows("[0,400]", "[600,1000]", "[200,1400]"));
    const auto findings =
        explainSchedule(withText(documents, "<txslotID>4</txslotID>", "<txslotID>3</txslotID>"));
    QCOMPARE(count(findings, ScheduleFinding::BackwardHop, ScheduleFinding::Unexplained), 1);
    QCOMPARE(count(findings, ScheduleFinding::OutsideWindow, ScheduleFinding::Unexplained), 1);
}

// The talker is resolved first and sends in slots 0 and 1. It can buffer four slots, so the first
// frame must leave the switch by slot 4, but its receiver opens with slot 5 only: [5,4] overlaps
// nothing, the second frame's [5,5] neither, and both are sent in slot 5.
void ScheduleCausesTest::revisionMayLetTwoInstancesShareSlot()
{
    const auto findings = explainSchedule(plan(pairOfFlows("[0,800]", "[0,800]", "[1000,4000]")));
    QCOMPARE(count(findings, ScheduleFinding::SharedSlot, ScheduleFinding::WindowInverted), 1);
    QCOMPARE(count(findings, ScheduleFinding::InvertedWindow, ScheduleFinding::LaterRevision), 1);
    for (const ScheduleFinding& finding : findings)
        QVERIFY2(finding.cause != ScheduleFinding::Unexplained, qPrintable(finding.text));
}

// Both branches of flow 1 leave S2 by one port, having come by different ones. Only the window of
// the first branch is compared with flow 2, which sends when the second branch does.
void ScheduleCausesTest::branchByOtherInportMayShareSlot()
{
    NetworkDraft draft;
    draft.nodes = {node("H0", 0, 9), node("H1", 1, 9), node("H2", 2, 9), node("H3", 3, 9),
                   node("S0", 4, 9), node("S1", 5, 9), node("S2", 6, 9), node("S3", 7, 9)};
    // H0-S0, S0-S2, S0-S1, S1-S2, S2-S3, S3-H1, S3-H2, H3-S2
    draft.links = {{0, 4, 0, 0}, {4, 6, 1, 0}, {4, 5, 2, 0}, {5, 6, 1, 1},
                   {6, 7, 2, 0}, {7, 1, 1, 0}, {7, 2, 2, 0}, {3, 6, 0, 3}};
    draft.virtualLinks = {{1, {words("H0 S0 S1 S2 S3 H1"), words("H0 S0 S2 S3 H2")}},
                          {2, {words("H3 S2 S3 H2")}}};
    draft.flows = {flow(1, 1, "H0", "[0,200]", {{"H1", "[2000,4000]"}, {"H2", "[600,4000]"}}),
                   flow(2, 2, "H3", "[200,400]", {{"H2", "[600,800]"}})};
    const auto findings = explainSchedule(plan(draft));
    QVERIFY(count(findings, ScheduleFinding::SharedSlot, ScheduleFinding::HopNotCompared) > 0);
    QCOMPARE(count(findings, ScheduleFinding::SharedSlot, ScheduleFinding::Unexplained), 0);
}

QTEST_GUILESS_MAIN(ScheduleCausesTest)
#include "ScheduleCausesTest.moc"
