#include "planner/Planning.h"
#include "planner/PlanningModel.h"

#include "tests/support/Documents.h"
#include "tests/support/LogCapture.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/ProgramRun.h"
#include "tests/support/TemporaryFolder.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QtTest>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using planner::PlanResult;
using planner::PlanStep;

namespace planner
{

static char* toString(PlanStep step)
{
    return qstrdup(QByteArray("step ") + QByteArray::number(int(step)));
}

} // namespace planner

static QByteArray sourceFile(const char* path)
{
    return readFile(QStringLiteral(ROTUNDA_SOURCE_FOLDER "/") + QString::fromLatin1(path));
}

static QByteArray example(const char* name)
{
    return sourceFile((QByteArray("examples/") + name + "/vek_input.xml").constData());
}

static const auto input = QStringLiteral("plant/ResourceXML/vek_input.xml");
static const auto intermediate = QStringLiteral("plant/OutputXML/vek_hs.xml");
static const auto schedule = QStringLiteral("plant/OutputXML/vek_output.xml");

static PlanResult plan()
{
    const LogCapture log;
    return planner::planFolder(QStringLiteral("plant"));
}

// A folder planned by one call, and by the program around it.
class PlanFolderTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<TemporaryFolder>(); }
    void cleanup() { m_folder.reset(); }

    void documentsAreThoseOfTheStages()
    {
        const char* const aCase = "tests/planner/cases/conflict-resolved/";
        writeFile(input, sourceFile((QByteArray(aCase) + "ResourceXML/vek_input.xml").constData()));
        QVERIFY(plan().ok());
        for (const char* name : {"vek_hs.xml", "vek_output.xml"}) {
            const QByteArray expected =
                sourceFile((QByteArray(aCase) + "expected/" + name).constData());
            QVERIFY(!expected.isEmpty());
            QCOMPARE(readFile(QStringLiteral("plant/OutputXML/") + QString::fromLatin1(name)),
                     expected);
        }
    }

    void currentDirectoryIsWhatItWas()
    {
        const QString before = QDir::currentPath();
        writeFile(input, example("ring"));
        QVERIFY(plan().ok());
        QCOMPARE(QDir::currentPath(), before);
        QVERIFY(!QFile::exists(QStringLiteral("OutputXML")));
        writeFile(input, example("fails-resolution"));
        QVERIFY(!plan().ok());
        QCOMPARE(QDir::currentPath(), before);
    }

    void everyOutcomeHasItsWords_data()
    {
        QTest::addColumn<int>("step");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("words");
        const auto add = [](PlanStep step, int code, const char* words) {
            QTest::addRow("step %d, code %d", int(step), code)
                << int(step) << code << QString::fromLatin1(words);
        };
        using namespace planner;
        for (const PlanStep step :
             {PlanStep::Folder, PlanStep::PreProcess, PlanStep::TTPlanning, PlanStep::Saving})
            add(step, code::ok, "");
        add(PlanStep::Folder, code::folderMissing, "the folder cannot be entered");
        add(PlanStep::PreProcess, code::folderMissing, "there is no folder ResourceXML");
        add(PlanStep::PreProcess, code::refused, "the windows of a flow leave it no slot");
        add(PlanStep::PreProcess, code::unreadable, "the input document cannot be read");
        add(PlanStep::TTPlanning, code::folderMissing, "there is no folder OutputXML");
        add(PlanStep::TTPlanning, code::refused, "a conflict cannot be resolved");
        add(PlanStep::TTPlanning, code::unreadable, "the windows cannot be read back");
        add(PlanStep::Saving, code::unreadable, "the documents in OutputXML cannot be written");
    }

    void everyOutcomeHasItsWords()
    {
        QFETCH(int, step);
        QFETCH(int, code);
        QFETCH(QString, words);
        QCOMPARE(planner::describe({static_cast<PlanStep>(step), code}), words);
        QVERIFY(PlanResult().ok());
    }

    void refusalTellsStepAndCode_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<int>("step");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("words");
        QTest::newRow("window") << example("fails-window-check") << int(PlanStep::PreProcess) << -3
                                << QStringLiteral("the windows of a flow leave it no slot");
        QTest::newRow("resolution") << example("fails-resolution") << int(PlanStep::TTPlanning)
                                    << -3 << QStringLiteral("a conflict cannot be resolved");
        QTest::newRow("no document") << QByteArray("<a>") << int(PlanStep::PreProcess) << -1
                                     << QStringLiteral("the input document cannot be read");
    }
    void refusalTellsStepAndCode()
    {
        QFETCH(QByteArray, document);
        writeFile(input, document);
        const PlanResult result = plan();
        QTEST(int(result.step), "step");
        QTEST(int(result.code), "code");
        QTEST(describe(result), "words");
    }

    void missingFoldersAreTold()
    {
        PlanResult result = plan();
        QCOMPARE(result.step, PlanStep::Folder);
        QCOMPARE(result.code, planner::code::folderMissing);
        QVERIFY(QDir().mkdir(QStringLiteral("plant")));
        result = plan();
        QCOMPARE(result.step, PlanStep::PreProcess);
        QCOMPARE(result.code, planner::code::folderMissing);
    }

    void planEndsWithItsLastStep()
    {
        writeFile(input, example("ring"));
        const PlanResult result = plan();
        QVERIFY(result.ok());
        QCOMPARE(result.step, PlanStep::Saving);
    }

    void folderInWhichAnotherPlansIsLeftAlone()
    {
        writeFile(input, example("ring"));
        QVERIFY(plan().ok());
        const QDateTime before = QFileInfo(schedule).lastModified();
        const int folder = open("plant", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        QCOMPARE(flock(folder, LOCK_EX | LOCK_NB), 0);
        const PlanResult result = plan();
        close(folder);
        QCOMPARE(result.step, PlanStep::Saving);
        QCOMPARE(result.code, planner::code::unreadable);
        QCOMPARE(QFileInfo(schedule).lastModified(), before);
    }

    // Each would be written through.
    void linksToNowhereGoWithTheEarlierPlan()
    {
        writeFile(input, example("ring"));
        QVERIFY(QDir().mkdir(QStringLiteral("plant/OutputXML")));
        QVERIFY(QFile::link(QStringLiteral("../windows.xml"), intermediate));
        QVERIFY(QFile::link(QStringLiteral("../schedule.xml"), schedule));
        QVERIFY(plan().ok());
        QVERIFY(!QFile::exists(QStringLiteral("plant/windows.xml")));
        QVERIFY(!QFile::exists(QStringLiteral("plant/schedule.xml")));
        QVERIFY(!QFileInfo(schedule).isSymLink());
    }

    void folderThatIsLeftForGoodIsToldOf()
    {
        writeFile(input, example("ring"));
        const QString plant = m_folder->path(QStringLiteral("plant"));
        QVERIFY(QDir().mkdir(QStringLiteral("closed")));
        for (const QString& path : {plant, m_folder->path(QString())})
            QCOMPARE(chmod(QFile::encodeName(path).constData(), 0777), 0);
        QVERIFY(QDir::setCurrent(QStringLiteral("closed")));
        QCOMPARE(chmod(".", 0), 0);
        QTest::ignoreMessage(QtWarningMsg, "planning: the current directory stays another one");
        {
            const OrdinaryUser user;
            planner::planFolder(plant);
        }
        QVERIFY(QDir::setCurrent(m_folder->path(QString())));
    }

    void noDescriptorStaysOpen()
    {
        writeFile(input, example("ring"));
        const auto descriptors = [] {
            return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System);
        };
        const int before = descriptors().size();
        QVERIFY(plan().ok());
        QCOMPARE(descriptors().size(), before);
    }

    void refusedPlanLeavesNoOlderDocument()
    {
        writeFile(input, example("ring"));
        QVERIFY(plan().ok());
        QVERIFY(QFile::exists(schedule));
        writeFile(input, example("fails-window-check"));
        QVERIFY(!plan().ok());
        QVERIFY(!QFile::exists(intermediate));
        QVERIFY(!QFile::exists(schedule));
    }

    void documentsThatCannotBeWrittenAreNoPlan()
    {
        writeFile(input, example("ring"));
        writeFile(QStringLiteral("plant/OutputXML"), "a file in the folder's place");
        PlanResult result = plan();
        QCOMPARE(result.step, PlanStep::Saving);
        QCOMPARE(result.code, planner::code::unreadable);

        // A folder in the place of an earlier document cannot be removed.
        QVERIFY(QFile::remove(QStringLiteral("plant/OutputXML")));
        QVERIFY(QDir().mkpath(schedule));
        result = plan();
        QCOMPARE(result.step, PlanStep::Saving);
        QVERIFY(!result.ok());
    }

    void programEndsWithTheOutcome()
    {
        writeFile(input, example("ring"));
        ProgramRun run = runProgram(QStringLiteral(ROTUNDA_PLAN_FOLDER), {QStringLiteral("plant")});
        QCOMPARE(run.code, 0);
        QCOMPARE(run.errors, QStringList());
        const QByteArray planned = readFile(schedule);
        QVERIFY(plan().ok());
        QCOMPARE(readFile(schedule), planned);

        writeFile(input, example("fails-resolution"));
        run = runProgram(QStringLiteral(ROTUNDA_PLAN_FOLDER), {QStringLiteral("plant")});
        QCOMPARE(run.code, 1);
        QCOMPARE(run.errors, QStringList{QStringLiteral("plant: a conflict cannot be resolved")});
        QCOMPARE(runProgram(QStringLiteral(ROTUNDA_PLAN_FOLDER), {}).code, 2);
    }

private:
    std::unique_ptr<TemporaryFolder> m_folder;
};

QTEST_GUILESS_MAIN(PlanFolderTest)
#include "PlanFolderTest.moc"
