#include "planner/FolderHold.h"
#include "planner/Planning.h"

#include "tests/faults/FaultStudio.h"
#include "tests/support/ChildWork.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/TemporaryFolder.h"

#include <QProcess>
#include <QtTest>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

// Two processes that plan in one folder.

static const auto inputPath = QStringLiteral("ResourceXML/vek_input.xml");
static const auto outputPath = QStringLiteral("OutputXML/vek_output.xml");
static const auto noInputBox = QStringLiteral(u"rotunda 预处理: 找不到vek_input.xml文件");

/// A process that plans in the current directory and gets no further.
class StuckPlanner
{
public:
    StuckPlanner()
    {
        int ready[2] = {};
        if (pipe(ready) != 0)
            return;
        m_process = fork();
        if (m_process == 0) {
            const planner::FolderHold hold;
            const char answer = hold.isHeld() ? 'y' : 'n';
            if (write(ready[1], &answer, 1) == 1)
                pause();
            _exit(0);
        }
        char answer = 'n';
        m_holds = read(ready[0], &answer, 1) == 1 && answer == 'y';
        close(ready[0]);
        close(ready[1]);
    }
    ~StuckPlanner() { killIt(); }
    StuckPlanner(const StuckPlanner&) = delete;
    StuckPlanner& operator=(const StuckPlanner&) = delete;

