#include "project/WholeFile.h"

#include "tests/support/Documents.h"
#include "tests/support/FullDisk.h"
#include "tests/support/KilledChild.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"

#include <QDir>
#include <QFileInfo>
#include <QtTest>

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

// Files that are replaced whole or not at all.

static QStringList filesIn(const QString& folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System);
}

class WholeFileTest : public QObject
{
    Q_OBJECT

private slots:
    void newAndOldFilesGetTheBytes()
    {
        const TemporaryFolder folder;
        const QString path = folder.path(u("file"));
        QVERIFY(replaceWhole(path, "first and longer"));
        QCOMPARE(readFile(path), QByteArray("first and longer"));
        QVERIFY(replaceWhole(path, "second"));
        QCOMPARE(readFile(path), QByteArray("second"));
        QCOMPARE(filesIn(folder.path(QString())), QStringList{u("file")});
    }

    void fullDiskLeavesTheOldFileAndNothingBesideIt_data()
    {
        QTest::addColumn<int>("size");
        QTest::newRow("fits a buffer") << 2000;
        QTest::newRow("larger than a buffer") << 100000;
    }

    void fullDiskLeavesTheOldFileAndNothingBesideIt()
    {
        QFETCH(int, size);
        const TemporaryFolder folder;
        const QString path = folder.path(u("file"));
        writeFile(path, "old");
        {
            const FullDisk full(1000);
            QVERIFY(!replaceWhole(path, QByteArray(size, 'x')));
        }
        QCOMPARE(readFile(path), QByteArray("old"));
        QCOMPARE(filesIn(folder.path(QString())), QStringList{u("file")});
    }

    void fullDiskLeavesNoPartOfANewFile()
    {
        const TemporaryFolder folder;
        {
            const FullDisk full(1000);
            QVERIFY(!replaceWhole(folder.path(u("file")), QByteArray(2000, 'x')));
        }
        QCOMPARE(filesIn(folder.path(QString())), QStringList());
    }

    void killAtAnySystemCallLeavesTheOldFileOrTheNewOne()
    {
        if (!canTraceChildren())
            QSKIP("this system lets no process trace another");
        const TemporaryFolder folder;
        const QByteArray before(30000, 'o');
        const QByteArray after(50000, 'n');
        int calls = 0;
        bool isKilled = true;
        for (; isKilled; ++calls) {
            // In a folder of its own, as a killed one may leave its second file there.
            const QString path = folder.path(QStringLiteral("%1/file").arg(calls));
            writeFile(path, before);
            isKilled = killAtSystemCall(calls, [&] { replaceWhole(path, after); });
            const QByteArray left = readFile(path);
            QVERIFY2(left == after || (isKilled && left == before),
                     qPrintable(QStringLiteral("killed at call %1").arg(calls)));
        }
        QVERIFY(calls > 5); // opening, writing, flushing, renaming
    }

    void linksAreFollowedAndStay()
    {
        const TemporaryFolder folder;
        writeFile(folder.path(u("elsewhere/file")), "old");
        QVERIFY(QFile::link(folder.path(u("elsewhere/file")), folder.path(u("second"))));
        QVERIFY(QFile::link(folder.path(u("second")), folder.path(u("first"))));
        QVERIFY(replaceWhole(folder.path(u("first")), "new"));
        QVERIFY(QFileInfo(folder.path(u("first"))).isSymLink());
        QVERIFY(QFileInfo(folder.path(u("second"))).isSymLink());
        QCOMPARE(readFile(folder.path(u("elsewhere/file"))), QByteArray("new"));
    }

    void nameBehindALinkMayBeTooLongForASecondFile()
    {
        const TemporaryFolder folder;
        const QString path = folder.path(QString(255, QLatin1Char('n')));
        writeFile(path, "old");
        QVERIFY(QFile::link(path, folder.path(u("link"))));
        QVERIFY(replaceWhole(folder.path(u("link")), "new"));
        QCOMPARE(readFile(path), QByteArray("new"));
    }

