#include "verification/PlanFigures.h"
#include "verification/PlanVerifier.h"
#include "verification/ScheduleDocument.h"

#include "tests/support/Documents.h"
#include "tests/support/Failure.h"
#include "tests/support/RandomSource.h"
#include "tests/verification/SpokenRecords.h"

#include <QDir>
#include <QtTest>

#include <tinyxml2.h>

#include <algorithm>

using namespace verification;

/// Documents cut off and disturbed anywhere are examined to the end.
class DamagedPlansTest : public QObject
{
    Q_OBJECT

private slots:
    void everyCutOfDocumentIsExamined();
    void disturbedDocumentsAreExamined();
    void cutElementsAreReported();
    void numberOfElevenDigitsIsNone();
    void endOfAnInstanceWithBlanksHidesNoOther();
};

namespace
{

QStringList caseFolders()
{
    const QDir cases(QStringLiteral(ROTUNDA_SOURCE_FOLDER "/tests/verification/cases"));
    QStringList folders;
    for (const QString& name : cases.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name))
        folders.append(cases.filePath(name));
    return folders;
}

/// A document that can be taken apart gives, piece by piece, what its tree gives.
void checkPieces(const QByteArray& output, const tinyxml2::XMLDocument& tree,
                 const PlanRecords& plan)
{
    PlanRecords byPieces;
    if (!readScheduleByPieces(output, byPieces.schedule, byPieces.damage))
        return;
    if (tree.Error() || linesOf(byPieces.schedule) != linesOf(plan.schedule) ||
        !std::equal(byPieces.damage.rbegin(), byPieces.damage.rend(), plan.damage.rbegin()))
        failTest("pieces and tree differ: " + output);
}

/// Examines a plan in every way there is; the findings of a repetition must be the same.
Verification examine(const QByteArray& input, const QByteArray& output)
{
    tinyxml2::XMLDocument inputTree(true, tinyxml2::PRESERVE_WHITESPACE);
    tinyxml2::XMLDocument outputTree(true, tinyxml2::PRESERVE_WHITESPACE);
    inputTree.Parse(input.constData(), static_cast<size_t>(input.size()));
    outputTree.Parse(output.constData(), static_cast<size_t>(output.size()));
    const PlanRecords plan = readPlan(inputTree, outputTree);
    checkPieces(output, outputTree, plan);
    Verification verification = verifyPlan(plan);
    figuresOf(plan);
    if (!std::is_sorted(verification.findings.begin(), verification.findings.end()) ||
        !(verifyPlan(plan).findings == verification.findings))
        failTest("the findings have no fixed order");
    for (const Finding& finding : verification.findings)
        describe(finding);
    return verification;
}

const QList<QByteArray>& oddNumbers()
{
    static const QList<QByteArray> numbers{"",           "-1",          "65535",      "65536",
                                           "2147483647", "2147483648",  "4294967295", "4294967296",
                                           "9999999999", "99999999999", "1e9",        "0x10",
                                           " 7 ",        "--3",         "[0,0]",      "\"TT\""};
    return numbers;
}

/// Changes one place: a character, a number, an element taken out or doubled.
QByteArray disturbed(RandomSource& random, QByteArray document)
{
    const int place = random.below(document.size());
    const int open = document.indexOf('>', place);
    const int close = open < 0 ? -1 : document.indexOf("</", open);
    const int end = close < 0 ? -1 : document.indexOf('>', close);
    if (end < 0)
        return document.left(place);
    switch (random.below(5)) {
    case 0:
        document[place] = static_cast<char>(random.below(256));
        break;
    case 1:
    case 2:
        document.replace(open + 1, close - open - 1,
                         oddNumbers().at(random.below(oddNumbers().size())));
        break;
    case 3:
        document.remove(open + 1, end - open);
        break;
    default:
        document.insert(open + 1, document.mid(open + 1, end - open));
        break;
    }
    return document;
}

} // namespace

