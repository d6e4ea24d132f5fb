#include "verification/PlanRecords.h"

#include "tests/support/Documents.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/verification/SpokenRecords.h"

#include <QtTest>

#include <tinyxml2.h>

// What is read of the two documents of a plan, number by number.

using namespace verification;

namespace
{

QByteArray soundDocument(const char* name)
{
    return readFile(QStringLiteral(ROTUNDA_SOURCE_FOLDER "/tests/verification/cases/sound-plan/") +
                    QString::fromLatin1(name));
}

PlanRecords planOf(const QByteArray& input, const QByteArray& output)
{
    tinyxml2::XMLDocument inputTree(true, tinyxml2::PRESERVE_WHITESPACE);
    tinyxml2::XMLDocument outputTree(true, tinyxml2::PRESERVE_WHITESPACE);
    inputTree.Parse(input.constData(), static_cast<size_t>(input.size()));
    outputTree.Parse(output.constData(), static_cast<size_t>(output.size()));
    return readPlan(inputTree, outputTree);
}

/// The records of the output document once as a tree and once as a file, which is read in pieces.
QList<PlanRecords> plansOf(const QByteArray& output)
{
    writeFile(QStringLiteral("in.xml"), soundDocument("vek_input.xml"));
    writeFile(QStringLiteral("out.xml"), output);
    return {planOf(soundDocument("vek_input.xml"), output),
            readPlan({QStringLiteral("in.xml")}, {QStringLiteral("out.xml")})};
}

QByteArray outputWith(const char* before, const QByteArray& after)
{
    QByteArray output = soundDocument("vek_output.xml");
    const int place = output.indexOf(before);
    return output.replace(place, static_cast<int>(qstrlen(before)), after);
}

QByteArray host(const char* name, const char* nodeID)
{
    return QByteArray("<host><hostname>") + name + "</hostname><nodeID>" + nodeID +
           "</nodeID><opts><buffernum>4</buffernum></opts></host>";
}

QByteArray networkSwitch(const char* name, const char* nodeID, const char* buffers)
{
    return QByteArray("<switch><switchname>") + name + "</switchname><nodeID>" + nodeID +
           "</nodeID><opts><buffernum>" + buffers + "</buffernum></opts></switch>";
}

QByteArray link(const char* source, const char* target, const char* sourcePort,
                const char* targetPort, const char* bandwidth)
{
    return QByteArray("<link><srcnode>") + source + "</srcnode><dstnode>" + target +
           "</dstnode><srcport>" + sourcePort + "</srcport><dstport>" + targetPort +
           "</dstport><opts><bandwidth>" + bandwidth + "</bandwidth></opts></link>";
}

QByteArray flow(const char* numbers, const char* talker, const QByteArrayList& listeners)
{
    const QByteArrayList number = QByteArray(numbers).split(' ');
    QByteArray text = "<flow><type>\"TT\"</type><flowID>" + number[0] + "</flowID><vlid>" +
                      number[1] + "</vlid><period>" + number[2] + "</period><size>100</size>" +
                      "<talker><name>\"" + talker + "\"</name><txwin>[0,400]</txwin></talker>" +
                      "<listeners>";
    for (const QByteArray& listener : listeners)
        text += "<listener><name>\"" + listener + "\"</name><rxwin>[400,1000]</rxwin></listener>";
    return text + "</listeners></flow>\n";
}

/// A document with one flow of each virtual link 1 to 3 ahead of the flows given.
QByteArray inputWith(const QByteArray& flows)
{
    return "<vek_input><topology><hosts>" + host("\"A\"", "1") + host("B", "2") +
           host("\"C\"", "3") + host("\"A\"", "9") + "</hosts><switches>" +
           networkSwitch("\"S1\"", "11", "4") + networkSwitch("\"S2\"", "12", "65536") +
           networkSwitch("\"B\"", "13", "2") + "</switches><links>" +
           link("\"A\"", "\"S1\"", "1", "1", "10") + link("\"S1\"", "\"A\"", "6", "5", "100") +
           link("\"S1\"", "\"S2\"", "2", "1", "1") + link("\"S2\"", "\"B\"", "2", "1", "200") +
           link("\"S2\"", "\"C\"", "3", "1", "0") + link("\"X\"", "\"S1\"", "8", "8", "1") +
           link("\"S1\"", "\"X\"", "9", "9", "1") + link("\"A\"", "\"S2\"", "7", "8", "40") +
           "</links></topology><virtuallinks>"
           "<virtuallink><vlid>1</vlid><datapath>\"A,S1,S2,B\"</datapath>"
           "<datapath>\"A,S1,S2,B\"</datapath><datapath>\"A,S1,S2,C\"</datapath></virtuallink>"
           "<virtuallink><vlid>2</vlid><datapath>\"A,S1,S2,C\"</datapath>"
           "<datapath>\"A,S2,C\"</datapath></virtuallink>"
           "<virtuallink><vlid>3</vlid><datapath>\"A,X,B\"</datapath>"
           "<datapath>\"A,S1,B\"</datapath><datapath>\"A,S1,B\"</datapath>"
           "<datapath>\"A,S1,X\"</datapath></virtuallink>"
           "<virtuallink><vlid>1</vlid><datapath>\"C,S2,A\"</datapath></virtuallink>"
           "</virtuallinks><flows>" +
           flows + "</flows></vek_input>";
}

QStringList linesIn(const char* text)
{
    return QString::fromLatin1(text).split(QLatin1Char('\n'));
}

const char soundSchedule[] = R"(cycle 4000 slot length 200
transmission 1-0 talker 1 hops 0+3 listeners 0+1
transmission 1-1 talker 1 hops 3+3 listeners 1+1
transmission 2-0 talker 1 hops 6+4 listeners 2+2
hop 1 in -1 at 0 out 1 at 0
hop 11 in 1 at 0 out 2 at 1
hop 12 in 1 at 1 out 2 at 2
hop 1 in -1 at 0 out 1 at 10
hop 11 in 1 at 10 out 2 at 11
hop 12 in 1 at 11 out 2 at 12
hop 1 in -1 at 0 out 1 at 3
hop 11 in 1 at 3 out 2 at 4
hop 12 in 1 at 4 out 2 at 5
hop 12 in 1 at 4 out 3 at 5
listener 2 in 1 at 2
listener 2 in 1 at 12
listener 2 in 1 at 5
listener 3 in 1 at 5)";

