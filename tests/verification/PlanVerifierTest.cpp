#include "verification/PlanVerifier.h"
#include "verification/TransmissionMatch.h"

#include "tests/support/Documents.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/verification/SpokenFindings.h"

#include <QDir>
#include <QtTest>

#include <tinyxml2.h>

#include <algorithm>
#include <limits>
#include <set>

using namespace verification;

// Each folder of tests/verification/cases holds the two documents of a plan with one thing about it
// (a document may be missing), and in findings.txt what the examination says, a line a finding.

static QString casesFolder()
{
    return QStringLiteral(ROTUNDA_SOURCE_FOLDER "/tests/verification/cases");
}

static QStringList caseNames()
{
    return QDir(casesFolder()).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
}

static QString fileOf(const QString& name, const char* document)
{
    return QStringLiteral("%1/%2/%3").arg(casesFolder(), name, QString::fromLatin1(document));
}

static QStringList existing(const QString& path)
{
    return QFile::exists(path) ? QStringList{path} : QStringList();
}

static Verification verifyCase(const QString& name)
{
    return verifyPlan(readPlan(existing(fileOf(name, "vek_input.xml")),
                               existing(fileOf(name, "vek_output.xml"))));
}

static QStringList linesOf(const Verification& verification)
{
    QStringList lines;
    for (const Finding& finding : verification.findings)
        lines.append(describe(finding));
    return lines;
}

class PlanVerifierTest : public QObject
{
    Q_OBJECT

private slots:
    void casesGiveTheirFindings_data();
    void casesGiveTheirFindings();
    void everyKindHasCase();
    void everyKindHasNameOfItsOwn();
    void soundPlanIsCounted();
    void findingCarriesTheNumbersThatDisagree();
    void faultsStandBeforeRemarks();
    void longListsOfTransmissionsAreCutInTheLineOnly();
    void parsedDocumentsGiveWhatFilesGive();
    void documentsOfAnyFormGiveTheSameFindings_data();
    void documentsOfAnyFormGiveTheSameFindings();
    void severalInputDocumentsAreReadAsOne();
    void fileThatDoesNotLoadIsDamage();
    void slotsBeforeTheCycleAreReadWithTheirSign();
    void commonCycleIsTheLargestNumberWhenItIsLarger();
    void transmissionThatNobodyAsksForHasNoNumber();
    void numbersBeyond16BitsOfSeqAreToldApartByOrder();
};

void PlanVerifierTest::casesGiveTheirFindings_data()
{
    QTest::addColumn<QString>("name");
    for (const QString& name : caseNames())
        QTest::newRow(qPrintable(name)) << name;
}

void PlanVerifierTest::casesGiveTheirFindings()
{
    QFETCH(QString, name);
    const QString expected = QString::fromUtf8(readFile(fileOf(name, "findings.txt")));
    QStringList lines = linesOf(verifyCase(name));
    lines.append(QString());
    QCOMPARE(lines.join(QLatin1Char('\n')), expected.isEmpty() ? QString() : expected);
}

void PlanVerifierTest::everyKindHasCase()
{
    std::set<Kind> met;
    for (const QString& name : caseNames()) {
        for (const Finding& finding : verifyCase(name).findings)
            met.insert(finding.kind);
    }
    for (const Kind kind : allKinds())
        QVERIFY2(met.count(kind) > 0, qPrintable(nameOf(kind)));
}

void PlanVerifierTest::everyKindHasNameOfItsOwn()
{
    QSet<QString> names;
    for (const Kind kind : allKinds())
        names.insert(nameOf(kind));
    QVERIFY(!names.contains(QString()));
    QCOMPARE(static_cast<size_t>(names.size()), allKinds().size());
}

