#include "planner/Planning.h"
#include "project/ProjectFile.h"

#include "tests/driver/Studio.h"
#include "tests/faults/FaultStudio.h"
#include "tests/project/ProjectBytes.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/TemporaryFolder.h"

#include <QtTest>

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

// A current directory whose name is no text in any encoding that the process knows.

static const char oddName[] = "odd-\xff\xfe-name";
static const auto noInputBox = QStringLiteral(u"rotunda 预处理: 找不到vek_input.xml文件");

/// Bytes of the names in a folder, which may be no text.
static QList<QByteArray> namesIn(const QString& folder)
{
    QList<QByteArray> names;
    DIR* entries = opendir(QFile::encodeName(folder).constData());
    while (const dirent* entry = entries ? readdir(entries) : nullptr) {
        if (entry->d_name[0] != '.')
            names.append(entry->d_name);
    }
    if (entries)
        closedir(entries);
    return names;
}

class OddFolderTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<TemporaryFolder>();
        QCOMPARE(mkdir(oddName, 0777), 0);
        QCOMPARE(chdir(oddName), 0);
        QVERIFY(!QDir(QDir::currentPath()).exists()); // or the name was not odd enough
    }
    void cleanup()
    {
        // Nothing came to be beside it, under a name like it.
        QCOMPARE(namesIn(m_folder->path(QString())).count(QByteArray(oddName)), 1);
        QCOMPARE(namesIn(m_folder->path(QString())).size(), m_known);
        m_known = 1;
        QVERIFY(QDir::setCurrent(m_folder->path(QString())));
        std::filesystem::remove_all(oddName); // which the toolkit cannot name
        m_folder.reset();
    }

    void runIsRefusedWithItsBox()
    {
        FaultStudio studio;
        const QString before = studio.shown();
        const QString given = exampleDocument(QStringLiteral("ring"));
        QCOMPARE(studio.planDocument(given), (Seen{{noInputBox}, before}));
        studio.probe.showProject(smallProject());
        QCOMPARE(studio.planDrawing(), (Seen{{noInputBox}, before}));
        DialogAnswers answers;
        answers.expectMessageBox();
        QCOMPARE(studio.probe.callAlgorithm(), -2);
    }

    void documentsAreNeitherImportedNorExported()
    {
        FaultStudio studio;
        const QString before = studio.shown();
        const QString given = exampleDocument(QStringLiteral("ring"));
        studio.probe.importVekFile(given, given);
        studio.probe.generateInput();
        QCOMPARE(studio.shown(), before);
        const QString target = m_folder->path(QStringLiteral("target"));
        QVERIFY(QDir().mkpath(target));
        m_known = 2;
        studio.probe.outportVekFile(target);
        QVERIFY(namesIn(target + QStringLiteral("/OutputXML")).isEmpty());
    }

    void projectsElsewhereAreSavedAndOpened()
    {
        const QString path = m_folder->path(QStringLiteral("mine.rotpro"));
        {
            const LogCapture log;
            Studio studio;
            studio.probe.showProject(smallProject());
            studio.saveProject(path);
            m_known = 2;
            const QByteArray saved = readFile(path);
            QVERIFY(!saved.isEmpty());
            studio.probe.showProject(Project());
            studio.openProject(path);
            QCOMPARE(studio.editor.nodes().size(), 3);
        }
    }

    void foldersElsewhereArePlannedAndTheProcessComesBack()
    {
        const QString other = m_folder->path(QStringLiteral("other"));
        writeFile(other + QStringLiteral("/ResourceXML/vek_input.xml"),
                  readFile(exampleDocument(QStringLiteral("ring"))));
        m_known = 2;
        const LogCapture log;
        struct stat before = {};
        struct stat after = {};
        QCOMPARE(stat(".", &before), 0);
        QVERIFY(planner::planFolder(other).ok());
        QCOMPARE(stat(".", &after), 0);
        QCOMPARE(after.st_ino, before.st_ino);
    }

    // What would be written under a name like it belongs to somebody else.
    void folderWithANameLikeItIsLeftAlone()
    {
        const QString other = QDir::currentPath();
        QVERIFY(QDir().mkpath(other + QStringLiteral("/ResourceXML")));
        QVERIFY(QDir().mkpath(other + QStringLiteral("/OutputXML")));
        m_known = 2;
        FaultStudio studio;
        studio.probe.showProject(smallProject());
        QCOMPARE(studio.planDrawing().boxes, QStringList{noInputBox});
        QCOMPARE(studio.planDocument(exampleDocument(QStringLiteral("ring"))).boxes,
                 QStringList{noInputBox});
        studio.probe.importVekFile(exampleDocument(QStringLiteral("ring")),
                                   exampleDocument(QStringLiteral("ring")));
        studio.probe.generateInput();
        QVERIFY(QDir(other + QStringLiteral("/ResourceXML")).isEmpty());
        QVERIFY(QDir(other + QStringLiteral("/OutputXML")).isEmpty());
    }

private:
    std::unique_ptr<TemporaryFolder> m_folder;
    int m_known = 1;
};

ROTUNDA_GUI_TEST_MAIN(OddFolderTest)
#include "OddFolderTest.moc"
