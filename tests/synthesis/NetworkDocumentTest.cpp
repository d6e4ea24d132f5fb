#include "planner/InputDocument.h"

#include "tests/planner/Windows.h"
#include "tests/support/RandomSource.h"
#include "tests/support/Text.h"
#include "tests/synthesis/EngineProof.h"
#include "tests/synthesis/TestNetwork.h"

#include <QtTest>

// Which flows are named before a search, and what is written back after it.

using namespace synthesis;

static DraftFlow& addPlain(TestNetwork& network)
{
    return network.addFlow(words("A S T Z"), 4000, u("[0,4000]"), u("[0,4000]"));
}

static QStringList named(const std::vector<ObstructedFlow>& flows)
{
    static const QMap<Obstacle, const char*> names{{Obstacle::OtherType, "other type"},
                                                   {Obstacle::WrongTalker, "wrong talker"},
                                                   {Obstacle::UnknownListener, "unknown listener"},
                                                   {Obstacle::BehindDisagreement, "behind"},
                                                   {Obstacle::LeadingZero, "leading zero"},
                                                   {Obstacle::PeriodZero, "period zero"},
                                                   {Obstacle::NoPath, "no path"},
                                                   {Obstacle::SharedNumber, "shared number"},
                                                   {Obstacle::NoBuffers, "no buffers"},
                                                   {Obstacle::PeriodBelowSlot, "period below slot"},
                                                   {Obstacle::CycleTooLong, "cycle too long"}};
    QStringList lines;
    for (const ObstructedFlow& flow : flows)
        lines.append(QStringLiteral("%1 %2").arg(QString::number(flow.flow),
                                                 QString::fromLatin1(names.value(flow.obstacle))));
    return lines;
}

static QStringList named(const TestNetwork& network)
{
    return named(parsed(documentOf(network.draft)).network.obstructed);
}

/// Adds a flow whose frames pass a single switch, or none of them anything.
static void addFlow(planner::PlanningContext& context, quint16 flowID, quint32 period,
                    const QList<quint16>& switches)
{
    planner::TTFlow flow;
    flow.flowID = flowID;
    flow.period = period;
    for (const quint16 node : switches) {
        planner::BridgeHop hop;
        hop.nodeID = node;
        flow.paths.emplace_back();
        flow.paths.back().bridges.push_back(hop);
    }
    context.flows.push_back(flow);
}

static void addSwitch(planner::PlanningContext& context, quint16 nodeID, quint16 buffernum)
{
    context.switches.emplace_back();
    context.switches.back().nodeID = nodeID;
    context.switches.back().buffernum = buffernum;
}

static WindowBounds boundsOf(const QString& text)
{
    const planner::RawWindow raw = planner::parseSlotWindow(text);
    return {raw.start, raw.end};
}

class NetworkDocumentTest : public QObject
{
    Q_OBJECT

private slots:
    void flowsAreNamedInDocumentOrder()
    {
        TestNetwork network;
        addPlain(network).flowID = 0;
        addPlain(network).type = QStringLiteral("\"RC\"");
        addPlain(network);
        addPlain(network).flowID = 3;
        addPlain(network);
        addPlain(network).talker = QStringLiteral("B");
        addPlain(network);
        addPlain(network).type = QStringLiteral("\"BE\"");
        QCOMPARE(named(network).join(QStringLiteral(", ")),
                 QStringLiteral("0 leading zero, 1 other type, 2 shared number, 3 shared number, "
                                "5 wrong talker, 6 behind, 7 other type"));
    }

    void aListenerOffItsLinkCutsOffWhatIsBehind()
    {
        TestNetwork network;
        addPlain(network);
        addPlain(network).listeners.front().name = QStringLiteral("Y");
        addPlain(network);
        addPlain(network).type = QStringLiteral("\"RC\"");
        addPlain(network);
        QCOMPARE(named(network).join(QStringLiteral(", ")),
                 QStringLiteral("1 unknown listener, 2 behind, 3 other type, 4 behind"));
        QVERIFY(parsed(documentOf(network.draft)).network.isSearchable());
    }

    void whatIsBehindADisagreementMayLackAnything()
    {
        TestNetwork network;
        addPlain(network).talker = QStringLiteral("B");
        addPlain(network);
        QByteArray document = documentOf(network.draft);
        const int place = document.lastIndexOf("<talker>");
        document.replace(place, document.size() - place,
                         document.mid(place).replace("talker>", "other>"));
        const InputNetwork read = parsed(document).network;
        QCOMPARE(read.damage, QString());
        QCOMPARE(named(read.obstructed).join(QStringLiteral(", ")),
                 QStringLiteral("0 wrong talker, 1 behind"));
    }

