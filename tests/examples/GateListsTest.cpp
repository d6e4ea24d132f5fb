#include "planner/Planning.h"

#include "tests/support/Documents.h"
#include "tests/support/Failure.h"
#include "tests/support/LogCapture.h"
#include "tests/support/ProgramRun.h"
#include "tests/support/TemporaryFolder.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QtTest>

#include <map>
#include <set>

// Gate control lists as the program writes them, against the schedule's own text.

/// Microseconds of the cycle in which a port's gate is open, as [begin, end).
using OpenTimes = std::vector<std::pair<qint64, qint64>>;
/// By "node,port".
using PortTimes = std::map<QString, OpenTimes>;

static QByteArray sourceFile(const QString& path)
{
    return readFile(QStringLiteral(ROTUNDA_SOURCE_FOLDER "/") + path);
}

static QString written(const char* name)
{
    return QString::fromUtf8(readFile(QStringLiteral("lists/") + QString::fromLatin1(name)));
}

static ProgramRun turnIntoLists(const QStringList& options = {})
{
    return runProgram(QStringLiteral(ROTUNDA_GATE_LISTS),
                      options + QStringList{QStringLiteral("ResourceXML/vek_input.xml"),
                                            QStringLiteral("OutputXML/vek_output.xml"),
                                            QStringLiteral("lists")});
}

static void takeDocuments(const QByteArray& input, const QByteArray& output)
{
    QVERIFY(!input.isEmpty() && !output.isEmpty());
    writeFile(QStringLiteral("ResourceXML/vek_input.xml"), input);
    writeFile(QStringLiteral("OutputXML/vek_output.xml"), output);
}

static void takeVerifierCase(const char* name)
{
    const QString folder = QStringLiteral("tests/verification/cases/") + QString::fromLatin1(name);
    takeDocuments(sourceFile(folder + QStringLiteral("/vek_input.xml")),
                  sourceFile(folder + QStringLiteral("/vek_output.xml")));
}

static const auto singleFlow = QStringLiteral("tests/planner/cases/single-flow/");

/// A talker A at port 0, a switch S1 that sends on port 1; slots 0 and 1 of five.
static QByteArray singleFlowInput()
{
    return sourceFile(singleFlow + QStringLiteral("ResourceXML/vek_input.xml"));
}

static QByteArray singleFlowOutput()
{
    return sourceFile(singleFlow + QStringLiteral("expected/vek_output.xml"));
}

static bool planExample(const char* name)
{
    const LogCapture log;
    writeFile(
        QStringLiteral("ResourceXML/vek_input.xml"),
        sourceFile(QStringLiteral("examples/%1/vek_input.xml").arg(QString::fromLatin1(name))));
    return planner::planFolder(QStringLiteral(".")).ok();
}

/// The lines of a CSV file behind its remarks and its head.
static QList<QStringList> rowsOf(const QString& csv)
{
    QList<QStringList> rows;
    for (const QString& line : csv.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        if (!line.startsWith(QLatin1Char('#')))
            rows.append(line.split(QLatin1Char(',')));
    }
    rows.removeFirst();
    return rows;
}

/// "0-100 1000-1100".
static QString spoken(const OpenTimes& times)
{
    QStringList texts;
    for (const auto& [from, to] : times)
        texts.append(QStringLiteral("%1-%2").arg(from).arg(to));
    return texts.join(QLatin1Char(' '));
}

/// A line each port.
static QStringList spoken(const PortTimes& ports)
{
    QStringList lines;
    for (const auto& [port, times] : ports)
        lines.append(port + QStringLiteral(": ") + spoken(times));
    return lines;
}

static void addTime(OpenTimes& times, bool isOpen, qint64& now_us, qint64 interval_ns)
{
    QCOMPARE(interval_ns % 1000, qint64(0));
    if (isOpen)
        times.emplace_back(now_us, now_us + interval_ns / 1000);
    now_us += interval_ns / 1000;
}

/// What gates.csv says, each port's entries filling the cycle.
static PortTimes timesOfCsv(qint64 cycle_us)
{
    PortTimes ports;
    std::map<QString, qint64> now_us;
    for (const QStringList& row : rowsOf(written("gates.csv"))) {
        const QString port = row[0] + QLatin1Char(',') + row[2];
        addTime(ports[port], row[4] == QLatin1String("0x80"), now_us[port], row[5].toLongLong());
    }
    for (const auto& [port, end] : now_us) {
        if (end != cycle_us)
            failTest(port.toUtf8() + " ends at " + QByteArray::number(end));
    }
    return ports;
}

