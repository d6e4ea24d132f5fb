#include "planner/Planning.h"
#include "planner/PreProcess.h"
#include "planner/TTPlanning.h"
#include "project/DocumentExchange.h"
#include "project/ProjectFile.h"

#include "tests/faults/FaultStudio.h"
#include "tests/project/ProjectBytes.h"
#include "tests/support/ChildWork.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryFolder.h"

#include <QStatusBar>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

// Folders and documents that are not what they should be. Each test is a process of its own, so
// that one that waits for ever ends, and a current directory that is gone is gone for it alone.

static const auto inputPath = QStringLiteral("ResourceXML/vek_input.xml");
static const auto hsPath = QStringLiteral("OutputXML/vek_hs.xml");
static const auto outputPath = QStringLiteral("OutputXML/vek_output.xml");

static const auto noInputBox = QStringLiteral(u"rotunda 预处理: 找不到vek_input.xml文件");
static const auto noWindowsBox = QStringLiteral(u"rotunda 流量规划: 找不到vek_hs.xml文件");

static QString ring()
{
    return exampleDocument(QStringLiteral("ring"));
}

static bool makePipe(const QString& path)
{
    QDir().mkpath(QFileInfo(path).path());
    return mkfifo(QFile::encodeName(path).constData(), 0666) == 0;
}

/// A link may lead nowhere, or to itself.
static bool makeLink(const QString& target, const QString& path)
{
    QDir().mkpath(QFileInfo(path).path());
    return symlink(QFile::encodeName(target).constData(), QFile::encodeName(path).constData()) == 0;
}

static void openToAll(const QString& path, int mode)
{
    chmod(QFile::encodeName(path).constData(), static_cast<mode_t>(mode));
}

/// The schedule of the ring, as it is shown in a folder where nothing is wrong.
static Seen planInAGoodFolder(FaultStudio& studio)
{
    const QString here = QDir::currentPath();
    const TemporaryFolder good;
    const Seen seen = studio.planDocument(ring());
    QDir::setCurrent(here);
    return seen;
}

class FoldersTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<TemporaryFolder>(); }
    void cleanup() { m_folder.reset(); }

    void folderThatIsNoneEndsTheRunWithItsBox_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("box");
        for (const char* kind : {"file", "dangling", "itself", "pipe"}) {
            const QString name = QString::fromLatin1(kind);
            QTest::addRow("ResourceXML, %s", kind)
                << QStringLiteral("ResourceXML") << name << noInputBox;
            QTest::addRow("OutputXML, %s", kind)
                << QStringLiteral("OutputXML") << name << noWindowsBox;
        }
    }

    void folderThatIsNoneEndsTheRunWithItsBox()
    {
        QFETCH(QString, folder);
        QFETCH(QString, kind);
        QFETCH(QString, box);
        if (kind == QLatin1String("file"))
            writeFile(folder, "the user's");
        else if (kind == QLatin1String("pipe"))
            QVERIFY(makePipe(folder));
        else
            QVERIFY(makeLink(kind == QLatin1String("itself") ? folder : QStringLiteral("nowhere"),
                             folder));
        const int ending = inChild([&] {
            FaultStudio studio;
            const QString before = studio.shown();
            const Seen byDocument = studio.planDocument(ring());
            studio.probe.showProject(smallProject());
            const Seen byDrawing = studio.planDrawing();
            return isToldBox(byDocument, box, before) && isToldBox(byDrawing, box, before) ? 0 : 1;
        });
        QCOMPARE(ending, 0);
        QVERIFY(!QFile::exists(QStringLiteral("nowhere")));
        if (kind == QLatin1String("file"))
            QCOMPARE(readFile(folder), QByteArray("the user's"));
    }

    void linkedFoldersArePlannedIn()
    {
        QVERIFY(QDir().mkpath(QStringLiteral("elsewhere/in")));
        QVERIFY(QDir().mkpath(QStringLiteral("elsewhere/out")));
        QVERIFY(makeLink(QStringLiteral("elsewhere/in"), QStringLiteral("ResourceXML")));
        QVERIFY(makeLink(QStringLiteral("elsewhere/out"), QStringLiteral("OutputXML")));
        FaultStudio studio;
        const Seen whole = planInAGoodFolder(studio);
        QCOMPARE(whole.boxes, QStringList{successBox()});
        QCOMPARE(studio.planDocument(ring()), whole);
        QVERIFY(QFile::exists(QStringLiteral("elsewhere/out/vek_output.xml")));
    }

    // One folder for both: the process must not be kept out by its own lock.
    void oneFolderUnderBothNamesIsPlannedIn()
    {
        QVERIFY(makeLink(QStringLiteral("."), QStringLiteral("ResourceXML")));
        QVERIFY(makeLink(QStringLiteral("."), QStringLiteral("OutputXML")));
        FaultStudio studio;
        const Seen whole = planInAGoodFolder(studio);
        QCOMPARE(studio.planDocument(ring()), whole);
    }

    void documentsThatAreLinksAreReplacedAndNothingIsWrittenThroughThem()
    {
        for (const QString& path : {inputPath, hsPath, outputPath}) {
            const QString user = QStringLiteral("mine/") + QFileInfo(path).fileName();
            writeFile(user, "the user's");
            QVERIFY(makeLink(m_folder->path(user), path));
        }
        FaultStudio studio;
        studio.probe.showProject(smallProject());
        studio.planDrawing();
        for (const char* name : {"vek_input.xml", "vek_hs.xml", "vek_output.xml"})
            QCOMPARE(readFile(QStringLiteral("mine/") + QString::fromLatin1(name)),
                     QByteArray("the user's"));
        QVERIFY(QFileInfo(inputPath).isFile() && !QFileInfo(inputPath).isSymLink());
    }

    void documentsThatAreLinksToNowhereMakeNoFileThere()
    {
        for (const QString& path : {inputPath, hsPath, outputPath})
            QVERIFY(makeLink(m_folder->path(QStringLiteral("nowhere/file")), path));
        QVERIFY(QDir().mkdir(QStringLiteral("nowhere")));
        FaultStudio studio;
        const Seen whole = planInAGoodFolder(studio);
        QCOMPARE(studio.planDocument(ring()), whole);
        QVERIFY(QDir(QStringLiteral("nowhere")).isEmpty());
        for (const QString& path : {hsPath, outputPath})
            QVERIFY(QFile::remove(path) &&
                    makeLink(m_folder->path(QStringLiteral("nowhere/file")), path));
        QVERIFY(planner::planFolder(QStringLiteral(".")).ok());
        QVERIFY(QDir(QStringLiteral("nowhere")).isEmpty());
    }

    void pipesForDocumentsAreReplacedAndNobodyWaitsForThem()
    {
        for (const QString& path : {inputPath, hsPath, outputPath})
            QVERIFY(makePipe(path));
        const int ending = inChild([&] {
            FaultStudio studio;
            studio.probe.showProject(exampleRing());
            return studio.planDrawing().boxes == QStringList{successBox()} ? 0 : 1;
        });
        QCOMPARE(ending, 0);
        for (const QString& path : {inputPath, hsPath, outputPath})
            QVERIFY(QFileInfo(path).isFile());
    }

    void stagesDoNotWaitForAPipe()
    {
        writeFile(inputPath, readFile(ring()));
        QVERIFY(makePipe(hsPath) && makePipe(outputPath));
        const int ending = inChild([] {
            const LogCapture log;
            planner::PlanningContext context;
            planner::TTPlanner planner;
            return planner::preProcess(context) == 0 && planner::TTPlanning(planner) == 0 ? 0 : 1;
        });
        QCOMPARE(ending, 0);
    }

    void pipesThatAreChosenGiveNoDocument()
    {
        const QString pipe = m_folder->path(QStringLiteral("given/vek_input.xml"));
        QVERIFY(makePipe(pipe));
        const int ending = inChild([&] {
            FaultStudio studio;
            const QString before = studio.shown();
            studio.probe.importVekFile(pipe, pipe);
            exportDocuments(m_folder->path(QString()));
            return isToldBox(studio.planDocument(pipe), noInputBox, before) ? 0 : 1;
        });
        QCOMPARE(ending, 0);
    }

    void deviceForAScheduleIsNoSuccess()
    {
        writeFile(inputPath, readFile(ring()));
        QVERIFY(makeLink(QStringLiteral("/dev/full"), outputPath));
        openToAll(QStringLiteral("."), 0777);
        const OrdinaryUser nobody; // who cannot harm the device
        QVERIFY(nobody.isOne());
        const LogCapture log;
        planner::TTPlanner planner;
        QCOMPARE(planner::TTPlanning(planner), qint32(0)); // as of any target that takes nothing
        QVERIFY(planner.isCut);
        QVERIFY(QFileInfo(outputPath).isSymLink());
    }

    void readOnlyFoldersOfAnOrdinaryUserAreNoSuccessWithAnOldPlan_data()
    {
        QTest::addColumn<int>("inputMode");
        QTest::addColumn<int>("outputMode");
        QTest::newRow("ResourceXML read-only") << 0555 << 0777;
        QTest::newRow("ResourceXML not to be entered") << 0000 << 0777;
        QTest::newRow("OutputXML read-only") << 0777 << 0555;
        QTest::newRow("OutputXML not to be entered") << 0777 << 0000;
        QTest::newRow("both read-only") << 0555 << 0555;
    }

    void readOnlyFoldersOfAnOrdinaryUserAreNoSuccessWithAnOldPlan()
    {
        QFETCH(int, inputMode);
        QFETCH(int, outputMode);
        FaultStudio studio;
        QCOMPARE(studio.planDocument(exampleDocument(QStringLiteral("avionics-line"))).boxes,
                 QStringList{successBox()});
        openToAll(QStringLiteral("."), 0777);
        for (const QString& path : {inputPath, hsPath, outputPath})
            openToAll(path, 0444);
        openToAll(QStringLiteral("ResourceXML"), inputMode);
        openToAll(QStringLiteral("OutputXML"), outputMode);
        const QString before = studio.shown();
        Seen seen;
        {
            const OrdinaryUser nobody;
            QVERIFY(nobody.isOne());
            seen = studio.planDocument(ring());
        }
        if (outputMode == 0000) {
            // A target that cannot be written is no failure; what is shown is empty, as it is
            // there.
            QCOMPARE(seen.boxes, QStringList{successBox()});
            QVERIFY(studio.probe.sendNodeInfo().isEmpty());
        } else if (outputMode == 0555) {
            QVERIFY(isToldFailure(seen.boxes));
            QCOMPARE(seen.schedule, before);
        } else if (inputMode == 0555) {
            // The document that could not be replaced is planned, and its plan is shown.
            QCOMPARE(seen.boxes, QStringList{successBox()});
            QCOMPARE(seen.schedule, before);
        } else {
            QCOMPARE(seen.boxes, QStringList{noInputBox});
            QCOMPARE(seen.schedule, before);
        }
    }

    void runInAFolderThatIsGoneIsRefused()
    {
        const int ending = inChild([&] {
            FaultStudio studio;
            const QString before = studio.shown();
            studio.probe.showProject(smallProject());
            rmdir(QFile::encodeName(m_folder->path(QString())).constData());
            const bool areTold = isToldBox(studio.planDocument(ring()), noInputBox, before) &&
                                 isToldBox(studio.planDrawing(), noInputBox, before);
            studio.probe.importVekFile(ring(), ring());
            studio.probe.outportVekFile(QStringLiteral("."));
            studio.probe.generateInput();
            const bool isSaved = saveProject(QStringLiteral("mine.rotpro"), smallProject());
            const auto result = planner::planFolder(QStringLiteral("."));
            return areTold && !isSaved && !result.ok() ? 0 : 1;
        });
        QCOMPARE(ending, 0);
        QVERIFY(!QFile::exists(QStringLiteral("/ResourceXML")));
        QVERIFY(!QFile::exists(QStringLiteral("/OutputXML")));
        QVERIFY(!QFile::exists(QStringLiteral("/mine.rotpro")));
    }

    void foldersThatGoWhileTheRunGoesOnEndItWithABox_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::newRow("ResourceXML") << QStringLiteral("ResourceXML");
        QTest::newRow("OutputXML") << QStringLiteral("OutputXML");
        QTest::newRow("the current directory") << QStringLiteral(".");
    }

    void foldersThatGoWhileTheRunGoesOnEndItWithABox()
    {
        QFETCH(QString, folder);
        for (int moment = 0; moment < 4; ++moment) {
            const int ending = inChild([&] {
                FaultStudio studio;
                int texts = 0;
                connect(studio.probe.statusBar(), &QStatusBar::messageChanged, this, [&] {
                    if (texts++ == moment)
                        QDir(folder).removeRecursively();
                });
                const QString before = studio.shown();
                const Seen seen = studio.planDocument(ring());
                if (seen.boxes.size() != 1)
                    return 1;
                // Once planned, the schedule is gone with its document.
                const bool isPlanned = seen.boxes.first() == successBox();
                return isPlanned || (isToldFailure(seen.boxes) && seen.schedule == before) ? 0 : 2;
            });
            QVERIFY2(ending == 0,
                     qPrintable(QStringLiteral("at text %1: %2").arg(moment).arg(ending)));
            QDir().mkpath(m_folder->path(QString()));
            QVERIFY(QDir::setCurrent(m_folder->path(QString())));
        }
    }

private:
    static Project exampleRing()
    {
        return projectFrom(
            readFile(QStringLiteral(ROTUNDA_SOURCE_FOLDER "/examples/ring/ring.rotpro")));
    }

    static bool isToldBox(const Seen& seen, const QString& box, const QString& before)
    {
        if (seen.boxes != QStringList{box})
            qWarning() << "seen" << seen.boxes;
        return seen.boxes == QStringList{box} && seen.schedule == before;
    }

    std::unique_ptr<TemporaryFolder> m_folder;
};

ROTUNDA_GUI_TEST_MAIN(FoldersTest)
#include "FoldersTest.moc"