const char trees[] = R"(host A 1 buffers 4
host B 2 buffers 4
host C 3 buffers 4
host A 9 buffers 4
switch S1 11 buffers 4
switch S2 12 buffers 0
switch B 13 buffers 2
flow 1 vlid 1 period 4000 size 100 state 0 sends [0,1] link 1
  hop 1 in -1 out 5 paths 3
  hop 11 in 6 out 2 paths 3
  hop 12 in 1 out 2 paths 2
  hop 12 in 1 out 3 paths 1
  step 0 to 1
  step 1 to 2
  step 1 to 3
  listener 2 in 1 wants [2,4]
  listener 3 in 1 wants none
  end 2 to 0 from talker 0
  end 3 to 1 from talker 0
flow 2 vlid 2 period 4000 size 100 state 0 sends [0,1] link 1
  hop 1 in -1 out 5 paths 1
  hop 11 in 6 out 2 paths 1
  hop 12 in 1 out 3 paths 1
  hop 1 in -1 out 7 paths 1
  hop 12 in 8 out 3 paths 1
  step 0 to 1
  step 1 to 2
  step 3 to 4
  listener 3 in 1 wants [2,4]
  end 2 to 0 from talker 0
  end 4 to 0 from talker 3
flow 3 vlid 3 period 4000 size 100 state 0 sends [0,1] link 100
  hop 1 in -1 out 0 paths 1
  hop 65535 in 0 out 0 paths 1
  hop 1 in -1 out 5 paths 3
  hop 11 in 6 out 0 paths 3
  step 0 to 1
  step 2 to 3
  listener 2 in 0 wants [2,4]
  listener 65535 in 0 wants none
  end 1 to 0 from talker 0
  end 3 to 0 from talker 2
  end 3 to 1 from talker 2
  gap 1 to 65535
  gap 65535 to 2
  gap 11 to 2
  gap 11 to 65535
flow 4 vlid 9 period 4000 size 100 state 4 sends [0,1] link 0)";

const char missingParts[] = R"(vek_input.xml line 3: "hostname" is missing in "host"
vek_input.xml line 3: "nodeID" is missing in "host"
vek_input.xml line 3: "opts" is missing in "host"
vek_input.xml line 1: "switches" is missing in "topology"
vek_input.xml line 1: "links" is missing in "topology"
vek_input.xml line 3: "vlid" is missing in "virtuallink"
vek_input.xml line 3: "vlid" is missing in "flow"
vek_input.xml line 3: "flowID" is missing in "flow"
vek_input.xml line 3: "period" is missing in "flow"
vek_input.xml line 3: "size" is missing in "flow"
vek_input.xml line 3: "talker" is missing in "flow"
vek_input.xml: "" is no window
vek_output.xml line 1: "schedCycle" is missing in "vek_output"
vek_output.xml line 1: "slotLen" is missing in "vek_output"
vek_output.xml line 2: "path_slot" is missing in "Instance"
vek_output.xml line 2: "flowID" is missing in "Instance"
vek_output.xml line 2: "seq" is missing in "Instance")";

