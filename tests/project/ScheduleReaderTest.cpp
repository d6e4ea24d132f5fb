#include "project/ScheduleReader.h"

#include "tests/support/Documents.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"

#include <memory>

static QByteArray number(const char* name, int value)
{
    return QByteArray("<") + name + ">" + QByteArray::number(value) + "</" + name + ">";
}

static QByteArray talker(int node, int outport, int slot)
{
    return "<talker>" + number("nodeID", node) + number("outport", outport) +
           number("txslotID", slot) + "</talker>";
}

static QByteArray bridge(int node, int inport, int rxSlot, int outport, int txSlot)
{
    return "<bridge>" + number("nodeID", node) + number("inport", inport) +
           number("rxslotID", rxSlot) + number("outport", outport) + number("txslotID", txSlot) +
           "</bridge>";
}

static QByteArray listener(int node, int inport, int slot)
{
    return "<listener>" + number("nodeID", node) + number("inport", inport) +
           number("rxslotID", slot) + "</listener>";
}

static QByteArray instance(int flow, const QByteArray& talkerText, const QByteArray& bridges,
                           const QByteArray& listeners)
{
    return "<Instance>" + number("flowID", flow) + number("seq", 0) + "<path_slot>" + talkerText +
           "<bridges>" + bridges + "</bridges><listeners>" + listeners +
           "</listeners></path_slot></Instance>";
}

static QByteArray output(const QByteArray& instances, int cycle = 1000, int slot = 200)
{
    return "<vek_output>" + number("schedCycle", cycle) + number("slotLen", slot) +
           "<flows><flow>" + instances + "</flow></flows></vek_output>";
}

static QByteArray node(const char* kind, const char* nameElement, int id, const QByteArray& name)
{
    return QByteArray("<") + kind + "><" + nameElement + ">\"" + name + "\"</" + nameElement + ">" +
           number("nodeID", id) + "</" + kind + ">";
}

static QByteArray input(const QByteArray& hosts, const QByteArray& switches)
{
    return "<vek_input><topology><hosts>" + hosts + "</hosts><switches>" + switches +
           "</switches></topology><flows/></vek_input>";
}

static QString outputFile()
{
    return QStringLiteral("OutputXML/vek_output.xml");
}

static QString inputFile()
{
    return QStringLiteral("ResourceXML/vek_input.xml");
}

/// What the main window holds, with values that a failed load must keep.
struct Schedule {
    NodeInfo_Xml send{{77, {}}};
    NodeInfo_Xml receive{{78, {}}};
    int schedCycle = 5;
    int slotLen = 6;
    int slotCount = 7;

    void read() { readSchedule({send, receive, schedCycle, slotLen, slotCount}); }
};

class ScheduleReaderTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<TemporaryFolder>(); }

    void cleanup() { m_folder.reset(); }

    void folderWithoutDocumentEmptiesTheMapsAndKeepsTheCycle()
    {
        const LogCapture log;
        writeFile(QStringLiteral("OutputXML/Vek_output.xml"), output(QByteArray()));
        Schedule schedule;
        schedule.read();
        QVERIFY(log.lines().isEmpty());
        QVERIFY(schedule.send.isEmpty() && schedule.receive.isEmpty());
        QCOMPARE(schedule.schedCycle, 5);
        QCOMPARE(schedule.slotLen, 6);
        QCOMPARE(schedule.slotCount, 7);
    }

    void missingFolderIsLogged()
    {
        const LogCapture log;
        Schedule schedule;
        schedule.read();
        NodeNames names{{1, {}}};
        readNodeNames(names);
        QCOMPARE(log.lines(), (QStringList{QStringLiteral("load vek_output.xml failed!"),
                                           QStringLiteral("load vek_input.xml failed!")}));
        QVERIFY(schedule.send.isEmpty());
        QVERIFY(names.isEmpty());
    }

    void documentThatDoesNotLoadEndsTheWalk()
    {
        const LogCapture log;
        writeFile(QStringLiteral("OutputXML/vek_output.bak"), "<vek_output>");
        writeFile(outputFile(), output(instance(5, talker(1, 0, 3), {}, {})));
        Schedule schedule;
        schedule.read();
        QCOMPARE(log.lines(), QStringList{QStringLiteral("load vek_output.xml failed!")});
        QVERIFY(schedule.send.isEmpty());
        QCOMPARE(schedule.schedCycle, 5);
    }

    void onlyTheLastSuffixIsFree()
    {
        writeFile(QStringLiteral("OutputXML/vek_output.old.xml"),
                  output(instance(5, talker(1, 0, 3), {}, {})));
        Schedule schedule;
        schedule.read();
        QVERIFY(schedule.send.isEmpty());
        QVERIFY(QFile::rename(QStringLiteral("OutputXML/vek_output.old.xml"),
                              QStringLiteral("OutputXML/vek_output.bak")));
        schedule.read();
        QVERIFY(!schedule.send.isEmpty());
    }

    void eachPartEntersItsOwnTables()
    {
        writeFile(outputFile(),
                  output(instance(5, talker(1, 0, 3), bridge(11, 1, 3, 2, 4), listener(2, 0, 6))));
        Schedule schedule;
        schedule.read();
        const NodeInfo_Xml send{{1, {{0, {{5, {{3, 0}}}}}}}, {11, {{2, {{5, {{4, 0}}}}}}}};
        const NodeInfo_Xml receive{{2, {{0, {{5, {{6, 0}}}}}}}, {11, {{1, {{5, {{3, 0}}}}}}}};
        QCOMPARE(schedule.send, send);
        QCOMPARE(schedule.receive, receive);
        QCOMPARE(schedule.schedCycle, 1000);
        QCOMPARE(schedule.slotLen, 200);
        QCOMPARE(schedule.slotCount, 5);
    }

    void sameSlotOfTwoInstancesIsOneKey()
    {
        writeFile(outputFile(), output(instance(5, talker(1, 0, 3), {}, {}) +
                                       instance(5, talker(1, 0, 3), {}, {}) +
                                       instance(5, talker(1, 0, 8), {}, {})));
        Schedule schedule;
        schedule.read();
        QCOMPARE(schedule.send[1][0][5].keys(), (QList<int>{3, 8}));
    }

    void siblingsOfAnyNameAreRead()
    {
        QByteArray second = instance(6, talker(1, 0, 4), {}, {});
        second.replace("Instance>", "Copy>");
        writeFile(outputFile(), output(instance(5, talker(1, 0, 3), {}, {}) + second));
        Schedule schedule;
        schedule.read();
        QCOMPARE(schedule.send[1][0].keys(), (QList<int>{5, 6}));
    }

    void slotCountIsTruncated()
    {
        writeFile(outputFile(), output({}, 1000, 300));
        Schedule schedule;
        schedule.read();
        QCOMPARE(schedule.slotCount, 3);
    }

    void slotLengthZeroGivesNoSlots()
    {
        writeFile(outputFile(), output({}, 1000, 0));
        Schedule schedule;
        schedule.read();
        QCOMPARE(schedule.slotCount, 0);
        writeFile(outputFile(), output({}, -2147483647 - 1, -1));
        schedule.read();
    }

    void newDocumentReplacesTheOldSchedule()
    {
        writeFile(outputFile(), output(instance(5, talker(1, 0, 3), {}, {})));
        Schedule schedule;
        schedule.read();
        writeFile(outputFile(), output(instance(9, talker(4, 0, 3), {}, {})));
        schedule.read();
        QCOMPARE(schedule.send.keys(), QList<int>{4});
    }

    void missingElementIsPassedOver_data()
    {
        QTest::addColumn<int>("times");
        QTest::addColumn<QList<int>>("sending");
        QTest::addColumn<QList<int>>("receiving");
        const QList<int> none;
        const QList<int> senders{1, 11};
        const QList<int> receivers{2, 11};
        QTest::newRow("schedCycle") << 1 << senders << receivers;
        QTest::newRow("slotLen") << 1 << senders << receivers;
        QTest::newRow("flows") << 1 << none << none;
        QTest::newRow("flowID") << 1 << none << none;
        QTest::newRow("path_slot") << 1 << none << none;
        QTest::newRow("talker") << 1 << QList<int>{11} << receivers;
        QTest::newRow("bridges") << 1 << QList<int>{1} << QList<int>{2};
        QTest::newRow("listeners") << 1 << senders << QList<int>{11};
        QTest::newRow("nodeID") << 4 << none << none;
        QTest::newRow("inport") << 2 << senders << none;
        QTest::newRow("outport") << 2 << none << receivers;
        QTest::newRow("txslotID") << 2 << none << receivers;
        QTest::newRow("rxslotID") << 2 << senders << none;
    }

    void missingElementIsPassedOver()
    {
        QFETCH(int, times);
        QFETCH(QList<int>, sending);
        QFETCH(QList<int>, receiving);
        const QByteArray name = QTest::currentDataTag();
        const LogCapture log;
        QByteArray text =
            output(instance(5, talker(1, 0, 3), bridge(11, 1, 3, 2, 4), listener(2, 0, 6)));
        text.replace("<" + name + ">", "<other>").replace("</" + name + ">", "</other>");
        writeFile(outputFile(), text);
        Schedule schedule;
        schedule.read();
        QCOMPARE(log.lines().size(), 1);
        const QString line =
            QStringLiteral("vek_output.xml: %1 elements are missing, the first is \"%2\" in \"");
        QVERIFY(log.lines().first().startsWith(line.arg(times).arg(QString::fromUtf8(name))));
        if (name == "nodeID") // of several
            QVERIFY(log.lines().first().contains(u("in \"talker\" of")));
        QVERIFY(log.lines().first().endsWith(QLatin1String("\" of line 1")));
        QCOMPARE(schedule.send.keys(), sending);
        QCOMPARE(schedule.receive.keys(), receiving);
    }

    void firstNameOfANumberWinsAndHostsComeFirst()
    {
        writeFile(
            inputFile(),
            input(node("host", "hostname", 1, "A") + node("host", "hostname", 1, "B"),
                  node("switch", "switchname", 1, "S") + node("switch", "switchname", 2, "T")));
        NodeNames names;
        readNodeNames(names);
        QCOMPARE(names.keys(), (QList<int>{1, 2}));
        QCOMPARE(names[1].name, QStringLiteral("\"A\""));
        QCOMPARE(names[1].isHost, 1);
        QCOMPARE(names[2].name, QStringLiteral("\"T\""));
        QCOMPARE(names[2].isHost, 0);
    }

    void entitiesInNamesAreCharacters()
    {
        writeFile(inputFile(), input(node("host", "hostname", 1, "A&amp;B&lt;"), {}));
        NodeNames names;
        readNodeNames(names);
        QCOMPARE(names[1].name, QStringLiteral("\"A&B<\""));
    }

    void firstOfTwoInputDocumentsWins()
    {
        writeFile(inputFile(),
                  input(node("host", "hostname", 1, "A") + node("host", "hostname", 2, "B"), {}));
        writeFile(QStringLiteral("ResourceXML/vek_input.bak"),
                  input(node("host", "hostname", 1, "Bak"), {}));
        NodeNames names;
        readNodeNames(names);
        QCOMPARE(names[1].name, QStringLiteral("\"Bak\""));
        QCOMPARE(names[2].name, QStringLiteral("\"B\""));
    }

    void incompleteInputGivesTheNamesItHas_data()
    {
        QTest::addColumn<QStringList>("named");
        QTest::addColumn<QString>("line");
        const auto row = [](const char* name, const QStringList& named, const char* line) {
            QTest::newRow(name) << named << QString::fromLatin1(line);
        };
        row("topology", {}, "1 elements are missing, the first is \"topology\" in \"vek_input\"");
        row("hosts", {u("2 \"S\"")},
            "1 elements are missing, the first is \"hosts\" in \"topology\"");
        row("switches", {u("1 \"A\"")},
            "1 elements are missing, the first is \"switches\" in \"topology\"");
        row("hostname", {u("1 "), u("2 \"S\"")},
            "1 elements are missing, the first is \"hostname\" in \"host\"");
        row("nodeID", {}, "2 elements are missing, the first is \"nodeID\" in \"host\"");
        row("flows", {u("1 \"A\""), u("2 \"S\"")},
            "1 elements are missing, the first is \"flows\" in \"vek_input\"");
    }

    void incompleteInputGivesTheNamesItHas()
    {
        QFETCH(QStringList, named);
        QFETCH(QString, line);
        const QByteArray name = QTest::currentDataTag();
        QByteArray text =
            input(node("host", "hostname", 1, "A"), node("switch", "switchname", 2, "S"));
        text.replace("<" + name, "<other").replace("</" + name, "</other");
        writeFile(inputFile(), text);
        const LogCapture log;
        NodeNames names;
        readNodeNames(names);
        QCOMPARE(log.lines(), QStringList{u("vek_input.xml: ") + line + u(" of line 1")});
        QStringList spoken;
        for (auto each = names.cbegin(); each != names.cend(); ++each)
            spoken.append(QStringLiteral("%1 %2").arg(QString::number(each.key()), each->name));
        QCOMPARE(spoken, named);
    }

    void completeDocumentsLeaveNoLine()
    {
        writeFile(outputFile(),
                  output(instance(5, talker(1, 0, 3), bridge(11, 1, 3, 2, 4), listener(2, 0, 6))));
        writeFile(inputFile(), input(node("host", "hostname", 1, "A"), {}));
        const LogCapture log;
        Schedule().read();
        NodeNames names;
        readNodeNames(names);
        QCOMPARE(log.lines(), QStringList());
    }

    void numbersThatAreMissingOrNoneAreZero()
    {
        const LogCapture quiet;
        writeFile(outputFile(), "<vek_output><slotLen>many</slotLen><flows/></vek_output>");
        Schedule schedule;
        schedule.read();
        QCOMPARE(schedule.schedCycle, 0);
        QCOMPARE(schedule.slotLen, 0);
        QCOMPARE(schedule.slotCount, 0);
    }

private:
    std::unique_ptr<TemporaryFolder> m_folder;
};

ROTUNDA_GUI_TEST_MAIN(ScheduleReaderTest)
#include "ScheduleReaderTest.moc"
