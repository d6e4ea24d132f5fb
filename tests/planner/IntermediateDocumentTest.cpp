#include "planner/IntermediateDocument.h"
#include "planner/documents/DocumentAccess.h"

#include "tests/planner/Windows.h"
#include "tests/support/Documents.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TemporaryFolder.h"

#include <QDir>
#include <QtTest>

using namespace planner;

static QString hsFile()
{
    return QStringLiteral("OutputXML/vek_hs.xml");
}

static QByteArray path(const QByteArray& talkerBuffers = "4", const QByteArray& window = "[12,30]")
{
    return "<path><talker><nodeID>1</nodeID><outport>2</outport><schedtxwin>" + window +
           "</schedtxwin><buffernum>" + talkerBuffers +
           "</buffernum></talker>"
           "<bridge><nodeID>11</nodeID><inport>3</inport><outport>4</outport>"
           "<schedtxwin>[13,31]</schedtxwin><buffernum>9</buffernum></bridge>"
           "<listener><nodeID>2</nodeID><inport>5</inport><schedrxwin>[14,32]</schedrxwin>"
           "<buffernum>8</buffernum></listener></path>";
}

static QByteArray instance(const QByteArray& paths = path())
{
    return "<Instance><flowID>5</flowID><vlid>6</vlid><seq>7</seq><period>8</period>"
           "<size>64</size><path_schedwin>" +
           paths + "</path_schedwin></Instance>";
}

static QByteArray document(const QByteArray& flows)
{
    return "<vek_hs><schedCycle>10000</schedCycle><slotLen>200</slotLen><flows>" + flows +
           "</flows></vek_hs>";
}

static QByteArray document()
{
    return document("<flow>" + instance() + "</flow>");
}

class IntermediateDocumentTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<TemporaryFolder>(); }

    void cleanup() { m_folder.reset(); }

    void missingFolderIsReported()
    {
        const LogCapture log;
        TTPlanner planner;
        QCOMPARE(readIntermediateDocument(planner), code::folderMissing);
    }

    void budgetEndsWithItsLastHop()
    {
        HopBudget budget(7);
        budget.spend(4);
        budget.spend(3);
        QVERIFY_EXCEPTION_THROWN(budget.spend(1), DocumentTooLarge);
    }

    void emptyTextIsReportedWithItsLine_data()
    {
        QTest::addColumn<QByteArray>("empty");
        QTest::newRow("nothing") << QByteArray("<seq></seq>");
        QTest::newRow("empty section") << QByteArray("<seq><![CDATA[]]></seq>");
    }

    void emptyTextIsReportedWithItsLine()
    {
        QFETCH(QByteArray, empty);
        const LogCapture log;
        writeFile(hsFile(), '\n' + document().replace("<seq>7</seq>", empty));
        TTPlanner planner;
        QCOMPARE(readIntermediateDocument(planner), code::unreadable);
        QCOMPARE(log.lines().filter(QStringLiteral("element \"seq\" of line 2 is empty")).size(),
                 1);
    }

    void folderWithoutDocumentGivesNothing()
    {
        const LogCapture log;
        QDir().mkdir(QStringLiteral("OutputXML"));
        writeFile(QStringLiteral("OutputXML/vek_hs.old.xml"), document());
        TTPlanner planner;
        planner.maxRxSlot = 99;
        QCOMPARE(readIntermediateDocument(planner), code::ok);
        QVERIFY(planner.TTStreamInstanceList.empty());
        QCOMPARE(planner.maxRxSlot, 0);
        QCOMPARE(planner.schedCycle, 0U);
        QCOMPARE(planner.slotLen, 0U);
        const QStringList lines{QStringLiteral("finding vek_hs.xml----------"),
                                QStringLiteral("Parsing vek_hs.xml End----------")};
        QCOMPARE(log.lines(), lines);
    }

    void fieldsAreReadAndSomeAreLeftOut()
    {
        const LogCapture log;
        writeFile(hsFile(), document());
        TTPlanner planner;
        QCOMPARE(readIntermediateDocument(planner), code::ok);
        QCOMPARE(planner.schedCycle, 10000U);
        QCOMPARE(planner.slotLen, 200U);
        QCOMPARE(planner.maxRxSlot, 32);
        QCOMPARE(int(planner.hopBufferNum), 4);
        const TTStreamInstance& read = planner.TTStreamInstanceList.front();
        QCOMPARE(int(read.flowID), 5);
        QCOMPARE(int(read.vlid), 6);
        QCOMPARE(int(read.seq), 7);
        QCOMPARE(read.period, 8U);
        QCOMPARE(int(read.size), 64);
        const VirtualLinkPath& way = read.paths.front();
        QCOMPARE(int(way.talkerNodeID), 1);
        QCOMPARE(int(way.talkerOutport), 2);
        QCOMPARE(int(way.talkerBuffernum), 4);
        QCOMPARE(int(way.bridges.front().nodeID), 11);
        QCOMPARE(int(way.bridges.front().inport), 3);
        QCOMPARE(int(way.bridges.front().outport), 4);
        QCOMPARE(way.bridges.front().schedtxwin, (SlotWindow{31, 13}));
        QCOMPARE(int(way.bridges.front().buffernum), 0);
        QCOMPARE(int(way.listenerNodeID), 2);
        QCOMPARE(int(way.listenerInport), 5);
        QCOMPARE(way.schedrxwin, (SlotWindow{32, 14}));
        QCOMPARE(int(way.listenerBuffernum), 0);
        const QStringList lines{QStringLiteral("finding vek_hs.xml----------"),
                                QStringLiteral("\"%1\"").arg(m_folder->path(hsFile())),
                                QStringLiteral("parsing vek_hs.xml----------"),
                                QStringLiteral("parsing vek_hs.xml end----------"),
                                QStringLiteral("Parsing vek_hs.xml End----------")};
        QCOMPARE(log.lines(), lines);
    }

    void windowTextGivesStartThenEnd_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("start");
        QTest::addColumn<int>("end");
        QTest::newRow("numbers") << QByteArray("[12,30]") << 12 << 30;
        QTest::newRow("letter") << QByteArray("[a,30]") << 0 << 30;
        QTest::newRow("surrounded") << QByteArray("x[-1,2]y") << -1 << 2;
    }

    void windowTextGivesStartThenEnd()
    {
        QFETCH(QByteArray, text);
        const LogCapture log;
        writeFile(hsFile(), document("<flow>" + instance(path("4", text)) + "</flow>"));
        TTPlanner planner;
        QCOMPARE(readIntermediateDocument(planner), code::ok);
        const SlotWindow& window = planner.TTStreamInstanceList.front().paths.front().schedtxwin;
        QTEST(window.start, "start");
        QTEST(window.end, "end");
    }

    void noFlowsGiveAnEmptyList()
    {
        const LogCapture log;
        writeFile(hsFile(), document(""));
        TTPlanner planner;
        QCOMPARE(readIntermediateDocument(planner), code::ok);
        QVERIFY(planner.TTStreamInstanceList.empty());
    }

    void pathWithoutSwitchIsAccepted()
    {
        const LogCapture log;
        QByteArray direct = path();
        direct.remove(direct.indexOf("<bridge>"),
                      direct.indexOf("</bridge>") + 9 - direct.indexOf("<bridge>"));
        writeFile(hsFile(), document("<flow>" + instance(direct) + "</flow>"));
        TTPlanner planner;
        QCOMPARE(readIntermediateDocument(planner), code::ok);
        QVERIFY(planner.TTStreamInstanceList.front().paths.front().bridges.empty());
    }

    void duplicatesAreAllRead()
    {
        const LogCapture log;
        writeFile(hsFile(), document("<flow>" + instance() + instance() + "</flow>"));
        TTPlanner planner;
        QCOMPARE(readIntermediateDocument(planner), code::ok);
        QCOMPARE(planner.TTStreamInstanceList.size(), size_t(2));
    }

    void lastTalkerDecidesTheBufferNumber()
    {
        const LogCapture log;
        const QByteArray paths = path("4") + path("4") + path("7");
        writeFile(hsFile(), document("<flow>" + instance(paths) + "</flow>"));
        TTPlanner planner;
        readIntermediateDocument(planner);
        QCOMPARE(int(planner.hopBufferNum), 7);
    }

    void siblingsOfAnyNameCountButOnlyBridgesMakeHops()
    {
        const LogCapture log;
        QByteArray strange = instance(path() + path());
        strange.replace(strange.lastIndexOf("<path>"), 6, "<way>");
        strange.replace(strange.lastIndexOf("</path>"), 7, "</way>");
        QByteArray second = instance();
        second.replace("Instance>", "Copy>");
        writeFile(hsFile(),
                  document("<flow>" + strange + second + "</flow><more>" + instance() + "</more>"));
        TTPlanner planner;
        QCOMPARE(readIntermediateDocument(planner), code::ok);
        QCOMPARE(planner.TTStreamInstanceList.size(), size_t(3));
        QCOMPARE(planner.TTStreamInstanceList.front().paths.size(), size_t(2));
        QCOMPARE(planner.TTStreamInstanceList.front().paths.front().bridges.size(), size_t(1));
    }

    void numbersFollowTheRuleOfLeadingDigits()
    {
        const LogCapture log;
        QByteArray text = document();
        text.replace("<flowID>5<", "<flowID> 65541x<");
        text.replace("<vlid>6<", "<vlid>x6<");
        text.replace("<period>8<", "<period>4294967297<");
        text.replace("<schedCycle>10000<", "<schedCycle>4294967300<");
        writeFile(hsFile(), text);
        TTPlanner planner;
        QCOMPARE(readIntermediateDocument(planner), code::ok);
        const TTStreamInstance& read = planner.TTStreamInstanceList.front();
        QCOMPARE(int(read.flowID), 5);
        QCOMPARE(int(read.vlid), 0);
        QCOMPARE(read.period, 1U);
        QCOMPARE(planner.schedCycle, 4U);
    }

    void severalDocumentsAreReadInTurn()
    {
        const LogCapture log;
        writeFile(hsFile(), document());
        QByteArray other = document();
        other.replace("<slotLen>200<", "<slotLen>100<");
        writeFile(QStringLiteral("OutputXML/vek_hs.bak"), other);
        TTPlanner planner;
        QCOMPARE(readIntermediateDocument(planner), code::ok);
        QCOMPARE(planner.TTStreamInstanceList.size(), size_t(2));
        QCOMPARE(planner.slotLen, 200U);
        writeFile(QStringLiteral("OutputXML/vek_hs.zzz"), "damaged");
        QCOMPARE(readIntermediateDocument(planner), code::unreadable);
        QCOMPARE(planner.TTStreamInstanceList.size(), size_t(4));
    }

    void missingOrEmptyElementIsRefused_data()
    {
        QTest::addColumn<QByteArray>("name");
        for (const char* name : {"schedCycle", "slotLen", "flowID", "vlid", "seq", "period", "size",
                                 "nodeID", "inport", "outport", "schedtxwin", "schedrxwin", "flows",
                                 "Instance", "path_schedwin", "path", "talker", "listener"})
            QTest::newRow(name) << QByteArray(name);
    }

    void missingOrEmptyElementIsRefused()
    {
        QFETCH(QByteArray, name);
        const LogCapture log;
        QByteArray without = document();
        without.replace("<" + name + ">", "<other>").replace("</" + name + ">", "</other>");
        writeFile(hsFile(), without);
        TTPlanner planner;
        QCOMPARE(readIntermediateDocument(planner), code::unreadable);
        QVERIFY(log.lines().last().startsWith(QStringLiteral("vek_hs.xml: element")));

        if (name == "flows")
            return; // a cycle without transmissions is a good one
        QByteArray emptied = document();
        const int begin = emptied.indexOf("<" + name + ">") + name.size() + 2;
        emptied.remove(begin, emptied.indexOf("</" + name + ">", begin) - begin);
        writeFile(hsFile(), emptied);
        QCOMPARE(readIntermediateDocument(planner), code::unreadable);
    }

    void windowWithOneNumberIsRefused_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("one number") << QByteArray("[30]");
        QTest::newRow("no brackets") << QByteArray("12,30");
        QTest::newRow("comma outside") << QByteArray("[12],30");
    }

    void windowWithOneNumberIsRefused()
    {
        QFETCH(QByteArray, text);
        const LogCapture log;
        writeFile(hsFile(), document("<flow>" + instance(path("4", text)) + "</flow>"));
        TTPlanner planner;
        QCOMPARE(readIntermediateDocument(planner), code::unreadable);
        QVERIFY(log.lines().last().startsWith(QStringLiteral("vek_hs.xml: window")));
    }

    void whatTheFirstStageWritesIsRead()
    {
        const LogCapture log;
        PlanningContext context;
        context.clusterCycle = 4294967296ULL + 1000;
        TTStreamInstance made;
        made.flowID = 9;
        made.seq = 3;
        made.paths.emplace_back();
        made.paths.front().schedtxwin = {20, -4};
        made.paths.front().bridges.emplace_back();
        context.TTStreamInstanceList.push_back(made);
        writeHsDocument(context);
        TTPlanner planner;
        QCOMPARE(readIntermediateDocument(planner), code::ok);
        QCOMPARE(planner.schedCycle, 1000U);
        QCOMPARE(int(planner.TTStreamInstanceList.front().seq), 3);
        QCOMPARE(planner.TTStreamInstanceList.front().paths.front().schedtxwin,
                 (SlotWindow{20, -4}));
    }

private:
    std::unique_ptr<TemporaryFolder> m_folder;
};

QTEST_APPLESS_MAIN(IntermediateDocumentTest)
#include "IntermediateDocumentTest.moc"