const char joinedNetwork[] = R"(host B 2 buffers 4
host A 1 buffers 4
host B 5 buffers 4
switch A 8 buffers 4
switch S1 11 buffers 4
switch A 9 buffers 4
flow 1 vlid 1 period 4000 size 100 state 0 sends [0,1] link 10
  hop 1 in -1 out 1 paths 1
  hop 11 in 1 out 2 paths 1
  step 0 to 1
  listener 2 in 1 wants [2,4]
  end 1 to 0 from talker 0)";

const char takenFlows[] = R"(flow 0 vlid 1 period 0 size 100 state 5 sends [0,1] link 1
flow 0 vlid 1 period 4000 size 100 state 1 sends [0,1] link 1
flow 4 vlid 9 period 0 size 100 state 5 sends [0,1] link 0
flow 0 vlid 1 period 4000 size 100 state 1 sends [0,1] link 1
flow 5 vlid 1 period 4000 size 100 state 0 sends [0,1] link 1
flow 0 vlid 1 period 4000 size 100 state 0 sends [0,1] link 1
flow 6 vlid 1 period 0 size 100 state 5 sends [0,1] link 1
flow 7 vlid 1 period 0 size 100 state 5 sends [0,1] link 1
flow 8 vlid 1 period 4000 size 100 state 2 sends [0,1] link 1
flow 9 vlid 9 period 4000 size 100 state 3 sends [0,1] link 0
flow 10 vlid 1 period 4000 size 100 state 3 sends [0,1] link 1
flow 11 vlid 1 period 4000 size 100 state 3 sends [0,1] link 1)";

} // namespace