void PlanVerifierTest::soundPlanIsCounted()
{
    const Verification verification = verifyCase(QStringLiteral("sound-plan"));
    QVERIFY(verification.sound());
    QCOMPARE(verification.transmissions, size_t(3));
    QCOMPARE(verification.flows, size_t(2));
    QCOMPARE(verification.ports, size_t(4));
    // A talker's port counts also without a row.
    QCOMPARE(verifyCase(QStringLiteral("talker-of-two-ports")).ports, size_t(5));
    PlanRecords one = readPlan({fileOf(QStringLiteral("sound-plan"), "vek_input.xml")},
                               {fileOf(QStringLiteral("sound-plan"), "vek_output.xml")});
    one.schedule.transmissions.resize(1);
    QCOMPARE(verifyPlan(one).ports, size_t(3));
    const Verification none;
    QVERIFY(none.sound());
    QCOMPARE(none.transmissions + none.flows + none.ports, size_t(0));
}

void PlanVerifierTest::findingCarriesTheNumbersThatDisagree()
{
    const Verification verification = verifyCase(QStringLiteral("slot-shared-on-a-port"));
    QVERIFY(!verification.sound());
    const Finding& finding = verification.findings.front();
    QCOMPARE(finding.kind, Kind::SharedSlot);
    QCOMPARE(finding.severity, Severity::Fault);
    QCOMPARE(finding.node, 1);
    QCOMPARE(finding.port, 1);
    QCOMPARE(finding.slot, qint64(0));
    QCOMPARE(finding.transmissions.size(), size_t(2));
    QCOMPARE(finding.transmissions[0].flowID, 1);
    QCOMPARE(finding.transmissions[1].flowID, 2);
    QCOMPARE(finding.found, qint64(2));
    QCOMPARE(finding.high, qint64(1));
    const Finding gap = verifyCase(QStringLiteral("neighbours-without-a-link")).findings.front();
    QCOMPARE(gap.found, qint64(12));
    QCOMPARE(gap.low, qint64(0));
    QCOMPARE(gap.high, qint64(0));
}

void PlanVerifierTest::faultsStandBeforeRemarks()
{
    const Verification verification = verifyCase(QStringLiteral("slot-shared-over-the-cycles-end"));
    const std::vector<Finding>& findings = verification.findings;
    QVERIFY(std::is_sorted(findings.begin(), findings.end()));
    QCOMPARE(verification.faults(), size_t(3));
    QCOMPARE(findings.front().severity, Severity::Fault);
    QCOMPARE(findings.back().severity, Severity::Remark);
}

void PlanVerifierTest::longListsOfTransmissionsAreCutInTheLineOnly()
{
    Finding finding;
    finding.kind = Kind::SharedSlot;
    for (int flow = 1; flow <= 9; ++flow)
        finding.transmissions.push_back({flow, 0});
    QVERIFY(describe(finding).endsWith(
        QStringLiteral("flow 1-0, 2-0, 3-0, 4-0, 5-0, 6-0, and 3 more")));
}

void PlanVerifierTest::parsedDocumentsGiveWhatFilesGive()
{
    for (const QString& name : {QStringLiteral("sound-plan"), QStringLiteral("hop-off-the-path")}) {
        tinyxml2::XMLDocument input;
        tinyxml2::XMLDocument output;
        QCOMPARE(input.LoadFile(fileOf(name, "vek_input.xml").toUtf8()), tinyxml2::XML_SUCCESS);
        QCOMPARE(output.LoadFile(fileOf(name, "vek_output.xml").toUtf8()), tinyxml2::XML_SUCCESS);
        QCOMPARE(linesOf(verifyPlan(readPlan(input, output))), linesOf(verifyCase(name)));
    }
}

void PlanVerifierTest::documentsOfAnyFormGiveTheSameFindings_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::newRow("as written") << QByteArray("<flow>") << QByteArray("<flow>");
    QTest::newRow("declaration") << QByteArray("<vek_output")
                                 << QByteArray("<?xml version=\"1.0\"?><vek_output");
    QTest::newRow("comment with an instance")
        << QByteArray("<flow>") << QByteArray("<flow><!-- <Instance></Instance> -->");
    QTest::newRow("comment with flows")
        << QByteArray("<schedCycle>") << QByteArray("<!-- <flows></flows> --><schedCycle>");
    QTest::newRow("attributes") << QByteArray("<Instance>") << QByteArray("<Instance id=\"1\">");
    QTest::newRow("blanks") << QByteArray("<Instance>") << QByteArray("\r\n\t <Instance>\n");
    QTest::newRow("on one line") << QByteArray("\n") << QByteArray(" ");
    QTest::newRow("text between") << QByteArray("<flow>") << QByteArray("text<flow>text");
    QTest::newRow("part behind the flows")
        << QByteArray("</flows>") << QByteArray("</flows><more/>");
    QTest::newRow("other name of the root") << QByteArray("vek_output") << QByteArray("plan");
}