    void aFlowMayLackItsListeners()
    {
        TestNetwork network;
        addPlain(network);
        QByteArray document = documentOf(network.draft);
        document.replace("listeners>", "others>");
        const ParsedNetwork read = parsed(document);
        QCOMPARE(read.network.damage, QString());
        Found plan;
        plan.flows.emplace_back();
        plan.flows.back().receive.emplace_back();
        const auto flows = narrowedWindows(*read.document, read.network, plan);
        QCOMPARE(flows.size(), std::size_t(1));
        QVERIFY(flows.front().listeners.empty());
    }

    void whatThePlanningRefusesIsNamed()
    {
        TestNetwork network;
        addPlain(network).period = 0;
        addPlain(network).listeners.clear();
        network.draft.virtualLinks.back().paths.clear();
        QCOMPARE(named(network).join(QStringLiteral(", ")),
                 QStringLiteral("0 period zero, 1 no path"));
        QVERIFY(!parsed(documentOf(network.draft)).network.isSearchable());
    }

    void buffersOfZeroAreNamedForAllFlows()
    {
        TestNetwork network;
        addPlain(network);
        network.addFlow(words("A S Y"), 4000, u("[0,4000]"), u("[0,4000]"));
        network.draft.nodes.back().buffernum = 0;
        QCOMPARE(named(network).join(QStringLiteral(", ")),
                 QStringLiteral("0 no buffers, 1 no buffers"));
    }

    void flowsOfAContextHaveOneObstacleEach()
    {
        planner::PlanningContext context;
        context.switchBufferNum = 4;
        addSwitch(context, 1, 4);
        addSwitch(context, 2, 0);
        addSwitch(context, 1, 0); // the first of a number counts
        addFlow(context, 0, 1000, {1});
        addFlow(context, 0, 0, {});
        addFlow(context, 5, 0, {1});
        addFlow(context, 6, 1000, {});
        addFlow(context, 0, 1000, {1}); // no longer at the head, and the only one
        addFlow(context, 7, 1000, {1});
        addFlow(context, 7, 1000, {2});
        addFlow(context, 8, 1000, {1, 2});
        addFlow(context, 9, 1000, {3}); // no switch
        addFlow(context, 10, 199, {1});
        addFlow(context, 11, 200, {1});
        QCOMPARE(named(obstaclesOf(context)).join(QStringLiteral(", ")),
                 QStringLiteral("0 leading zero, 1 leading zero, 2 period zero, 3 no path, "
                                "5 shared number, 6 shared number, 7 no buffers, "
                                "9 period below slot"));
        addFlow(context, 0, 1000, {1});
        QCOMPARE(named(obstaclesOf(context)).filter(QStringLiteral("shared")).join(u(", ")),
                 QStringLiteral("4 shared number, 5 shared number, 6 shared number, "
                                "11 shared number"));
    }

    void someObstaclesPreventTheSearch()
    {
        for (const Obstacle obstacle :
             {Obstacle::OtherType, Obstacle::WrongTalker, Obstacle::UnknownListener,
              Obstacle::BehindDisagreement, Obstacle::LeadingZero})
            QVERIFY(!preventsSearch(obstacle));
        for (const Obstacle obstacle :
             {Obstacle::PeriodZero, Obstacle::NoPath, Obstacle::SharedNumber, Obstacle::NoBuffers,
              Obstacle::PeriodBelowSlot, Obstacle::CycleTooLong})
            QVERIFY(preventsSearch(obstacle));
    }

    void aDocumentWithoutFlowsElementIsDamaged()
    {
        const InputNetwork network = parsed("<a><topology/></a>").network;
        QVERIFY(!network.damage.isEmpty());
        QVERIFY(!network.isSearchable());
    }

    void placesLeadBackToTheDocument()
    {
        TestNetwork network;
        addPlain(network).type = QStringLiteral("\"RC\"");
        addPlain(network);
        addPlain(network).type = QStringLiteral("\"BE\"");
        addPlain(network);
        QCOMPARE(parsed(documentOf(network.draft)).network.places,
                 (std::vector<std::size_t>{1, 3}));
    }

    void boundsAreReadAsTheirSlotsAndLieInsideTheOwnWindow()
    {
        RandomSource random(7);
        for (int i = 0; i < 20000; ++i) {
            const int low = random.between(-3000, 3000);
            const WindowBounds own{low, low + random.between(0, 3000)};
            planner::RawWindow raw;
            raw.start = own.low;
            raw.end = own.high;
            const planner::SlotWindow covered = planner::windowToSlots(raw);
            for (qint32 slot = covered.start; slot <= covered.end; ++slot) {
                planner::SlotWindow asked;
                asked.start = slot;
                asked.end = random.between(slot, covered.end);
                const WindowBounds bounds = boundsOfSlots(asked, own);
                QVERIFY(bounds.low >= own.low && bounds.high <= own.high);
                const planner::SlotWindow read =
                    planner::windowToSlots(planner::parseSlotWindow(bounds.text()));
                QVERIFY2(read == asked, qPrintable(bounds.text()));
            }
        }
    }

