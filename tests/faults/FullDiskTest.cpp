#include "planner/Planning.h"
#include "planner/PreProcess.h"
#include "planner/TTPlanning.h"
#include "project/DocumentExchange.h"
#include "project/ProjectFile.h"

#include "tests/faults/FaultStudio.h"
#include "tests/project/ProjectBytes.h"
#include "tests/support/ChildWork.h"
#include "tests/support/FullDisk.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/SmallDisk.h"
#include "tests/support/TemporaryFolder.h"

#include <QtTest>

// A disk that fills up while something is written, at each size of what is written.

static const auto inputPath = QStringLiteral("ResourceXML/vek_input.xml");
static const auto hsPath = QStringLiteral("OutputXML/vek_hs.xml");
static const auto outputPath = QStringLiteral("OutputXML/vek_output.xml");

/// The documents of a run on a disk with room for them.
struct WholeRun {
    QByteArray input;
    QByteArray windows;
    QByteArray schedule;
    Seen seen;

    static WholeRun fromFolder(const Seen& seen)
    {
        return {readFile(inputPath), readFile(hsPath), readFile(outputPath), seen};
    }
    int largest() const { return qMax(input.size(), qMax(windows.size(), schedule.size())); }
};

/// Sizes from nothing to all, close together where documents begin and end.
static QList<int> sizesUpTo(const QList<int>& ends, int step)
{
    QMap<int, int> sizes;
    for (const int end : ends) {
        for (int size = 0; size < end; size += step)
            sizes.insert(size, 0);
        for (int size = qMax(0, end - 3); size <= end + 1; ++size)
            sizes.insert(size, 0);
    }
    return sizes.keys();
}

/// A network of two flows, small enough to be planned hundreds of times.
static QByteArray smallNetwork()
{
    return readFile(QStringLiteral(ROTUNDA_SOURCE_FOLDER "/tests/planner/cases/") +
                    QStringLiteral("single-flow/ResourceXML/vek_input.xml"));
}

static Project exampleProject()
{
    return projectFrom(
        readFile(QStringLiteral(ROTUNDA_SOURCE_FOLDER "/examples/ring/ring.rotpro")));
}

/// The outcome is the whole plan, or a told failure with no cut schedule left on the disk.
static bool isPlanOrToldFailure(const Seen& seen, const WholeRun& whole, const QString& before)
{
    if (seen.boxes == QStringList{successBox()})
        return seen == whole.seen && readFile(outputPath) == whole.schedule;
    return isToldFailure(seen.boxes) && seen.schedule == before && !QFile::exists(outputPath);
}

class FullDiskTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<TemporaryFolder>(); }
    void cleanup() { m_folder.reset(); }

    void runOfADocumentIsWholeOrFails()
    {
        writeFile(QStringLiteral("given/vek_input.xml"), smallNetwork());
        FaultStudio studio;
        const auto run = [&] {
            return studio.planDocument(m_folder->path(QStringLiteral("given/vek_input.xml")));
        };
        const WholeRun whole = WholeRun::fromFolder(run());
        QCOMPARE(whole.seen.boxes, QStringList{successBox()});
        const QList<int> ends{whole.input.size(), whole.windows.size(), whole.schedule.size()};
        for (const int size : sizesUpTo(ends, 60)) {
            const QString before = studio.shown();
            Seen seen;
            {
                const FullDisk disk(static_cast<rlim_t>(size));
                seen = run();
            }
            QVERIFY2(
                isPlanOrToldFailure(seen, whole, before),
                qPrintable(QStringLiteral("%1 bytes: %2")
                               .arg(QString::number(size), seen.boxes.join(QLatin1Char(' ')))));
            QCOMPARE(seen.boxes == QStringList{successBox()}, size >= whole.largest());
            QCOMPARE(readFile(QStringLiteral("given/vek_input.xml")), smallNetwork());
        }
        QCOMPARE(run(), whole.seen); // as soon as there is room again
    }

    void runOfTheDrawingIsWholeOrFails()
    {
        FaultStudio studio;
        studio.probe.showProject(exampleProject());
        const WholeRun whole = WholeRun::fromFolder(studio.planDrawing());
        QCOMPARE(whole.seen.boxes, QStringList{successBox()});
        const QList<int> ends{whole.input.size(), whole.windows.size(), whole.schedule.size()};
        for (const int size : sizesUpTo(ends, 9000)) {
            const QString before = studio.shown();
            Seen seen;
            {
                const FullDisk disk(static_cast<rlim_t>(size));
                seen = studio.planDrawing();
            }
            QVERIFY2(
                isPlanOrToldFailure(seen, whole, before),
                qPrintable(QStringLiteral("%1 bytes: %2")
                               .arg(QString::number(size), seen.boxes.join(QLatin1Char(' ')))));
        }
        QCOMPARE(studio.planDrawing(), whole.seen);
    }

    void folderIsPlannedWholeOrNot()
    {
        writeFile(inputPath, smallNetwork());
        const LogCapture log;
        QVERIFY(planner::planFolder(QStringLiteral(".")).ok());
        const QByteArray windows = readFile(hsPath);
        const QByteArray schedule = readFile(outputPath);
        for (int size = 0; size <= qMax(windows.size(), schedule.size()); ++size) {
            planner::PlanResult result;
            {
                const FullDisk disk(static_cast<rlim_t>(size));
                result = planner::planFolder(QStringLiteral("."));
            }
            if (!result.ok()) {
                QCOMPARE(result.step, planner::PlanStep::Saving);
                QVERIFY(!QFile::exists(outputPath));
            } else {
                QCOMPARE(readFile(outputPath), schedule);
            }
            QCOMPARE(readFile(inputPath), smallNetwork());
        }
    }

    // The windows fit and the schedule, which is smaller, does not: the disk filled up meanwhile.
    void scheduleThatIsCutIsNoSuccess()
    {
        static constexpr rlim_t room = 100;
        FaultStudio studio;
        const QString before = studio.shown();
        studio.probe.replaceSecondStage([](planner::TTPlanner& planner) {
            const FullDisk disk(room);
            return planner::TTPlanning(planner);
        });
        const QString given = exampleDocument(QStringLiteral("ring"));
        const Seen seen = studio.planDocument(given);
        QVERIFY(isToldFailure(seen.boxes));
        QCOMPARE(seen.schedule, before);
        QVERIFY(QFile::exists(hsPath));
        QVERIFY(!QFile::exists(outputPath));
    }

    void stageReturnsWhatItReturnsForAnyTargetAndSaysThatItIsCut()
    {
        writeFile(inputPath, smallNetwork());
        const LogCapture log;
        planner::PlanningContext context;
        planner::TTPlanner planner;
        QCOMPARE(planner::preProcess(context), planner::code::ok);
        QVERIFY(!context.isCut);
        QCOMPARE(planner::TTPlanning(planner), planner::code::ok);
        QVERIFY(!planner.isCut);
        const FullDisk disk(readFile(outputPath).size() - 1);
        QCOMPARE(planner::TTPlanning(planner), planner::code::ok);
        QVERIFY(planner.isCut);
        QVERIFY(!QFile::exists(outputPath));
        QCOMPARE(planner::preProcess(context), planner::code::ok);
        QVERIFY(context.isCut);
    }

    // The same on a disk of its own that really has no room, for documents and their folders alike.
    void runOnASmallDiskIsWholeOrFails()
    {
        if (!smallDisksCanBeMade())
            QSKIP("this system lets no ordinary process mount a disk");
        FaultStudio studio;
        const QString given = exampleDocument(QStringLiteral("avionics-line"));
        const WholeRun whole = WholeRun::fromFolder(studio.planDocument(given));
        QCOMPARE(whole.seen.boxes, QStringList{successBox()});
        const int all = whole.input.size() + whole.windows.size() + whole.schedule.size();
        QMap<int, int> endings;
        for (int size = 4096; size < all + 16 * 4096; size += 4096) {
            const int ending = inChild([&] {
                const QString before = studio.shown();
                if (!coverWithSmallDisk(QStringLiteral("."), size) ||
                    !QDir::setCurrent(m_folder->path(QString())))
                    return int(NoDisk);
                const Seen seen = studio.planDocument(given);
                if (seen.boxes == QStringList{successBox()})
                    return seen == whole.seen ? int(Planned) : int(Wrong);
                return isPlanOrToldFailure(seen, whole, before) ? int(Told) : int(Wrong);
            });
            QVERIFY2(ending == Planned || ending == Told,
                     qPrintable(QStringLiteral("%1 bytes: %2").arg(size).arg(ending)));
            ++endings[ending];
        }
        QVERIFY(endings.value(Told) > 10);
        QVERIFY(endings.value(Planned) > 5);
    }

    void importedDocumentsAreWholeOrMissing()
    {
        writeFile(QStringLiteral("given/vek_input.xml"), smallNetwork());
        const LogCapture log;
        writeFile(inputPath, smallNetwork());
        QVERIFY(planner::planFolder(QStringLiteral(".")).ok());
        const QByteArray schedule = readFile(outputPath);
        writeFile(QStringLiteral("given/vek_output.xml"), schedule);
        QVERIFY(QFile::remove(hsPath));
        const int largest = qMax(smallNetwork().size(), schedule.size());
        for (int size = 0; size <= largest; size += 20) {
            {
                const FullDisk disk(static_cast<rlim_t>(size));
                importDocuments(m_folder->path(QStringLiteral("given/vek_input.xml")),
                                m_folder->path(QStringLiteral("given/vek_output.xml")));
            }
            QVERIFY(isWholeOrMissing(inputPath, smallNetwork()));
            QVERIFY(isWholeOrMissing(outputPath, schedule));
            QCOMPARE(QFile::exists(outputPath), size >= schedule.size());
            QCOMPARE(readFile(QStringLiteral("given/vek_input.xml")), smallNetwork());
            QCOMPARE(readFile(QStringLiteral("given/vek_output.xml")), schedule);
            QCOMPARE(filesBeside(outputPath), QFile::exists(outputPath) ? 1 : 0);
        }
    }

    void exportedDocumentsAreWholeOrMissing()
    {
        const QByteArray schedule(20000, 's');
        writeFile(inputPath, smallNetwork());
        writeFile(outputPath, schedule);
        for (int size = 0; size <= schedule.size() + 500; size += 500) {
            const QString target = m_folder->path(QStringLiteral("target%1").arg(size));
            writeFile(target + QStringLiteral("/OutputXML/kept"), "kept");
            {
                const FullDisk disk(static_cast<rlim_t>(size));
                exportDocuments(target);
            }
            const QString exported = target + QLatin1Char('/') + outputPath;
            QVERIFY(isWholeOrMissing(target + QLatin1Char('/') + inputPath, smallNetwork()));
            QVERIFY(isWholeOrMissing(exported, schedule));
            QCOMPARE(QFile::exists(exported), size >= schedule.size());
            QCOMPARE(filesBeside(exported), QFile::exists(exported) ? 2 : 1);
            QCOMPARE(readFile(target + QStringLiteral("/OutputXML/kept")), QByteArray("kept"));
            // The user's earlier export stays, and what was missing can be exported now.
            exportDocuments(target);
            QCOMPARE(readFile(exported), schedule);
        }
    }

    void exportOntoAFullDiskLeavesTheEarlierOne()
    {
        writeFile(inputPath, smallNetwork());
        writeFile(outputPath, QByteArray(20000, 's'));
        const QString target = m_folder->path(QStringLiteral("target"));
        writeFile(target + QLatin1Char('/') + outputPath, "the user's");
        for (int size = 0; size <= 20500; size += 500) {
            const FullDisk disk(static_cast<rlim_t>(size));
            exportDocuments(target);
            QCOMPARE(readFile(target + QLatin1Char('/') + outputPath), QByteArray("the user's"));
        }
    }

    void savedProjectIsTheOldOneOrTheNewOne()
    {
        const QString path = m_folder->path(QStringLiteral("mine.rotpro"));
        const QByteArray before = written(smallProject());
        const QByteArray after = written(exampleProject());
        for (const int size : sizesUpTo({after.size()}, 50)) {
            writeFile(path, before);
            bool isSaved = false;
            {
                const FullDisk disk(static_cast<rlim_t>(size));
                isSaved = saveProject(path, exampleProject());
            }
            QCOMPARE(isSaved, size >= after.size());
            QVERIFY(readFile(path) == (isSaved ? after : before));
            QCOMPARE(filesBeside(path), 1);
        }
    }

private:
    enum Ending { Planned, Told, Wrong, NoDisk };

    static bool smallDisksCanBeMade()
    {
        return inChild([] { return coverWithSmallDisk(QStringLiteral("."), 4096) ? 0 : 1; }) == 0;
    }

    static bool isWholeOrMissing(const QString& path, const QByteArray& whole)
    {
        return !QFile::exists(path) || readFile(path) == whole;
    }

    static int filesBeside(const QString& path)
    {
        const auto all = QDir::Files | QDir::Hidden | QDir::System;
        return QFileInfo(path).dir().entryList(all).size();
    }

    std::unique_ptr<TemporaryFolder> m_folder;
};

ROTUNDA_GUI_TEST_MAIN(FullDiskTest)
#include "FullDiskTest.moc"