void DamagedPlansTest::everyCutOfDocumentIsExamined()
{
    const QString whole = caseFolders().filter(QStringLiteral("sound-plan")).first();
    const QByteArray input = readFile(whole + QStringLiteral("/vek_input.xml"));
    const QByteArray output = readFile(whole + QStringLiteral("/vek_output.xml"));
    QVERIFY(examine(input, output).sound());
    for (int length = 0; length + 1 < input.size(); length += 7)
        QVERIFY(!examine(input.left(length), output).sound());
    for (int length = 0; length + 1 < output.size(); length += 7)
        QVERIFY(!examine(input, output.left(length)).sound());
}

void DamagedPlansTest::disturbedDocumentsAreExamined()
{
    RandomSource random(12);
    size_t findings = 0;
    for (const QString& name : caseFolders()) {
        const QByteArray input = readFile(name + QStringLiteral("/vek_input.xml"));
        const QByteArray output = readFile(name + QStringLiteral("/vek_output.xml"));
        if (input.isEmpty() || output.isEmpty())
            continue;
        for (int round = 0; round < 100; ++round) {
            QByteArray changedInput = input;
            QByteArray changedOutput = output;
            for (int change = random.below(4); change >= 0; --change) {
                QByteArray& changed = random.chance(50) ? changedInput : changedOutput;
                if (!changed.isEmpty())
                    changed = disturbed(random, changed);
            }
            findings += examine(changedInput, changedOutput).findings.size();
        }
    }
    QVERIFY(findings > 10000);
}

// A document that still parses but lacks an element says which one, and where.
void DamagedPlansTest::cutElementsAreReported()
{
    const QString whole = caseFolders().filter(QStringLiteral("sound-plan")).first();
    const QByteArray input = readFile(whole + QStringLiteral("/vek_input.xml"));
    const QByteArray output = readFile(whole + QStringLiteral("/vek_output.xml"));
    for (const char* name : {"flowID", "seq", "nodeID", "outport", "txslotID", "inport", "rxslotID",
                             "talker", "bridges", "listeners", "path_slot", "schedCycle"}) {
        QByteArray changed = output;
        const int place = changed.indexOf(QByteArray("<") + name + ">");
        const QByteArray end = QByteArray("</") + name + ">";
        changed.remove(place, changed.indexOf(end, place) + end.size() - place);
        const Verification verification = examine(input, changed);
        const QString line = describe(verification.findings.front());
        QVERIFY2(line.contains(QStringLiteral("\"%1\" is missing").arg(QString::fromLatin1(name))),
                 qPrintable(line));
    }
}

// Not even one of zeros: what is read in pieces follows the rule of the whole.
void DamagedPlansTest::numberOfElevenDigitsIsNone()
{
    const QString whole = caseFolders().filter(QStringLiteral("sound-plan")).first();
    const QByteArray input = readFile(whole + QStringLiteral("/vek_input.xml"));
    QByteArray output = readFile(whole + QStringLiteral("/vek_output.xml"));
    const int number = output.indexOf("<txslotID>") + 10;
    const int digits = output.indexOf('<', number) - number;
    output.insert(number, QByteArray(10 - digits, '0'));
    QVERIFY(examine(input, output).sound());
    output.insert(number, '0');
    QVERIFY(describe(examine(input, output).findings.front())
                .contains(QStringLiteral("\"txslotID\" is no number")));
}

// The XML library knows an end by its bracket, a slash and its name, whatever blanks stand between.
void DamagedPlansTest::endOfAnInstanceWithBlanksHidesNoOther()
{
    const QString whole = caseFolders().filter(QStringLiteral("sound-plan")).first();
    const QByteArray input = readFile(whole + QStringLiteral("/vek_input.xml"));
    const QByteArray output = readFile(whole + QStringLiteral("/vek_output.xml"));
    for (const char* end :
         {"</Instance >", "</Instance\n>", "< /Instance>", "<\v/Instance>", "<\r\n/Instance\f>"}) {
        QByteArray changed = output;
        changed.replace(changed.indexOf("</Instance>"), 11, end);
        QVERIFY2(examine(input, changed).sound(), end);
    }
}

QTEST_GUILESS_MAIN(DamagedPlansTest)
#include "DamagedPlansTest.moc"