    void boundsReachTheLargestNumbers()
    {
        const WindowBounds own{0, 2147483647};
        planner::SlotWindow last;
        last.start = last.end = 10737418;
        const WindowBounds bounds = boundsOfSlots(last, own);
        QCOMPARE(bounds.text(), QStringLiteral("[2147483600,2147483647]"));
        QCOMPARE(planner::windowToSlots(planner::parseSlotWindow(bounds.text())), last);
    }

    void narrowedWindowsTellBeforeAndAfter()
    {
        TestNetwork network;
        addPlain(network).type = QStringLiteral("\"RC\"");
        network.addFlow(words("A S T Z"), 4000, u("[150,4000]"), u("[0,1250]"));
        network.addListener(words("A S Y"), u("[0,1040]"));
        const ParsedNetwork read = parsed(documentOf(network.draft));
        const auto plan = std::get<Found>(synthesizeWindows(read.network.context, {}));
        const auto flows = narrowedWindows(*read.document, read.network, plan);
        QCOMPARE(flows.size(), std::size_t(1));
        QCOMPARE(flows.front().place, std::size_t(1));
        QCOMPARE(flows.front().send.before.text(), QStringLiteral("[150,4000]"));
        QCOMPARE(flows.front().send.after.text(), QStringLiteral("[200,400]"));
        QCOMPARE(flows.front().listeners.size(), std::size_t(2));
        QCOMPARE(flows.front().listeners[0].window.after.text(), QStringLiteral("[600,800]"));
        QCOMPARE(flows.front().listeners[1].window.before.text(), QStringLiteral("[0,1040]"));
        QCOMPARE(flows.front().listeners[1].window.after.text(), QStringLiteral("[400,600]"));
    }

    void flowsThatTheDocumentsLoseAreNotNarrowed()
    {
        TestNetwork network;
        addPlain(network).flowID = 0;
        addPlain(network);
        const ParsedNetwork read = parsed(documentOf(network.draft));
        const auto plan = std::get<Found>(synthesizeWindows(read.network.context, {}));
        const auto flows = narrowedWindows(*read.document, read.network, plan);
        QCOMPARE(flows.size(), std::size_t(1));
        QCOMPARE(flows.front().place, std::size_t(1));
    }

    void onlyTheLastElementForAListenerIsNarrowed()
    {
        TestNetwork network;
        addPlain(network);
        network.draft.flows.back().listeners.insert(network.draft.flows.back().listeners.begin(),
                                                    {QStringLiteral("Z"), u("[7,8]")});
        const ParsedNetwork read = parsed(documentOf(network.draft));
        const auto plan = std::get<Found>(synthesizeWindows(read.network.context, {}));
        const auto flows = narrowedWindows(*read.document, read.network, plan);
        QCOMPARE(flows.front().listeners.size(), std::size_t(1));
        QCOMPARE(flows.front().listeners.front().place, std::size_t(1));
    }

    void nothingButWindowsIsWrittenAnew()
    {
        TestNetwork network;
        addPlain(network).type = QStringLiteral("\"RC\"");
        addPlain(network);
        network.addFlow(words("B S Y"), 2000, u("[0,2000]"), u("[0,2000]"));
        const ParsedNetwork read = parsed(documentOf(network.draft));
        tinyxml2::XMLPrinter printer;
        read.document->Print(&printer);
        const QByteArray before = printer.CStr();
        const auto plan = std::get<Found>(synthesizeWindows(read.network.context, {}));
        const QByteArray after = narrowedDocument(*read.document, read.network, plan);
        const QList<QByteArray> oldLines = before.split('\n');
        const QList<QByteArray> newLines = after.split('\n');
        QCOMPARE(oldLines.size(), newLines.size());
        int changed = 0;
        for (int i = 0; i < oldLines.size(); ++i) {
            if (oldLines[i] == newLines[i])
                continue;
            ++changed;
            QVERIFY(newLines[i].trimmed().startsWith("<txwin>") ||
                    newLines[i].trimmed().startsWith("<rxwin>"));
        }
        QCOMPARE(changed, 4);
        // The document itself is left alone.
        tinyxml2::XMLPrinter again;
        read.document->Print(&again);
        QCOMPARE(QByteArray(again.CStr()), before);
        QCOMPARE(boundsOf(u("[5,6]")).text(), u("[5,6]"));
    }

    // The parser takes such a document, so what is written for it must be readable too.
    void textBehindTheRootIsNotWritten()
    {
        TestNetwork network;
        addPlain(network);
        const QByteArray sound = documentOf(network.draft);
        const ParsedNetwork read = parsed(sound.trimmed() + "rest</rest>");
        const auto plan = std::get<Found>(synthesizeWindows(read.network.context, {}));
        const ParsedNetwork whole = parsed(sound);
        QCOMPARE(narrowedDocument(*read.document, read.network, plan),
                 narrowedDocument(*whole.document, whole.network, plan));
    }
};

QTEST_GUILESS_MAIN(NetworkDocumentTest)
#include "NetworkDocumentTest.moc"
