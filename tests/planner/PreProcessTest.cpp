#include "planner/PreProcess.h"
#include "planner/IntermediateDocument.h"

#include "tests/planner/InputText.h"
#include "tests/planner/Windows.h"
#include "tests/support/Documents.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Spoken.h"
#include "tests/support/TemporaryFolder.h"

#include <QDir>
#include <QtTest>

using namespace planner;

using Listeners = QList<QPair<QString, QString>>;

static Listeners listener(const char* window)
{
    return {{QStringLiteral("B"), QString::fromUtf8(window)}};
}

static void addFlow(InputText& input, int id, const char* period, const char* txwin,
                    const char* rxwin)
{
    input.flow(id, QString::fromUtf8(period), 1, QStringLiteral("A"), QString::fromUtf8(txwin),
               listener(rxwin));
}

static QString hsFile()
{
    return QStringLiteral("OutputXML/vek_hs.xml");
}

/// A context with one flow of one path over the given number of switches.
static PlanningContext singleFlow(int hops, int buffers, SlotWindow send, SlotWindow receive)
{
    PlanningContext context;
    context.switchBufferNum = static_cast<quint16>(buffers);
    TTFlow flow;
    flow.flowID = 1;
    flow.period = 10000;
    flow.paths.emplace_back();
    flow.paths.front().schedtxwin = send;
    flow.paths.front().schedrxwin = receive;
    for (int i = 0; i < hops; ++i) {
        flow.paths.front().bridges.emplace_back();
        flow.paths.front().bridges.back().nodeID = static_cast<quint16>(11 + i);
    }
    context.flows.push_back(flow);
    return context;
}

static const VirtualLinkPath& onlyPath(const PlanningContext& context)
{
    return context.flows.front().paths.front();
}

class PreProcessTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<TemporaryFolder>(); }

    void cleanup() { m_folder.reset(); }

    void noFlowsGiveAnEmptyDocument()
    {
        const LogCapture log;
        lineNetwork(1, 4).save();
        PlanningContext context;
        QCOMPARE(preProcess(context), code::ok);
        QCOMPARE(readFile(hsFile()),
                 QByteArray("<vek_hs xmlns=\"urn:ietf:params:xml:ns:yang:vek_hs\">\n"
                            "    <slotLen>200</slotLen>\n"
                            "    <schedCycle>0</schedCycle>\n"
                            "    <flows/>\n"
                            "</vek_hs>\n"));
        QVERIFY(log.contains(QStringLiteral("std::vector()")));
        QVERIFY(log.contains(QStringLiteral("clusterCycle: 0")));
    }

    void singleFlowsPeriodIsTheCycle()
    {
        const LogCapture log;
        PlanningContext context;
        QCOMPARE(lcmReduce(context, {2500}), 2500U);
        QCOMPARE(context.clusterCycle, quint64(2500));
        QCOMPARE(log.lines(), QStringList{QStringLiteral("std::vector(2500)")});
    }

    void periodsAreReducedPairByPair()
    {
        const LogCapture log;
        PlanningContext context;
        QCOMPARE(lcmReduce(context, {1000, 3000, 2000}), 6000U);
        const QStringList rounds{QStringLiteral("std::vector(1000, 3000, 2000)"),
                                 QStringLiteral("std::vector(3000, 6000)"),
                                 QStringLiteral("std::vector(6000)")};
        QCOMPARE(log.lines(), rounds);
    }

    void multipleBeyond32BitsIsCutSilently()
    {
        const LogCapture log;
        PlanningContext context;
        const quint64 multiple = 4294967291ULL * 4294967279ULL;
        QCOMPARE(lcmReduce(context, {4294967291U, 4294967279U}), static_cast<quint32>(multiple));
        TTFlow flow;
        for (quint32 period : {4294967291U, 4294967279U}) {
            flow.period = period;
            context.flows.push_back(flow);
        }
        QCOMPARE(computeClusterCycle(context), static_cast<quint32>(multiple));
    }

    void cycleAskedForIsTheCycleThatIsComputed()
    {
        const std::vector<std::vector<quint32>> cases{{},
                                                      {2500},
                                                      {1000, 3000, 2000},
                                                      {4294967291U, 4294967279U},
                                                      {4294967291U, 2, 3},
                                                      {65536, 65536, 7},
                                                      {0},
                                                      {0, 1000},
                                                      {1000, 0},
                                                      {0, 0},
                                                      {7, 0, 0, 3},
                                                      // Their product is small in 64 bits.
                                                      {577090037, 2444712011U, 162445655},
                                                      {65537, 65539, 65543},
                                                      {6, 10, 15},
                                                      {4294967295U},
                                                      {4294967295U, 1},
                                                      {4294967295U, 3, 5}};
        for (const std::vector<quint32>& periods : cases) {
            PlanningContext context;
            for (const quint32 period : periods) {
                context.flows.emplace_back();
                context.flows.back().period = period;
            }
            LogCapture log;
            const quint32 asked = clusterCycleOf(context);
            QCOMPARE(context.clusterCycle, quint64(0));
            QVERIFY(log.lines().isEmpty());
            QCOMPARE(asked, computeClusterCycle(context));
        }
    }

    void listenerHearsOfEachPartInItsOrder()
    {
        const LogCapture log;
        lineNetwork(1, 4).save();
        std::vector<StagePart> parts;
        PlanningContext context;
        QCOMPARE(preProcess(context, [&](StagePart part) { parts.push_back(part); }), code::ok);
        const std::vector<StagePart> expected{StagePart::ReadInput, StagePart::Windows,
                                              StagePart::Expand, StagePart::LogInstances,
                                              StagePart::WriteWindows};
        QVERIFY(parts == expected);
    }

    void periodThatIsNoMultipleOfASlotIsRoundedDown()
    {
        const LogCapture log;
        InputText input = lineNetwork(1, 4);
        addFlow(input, 1, "300", "[0,2000]", "[200,4000]");
        addFlow(input, 2, "600", "[0,2000]", "[200,4000]");
        input.save();
        PlanningContext context;
        QCOMPARE(preProcess(context), code::ok);
        QCOMPARE(context.clusterCycle, quint64(600));
        QCOMPARE(context.TTStreamInstanceList.size(), size_t(3));
        QCOMPARE(context.TTStreamInstanceList.front().period, 1U);
    }

    void sendWindowOfOneSlotPasses()
    {
        const LogCapture log;
        PlanningContext context = singleFlow(2, 4, window(10, 20), window(5, 12));
        QCOMPARE(checkTimeWindows(context), code::ok);
        QCOMPARE(onlyPath(context).schedtxwin, window(10, 10));
    }

    void unreasonableWindowOfTheThirdFlowRefusesAll()
    {
        LogCapture log;
        InputText input = lineNetwork(1, 4);
        addFlow(input, 1, "10000", "[0,2000]", "[200,4000]");
        addFlow(input, 2, "10000", "[0,2000]", "[200,4000]");
        addFlow(input, 3, "10000", "[2000,4000]", "[200,1000]");
        input.save();
        PlanningContext context;
        QCOMPARE(preProcess(context), code::refused);
        QCOMPARE(log.lines().mid(log.lines().size() - 2),
                 (QStringList{QStringLiteral("10 3"), QStringLiteral("TIMEWINDOW_UNREASONABLE")}));
        QVERIFY(!QDir().exists(QStringLiteral("OutputXML")));
    }

    void workedExampleOfTwoSwitches()
    {
        const LogCapture log;
        PlanningContext context = singleFlow(2, 4, window(10, 20), window(13, 40));
        limitReceiveWindows(context);
        QCOMPARE(onlyPath(context).schedrxwin, window(13, 28));
        QCOMPARE(limitSendWindows(context), code::ok);
        QCOMPARE(onlyPath(context).schedtxwin, window(10, 20));
        deriveBridgeWindows(context);
        QCOMPARE(onlyPath(context).bridges.front().schedtxwin, window(11, 24));
        QCOMPARE(onlyPath(context).bridges.back().schedtxwin, window(13, 28));
    }

    void laterSwitchesGrowByFourWhateverTheBuffers()
    {
        PlanningContext context = singleFlow(3, 9, window(10, 20), window(0, 1000));
        deriveBridgeWindows(context);
        const std::list<BridgeHop>& hops = onlyPath(context).bridges;
        QCOMPARE(hops.front().schedtxwin.end, 29);
        QCOMPARE(std::next(hops.begin())->schedtxwin.end, 33);
        QCOMPARE(hops.back().schedtxwin.end, 37);
    }

    void singleSwitchNeverAppliesTheConstantFour()
    {
        PlanningContext context = singleFlow(1, 9, window(10, 20), window(0, 1000));
        deriveBridgeWindows(context);
        QCOMPARE(onlyPath(context).bridges.front().schedtxwin, window(11, 29));
    }

    void sharedPortIsNarrowedOnTheEarlierPathOnly()
    {
        PlanningContext context = singleFlow(1, 4, window(0, 20), window(1, 10));
        std::list<VirtualLinkPath>& paths = context.flows.front().paths;
        paths.front().bridges.front() = {7, 1, 3, {}, 0, 0, 0};
        paths.push_back(paths.front());
        paths.back().bridges.front().inport = 2;
        paths.back().schedrxwin = window(8, 30);
        deriveBridgeWindows(context);
        // Alone the first path would have [1,10] and the second [8,24].
        QCOMPARE(paths.front().bridges.front().schedtxwin, window(8, 10));
        QCOMPARE(paths.back().bridges.front().schedtxwin, window(8, 24));
    }

    void portThatAPathPassesTwiceIsNarrowedBothTimes()
    {
        PlanningContext context = singleFlow(3, 4, window(0, 20), window(3, 40));
        std::list<BridgeHop>& bridges = context.flows.front().paths.front().bridges;
        bridges.front().nodeID = bridges.back().nodeID = 7;
        bridges.front().outport = bridges.back().outport = 3;
        deriveBridgeWindows(context);
        // Alone the first pass would have [1,24] and the second [3,32].
        QCOMPARE(bridges.front().schedtxwin, window(3, 24));
        QCOMPARE(bridges.back().schedtxwin, window(3, 24));
    }

    void sendWindowIsNarrowedOnAllPaths()
    {
        PlanningContext context = singleFlow(2, 4, window(0, 50), window(0, 12));
        std::list<VirtualLinkPath>& paths = context.flows.front().paths;
        paths.push_back(paths.front());
        paths.back().schedrxwin = window(20, 100);
        QCOMPARE(limitSendWindows(context), code::refused);
        paths.back().schedrxwin = window(16, 100);
        QCOMPARE(limitSendWindows(context), code::ok);
        QCOMPARE(paths.front().schedtxwin, window(8, 10));
        QCOMPARE(paths.back().schedtxwin, window(8, 10));
    }

    void instanceIsShiftedByItsNumberOfPeriods()
    {
        const LogCapture log;
        InputText input = lineNetwork(1, 4);
        addFlow(input, 1, "5000", "[0,2000]", "[200,4000]");
        addFlow(input, 2, "15000", "[0,2000]", "[200,4000]");
        input.save();
        PlanningContext context;
        preProcess(context);
        auto instance = context.TTStreamInstanceList.begin();
        const VirtualLinkPath first = instance->paths.front();
        std::advance(instance, 2);
        QCOMPARE(int(instance->seq), 2);
        const VirtualLinkPath& third = instance->paths.front();
        QCOMPARE(third.schedtxwin, window(first.schedtxwin.start + 50, first.schedtxwin.end + 50));
        QCOMPARE(third.schedrxwin, window(first.schedrxwin.start + 50, first.schedrxwin.end + 50));
        const SlotWindow& hop = first.bridges.front().schedtxwin;
        QCOMPARE(third.bridges.front().schedtxwin, window(hop.start + 50, hop.end + 50));
    }

    void documentOfOneFlowIsWrittenToTheByte()
    {
        const LogCapture log;
        InputText input = lineNetwork(1, 4);
        addFlow(input, 5, "1000", "[0,1000]", "[200,2000]");
        input.save();
        PlanningContext context;
        QCOMPARE(preProcess(context), code::ok);
        QCOMPARE(readFile(hsFile()),
                 QByteArray(R"(<vek_hs xmlns="urn:ietf:params:xml:ns:yang:vek_hs">
    <slotLen>200</slotLen>
    <schedCycle>1000</schedCycle>
    <flows>
        <flow>
            <Instance>
                <flowID>5</flowID>
                <vlid>1</vlid>
                <seq>0</seq>
                <period>5</period>
                <size>64</size>
                <path_schedwin>
                    <path>
                        <talker>
                            <nodeID>1</nodeID>
                            <outport>1</outport>
                            <schedtxwin>[0,4]</schedtxwin>
                            <buffernum>4</buffernum>
                        </talker>
                        <bridge>
                            <nodeID>11</nodeID>
                            <inport>1</inport>
                            <outport>2</outport>
                            <schedtxwin>[1,8]</schedtxwin>
                            <buffernum>4</buffernum>
                        </bridge>
                        <listener>
                            <nodeID>2</nodeID>
                            <inport>1</inport>
                            <schedrxwin>[1,8]</schedrxwin>
                            <buffernum>4</buffernum>
                        </listener>
                    </path>
                </path_schedwin>
            </Instance>
        </flow>
    </flows>
</vek_hs>
)"));
        const QStringList dump{
            QStringLiteral("print TTStreamInstanceList"),
            QStringLiteral("  flowID: 5"),
            QStringLiteral("  seq: 0"),
            QStringLiteral("  talker  : 1 1"),
            QStringLiteral("    talker schedtxwin: 0 4"),
            QStringLiteral("  bridge  : 11 2"),
            QStringLiteral("    bridge schedtxwin: 1 8"),
            QStringLiteral("  listener: 2 1"),
            QStringLiteral("    listener schedrxwin: 1 8"),
            QStringLiteral("    -----------------------"),
            QString(),
        };
        QCOMPARE(log.lines().mid(log.lines().size() - dump.size()), dump);
    }

    void leadingFlowZeroIsLostAndALaterOneIsKept()
    {
        const LogCapture log;
        InputText input = lineNetwork(1, 4);
        for (int id : {0, 7, 7, 0})
            addFlow(input, id, "1000", "[0,1000]", "[200,2000]");
        input.save();
        PlanningContext context;
        preProcess(context);
        QCOMPARE(context.TTStreamInstanceList.size(), size_t(4));
        const QByteArray document = readFile(hsFile());
        QCOMPARE(document.count("<flow>"), 2);
        QCOMPARE(document.count("<Instance>"), 3);
        QCOMPARE(document.count("<flowID>0</flowID>"), 1);
    }

    void unwritableDocumentGoesUnnoticed()
    {
        const LogCapture log;
        InputText input = lineNetwork(1, 4);
        addFlow(input, 1, "1000", "[0,1000]", "[200,2000]");
        input.save();
        QDir().mkpath(hsFile()); // a folder stands where the file should go
        PlanningContext context;
        QCOMPARE(preProcess(context), code::ok);
    }

    void incommensurablePeriodsAreRefusedBeforeTheyFillTheMemory()
    {
        const LogCapture log;
        InputText input = lineNetwork(1, 4);
        addFlow(input, 1, "1", "[0,1000]", "[200,2000]");
        addFlow(input, 2, "4294967291", "[0,1000]", "[200,2000]");
        input.save();
        PlanningContext context;
        QCOMPARE(preProcess(context), code::unreadable);
        QCOMPARE(log.lines().last(),
                 QStringLiteral("planning: the cycle of 4294967291 us holds 4294967292 "
                                "transmissions with 12884901876 hops, more than the 16777216 that "
                                "fit 6144 MiB"));
    }

    // Fewer transmissions of longer paths take as much memory as many short ones.
    void hopsAreLimitedAndNotTransmissions()
    {
        const LogCapture log;
        InputText input = lineNetwork(98, 4);
        addFlow(input, 1, "200", "[0,1000]", "[0,4000000]");
        addFlow(input, 2, "33600000", "[0,1000]", "[0,4000000]");
        input.save();
        PlanningContext context;
        QCOMPARE(preProcess(context), code::unreadable);
        QVERIFY(log.lines().last().startsWith(
            QStringLiteral("planning: the cycle of 33600000 us holds 168001 transmissions with "
                           "16800100 hops, more than")));
    }

    void inputCodesArePassedOn()
    {
        const LogCapture log;
        PlanningContext context;
        QCOMPARE(preProcess(context), code::folderMissing);
        writeFile(QStringLiteral("ResourceXML/vek_input.xml"), "no document");
        QCOMPARE(preProcess(context), code::unreadable);
        QVERIFY(!QDir().exists(QStringLiteral("OutputXML")));
    }

    void windowTextStartsWithTheStart()
    {
        QCOMPARE(windowText(window(-3, 15)), std::string("[-3,15]"));
    }

private:
    std::unique_ptr<TemporaryFolder> m_folder;
};

QTEST_APPLESS_MAIN(PreProcessTest)
#include "PreProcessTest.moc"