class PlanRecordsTest : public QObject
{
    Q_OBJECT

private slots:
    void numberIsAWholeTextOfUpToTenDigits_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<qint64>("value");
        const auto row = [](const char* text, qint64 value) {
            QTest::newRow(text) << QByteArray(text) << value;
        };
        row("0", 0);
        row("0000000007", 7);
        row(" \t\r\n40 \t\r\n", 40);
        row("-40", -40);
        row("9876543210", 9876543210);
    }

    void numberIsAWholeTextOfUpToTenDigits()
    {
        QFETCH(QByteArray, text);
        QFETCH(qint64, value);
        const TemporaryFolder folder;
        for (const PlanRecords& plan : plansOf(outputWith("4000", text))) {
            QCOMPARE(linesOf(plan.damage), QStringList());
            QCOMPARE(plan.schedule.cycle_us, value);
        }
    }

    void otherTextIsNoNumber_data()
    {
        QTest::addColumn<QByteArray>("text");
        for (const char* text : {"", "-", "--3", "- 3", "+3", "1 2", "1:", "/1", "1e9", "0x10",
                                 "3-", "00000000007", "\v3"})
            QTest::newRow(text) << QByteArray(text);
    }

    void otherTextIsNoNumber()
    {
        QFETCH(QByteArray, text);
        const TemporaryFolder folder;
        for (const PlanRecords& plan : plansOf(outputWith("4000", text))) {
            QCOMPARE(plan.schedule.cycle_us, qint64(0));
            QCOMPARE(linesOf(plan.damage),
                     QStringList{QStringLiteral("fault, damaged document, vek_output.xml line 2: "
                                                "\"schedCycle\" is no number")});
        }
    }

    void slotOf32BitsHasItsSign_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<qint64>("slot");
        QTest::newRow("last ahead") << QByteArray("2147483647") << Q_INT64_C(2147483647);
        QTest::newRow("first before") << QByteArray("2147483648") << Q_INT64_C(-2147483648);
        QTest::newRow("last before") << QByteArray("4294967295") << Q_INT64_C(-1);
        QTest::newRow("with a sign") << QByteArray("-2147483648") << Q_INT64_C(-2147483648);
    }

    void slotOf32BitsHasItsSign()
    {
        QFETCH(QByteArray, text);
        QFETCH(qint64, slot);
        const TemporaryFolder folder;
        for (const PlanRecords& plan :
             plansOf(outputWith("<txslotID>0<", "<txslotID>" + text + "<"))) {
            QCOMPARE(linesOf(plan.damage), QStringList());
            QCOMPARE(plan.schedule.hops.front().sendSlot, slot);
        }
    }

    void charactersMayBeGivenByNumber()
    {
        const TemporaryFolder folder;
        QByteArray output = outputWith("4000", "4&#48;00");
        output.replace("<txslotID>0<", "<txslotID>&#48;<");
        for (const PlanRecords& plan : plansOf(output)) {
            QCOMPARE(linesOf(plan.damage), QStringList());
            QCOMPARE(linesOf(plan.schedule), linesIn(soundSchedule));
        }
        QByteArray input = soundDocument("vek_input.xml");
        input.replace("\"S1\"", "\"&#83;1\"");
        writeFile(QStringLiteral("in.xml"), input);
        const PlanRecords plan = readPlan({QStringLiteral("in.xml")}, {QStringLiteral("out.xml")});
        QCOMPARE(plan.network.nodes[3].name, QStringLiteral("S1"));
    }

    void numberBeyondItsBitsIsDamage_data()
    {
        QTest::addColumn<QByteArray>("element");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("damage");
        const auto row = [](const char* element, const char* text, const char* damage) {
            QTest::newRow(qPrintable(QString::fromLatin1(element) + QLatin1Char(' ') +
                                     QString::fromLatin1(text)))
                << QByteArray(element) << QByteArray(text) << QString::fromLatin1(damage);
        };
        row("txslotID", "4294967296", "line 6: \"txslotID\" is no slot");
        row("txslotID", "-2147483649", "line 6: \"txslotID\" is no slot");
        row("rxslotID", "4294967296", "line 8: \"rxslotID\" is no slot");
        row("outport", "65536", "line 6: \"outport\" is no number of 16 bits");
        row("nodeID", "-1", "line 6: \"nodeID\" is no number of 16 bits");
        row("seq", "65536", "line 5: \"seq\" is no number of 16 bits");
    }

    void numberBeyondItsBitsIsDamage()
    {
        QFETCH(QByteArray, element);
        QFETCH(QByteArray, text);
        QFETCH(QString, damage);
        const TemporaryFolder folder;
        const QByteArray tag = "<" + element + ">";
        QByteArray output = soundDocument("vek_output.xml");
        const int begin = output.indexOf(tag) + tag.size();
        output.replace(begin, output.indexOf('<', begin) - begin, text);
        for (const PlanRecords& plan : plansOf(output))
            QCOMPARE(
                linesOf(plan.damage),
                QStringList{QStringLiteral("fault, damaged document, vek_output.xml ") + damage});
    }

    void numberOf16BitsMayBeTheLargest()
    {
        const TemporaryFolder folder;
        for (const PlanRecords& plan : plansOf(outputWith("<seq>0<", "<seq>65535<"))) {
            QCOMPARE(linesOf(plan.damage), QStringList());
            QCOMPARE(plan.schedule.transmissions.front().seq, 65535);
        }
    }

    void recordsBeginEmpty()
    {
        Network network;
        network.nodes.resize(1);
        network.flows.resize(1);
        NetworkFlow& flow = network.flows.front();
        flow.hops.resize(1);
        flow.steps.resize(1);
        flow.listeners.resize(1);
        flow.ends.resize(1);
        flow.gaps.resize(1);
        QCOMPARE(linesOf(network),
                 linesIn("host  0 buffers 0\n"
                         "flow 0 vlid 0 period 0 size 0 state 0 sends [0,0] link 0\n"
                         "  hop 0 in 0 out 0 paths 0\n"
                         "  step 0 to 0\n"
                         "  listener 0 in 0 wants none\n"
                         "  end 0 to 0 from talker 0\n"
                         "  gap 0 to 0"));
        Schedule schedule;
        schedule.transmissions.resize(1);
        schedule.hops.resize(1);
        schedule.listeners.resize(1);
        QCOMPARE(linesOf(schedule), linesIn("cycle 0 slot length 0\n"
                                            "transmission 0-0 talker 0 hops 0+0 listeners 0+0\n"
                                            "hop 0 in 0 at 0 out 0 at 0\n"
                                            "listener 0 in 0 at 0"));
    }

    void rowWithoutOneOfItsNumbersIsLeftOut_data()
    {
        QTest::addColumn<QByteArray>("row");
        QTest::addColumn<QByteArray>("element");
        QTest::addColumn<QByteArray>("inPlace");
        const QByteArrayList texts{"", "<%1>x</%1>", "<%1>-2147483649</%1>"};
        for (const char* row :
             {"talker nodeID outport txslotID", "bridge nodeID inport rxslotID outport txslotID",
              "listener nodeID inport rxslotID", "Instance flowID seq"}) {
            const QByteArrayList elements = QByteArray(row).split(' ');
            for (const QByteArray& element : elements.mid(1)) {
                for (const QByteArray& text : texts)
                    QTest::newRow((elements.front() + ' ' + element + ' ' + text).constData())
                        << elements.front() << element << QByteArray(text).replace("%1", element);
            }
        }
    }

    void rowWithoutOneOfItsNumbersIsLeftOut()
    {
        QFETCH(QByteArray, row);
        QFETCH(QByteArray, element);
        QFETCH(QByteArray, inPlace);
        const TemporaryFolder folder;
        QByteArray output = soundDocument("vek_output.xml");
        const QByteArray end = "</" + element + ">";
        const int begin = output.indexOf("<" + element + ">", output.indexOf("<" + row + ">"));
        output.replace(begin, output.indexOf(end, begin) + end.size() - begin, inPlace);
        for (const PlanRecords& plan : plansOf(output)) {
            QCOMPARE(plan.damage.size(), size_t(1));
            QCOMPARE(plan.schedule.transmissions.size(), size_t(row == "Instance" ? 2 : 3));
            const auto isHop = row == "talker" || row == "bridge";
            QCOMPARE(plan.schedule.hops.size(), size_t(row == "Instance" ? 7 : isHop ? 9 : 10));
            QCOMPARE(plan.schedule.listeners.size(),
                     size_t(row == "bridge" || row == "talker" ? 4 : 3));
            QCOMPARE(plan.schedule.transmissions.front().hasTalker, row != "talker");
        }
    }

    void scheduleIsReadWhole()
    {
        const TemporaryFolder folder;
        for (const PlanRecords& plan : plansOf(soundDocument("vek_output.xml"))) {
            QCOMPARE(linesOf(plan.schedule), linesIn(soundSchedule));
        }
    }

    void lastDocumentTellsTheCycle()
    {
        const TemporaryFolder folder;
        writeFile(QStringLiteral("in.xml"), soundDocument("vek_input.xml"));
        writeFile(QStringLiteral("first.xml"), soundDocument("vek_output.xml"));
        writeFile(QStringLiteral("second.xml"), "<vek_output><flows></flows></vek_output>");
        const PlanRecords plan =
            readPlan({QStringLiteral("in.xml")},
                     {QStringLiteral("first.xml"), QStringLiteral("second.xml")});
        QCOMPARE(plan.schedule.cycle_us, qint64(0));
        QCOMPARE(plan.schedule.slotLength_us, qint64(0));
        QCOMPARE(plan.schedule.transmissions.size(), size_t(3));
    }

    void windowCoversItsSlots_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("range");
        QTest::addColumn<bool>("isWindow");
        const auto row = [](const char* text, const char* range, bool isWindow = true) {
            QTest::newRow(text) << QByteArray(text) << QString::fromLatin1(range) << isWindow;
        };
        row("[0,400]", "[0,1]");
        row("[1,400]", "[1,1]");
        row("[200,429]", "[1,1]");
        row("[201,430]", "[2,2]");
        row("[0,29]", "[0,-1]");
        row("[0,30]", "[0,0]");
        row("[-1,0]", "[0,-1]");
        row("[-200,-1]", "[-1,-2]");
        row("[-201,-170]", "[-1,-2]");
        row("[-400,-200]", "[-2,-2]");
        row("from [0,400] on", "[0,1]");
        row("[0,400,800]", "[0,1]");
        row("[0,400", "[0,1]");
        row("[0,400[", "[0,1]");
        row("[,400]", "[0,1]");
        row("[0,]", "[0,-1]");
        row("[400]", "[2,-1]", false);
        row("[[0,400]]", "[0,-1]", false);
        row("]0,400[", "[0,-1]", false);
        row("0,400", "[0,-1]", false);
    }

    void windowCoversItsSlots()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, range);
        QFETCH(bool, isWindow);
        QByteArray input = soundDocument("vek_input.xml");
        const int begin = input.indexOf("<txwin>") + 7;
        input.replace(begin, input.indexOf('<', begin) - begin, text);
        const PlanRecords plan = planOf(input, soundDocument("vek_output.xml"));
        QCOMPARE(spoken(plan.network.flows.front().sendWindow), range);
        const QString line =
            QStringLiteral("fault, damaged document, vek_input.xml line 25: \"%1\" "
                           "is no window")
                .arg(QString::fromLatin1(text));
        QCOMPARE(linesOf(plan.damage), isWindow ? QStringList() : QStringList{line});
    }

    void partsThatAreMissingAreNamed()
    {
        const PlanRecords plan =
            planOf("<vek_input><topology>\n<hosts>\n<host/></hosts></topology><virtuallinks>"
                   "<virtuallink/></virtuallinks><flows><flow><type>\"TT\"</type></flow></flows>"
                   "</vek_input>",
                   "<vek_output>\n<flows><flow><Instance/></flow></flows></vek_output>");
        const QString damage = QStringLiteral("fault, damaged document, ");
        QCOMPARE(linesOf(plan.damage).replaceInStrings(damage, QString()), linesIn(missingParts));
        QCOMPARE(linesOf(planOf("", "").damage),
                 (QStringList{damage + QStringLiteral("vek_input.xml: there is no element"),
                              damage + QStringLiteral("vek_output.xml: there is no element")}));
    }

    // The first node of a name counts and a host before a switch; of parallel links the last one.
    void pathsAreJoinedToTrees()
    {
        const QByteArray flows = flow("1 1 4000", "A", {"B"}) + flow("2 2 4000", "A", {"C"}) +
                                 flow("3 3 4000", "A", {"B"}) + flow("4 9 4000", "A", {});
        const PlanRecords plan = planOf(inputWith(flows), soundDocument("vek_output.xml"));
        QCOMPARE(linesOf(plan.damage), QStringList());
        QCOMPARE(linesOf(plan.network), linesIn(trees));
    }

    // Also where the switch of a name is in a document ahead of the host's.
    void hostsStandBeforeSwitchesAndAreMeantFirst()
    {
        const TemporaryFolder folder;
        writeFile(QStringLiteral("first.xml"),
                  "<vek_input><topology><hosts>" + host("B", "2") + "</hosts><switches>" +
                      networkSwitch("A", "8", "4") + networkSwitch("S1", "11", "4") +
                      "</switches><links/></topology><virtuallinks/><flows/></vek_input>");
        writeFile(QStringLiteral("second.xml"),
                  "<vek_input><topology><hosts>" + host("A", "1") + host("B", "5") +
                      "</hosts><switches>" + networkSwitch("A", "9", "4") + "</switches><links>" +
                      link("A", "S1", "1", "1", "10") + link("S1", "B", "2", "1", "10") +
                      "</links></topology><virtuallinks><virtuallink><vlid>1</vlid>"
                      "<datapath>A,S1,B</datapath></virtuallink></virtuallinks><flows>" +
                      flow("1 1 4000", "A", {"B"}) + "</flows></vek_input>");
        writeFile(QStringLiteral("out.xml"), soundDocument("vek_output.xml"));
        const PlanRecords plan =
            readPlan({QStringLiteral("first.xml"), QStringLiteral("second.xml")},
                     {QStringLiteral("out.xml")});
        QCOMPARE(linesOf(plan.damage), QStringList());
        QCOMPARE(linesOf(plan.network), linesIn(joinedNetwork));
    }

    void flowsAreTakenByTheRules()
    {
        const QByteArray flows = flow("0 1 0", "A", {"B"}) + flow("0 1 4000", "A", {"B"}) +
                                 "<flow><type>TT</type><flowID>8</flowID></flow>" +
                                 "<flow><type>\"BE\"</type><flowID>8</flowID></flow><flow/>" +
                                 flow("4 9 0", "A", {}) + flow("65536 1 4000", "A", {"B"}) +
                                 flow("5 1 4000", "A", {}) + flow("0 1 4000", "A", {"B", "C"}) +
                                 flow("6 1 0", "A", {"B"}) + flow("7 1 x", "A", {"B"}) +
                                 flow("8 1 4000", "A", {"S1", "B"}) + flow("9 9 4000", "A", {"B"}) +
                                 flow("10 1 4000", "A", {"B"}) + flow("11 1 4000", "A", {"B"});
        const PlanRecords plan = planOf(inputWith(flows), soundDocument("vek_output.xml"));
        QStringList states;
        for (const NetworkFlow& taken : plan.network.flows)
            states.append(linesOf(taken).front());
        QCOMPARE(states, linesIn(takenFlows));
    }
};

QTEST_GUILESS_MAIN(PlanRecordsTest)
#include "PlanRecordsTest.moc"