    void permissionsStay()
    {
        const TemporaryFolder folder;
        const QString path = folder.path(u("file"));
        writeFile(path, "old");
        const QFile::Permissions ownOnly = QFile::ReadOwner | QFile::WriteOwner;
        QVERIFY(QFile::setPermissions(path, ownOnly));
        QVERIFY(replaceWhole(path, "new"));
        QCOMPARE(QFile::permissions(path) & (QFile::ReadOther | QFile::ReadGroup),
                 QFile::Permissions());
    }

    void folderThatForbidsASecondFileStillTakesTheBytes()
    {
        const TemporaryFolder folder;
        const QString path = folder.path(u("closed/file"));
        writeFile(path, "old");
        const QFile::Permissions all = QFile::Permissions(0x6666);
        QVERIFY(QFile::setPermissions(path, all));
        QVERIFY(QFile::setPermissions(folder.path(QString()), all | QFile::Permissions(0x1111)));
        QVERIFY(QFile::setPermissions(folder.path(u("closed")), QFile::Permissions(0x5555)));
        {
            const OrdinaryUser user;
            QVERIFY(user.isOne());
            QVERIFY(!QFile(folder.path(u("closed/second"))).open(QIODevice::WriteOnly));
            QVERIFY(replaceWhole(path, "new"));
        }
        QVERIFY(QFile::setPermissions(folder.path(u("closed")), QFile::Permissions(0x7777)));
        QCOMPARE(readFile(path), QByteArray("new"));
    }

    void nameTooLongForASecondFileIsStillWritten_data()
    {
        QTest::addColumn<int>("length");
        for (const int length : {247, 248, 249, 250, 255})
            QTest::addRow("%d", length) << length;
    }

    void nameTooLongForASecondFileIsStillWritten()
    {
        QFETCH(int, length);
        const TemporaryFolder folder;
        const QString path = folder.path(QString(length, QLatin1Char('n')));
        QVERIFY(replaceWhole(path, "first and longer"));
        QCOMPARE(readFile(path), QByteArray("first and longer"));
        QVERIFY(replaceWhole(path, "second"));
        QCOMPARE(readFile(path), QByteArray("second"));
    }

    void fullDiskIsNoticedWithoutASecondFileToo()
    {
        const TemporaryFolder folder;
        const QString path = folder.path(QString(255, QLatin1Char('n')));
        for (const int size : {2000, 100000}) {
            const FullDisk full(1000);
            QVERIFY(!replaceWhole(path, QByteArray(size, 'x')));
        }
    }

    void longestNameWithASecondFileIsReplacedWhole()
    {
        const TemporaryFolder folder;
        const QString path = folder.path(QString(248, QLatin1Char('n')));
        writeFile(path, "old");
        {
            const FullDisk full(1000);
            QVERIFY(!replaceWhole(path, QByteArray(2000, 'x')));
        }
        QCOMPARE(readFile(path), QByteArray("old"));
    }

    // A device of the test's own where it may make one: a program that does wrong as the superuser
    // would put a file in place of the system's.
    void deviceIsWrittenToAndStaysOne()
    {
        const TemporaryFolder folder;
        const QString path = folder.path(u("device"));
        const QString own = folder.path(u("null"));
        const dev_t takesAll = makedev(1, 3);
        const bool isMade =
            mknod(QFile::encodeName(own).constData(), S_IFCHR | 0666, takesAll) == 0;
        if (!isMade && geteuid() == 0)
            QSKIP("the superuser may make no device here");
        QVERIFY(QFile::link(isMade ? own : u("/dev/null"), path));
        QVERIFY(replaceWhole(path, "new"));
        const QFileInfo device(path);
        QVERIFY(device.isSymLink() && device.exists() && !device.isFile());
    }

    void pipeIsRefusedWithoutWaitingForAReader()
    {
        const TemporaryFolder folder;
        const QString path = folder.path(u("pipe"));
        QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        QVERIFY(!replaceWhole(path, "new"));
        QVERIFY(QFileInfo::exists(path) && !QFileInfo(path).isFile());
    }

    void folderIsNoFile()
    {
        const TemporaryFolder folder;
        QVERIFY(QDir().mkdir(folder.path(u("taken"))));
        QVERIFY(!replaceWhole(folder.path(u("taken")), "new"));
        QVERIFY(QFileInfo(folder.path(u("taken"))).isDir());
    }
};

QTEST_GUILESS_MAIN(WholeFileTest)
#include "WholeFileTest.moc"
