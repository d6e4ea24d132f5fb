#include "planner/TTPlanning.h"
#include "planner/ConflictAnalysis.h"
#include "planner/IntermediateDocument.h"
#include "planner/passes/PortGroups.h"
#include "planner/passes/RepetitionWatch.h"

#include "tests/planner/Windows.h"
#include "tests/support/Documents.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TemporaryFolder.h"

#include <QDir>
#include <QtTest>

using namespace planner;

static QString outputFile()
{
    return QStringLiteral("OutputXML/vek_output.xml");
}

/// A path from talker 1 over switch 11 to a listener.
static VirtualLinkPath path(quint16 listener, SlotWindow send, SlotWindow forward,
                            SlotWindow receive)
{
    VirtualLinkPath made;
    made.talkerNodeID = 1;
    made.talkerOutport = 1;
    made.talkerBuffernum = 4;
    made.schedtxwin = send;
    made.bridges.emplace_back();
    made.bridges.front().nodeID = 11;
    made.bridges.front().inport = 1;
    made.bridges.front().outport = listener;
    made.bridges.front().schedtxwin = forward;
    made.listenerNodeID = listener;
    made.listenerInport = 1;
    made.schedrxwin = receive;
    return made;
}

static TTStreamInstance instance(quint16 flowID, std::list<VirtualLinkPath> paths, quint16 seq = 0)
{
    TTStreamInstance made;
    made.flowID = flowID;
    made.seq = seq;
    made.paths = std::move(paths);
    return made;
}

/// Writes the intermediate document of the instances and plans it.
static qint32 plan(const std::list<TTStreamInstance>& instances, TTPlanner& planner)
{
    PlanningContext context;
    context.clusterCycle = 10000;
    context.TTStreamInstanceList = instances;
    writeHsDocument(context);
    return TTPlanning(planner);
}

static VirtualLinkPath plainPath()
{
    return path(2, window(3, 9), window(5, 12), window(7, 20));
}

/// The schedule of one instance that travels on plainPath() and on another path.
static QByteArray documentOfPathAnd(const VirtualLinkPath& other)
{
    const LogCapture log;
    TTPlanner planner;
    plan({instance(1, {plainPath(), other})}, planner);
    return readFile(outputFile());
}

static int conflictLines(const LogCapture& log)
{
    return log.lines().filter(QStringLiteral("resolve conflict:")).size();
}

class TTPlanningTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<TemporaryFolder>(); }

    void cleanup() { m_folder.reset(); }

    void missingFolderIsReported()
    {
        const LogCapture log;
        TTPlanner planner;
        QCOMPARE(TTPlanning(planner), code::folderMissing);
        QCOMPARE(log.lines().first(), QStringLiteral("TTPlanning start----------"));
        QCOMPARE(log.lines().last(), QStringLiteral("cannot find vek_hs.xml"));
    }

    void listenerHearsOfEachPartInItsOrder()
    {
        const LogCapture log;
        PlanningContext context;
        context.clusterCycle = 10000;
        context.TTStreamInstanceList = {
            instance(1, {plainPath()}),
            instance(2, {path(2, window(3, 9), window(4, 12), window(6, 20))})};
        writeHsDocument(context);
        std::vector<StagePart> parts;
        TTPlanner planner;
        QCOMPARE(TTPlanning(planner, [&](StagePart part) { parts.push_back(part); }), code::ok);
        const auto pass = {StagePart::Degrees, StagePart::Resolve, StagePart::Revise,
                           StagePart::Watch};
        std::vector<StagePart> expected{StagePart::ReadWindows, StagePart::Group};
        for (int count = conflictLines(log); count > 0; --count)
            expected.insert(expected.end(), pass);
        expected.insert(expected.end(), {StagePart::Degrees, StagePart::Watch, StagePart::GiveBack,
                                         StagePart::Finalise, StagePart::WriteSchedule});
        QVERIFY(conflictLines(log) > 0);
        QVERIFY(parts == expected);
    }

    void documentThatDoesNotParseIsReported()
    {
        const LogCapture log;
        writeFile(QStringLiteral("OutputXML/vek_hs.xml"), "<vek_hs>");
        TTPlanner planner;
        QCOMPARE(TTPlanning(planner), code::unreadable);
        QCOMPARE(log.lines().last(), QStringLiteral("parse vek_hs.xml failed"));
    }

    void folderWithoutIntermediateDocumentGivesAnEmptySchedule()
    {
        const LogCapture log;
        QDir().mkdir(QStringLiteral("OutputXML"));
        TTPlanner planner;
        planner.schedCycle = 5;
        QCOMPARE(TTPlanning(planner), code::ok);
        QCOMPARE(readFile(outputFile()),
                 QByteArray("<vek_output xmlns=\"urn:ietf:params:xml:ns:yang:vek_output\">\n"
                            "    <schedCycle>0</schedCycle>\n"
                            "    <slotLen>0</slotLen>\n"
                            "    <flows/>\n"
                            "</vek_output>\n"));
        QCOMPARE(log.lines().last(), QStringLiteral("TTPlanning end----------"));
    }

    void withoutConflictEverySlotIsItsWindowsStart()
    {
        const LogCapture log;
        TTPlanner planner;
        QCOMPARE(
            plan({instance(1, {path(2, window(3, 9), window(5, 12), window(7, 20))})}, planner),
            code::ok);
        QCOMPARE(log.count(QStringLiteral("maxDegree: 0 node: 0 outport: 0")), 1);
        QCOMPARE(conflictLines(log), 0);
        QCOMPARE(readFile(outputFile()),
                 QByteArray(R"(<vek_output xmlns="urn:ietf:params:xml:ns:yang:vek_output">
    <schedCycle>10000</schedCycle>
    <slotLen>200</slotLen>
    <flows>
        <flow>
            <Instance>
                <flowID>1</flowID>
                <seq>0</seq>
                <path_slot>
                    <talker>
                        <nodeID>1</nodeID>
                        <outport>1</outport>
                        <txslotID>3</txslotID>
                    </talker>
                    <bridges>
                        <bridge>
                            <nodeID>11</nodeID>
                            <inport>1</inport>
                            <rxslotID>3</rxslotID>
                            <outport>2</outport>
                            <txslotID>5</txslotID>
                        </bridge>
                    </bridges>
                    <listeners>
                        <listener>
                            <nodeID>2</nodeID>
                            <inport>1</inport>
                            <rxslotID>7</rxslotID>
                        </listener>
                    </listeners>
                </path_slot>
            </Instance>
        </flow>
    </flows>
</vek_output>
)"));
    }

    void revisedHopSendsAtTheStartOfItsNarrowedWindow()
    {
        const LogCapture log;
        TTPlanner planner;
        // Both talk in slot 3; the second is moved to 4 and its switch must wait for it.
        QCOMPARE(plan({instance(1, {path(2, window(3, 9), window(4, 30), window(5, 40))}),
                       instance(2, {path(3, window(3, 9), window(4, 30), window(5, 40))})},
                      planner),
                 code::ok);
        QCOMPARE(conflictLines(log), 1);
        const VirtualLinkPath& second = planner.TTStreamInstanceList.back().paths.front();
        QCOMPARE(second.txslotID, 4U);
        QCOMPARE(second.bridges.front().txslotID, 5U);
        QCOMPARE(second.bridges.front().rxslotID, 4U);
        QCOMPARE(second.rxslotID, 5U);
    }

    void failedResolutionWritesNoDocumentAndKeepsTheOldOne()
    {
        const LogCapture log;
        writeFile(outputFile(), "old");
        TTPlanner planner;
        QCOMPARE(plan({instance(1, {path(2, window(3, 3), window(4, 30), window(5, 40))}),
                       instance(2, {path(3, window(3, 3), window(4, 30), window(5, 40))})},
                      planner),
                 code::refused);
        QCOMPARE(log.lines().mid(log.lines().size() - 3),
                 (QStringList{QStringLiteral("Resolve: -3"), QStringLiteral("resolve conflict: -3"),
                              QStringLiteral("resolve conflict failed")}));
        QCOMPARE(readFile(outputFile()), QByteArray("old"));
    }

    void pathsThroughOneHopGiveOneBridgeAndTwoListeners()
    {
        VirtualLinkPath other = path(2, window(3, 9), window(6, 12), window(8, 20));
        other.listenerNodeID = 3;
        const QByteArray document = documentOfPathAnd(other);
        QCOMPARE(document.count("<bridge>"), 1);
        QCOMPARE(document.count("<listener>"), 2);
        QCOMPARE(document.count("<txslotID>5</txslotID>"), 1);
    }

    void pathsIntoTwoPortsOfOneListenerGiveTwoListeners()
    {
        VirtualLinkPath other = plainPath();
        other.listenerInport = 2;
        QCOMPARE(documentOfPathAnd(other).count("<listener>"), 2);
    }

    void pathsThroughTwoInportsGiveTwoBridges()
    {
        VirtualLinkPath other = plainPath();
        other.bridges.front().inport = 2;
        const QByteArray document = documentOfPathAnd(other);
        QCOMPARE(document.count("<bridge>"), 2);
        QCOMPARE(document.count("<listener>"), 1);
    }

    void adjacentFlowsOfOneNumberShareTheirElement()
    {
        const LogCapture log;
        TTPlanner planner;
        const auto at = [](quint16 flowID, qint32 slot, quint16 seq) {
            return instance(flowID,
                            {path(2, window(slot, slot), window(slot + 1, slot + 1),
                                  window(slot + 2, slot + 2))},
                            seq);
        };
        plan({at(7, 0, 0), at(7, 10, 1), at(8, 20, 0), at(7, 30, 0)}, planner);
        const QByteArray document = readFile(outputFile());
        QCOMPARE(document.count("<flow>"), 3);
        QCOMPARE(document.count("<Instance>"), 4);
    }

    void leadingFlowZeroIsMissing()
    {
        TTPlanner planner;
        planner.TTStreamInstanceList = {
            instance(0, {path(2, window(0, 0), window(1, 1), window(2, 2))}),
            instance(4, {path(2, window(3, 3), window(4, 4), window(5, 5))}),
            instance(0, {path(2, window(6, 6), window(7, 7), window(8, 8))})};
        writeOutputDocument(planner);
        const QByteArray document = readFile(outputFile());
        QCOMPARE(document.count("<Instance>"), 2);
        QCOMPARE(document.count("<flow>"), 2);
        QVERIFY(document.indexOf("<flowID>4<") < document.indexOf("<flowID>0<"));
    }

    void unwritableDocumentGoesUnnoticed()
    {
        const LogCapture log;
        QDir().mkpath(outputFile()); // a folder stands where the file should go
        TTPlanner planner;
        QCOMPARE(TTPlanning(planner), code::ok);
        QVERIFY(!planner.isCut); // the disk has room
    }

    void instanceWithoutPathOrSwitchIsWrittenWithoutThem()
    {
        TTPlanner planner;
        VirtualLinkPath direct = path(2, window(0, 0), window(1, 1), window(2, 2));
        direct.bridges.clear();
        planner.TTStreamInstanceList = {instance(1, {}), instance(2, {direct})};
        finalizeSlots(planner);
        writeOutputDocument(planner);
        const QByteArray document = readFile(outputFile());
        QCOMPARE(document.count("<bridges/>"), 2);
        QCOMPARE(document.count("<talker>"), 1);
    }

    void returnToAnEarlierStateIsNoticed()
    {
        const LogCapture log;
        PortGroups groups =
            groupByPort({instance(1, {path(2, window(0, 0), window(1, 1), window(2, 2))})});
        SlotWindow& moving = groups.board.hop(HopIndex()).window;
        RepetitionWatch watch(groups.board);
        // Two passes lead in, then the state goes round in three.
        const int starts[] = {0, 1, 2, 3, 4, 2, 3, 4, 2, 3, 4};
        int noticedAfter = 0;
        for (int pass = 1; pass <= 10 && noticedAfter == 0; ++pass) {
            watch.beforePass(groups.board);
            moving.start = starts[pass];
            if (watch.isBack(groups.board, {InstanceIndex()}))
                noticedAfter = pass;
        }
        QCOMPARE(noticedAfter, 6);
        QCOMPARE(watch.passes(), quint64(6));
    }

private:
    std::unique_ptr<TemporaryFolder> m_folder;
};

QTEST_APPLESS_MAIN(TTPlanningTest)
#include "TTPlanningTest.moc"
