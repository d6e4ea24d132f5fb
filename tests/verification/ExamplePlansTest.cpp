#include "planner/PreProcess.h"
#include "planner/TTPlanner.h"
#include "planner/TTPlanning.h"
#include "verification/PlanVerifier.h"

#include "tests/support/Documents.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TemporaryFolder.h"

#include <QDir>
#include <QtTest>

// The examples that a newcomer plans first are sound; the one that is there to show that a plan
// need not be has just the fault that it is told to have.

static QDir examplesFolder()
{
    return QDir(QStringLiteral(ROTUNDA_SOURCE_FOLDER "/examples"));
}

/// Plans the document in the current directory; whether both stages succeed.
static bool plan(const QByteArray& document)
{
    const LogCapture log;
    writeFile(QStringLiteral("ResourceXML/vek_input.xml"), document);
    planner::PlanningContext context;
    planner::TTPlanner planner;
    return planner::preProcess(context) == planner::code::ok &&
           planner::TTPlanning(planner) == planner::code::ok;
}

class ExamplePlansTest : public QObject
{
    Q_OBJECT

private slots:
    void examplesThatPlanAreSound_data();
    void examplesThatPlanAreSound();
};

void ExamplePlansTest::examplesThatPlanAreSound_data()
{
    QTest::addColumn<QString>("document");
    QTest::addColumn<bool>("succeeds");
    QTest::addColumn<QStringList>("findings");
    const QDir examples = examplesFolder();
    for (const QString& name : examples.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        if (examples.exists(name + QStringLiteral("/CMakeLists.txt")))
            continue; // a program, not a network
        QStringList findings;
        if (name == QStringLiteral("succeeds-not-sound"))
            findings.append(QStringLiteral("fault, shared slot, node 13, port 2, slot 7, "
                                           "flow 10-0, 25-0, 2 instead of 1"));
        const bool refused =
            name.startsWith(QStringLiteral("fails-")) || name == QStringLiteral("busy-plant");
        QTest::newRow(qPrintable(name))
            << examples.filePath(name + QStringLiteral("/vek_input.xml")) << !refused << findings;
    }
}

void ExamplePlansTest::examplesThatPlanAreSound()
{
    QFETCH(QString, document);
    QFETCH(bool, succeeds);
    QFETCH(QStringList, findings);
    const TemporaryFolder folder;
    QVERIFY(QFile::exists(document));
    QCOMPARE(plan(readFile(document)), succeeds);
    if (!succeeds)
        return;
    const verification::Verification verified =
        verifyPlan(verification::readPlan(QStringList{QStringLiteral("ResourceXML/vek_input.xml")},
                                          {QStringLiteral("OutputXML/vek_output.xml")}));
    QVERIFY(verified.transmissions > 0);
    QStringList lines;
    for (const verification::Finding& finding : verified.findings)
        lines.append(describe(finding));
    QCOMPARE(lines, findings);
}

QTEST_GUILESS_MAIN(ExamplePlansTest)
#include "ExamplePlansTest.moc"
