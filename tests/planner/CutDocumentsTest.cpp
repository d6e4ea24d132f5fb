#include "planner/Planning.h"
#include "planner/PreProcess.h"
#include "planner/TTPlanning.h"
#include "planner/documents/DocumentWriter.h"

#include "tests/planner/InputText.h"
#include "tests/support/ChildWork.h"
#include "tests/support/Documents.h"
#include "tests/support/FullDisk.h"
#include "tests/support/LogCapture.h"
#include "tests/support/SmallDisk.h"
#include "tests/support/TemporaryFolder.h"

#include <QDir>
#include <QFileInfo>
#include <QtTest>

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

using namespace planner;

static constexpr int room_bytes = 300;

static QString windows()
{
    return QStringLiteral("OutputXML/vek_hs.xml");
}

static QString schedule()
{
    return QStringLiteral("OutputXML/vek_output.xml");
}

/// The first stage on the document in the current directory.
static PlanningContext prepared()
{
    PlanningContext context;
    if (preProcess(context) != code::ok)
        qWarning("the first stage refuses the network");
    return context;
}

/// The second stage on a disk that takes so little.
static TTPlanner plannedWithoutRoom()
{
    const FullDisk disk(room_bytes);
    TTPlanner planner;
    if (TTPlanning(planner) != code::ok)
        qWarning("the second stage refuses the windows");
    return planner;
}

/// What a full disk leaves of the two documents of a plan.
class CutDocumentsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<TemporaryFolder>();
        m_log = std::make_unique<LogCapture>();
        lineNetwork(1, 4)
            .flow(1, QStringLiteral("2000"), 1, QStringLiteral("A"), QStringLiteral("[0,2000]"),
                  {{QStringLiteral("B"), QStringLiteral("[200,4000]")}})
            .save();
    }

    void cleanup()
    {
        m_log.reset();
        m_folder.reset();
    }

    // The stage ends as ever; what is left is refused when it is read.
    void windowsThatWereCutStayAndAreToldOf()
    {
        {
            const FullDisk disk(room_bytes);
            QVERIFY(prepared().isCut);
        }
        QCOMPARE(QFileInfo(windows()).size(), qint64(room_bytes));
        TTPlanner planner;
        QCOMPARE(TTPlanning(planner), code::unreadable);
        QVERIFY(!prepared().isCut);
    }

    void documentsHaveTheUsualPermissions()
    {
        QVERIFY(planFolder(QStringLiteral(".")).ok());
        writeFile(QStringLiteral("usual.xml"), "as any file");
        const QFile::Permissions usual = QFile::permissions(QStringLiteral("usual.xml"));
        QCOMPARE(QFile::permissions(windows()), usual);
        QCOMPARE(QFile::permissions(schedule()), usual);
    }

    void documentsWithoutRoomForTheirNamesAreCut()
    {
        enum Ending { Cut, Whole, NoDisk };
        QVERIFY(planFolder(QStringLiteral(".")).ok()); // makes the folders
        const int ending = inChild([] {
            if (!coverWithDiskForNoFile(QStringLiteral("OutputXML")))
                return int(NoDisk);
            TTPlanner planner;
            const bool isCut = prepared().isCut && TTPlanning(planner) == code::ok;
            return isCut && planner.isCut ? int(Cut) : int(Whole);
        });
        if (ending == NoDisk)
            QSKIP("this system lets no ordinary process mount a disk");
        QCOMPARE(ending, int(Cut));
    }

    // As its first descriptor, where the program was started without a standard input.
    void documentsAreWrittenThroughAnyDescriptor()
    {
        const int input = dup(STDIN_FILENO);
        close(STDIN_FILENO);
        prepared();
        TTPlanner planner;
        const qint32 result = TTPlanning(planner);
        dup2(input, STDIN_FILENO);
        close(input);
        QCOMPARE(result, code::ok);
        QVERIFY(readFile(windows()).endsWith("</vek_hs>\n"));
        QVERIFY(readFile(schedule()).endsWith("</vek_output>\n"));
    }

    void documentThatLacksAPieceStaysCutWhenThereIsRoomAgain()
    {
        const std::string text(1000, 'x');
        auto disk = std::make_unique<FullDisk>(room_bytes);
        DocumentWriter writer(QStringLiteral("OutputXML"), QStringLiteral("long.xml"));
        {
            const DocumentWriter::Element root(writer, "root");
            for (int i = 0; i < 100; ++i)
                writer.leaf("leaf", text);
            disk.reset();
        }
        QVERIFY(!writer.finish());
    }

    void troubleBeforeADocumentIsNoneOfIt()
    {
        prepared(); // makes the folder
        errno = ENOSPC;
        DocumentWriter writer(QStringLiteral("OutputXML"), QStringLiteral("short.xml"));
        writer.leaf("leaf", std::string("text"));
        QVERIFY(writer.finish());
    }

    void nextRunBeginsWithNothingCut()
    {
        PlanningContext context;
        QVERIFY(!context.isCut);
        context.isCut = true;
        context.reset();
        QVERIFY(!context.isCut);
        TTPlanner planner;
        QVERIFY(!planner.isCut);
        planner.isCut = true;
        planner.reset();
        QVERIFY(!planner.isCut);
    }

    void scheduleThatWasCutIsRemoved()
    {
        prepared();
        QVERIFY(plannedWithoutRoom().isCut);
        QVERIFY(QFile::exists(windows()));
        QVERIFY(!QFile::exists(schedule()));
        TTPlanner planner;
        QCOMPARE(TTPlanning(planner), code::ok);
        QVERIFY(!planner.isCut);
        QVERIFY(QFile::exists(schedule()));
    }

    void fileBehindALinkIsNotRemoved()
    {
        prepared();
        writeFile(QStringLiteral("elsewhere.xml"), "somebody's");
        QVERIFY(QFile::link(QStringLiteral("../elsewhere.xml"), schedule()));
        QVERIFY(plannedWithoutRoom().isCut);
        QVERIFY(QFileInfo(schedule()).isSymLink());
        QCOMPARE(QFileInfo(QStringLiteral("elsewhere.xml")).size(), qint64(room_bytes));
    }

    void deviceIsNotRemoved()
    {
        prepared();
        const dev_t full = makedev(1, 7);
        if (mknod(QFile::encodeName(schedule()).constData(), S_IFCHR | 0666, full) != 0)
            QSKIP("only the superuser makes devices");
        QVERIFY(plannedWithoutRoom().isCut);
        QVERIFY(QFileInfo::exists(schedule()));
    }

    void folderWithoutRoomIsNotPlanned()
    {
        QVERIFY(planFolder(QStringLiteral(".")).ok());
        const PlanResult result = [] {
            const FullDisk disk(room_bytes);
            return planFolder(QStringLiteral("."));
        }();
        QVERIFY(result.step == PlanStep::Saving);
        QCOMPARE(result.code, code::unreadable);
        QVERIFY(!QFile::exists(schedule()));
    }

private:
    std::unique_ptr<TemporaryFolder> m_folder;
    std::unique_ptr<LogCapture> m_log;
};

QTEST_GUILESS_MAIN(CutDocumentsTest)
#include "CutDocumentsTest.moc"