    bool holds() const { return m_holds; }
    void killIt()
    {
        if (m_process <= 0)
            return;
        kill(m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
        m_process = 0;
    }

private:
    pid_t m_process = 0;
    bool m_holds = false;
};

static QString ring()
{
    return exampleDocument(QStringLiteral("ring"));
}

static QString line()
{
    return exampleDocument(QStringLiteral("avionics-line"));
}

class TwoProgramsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<TemporaryFolder>(); }
    void cleanup() { m_folder.reset(); }

    void eachShowsItsOwnScheduleOrSaysThatItHasNone()
    {
        constexpr int patience_ms = 120000;
        QProcess first;
        QProcess second;
        const auto rounds = QStringLiteral("30");
        first.start(QStringLiteral(ROTUNDA_PLAN_AGAIN), {ring(), rounds});
        second.start(QStringLiteral(ROTUNDA_PLAN_AGAIN), {line(), rounds});
        for (QProcess* process : {&first, &second}) {
            QVERIFY(process->waitForFinished(patience_ms));
            QVERIFY2(process->exitStatus() == QProcess::NormalExit && process->exitCode() == 0,
                     process->readAllStandardError().constData());
            QVERIFY(process->readAllStandardOutput().toInt() > 0);
        }
    }

    void folderInWhichAnotherProcessPlansIsRefusedUntilThatEnds()
    {
        FaultStudio studio;
        const Seen whole = studio.planDocument(ring());
        QCOMPARE(whole.boxes, QStringList{successBox()});
        const QByteArray input = readFile(inputPath);
        const QByteArray output = readFile(outputPath);
        StuckPlanner other;
        QVERIFY(other.holds());
        QCOMPARE(studio.planDocument(line()), (Seen{{noInputBox}, whole.schedule}));
        QCOMPARE(studio.planDrawing(), (Seen{{noInputBox}, whole.schedule}));
        const planner::PlanResult result = planner::planFolder(QStringLiteral("."));
        QCOMPARE(result.step, planner::PlanStep::Saving);
        QCOMPARE(result.code, planner::code::unreadable);
        const QString given = m_folder->path(QStringLiteral("given"));
        writeFile(given, "given");
        studio.probe.importVekFile(given, given);
        const QString target = m_folder->path(QStringLiteral("target"));
        QVERIFY(QDir().mkdir(target));
        studio.probe.outportVekFile(target);
        QVERIFY(QDir(target).isEmpty());
        // What the other one works on has not been touched.
        QCOMPARE(readFile(inputPath), input);
        QCOMPARE(readFile(outputPath), output);
        QCOMPARE(studio.shown(), whole.schedule);
        other.killIt();
        QCOMPARE(studio.planDocument(line()).boxes, QStringList{successBox()});
        studio.probe.outportVekFile(target);
        QVERIFY(QFile::exists(target + QLatin1Char('/') + outputPath));
    }

    void nobodyPlansBetweenTheBoxAndTheSchedule()
    {
        FaultStudio studio;
        bool isRefused = false;
        DialogAnswers answers;
        answers.expectFile(ring());
        answers.expectMessageBox([&] {
            isRefused =
                inChild([] { return planner::planFolder(QStringLiteral(".")).ok() ? 1 : 0; }) == 0;
        });
        studio.probe.planByUserInput();
        QVERIFY(answers.allAnswered());
        QVERIFY(isRefused);
        QVERIFY(planner::planFolder(QStringLiteral(".")).ok());
    }

    void foldersThatShareDocumentsByLinksCountAsOne()
    {
        for (const char* name : {"ResourceXML", "OutputXML"}) {
            const QString shared = QString::fromLatin1(name);
            QVERIFY(QDir().mkpath(QStringLiteral("first/") + shared));
            QVERIFY(QDir().mkpath(QStringLiteral("second-") + shared));
            QVERIFY(QFile::link(
                m_folder->path(QStringLiteral("first/") + shared),
                m_folder->path(QStringLiteral("second-") + shared + QLatin1Char('/') + shared)));
        }
        QVERIFY(QDir::setCurrent(m_folder->path(QStringLiteral("first"))));
        const StuckPlanner other;
        QVERIFY(other.holds());
        for (const char* name : {"second-ResourceXML", "second-OutputXML"}) {
            QVERIFY(QDir::setCurrent(m_folder->path(QString::fromLatin1(name))));
            QVERIFY(!planner::FolderHold().isHeld());
        }
        QVERIFY(QDir::setCurrent(m_folder->path(QString())));
        QVERIFY(planner::FolderHold().isHeld()); // a folder above it is another one
    }

    void holdLeavesNothingBehind()
    {
        {
            const planner::FolderHold hold;
            QVERIFY(hold.isHeld());
            QVERIFY(QDir(QDir::currentPath()).isEmpty());
        }
        QVERIFY(planner::FolderHold().isHeld());
    }

    // The library alone, on one folder for the schedules of two.
    void libraryLeavesOneWholeScheduleOfTwo()
    {
        QVERIFY(QDir().mkdir(QStringLiteral("OutputXML")));
        QList<QByteArray> schedules;
        const LogCapture log;
        for (const QString& document : {ring(), line()}) {
            const QString folder = QFileInfo(document).dir().dirName();
            writeFile(folder + QLatin1Char('/') + inputPath, readFile(document));
            QVERIFY(QFile::link(m_folder->path(QStringLiteral("OutputXML")),
                                m_folder->path(folder + QStringLiteral("/OutputXML"))));
            QVERIFY(planner::planFolder(folder).ok());
            schedules.append(readFile(outputPath));
        }
        QVERIFY(schedules.first() != schedules.last());
        QList<pid_t> processes;
        for (const char* folder : {"ring", "avionics-line"}) {
            const pid_t process = fork();
            if (process == 0)
                _exit(planAgain(QString::fromLatin1(folder), schedules));
            processes.append(process);
        }
        for (const pid_t process : processes) {
            int status = 0;
            waitpid(process, &status, 0);
            QVERIFY(WIFEXITED(status));
            QCOMPARE(WEXITSTATUS(status), 0);
        }
        QVERIFY(schedules.contains(readFile(outputPath)));
    }

private:
    static int planAgain(const QString& folder, const QList<QByteArray>& schedules)
    {
        for (int round = 0; round < 40; ++round) {
            const planner::PlanResult result = planner::planFolder(folder);
            if (!result.ok() && result.step != planner::PlanStep::Saving)
                return 1; // it has read what another one was writing
            const planner::FolderHold hold;
            if (hold.isHeld() && result.ok() && !schedules.contains(readFile(outputPath)))
                return 2;
        }
        return 0;
    }

    std::unique_ptr<TemporaryFolder> m_folder;
};

ROTUNDA_GUI_TEST_MAIN(TwoProgramsTest)
#include "TwoProgramsTest.moc"