// The usual form is read piece by piece, every other one as a whole; nobody can tell from outside.
void PlanVerifierTest::documentsOfAnyFormGiveTheSameFindings()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    const TemporaryFolder folder;
    for (const QString& name :
         {QStringLiteral("sound-plan"), QStringLiteral("slot-shared-on-a-port"),
          QStringLiteral("flow-without-transmission")}) {
        QByteArray schedule = readFile(fileOf(name, "vek_output.xml"));
        schedule.replace(before, after);
        writeFile(QStringLiteral("out.xml"), schedule);
        const PlanRecords plan = readPlan(QStringList{fileOf(name, "vek_input.xml")},
                                          QStringList{QStringLiteral("out.xml")});
        QCOMPARE(linesOf(verifyPlan(plan)), linesOf(verifyCase(name)));
    }
}

// Nodes of the first document are the second one's, too; its flows come behind.
void PlanVerifierTest::severalInputDocumentsAreReadAsOne()
{
    const TemporaryFolder folder;
    const QByteArray whole = readFile(fileOf(QStringLiteral("sound-plan"), "vek_input.xml"));
    const int flows = whole.indexOf("  <flows>");
    const QByteArray noFlows = "  <flows></flows>\n</vek_input>\n";
    writeFile(QStringLiteral("nodes.xml"), whole.left(flows) + noFlows);
    writeFile(QStringLiteral("flows.xml"),
              "<vek_input><topology><hosts/><switches/><links/></topology><virtuallinks/>" +
                  whole.mid(flows));
    const QStringList output{fileOf(QStringLiteral("sound-plan"), "vek_output.xml")};
    const QStringList both{QStringLiteral("nodes.xml"), QStringLiteral("flows.xml")};
    QCOMPARE(linesOf(verifyPlan(readPlan(both, output))), QStringList());
    QVERIFY(!verifyPlan(readPlan(QStringList{QStringLiteral("nodes.xml")}, output)).sound());
}

void PlanVerifierTest::fileThatDoesNotLoadIsDamage()
{
    const TemporaryFolder folder;
    const PlanRecords plan = readPlan(QStringList{QStringLiteral("nowhere.xml")}, QStringList());
    QCOMPARE(plan.damage.size(), size_t(2));
    QCOMPARE(describe(plan.damage.front()),
             QStringLiteral("fault, damaged document, vek_input.xml: it cannot be opened"));
    const PlanRecords device = readPlan(QStringList{QStringLiteral("/dev/null")}, QStringList());
    QCOMPARE(describe(device.damage.front()), describe(plan.damage.front()));
}

void PlanVerifierTest::slotsBeforeTheCycleAreReadWithTheirSign()
{
    const TemporaryFolder folder;
    QByteArray schedule = readFile(fileOf(QStringLiteral("sound-plan"), "vek_output.xml"));
    schedule.replace("<txslotID>0</txslotID>", "<txslotID>4294967295</txslotID>");
    writeFile(QStringLiteral("vek_output.xml"), schedule);
    const PlanRecords plan =
        readPlan(QStringList{fileOf(QStringLiteral("sound-plan"), "vek_input.xml")},
                 QStringList{QStringLiteral("vek_output.xml")});
    QVERIFY(plan.damage.empty());
    QCOMPARE(plan.schedule.hops.front().sendSlot, qint64(-1));
}

