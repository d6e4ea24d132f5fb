#include "project/DocumentExchange.h"
#include "project/DocumentFolder.h"
#include "project/InputDocumentWriter.h"

#include "tests/support/ChildWork.h"
#include "tests/support/Documents.h"
#include "tests/support/TemporaryFolder.h"

#include <QDir>
#include <QtTest>

#include <tinyxml2.h>

#include <unistd.h>

// What an import, an export and a run do to files, asked for in ways that no form would take.
class ExchangedFilesTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<TemporaryFolder>();
        writeFile(QStringLiteral("their/vek_input.xml"), "their input");
        writeFile(QStringLiteral("their/vek_output.xml"), "their output");
        writeFile(ownInput(), "own input");
        writeFile(ownOutput(), "own output");
    }

    void cleanup() { m_folder.reset(); }

    void importReplacesBothDocuments()
    {
        QVERIFY(importDocuments(theirs("vek_input.xml"), theirs("vek_output.xml")));
        QCOMPARE(readFile(ownInput()), QByteArray("their input"));
        QCOMPARE(readFile(ownOutput()), QByteArray("their output"));
    }

    // As a user who may not do everything: what the superuser copies may always be written.
    void copyOfAFileThatMayNotBeWrittenMayBe()
    {
        const QFile::Permissions mayRead = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
        const QFile::Permissions mayWrite =
            QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther;
        const QFile::Permissions all = mayRead | mayWrite | QFile::Permissions(0x1111);
        for (const QString& folder : {QDir::currentPath(), inputFolder(), outputFolder()})
            QVERIFY(QFile::setPermissions(folder, all));
        QVERIFY(QFile::setPermissions(theirs("vek_input.xml"), mayRead));
        QVERIFY(QFile::setPermissions(QStringLiteral("their"), all));
        const int result = inChild([&] {
            if (geteuid() == 0 && setuid(65534) != 0)
                return 1;
            if (!importDocuments(theirs("vek_input.xml"), theirs("vek_output.xml")))
                return 2;
            return QFile(ownInput()).open(QIODevice::ReadWrite) ? 0 : 3;
        });
        QCOMPARE(result, 0);
        QCOMPARE(readFile(ownInput()), QByteArray("their input"));
        const QFile::Permissions rights = QFile::permissions(ownInput());
        QCOMPARE(rights & (mayRead | mayWrite), mayRead | QFile::WriteOwner);
    }

    void importOfOneDocumentAloneChangesNothing_data()
    {
        QTest::addColumn<QString>("input");
        QTest::addColumn<QString>("output");
        QTest::newRow("no input") << QString() << QStringLiteral("their/vek_output.xml");
        QTest::newRow("no output") << QStringLiteral("their/vek_input.xml") << QString();
        QTest::newRow("nothing") << QString() << QString();
    }

    void importOfOneDocumentAloneChangesNothing()
    {
        QFETCH(QString, input);
        QFETCH(QString, output);
        QVERIFY(!importDocuments(input, output));
        QVERIFY(ownDocumentsAreAsBefore());
    }

    void importOfAnOwnDocumentChangesNothing()
    {
        QVERIFY(!importDocuments(inputDocumentPath(), theirs("vek_output.xml")));
        QVERIFY(!importDocuments(theirs("vek_input.xml"), outputDocumentPath()));
        QVERIFY(ownDocumentsAreAsBefore());
    }

    void importMakesTheFoldersItNeeds()
    {
        QVERIFY(QDir(inputFolder()).removeRecursively());
        QVERIFY(QDir(outputFolder()).removeRecursively());
        QVERIFY(importDocuments(theirs("vek_input.xml"), theirs("vek_output.xml")));
        QCOMPARE(readFile(ownInput()), QByteArray("their input"));
        QCOMPARE(readFile(ownOutput()), QByteArray("their output"));
    }

    void savedInputKeepsTheRightsOfTheEarlierOne()
    {
        const QFile::Permissions mine = QFile::ReadOwner | QFile::WriteOwner;
        const QFile::Permissions others = QFile::ReadGroup | QFile::ReadOther;
        QVERIFY(QFile::setPermissions(ownInput(), mine));
        tinyxml2::XMLDocument document;
        appendParts(document);
        saveInputDocument(document);
        QVERIFY(readFile(ownInput()).startsWith("<vek_input "));
        QCOMPARE(QFile::permissions(ownInput()) & (mine | others), mine);
    }

    void exportToNoFolderChangesNothing()
    {
        exportDocuments(QString());
        QVERIFY(ownDocumentsAreAsBefore());
        QCOMPARE(QDir().entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 3);
    }

    void exportLeavesEarlierCopiesAsTheyAre()
    {
        writeFile(QStringLiteral("copy/OutputXML/vek_output.xml"), "earlier copy");
        exportDocuments(QDir().absoluteFilePath(QStringLiteral("copy")));
        QCOMPARE(readFile(QStringLiteral("copy/ResourceXML/vek_input.xml")),
                 QByteArray("own input"));
        QCOMPARE(readFile(QStringLiteral("copy/OutputXML/vek_output.xml")),
                 QByteArray("earlier copy"));
    }

    void exportOfWhatIsNoFileCopiesNothing()
    {
        QVERIFY(QFile::remove(ownInput()));
        QVERIFY(QFile::link(QStringLiteral("/dev/null"), ownInput()));
        writeFile(QStringLiteral("copy/other"), QByteArray());
        exportDocuments(QDir().absoluteFilePath(QStringLiteral("copy")));
        QVERIFY(!QFile::exists(QStringLiteral("copy/ResourceXML/vek_input.xml")));
        QCOMPARE(readFile(QStringLiteral("copy/OutputXML/vek_output.xml")),
                 QByteArray("own output"));
    }

private:
    static QString ownInput() { return QStringLiteral("ResourceXML/vek_input.xml"); }
    static QString ownOutput() { return QStringLiteral("OutputXML/vek_output.xml"); }

    static QString theirs(const char* name)
    {
        return QDir().absoluteFilePath(QStringLiteral("their/") + QString::fromLatin1(name));
    }

    static bool ownDocumentsAreAsBefore()
    {
        return readFile(ownInput()) == "own input" && readFile(ownOutput()) == "own output";
    }

    std::unique_ptr<TemporaryFolder> m_folder;
};

QTEST_GUILESS_MAIN(ExchangedFilesTest)

#include "ExchangedFilesTest.moc"
