#include "planner/Planning.h"
#include "project/DocumentExchange.h"

#include "tests/faults/FaultStudio.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/KilledChild.h"
#include "tests/support/TemporaryFolder.h"

#include <QtTest>

// Processes that are killed at one of their system calls while they plan, import or export.

static const auto inputPath = QStringLiteral("ResourceXML/vek_input.xml");
static const auto hsPath = QStringLiteral("OutputXML/vek_hs.xml");
static const auto outputPath = QStringLiteral("OutputXML/vek_output.xml");

static QByteArray ringNetwork()
{
    return readFile(exampleDocument(QStringLiteral("ring")));
}

class KilledRunTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (!canTraceChildren())
            QSKIP("this system lets no process trace another");
    }
    void init()
    {
        m_folder = std::make_unique<TemporaryFolder>();
        m_log = std::make_unique<LogCapture>();
    }
    void cleanup()
    {
        m_log.reset();
        m_folder.reset();
    }

    void folderCanBePlannedAfterEachCallThatKilledItsPlanning()
    {
        writeFile(inputPath, ringNetwork());
        QVERIFY(planner::planFolder(QStringLiteral(".")).ok());
        const QByteArray windows = readFile(hsPath);
        const QByteArray schedule = readFile(outputPath);
        const int calls = killAtEachCall([] { planner::planFolder(QStringLiteral(".")); },
                                         [&] {
                                             QCOMPARE(readFile(inputPath), ringNetwork());
                                             QVERIFY(planner::planFolder(QStringLiteral(".")).ok());
                                             QCOMPARE(readFile(hsPath), windows);
                                             QCOMPARE(readFile(outputPath), schedule);
                                             QCOMPARE(QDir(QStringLiteral("OutputXML")).count(),
                                                      4U); // both, and the dots
                                         });
        QVERIFY(calls > 50);
    }

    void studioPlansAfterEachSampledCallThatKilledAnother()
    {
        const QString mine = m_folder->path(QStringLiteral("mine/vek_input.xml"));
        writeFile(mine, ringNetwork());
        m_log.reset(); // the studio collects the lines
        FaultStudio studio;
        const Seen whole = studio.planDocument(mine);
        QCOMPARE(whole.boxes, QStringList{successBox()});
        const QByteArray schedule = readFile(outputPath);
        constexpr int step = 17;
        const int calls = killAtEachCall([&] { studio.planDocument(mine); },
                                         [&] {
                                             QCOMPARE(readFile(mine), ringNetwork());
                                             QCOMPARE(studio.planDocument(mine), whole);
                                             QCOMPARE(readFile(outputPath), schedule);
                                         },
                                         step);
        QVERIFY(calls > 500);
    }

    void importKilledAtAnyCallLeavesTheUsersDocuments()
    {
        const QByteArray schedule(30000, 's');
        const QString input = m_folder->path(QStringLiteral("given/vek_input.xml"));
        const QString output = m_folder->path(QStringLiteral("given/vek_output.xml"));
        writeFile(input, ringNetwork());
        writeFile(output, schedule);
        const int calls = killAtEachCall([&] { importDocuments(input, output); },
                                         [&] {
                                             QCOMPARE(readFile(input), ringNetwork());
                                             QCOMPARE(readFile(output), schedule);
                                             QVERIFY(isWholeOrMissing(inputPath, ringNetwork()));
                                             QVERIFY(isWholeOrMissing(outputPath, schedule));
                                             QVERIFY(importDocuments(input, output));
                                             QCOMPARE(readFile(inputPath), ringNetwork());
                                             QCOMPARE(readFile(outputPath), schedule);
                                         });
        QVERIFY(calls > 20);
    }

    void exportKilledAtAnyCallLeavesWholeDocumentsOrNone()
    {
        const QByteArray schedule(30000, 's');
        writeFile(inputPath, ringNetwork());
        writeFile(outputPath, schedule);
        const QString target = m_folder->path(QStringLiteral("target"));
        QVERIFY(QDir().mkdir(target));
        const QString exportedInput = target + QLatin1Char('/') + inputPath;
        const QString exportedOutput = target + QLatin1Char('/') + outputPath;
        const int calls =
            killAtEachCall([&] { exportDocuments(target); },
                           [&] {
                               QVERIFY(isWholeOrMissing(exportedInput, ringNetwork()));
                               QVERIFY(isWholeOrMissing(exportedOutput, schedule));
                               exportDocuments(target);
                               QCOMPARE(readFile(exportedInput), ringNetwork());
                               QCOMPARE(readFile(exportedOutput), schedule);
                               QCOMPARE(readFile(outputPath), schedule);
                               QVERIFY(QDir(target).removeRecursively());
                               QVERIFY(QDir().mkdir(target));
                           });
        QVERIFY(calls > 20);
    }

private:
    static bool isWholeOrMissing(const QString& path, const QByteArray& whole)
    {
        return !QFile::exists(path) || readFile(path) == whole;
    }

    /// Kills a process that does the work at each call, or each of a sample, and looks at what is
    /// left; how many calls the work takes.
    static int killAtEachCall(const std::function<void()>& work, const std::function<void()>& look,
                              int step = 1)
    {
        int call = 0;
        while (killAtSystemCall(call, work) && !QTest::currentTestFailed()) {
            look();
            call += step;
        }
        return call;
    }

    std::unique_ptr<TemporaryFolder> m_folder;
    std::unique_ptr<LogCapture> m_log;
};

ROTUNDA_GUI_TEST_MAIN(KilledRunTest)
#include "KilledRunTest.moc"