/// What the schedule's text says: a slot of 200 us after each txslotID, neighbours joined.
static PortTimes timesOfSchedule()
{
    const QString text = QString::fromUtf8(readFile(QStringLiteral("OutputXML/vek_output.xml")));
    static const QRegularExpression sending(QStringLiteral(
        "<nodeID>(\\d+)</nodeID>\\s*(?:<inport>\\d+</inport>\\s*<rxslotID>\\d+</rxslotID>\\s*)?"
        "<outport>(\\d+)</outport>\\s*<txslotID>(\\d+)</txslotID>"));
    std::map<QString, std::set<qint64>> slotsOfPort;
    auto matches = sending.globalMatch(text);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        slotsOfPort[match.captured(1) + QLatin1Char(',') + match.captured(2)].insert(
            match.captured(3).toLongLong());
    }
    PortTimes ports;
    for (const auto& [port, numbers] : slotsOfPort) {
        OpenTimes& times = ports[port];
        for (const qint64 slot : numbers) {
            if (!times.empty() && times.back().second == slot * 200)
                times.back().second += 200;
            else
                times.emplace_back(slot * 200, slot * 200 + 200);
        }
    }
    return ports;
}

class GateListsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<TemporaryFolder>(); }
    void cleanup() { m_folder.reset(); }

    void gatesAreOpenInTheSlotsOfTheSchedule_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<qint64>("cycle_us");
        QTest::newRow("ring") << QByteArray("ring") << qint64(20000);
        QTest::newRow("avionics-line") << QByteArray("avionics-line") << qint64(80000);
        QTest::newRow("industrial-tree") << QByteArray("industrial-tree") << qint64(128000);
    }
    void gatesAreOpenInTheSlotsOfTheSchedule()
    {
        QFETCH(QByteArray, name);
        QFETCH(qint64, cycle_us);
        QVERIFY(planExample(name.constData()));
        const ProgramRun run = turnIntoLists();
        QVERIFY2(run.code == 0, qPrintable(run.errors.join(QLatin1Char('\n'))));
        const PortTimes expected = timesOfSchedule();
        QVERIFY(expected.size() > 10);
        QCOMPARE(spoken(timesOfCsv(cycle_us)), spoken(expected));
    }

    void listsAreWrittenToTheLetter()
    {
        takeDocuments(singleFlowInput(), singleFlowOutput());
        QCOMPARE(turnIntoLists().code, 0);
        const QString remarks = QStringLiteral("# ") +
                                written("assumptions.txt")
                                    .trimmed()
                                    .replace(QLatin1Char('\n'), QStringLiteral("\n# ")) +
                                QLatin1Char('\n');
        QCOMPARE(written("gates.csv"),
                 remarks + QStringLiteral("node,name,port,index,gate_states,interval_ns\n"
                                          "0,A,0,0,0x80,200000\n"
                                          "0,A,0,1,0x7f,800000\n"
                                          "2,S1,1,0,0x7f,200000\n"
                                          "2,S1,1,1,0x80,200000\n"
                                          "2,S1,1,2,0x7f,600000\n"));
        QCOMPARE(written("taprio.txt"),
                 remarks + QStringLiteral(
                               "tc qdisc replace dev A-0 parent root handle 100 taprio num_tc 2 "
                               "map 0 0 0 0 0 0 0 1 0 0 0 0 0 0 0 0 queues 1@0 1@1 base-time 0 "
                               "cycle-time 1000000 sched-entry S 02 200000 sched-entry S 01 800000 "
                               "clockid CLOCK_TAI\n"
                               "tc qdisc replace dev S1-1 parent root handle 100 taprio num_tc 2 "
                               "map 0 0 0 0 0 0 0 1 0 0 0 0 0 0 0 0 queues 1@0 1@1 base-time 0 "
                               "cycle-time 1000000 sched-entry S 01 200000 sched-entry S 02 200000 "
                               "sched-entry S 01 600000 clockid CLOCK_TAI\n"));
        QCOMPARE(
            written("latency.csv"),
            QStringLiteral("flow,talker,listener,transmissions,smallest_us,largest_us,jitter_us\n"
                           "1,A,B,1,400,400,0\n"));
        QCOMPARE(written("load.csv"),
                 QStringLiteral("node,name,port,used_slots,cycle_slots,load_percent\n"
                                "0,A,0,1,5,20.0\n"
                                "2,S1,1,1,5,20.0\n"));
    }

    void jsonSaysTheSame()
    {
        takeDocuments(singleFlowInput(), singleFlowOutput());
        QCOMPARE(turnIntoLists({QStringLiteral("--class"), QStringLiteral("5")}).code, 0);
        const QJsonArray interfaces = QJsonDocument::fromJson(written("gates.json").toUtf8())
                                          .object()
                                          .value(QStringLiteral("ietf-interfaces:interfaces"))
                                          .toObject()
                                          .value(QStringLiteral("interface"))
                                          .toArray();
        QCOMPARE(interfaces.size(), 2);
        const QJsonObject port = interfaces.last().toObject();
        QCOMPARE(port.value(QStringLiteral("name")).toString(), QStringLiteral("S1-1"));
        const QByteArray gates = R"({
            "ieee802-dot1q-sched-bridge:gate-parameter-table": {
                "gate-enabled": true, "admin-gate-states": 255,
                "admin-control-list": {"gate-control-entry": [
                    {"index": 0, "operation-name": "ieee802-dot1q-sched:set-gate-states",
                     "time-interval-value": 200000, "gate-states-value": 223},
                    {"index": 1, "operation-name": "ieee802-dot1q-sched:set-gate-states",
                     "time-interval-value": 200000, "gate-states-value": 32},
                    {"index": 2, "operation-name": "ieee802-dot1q-sched:set-gate-states",
                     "time-interval-value": 600000, "gate-states-value": 223}]},
                "admin-cycle-time": {"numerator": 1000, "denominator": 1000000},
                "admin-cycle-time-extension": 0,
                "admin-base-time": {"seconds": "0", "nanoseconds": 0},
                "config-change": true}})";
        const QJsonValue bridgePort =
            port.value(QStringLiteral("ieee802-dot1q-bridge:bridge-port"));
        QCOMPARE(QJsonDocument(bridgePort.toObject()).toJson(),
                 QJsonDocument::fromJson(gates).toJson());
    }

    void slotOverTheEndOfTheCycleGoesOnAtItsBeginning()
    {
        // A cycle of five slots and a half; the switch sends in slot 5.
        takeDocuments(singleFlowInput().replace("<period>1000</period>", "<period>1100</period>"),
                      singleFlowOutput()
                          .replace("<schedCycle>1000", "<schedCycle>1100")
                          .replace("<txslotID>1<", "<txslotID>5<")
                          .replace("<rxslotID>1<", "<rxslotID>5<")
                          .replace("<txslotID>0<", "<txslotID>4<")
                          .replace("<rxslotID>0<", "<rxslotID>4<"));
        const ProgramRun run = turnIntoLists({QStringLiteral("--with-remarks")});
        QVERIFY2(run.code == 0, qPrintable(run.errors.join(QLatin1Char('\n'))));
        const PortTimes times = timesOfCsv(1100);
        QCOMPARE(spoken(times.at(QStringLiteral("0,0"))), QStringLiteral("800-1000"));
        QCOMPARE(spoken(times.at(QStringLiteral("2,1"))), QStringLiteral("0-100 1000-1100"));
    }

    void intervalBeyondAnEntryIsSeveralEntries()
    {
        takeDocuments(
            singleFlowInput().replace("<period>1000</period>", "<period>10000000</period>"),
            singleFlowOutput().replace("<schedCycle>1000", "<schedCycle>10000000"));
        QCOMPARE(turnIntoLists().code, 0);
        QCOMPARE(spoken(timesOfCsv(10000000).at(QStringLiteral("0,0"))), QStringLiteral("0-200"));
        for (const QStringList& row : rowsOf(written("gates.csv")))
            QVERIFY(row[5].toLongLong() <= 0xFFFFFFFFLL);
    }

    void planWithFindingsIsRefusedAndSaysSo()
    {
        QVERIFY(planExample("succeeds-not-sound"));
        for (const QStringList& options :
             {QStringList(), QStringList{QStringLiteral("--with-remarks")}}) {
            const ProgramRun run = turnIntoLists(options);
            QCOMPARE(run.code, 1);
            QCOMPARE(run.errors,
                     (QStringList{QStringLiteral("fault, shared slot, node 13, port 2, slot 7, "
                                                 "flow 10-0, 25-0, 2 instead of 1"),
                                  QStringLiteral("gate-lists: refused, nothing written; findings: "
                                                 "1, faults among them: 1")}));
            QVERIFY(!QFile::exists(QStringLiteral("lists")));
        }
    }

    void planWithRemarksIsTakenWhenAsked()
    {
        takeVerifierCase("frame-longer-than-a-slot");
        QCOMPARE(turnIntoLists().code, 1);
        QVERIFY(!QFile::exists(QStringLiteral("lists")));
        const ProgramRun run = turnIntoLists({QStringLiteral("--with-remarks")});
        QCOMPARE(run.code, 0);
        QVERIFY(run.errors.first().startsWith(QStringLiteral("remark, frame longer than a slot")));
        QVERIFY(QFile::exists(QStringLiteral("lists/gates.csv")));
    }

    void assumptionsStandInTheOutput()
    {
        takeDocuments(singleFlowInput(), singleFlowOutput());
        const ProgramRun run = turnIntoLists({QStringLiteral("--limit"), QStringLiteral("2"),
                                              QStringLiteral("--class"), QStringLiteral("6")});
        QCOMPARE(run.code, 3); // a list of three entries
        const QStringList lines = QString::fromUtf8(run.output).split(QLatin1Char('\n'));
        QCOMPARE(lines.size(), 6);
        QVERIFY(lines[0].startsWith(
            QStringLiteral("One class: all scheduled flows are of traffic class 6,")));
        QVERIFY(lines[1].startsWith(QStringLiteral("Gate window: a slot of 200 us,")));
        QVERIFY(lines[2].startsWith(QStringLiteral("Base time: 0,")));
        QCOMPARE(lines[3], QStringLiteral("List length: the longest has 3 entries, at S1-1; 1 of 2 "
                                          "lists are beyond the limit of 2"));
        QCOMPARE(run.output, written("assumptions.txt").toUtf8());
        for (const char* name :
             {"gates.csv", "gates.json", "taprio.txt", "latency.csv", "load.csv"})
            QVERIFY2(!written(name).isEmpty(), name);
    }

    void namesThatAreNoInterfaceNamesBecomeNumbers()
    {
        takeDocuments(singleFlowInput()
                          .replace("&quot;S1&quot;", "&quot;$(S 1)&quot;")
                          .replace("A,S1,B", "A,$(S 1),B"),
                      singleFlowOutput());
        QCOMPARE(turnIntoLists().code, 0);
        QVERIFY(written("taprio.txt").contains(QStringLiteral(" dev node2-1 ")));
        QVERIFY(!written("taprio.txt").contains(QLatin1Char('$')));
        QVERIFY(written("gates.csv").contains(QStringLiteral("\n2,$(S 1),1,0,")));
    }

    void planWithoutFlowsHasNoList()
    {
        takeDocuments("<vek_input><topology><hosts/><switches/><links/></topology><virtuallinks/>"
                      "<flows/></vek_input>",
                      "<vek_output><schedCycle>0</schedCycle><slotLen>200</slotLen><flows/>"
                      "</vek_output>");
        QCOMPARE(turnIntoLists().code, 0);
        QVERIFY(written("assumptions.txt").contains(QStringLiteral("no port sends")));
        QVERIFY(rowsOf(written("gates.csv")).isEmpty());
    }

    void wrongUseEndsWithTwo()
    {
        takeDocuments(singleFlowInput(), singleFlowOutput());
        QCOMPARE(turnIntoLists({QStringLiteral("--class"), QStringLiteral("8")}).code, 2);
        QCOMPARE(turnIntoLists({QStringLiteral("--limit"), QStringLiteral("none")}).code, 2);
        QCOMPARE(turnIntoLists({QStringLiteral("--unknown")}).code, 2);
        QCOMPARE(runProgram(QStringLiteral(ROTUNDA_GATE_LISTS), {}).code, 2);
        writeFile(QStringLiteral("lists"), "a file in the folder's place");
        QCOMPARE(turnIntoLists().code, 2);
        QVERIFY(QFile::remove(QStringLiteral("OutputXML/vek_output.xml")));
        QCOMPARE(turnIntoLists().code, 2);
    }

private:
    std::unique_ptr<TemporaryFolder> m_folder;
};

QTEST_GUILESS_MAIN(GateListsTest)
#include "GateListsTest.moc"