void PlanVerifierTest::commonCycleIsTheLargestNumberWhenItIsLarger()
{
    Network network;
    QCOMPARE(commonCycle(network), qint64(0));
    network.flows.resize(1);
    QCOMPARE(commonCycle(network), qint64(0));
    network.flows[0].period_us = 1;
    QCOMPARE(commonCycle(network), qint64(1));
    for (const qint64 period_us : {4294967291, 4294967279, 4294967291, 4294967231}) {
        NetworkFlow flow;
        flow.period_us = period_us;
        network.flows.push_back(flow);
    }
    QCOMPARE(commonCycle(network), std::numeric_limits<qint64>::max());
    network.flows.resize(1);
    network.flows[0].period_us = 3037000499;
    network.flows.push_back(network.flows[0]);
    network.flows[1].period_us = 3037000498;
    QCOMPARE(commonCycle(network), qint64(3037000499) * 3037000498);
}

void PlanVerifierTest::transmissionThatNobodyAsksForHasNoNumber()
{
    const QString name = QStringLiteral("transmission-nobody-asks-for");
    const TransmissionMatch match = matchTransmissions(
        readPlan({fileOf(name, "vek_input.xml")}, {fileOf(name, "vek_output.xml")}));
    QCOMPARE(match.places.size(), size_t(4));
    QCOMPARE(match.places[0].flow, 0);
    QCOMPARE(match.places[1].number, qint64(1));
    const auto nobody = std::find_if(match.places.begin(), match.places.end(),
                                     [](const TransmissionMatch::Place& place) {
                                         return place.flow == TransmissionMatch::nobody;
                                     });
    QVERIFY(nobody != match.places.end());
    QCOMPARE(nobody->number, qint64(0));
}

// The count of transmissions has 16 bits in the document, so those from 65536 on repeat numbers.
void PlanVerifierTest::numbersBeyond16BitsOfSeqAreToldApartByOrder()
{
    constexpr int count = 65538;
    const TemporaryFolder folder;
    QByteArray input = readFile(fileOf(QStringLiteral("sound-plan"), "vek_input.xml"));
    input.replace("<period>4000</period>", QByteArray("<period>") +
                                               QByteArray::number(count * 2000) +
                                               QByteArray("</period>"));
    QByteArray schedule = "<vek_output><schedCycle>" + QByteArray::number(count * 2000) +
                          "</schedCycle><slotLen>200</slotLen><flows><flow>";
    const QByteArray row = "<path_slot><talker><nodeID>1</nodeID><outport>1</outport>"
                           "<txslotID>%1</txslotID></talker><bridges><bridge><nodeID>11</nodeID>"
                           "<inport>1</inport><rxslotID>%1</rxslotID><outport>2</outport>"
                           "<txslotID>%2</txslotID></bridge><bridge><nodeID>12</nodeID>"
                           "<inport>1</inport><rxslotID>%2</rxslotID><outport>2</outport>"
                           "<txslotID>%3</txslotID></bridge></bridges><listeners><listener>"
                           "<nodeID>2</nodeID><inport>1</inport><rxslotID>%3</rxslotID>"
                           "</listener></listeners></path_slot></Instance>";
    for (int number = 0; number < count; ++number) {
        QByteArray instance = row;
        for (const char* place : {"%1", "%2", "%3"})
            instance.replace(place, QByteArray::number(number * 10 + place[1] - '1'));
        schedule += "<Instance><flowID>1</flowID><seq>" + QByteArray::number(number % 65536) +
                    "</seq>" + instance;
    }
    writeFile(QStringLiteral("in.xml"), input);
    writeFile(QStringLiteral("out.xml"), schedule + "</flow></flows></vek_output>");
    const Verification verification =
        verifyPlan(readPlan(QStringList{QStringLiteral("in.xml")}, {QStringLiteral("out.xml")}));
    // Only the flow that was left out of this schedule is missing.
    QCOMPARE(linesOf(verification),
             QStringList{QStringLiteral("fault, missing flow, flow 2, 0 instead of 1")});
}

QTEST_GUILESS_MAIN(PlanVerifierTest)
#include "PlanVerifierTest.moc"
