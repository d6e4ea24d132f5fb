#include "planner/FolderHold.h"

#include "tests/support/TemporaryFolder.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

using planner::FolderHold;

/// What another process would hold: the lock of one folder, taken without waiting.
class Lock
{
public:
    explicit Lock(const char* folder)
        : m_folder(open(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
          m_isTaken(flock(m_folder, LOCK_EX | LOCK_NB) == 0)
    {
    }
    ~Lock() { close(m_folder); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    bool isTaken() const { return m_isTaken; }

private:
    const int m_folder;
    const bool m_isTaken;
};

/// Another current directory while it lives.
class TemporaryPlace
{
public:
    explicit TemporaryPlace(const QByteArray& name) : m_before(QDir::currentPath())
    {
        if (chdir(name.constData()) != 0)
            qWarning("no folder %s", name.constData());
    }
    ~TemporaryPlace() { QDir::setCurrent(m_before); }
    TemporaryPlace(const TemporaryPlace&) = delete;
    TemporaryPlace& operator=(const TemporaryPlace&) = delete;

private:
    const QString m_before;
};

static int openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System).size();
}

/// One process at a time plans in a folder, and nothing is left of the lock.
class FolderHoldTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<TemporaryFolder>();
        QVERIFY(QDir().mkdir(QStringLiteral("ResourceXML")));
        QVERIFY(QDir().mkdir(QStringLiteral("OutputXML")));
    }

    void cleanup() { m_folder.reset(); }

    void eachFolderIsKeptFromOthersWhileItIsHeld_data() { addFolders(); }

    void eachFolderIsKeptFromOthersWhileItIsHeld()
    {
        QFETCH(QByteArray, folder);
        {
            const FolderHold hold;
            QVERIFY(hold.isHeld());
            QVERIFY(!Lock(folder.constData()).isTaken());
        }
        QVERIFY(Lock(folder.constData()).isTaken());
    }

    void folderThatAnotherOneHoldsIsRefused_data() { addFolders(); }

    // The refused one waits again and again, and lets go of what it had each time.
    void folderThatAnotherOneHoldsIsRefused()
    {
        QFETCH(QByteArray, folder);
        const Lock other(folder.constData());
        QVERIFY(other.isTaken());
        const int descriptors = openDescriptors();
        QFile file;
        {
            const FolderHold hold;
            QVERIFY(!hold.isHeld());
            QCOMPARE(openDescriptors(), descriptors);
            for (const char* free : {".", "ResourceXML", "OutputXML"})
                QCOMPARE(Lock(free).isTaken(), folder != free);
            file.setFileName(QStringLiteral("/proc/self/stat"));
            QVERIFY(file.open(QIODevice::ReadOnly));
        }
        QVERIFY(!file.readAll().isEmpty()); // nobody closed its descriptor
        file.close();
        QCOMPARE(openDescriptors(), descriptors);
    }

    void descriptorsGoWithTheHold()
    {
        const int descriptors = openDescriptors();
        for (int round = 0; round < 3; ++round) {
            const FolderHold hold;
            QVERIFY(hold.isHeld());
            QCOMPARE(openDescriptors(), descriptors + 3);
        }
        QCOMPARE(openDescriptors(), descriptors);
    }

    // What an earlier call left there says nothing of this lock.
    void lockThatWasTakenIsNoError()
    {
        errno = EWOULDBLOCK;
        const FolderHold hold;
        QVERIFY(hold.isHeld());
    }

    // A program may be started without a standard input, whose descriptor is then the next one.
    void descriptorZeroIsOneLikeOthers()
    {
        const int input = dup(STDIN_FILENO);
        close(STDIN_FILENO);
        bool isHeld = false;
        bool isKept = false;
        {
            const FolderHold hold;
            isHeld = hold.isHeld();
            isKept = !Lock(".").isTaken();
        }
        const bool isFree = fcntl(STDIN_FILENO, F_GETFD) == -1;
        dup2(input, STDIN_FILENO);
        close(input);
        QVERIFY(isHeld && isKept && isFree);
    }

    void folderWithoutDocumentsIsHeldAllTheSame()
    {
        QVERIFY(QDir().rmdir(QStringLiteral("ResourceXML")));
        QVERIFY(QDir().rmdir(QStringLiteral("OutputXML")));
        const FolderHold hold;
        QVERIFY(hold.isHeld());
        QVERIFY(!Lock(".").isTaken());
    }

    // Locked once, or the second descriptor would be kept out by the first.
    void folderWithSeveralNamesIsHeld()
    {
        QVERIFY(QDir().rmdir(QStringLiteral("OutputXML")));
        QVERIFY(QFile::link(QStringLiteral("ResourceXML"), QStringLiteral("OutputXML")));
        const FolderHold hold;
        QVERIFY(hold.isHeld());
        QVERIFY(!Lock("OutputXML").isTaken());
    }

    void folderThatIsGoneIsRefused()
    {
        QVERIFY(QDir().mkdir(QStringLiteral("gone")));
        const TemporaryPlace place(QByteArrayLiteral("gone"));
        QVERIFY(QDir().rmdir(m_folder->path(QStringLiteral("gone"))));
        QVERIFY(!FolderHold().isHeld());
    }

    // Its path, told in characters, leads to a sibling.
    void folderWhosePathLeadsElsewhereIsRefused()
    {
        const QByteArray name = "plan-\xFF";
        QCOMPARE(mkdir(name.constData(), 0777), 0);
        {
            const TemporaryPlace place(name);
            QVERIFY(!FolderHold().isHeld()); // a path to nowhere
            QVERIFY(QDir().mkpath(QDir::currentPath()));
            QVERIFY(!FolderHold().isHeld());
        }
        QCOMPARE(rmdir(name.constData()), 0); // which the toolkit cannot name
    }

private:
    static void addFolders()
    {
        QTest::addColumn<QByteArray>("folder");
        for (const char* folder : {".", "ResourceXML", "OutputXML"})
            QTest::newRow(folder) << QByteArray(folder);
    }

    std::unique_ptr<TemporaryFolder> m_folder;
};

QTEST_GUILESS_MAIN(FolderHoldTest)
#include "FolderHoldTest.moc"
