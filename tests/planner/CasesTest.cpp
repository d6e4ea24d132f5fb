#include "planner/PreProcess.h"
#include "planner/TTPlanning.h"

#include "tests/support/Documents.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TemporaryFolder.h"

#include <QDir>
#include <QDirIterator>
#include <QtTest>

// Runs the engine on every folder of tests/planner/cases and on every example.
//
// A case holds the working folder as the run finds it: ResourceXML for both stages, OutputXML for
// the second stage alone. Its folder "expected" holds the codes and log lines in run.log, and the
// documents that the run leaves. With ROTUNDA_RECORD_CASES set the results become the expectations:
// read the difference before you commit it.

static QString sourceFolder()
{
    return QStringLiteral(ROTUNDA_SOURCE_FOLDER);
}

static QStringList foldersIn(const QString& path)
{
    return QDir(path).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
}

static void copyTree(const QString& from, const QString& to)
{
    QDirIterator files(from, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString relative = QDir(from).relativeFilePath(files.next());
        if (!relative.startsWith(QLatin1String("expected/")))
            writeFile(QDir(to).filePath(relative), readFile(files.filePath()));
    }
}

/// What a run leaves behind.
struct RunResult {
    qint32 preProcessCode = 0;
    qint32 planningCode = 0;
    QByteArray log; ///< codes and log lines, the working folder's path replaced
    QByteArray hsDocument;
    QByteArray outputDocument;
};

static QByteArray codeLine(const char* stage, qint32 code)
{
    return QByteArray(stage) + " returned " + QByteArray::number(code) + '\n';
}

static RunResult runIn(const QString& folder)
{
    LogCapture capture;
    RunResult result;
    const bool secondStageOnly = QDir().exists(QStringLiteral("OutputXML"));
    if (!secondStageOnly) {
        planner::PlanningContext context;
        result.preProcessCode = planner::preProcess(context);
        result.log = capture.lines().join(QLatin1Char('\n')).toUtf8() + '\n' +
                     codeLine("preProcess", result.preProcessCode);
        capture.clear();
    }
    if (result.preProcessCode == planner::code::ok) {
        planner::TTPlanner planner;
        result.planningCode = planner::TTPlanning(planner);
        result.log += capture.lines().join(QLatin1Char('\n')).toUtf8() + '\n' +
                      codeLine("TTPlanning", result.planningCode);
    }
    result.log.replace(QDir(folder).absolutePath().toUtf8(), "<folder>");
    result.hsDocument = readFile(QStringLiteral("OutputXML/vek_hs.xml"));
    result.outputDocument = readFile(QStringLiteral("OutputXML/vek_output.xml"));
    return result;
}

static void record(const QString& folder, const RunResult& result)
{
    QDir(folder).removeRecursively();
    writeFile(folder + QStringLiteral("/run.log"), result.log);
    if (!result.hsDocument.isEmpty())
        writeFile(folder + QStringLiteral("/vek_hs.xml"), result.hsDocument);
    if (!result.outputDocument.isEmpty())
        writeFile(folder + QStringLiteral("/vek_output.xml"), result.outputDocument);
}

class CasesTest : public QObject
{
    Q_OBJECT

private slots:
    void caseGivesTheExpectedDocumentsAndLog_data()
    {
        QTest::addColumn<QString>("folder");
        const QString cases = sourceFolder() + QStringLiteral("/tests/planner/cases/");
        for (const QString& name : foldersIn(cases))
            QTest::newRow(qPrintable(name)) << cases + name;
    }

    void caseGivesTheExpectedDocumentsAndLog()
    {
        QFETCH(QString, folder);
        const TemporaryFolder working;
        copyTree(folder, QDir::currentPath());
        const RunResult result = runIn(QDir::currentPath());
        const QString expected = folder + QStringLiteral("/expected");
        if (qEnvironmentVariableIsSet("ROTUNDA_RECORD_CASES"))
            record(expected, result);
        QCOMPARE(result.log, readFile(expected + QStringLiteral("/run.log")));
        QVERIFY(!result.log.isEmpty());
        QCOMPARE(result.hsDocument, readFile(expected + QStringLiteral("/vek_hs.xml")));
        QCOMPARE(result.outputDocument, readFile(expected + QStringLiteral("/vek_output.xml")));
    }

    void examplePlansAsItsNameSays_data()
    {
        QTest::addColumn<QString>("document");
        QTest::addColumn<int>("preProcessCode");
        QTest::addColumn<int>("planningCode");
        const QString examples = sourceFolder() + QStringLiteral("/examples/");
        for (const QString& name : foldersIn(examples)) {
            if (QFile::exists(examples + name + QStringLiteral("/CMakeLists.txt")))
                continue; // a program in source
            const bool badWindow = name == QLatin1String("fails-window-check");
            const bool badResolution =
                name == QLatin1String("fails-resolution") || name == QLatin1String("busy-plant");
            QTest::newRow(qPrintable(name)) << examples + name + QStringLiteral("/vek_input.xml")
                                            << (badWindow ? -3 : 0) << (badResolution ? -3 : 0);
        }
    }

    void examplePlansAsItsNameSays()
    {
        QFETCH(QString, document);
        const TemporaryFolder working;
        const QByteArray bytes = readFile(document);
        QVERIFY(!bytes.isEmpty());
        writeFile(QStringLiteral("ResourceXML/vek_input.xml"), bytes);
        const RunResult result = runIn(QDir::currentPath());
        QTEST(result.preProcessCode, "preProcessCode");
        QTEST(result.planningCode, "planningCode");
        const bool planned = result.preProcessCode == 0 && result.planningCode == 0;
        QCOMPARE(!result.outputDocument.isEmpty(), planned);
    }

    void samePlanTwiceGivesTheSameBytes()
    {
        const TemporaryFolder working;
        writeFile(QStringLiteral("ResourceXML/vek_input.xml"),
                  readFile(sourceFolder() + QStringLiteral("/examples/ring/vek_input.xml")));
        planner::PlanningContext context;
        planner::TTPlanner planner;
        QByteArray outputs[2];
        for (QByteArray& output : outputs) {
            const LogCapture log;
            QCOMPARE(planner::preProcess(context), 0);
            QCOMPARE(planner::TTPlanning(planner), 0);
            output = readFile(QStringLiteral("OutputXML/vek_output.xml"));
        }
        QVERIFY(!outputs[0].isEmpty());
        QCOMPARE(outputs[0], outputs[1]);
    }
};

QTEST_APPLESS_MAIN(CasesTest)
#include "CasesTest.moc"
