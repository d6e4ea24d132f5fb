#include "project/ScheduleReader.h"

#include "tests/project/ProjectBytes.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/LogCapture.h"
#include "tests/support/PeakMemory.h"
#include "tests/support/TemporaryFolder.h"

#include <QFile>

// Files in which one thing is endless: read in seconds, within a stated multiple of the file.

namespace
{

constexpr int hundredMillion = 100000000;

QString projectFile()
{
    return QStringLiteral("large.rotpro");
}

QString outputFile()
{
    return QStringLiteral("OutputXML/vek_output.xml");
}

QByteArray outputDocument()
{
    return "<vek_output><schedCycle>1000</schedCycle><slotLen>200</slotLen><flows><flow><Instance>"
           "<flowID>1</flowID><seq>0</seq><path_slot><talker><nodeID>1</nodeID>"
           "<outport>2</outport><txslotID>3</txslotID></talker><bridges/><listeners/></path_slot>"
           "</Instance></flow></flows></vek_output>";
}

Project load()
{
    QFile file(projectFile());
    file.open(QIODevice::ReadOnly);
    return readProject(file);
}

/// The number of slots that the studio shows of the document.
int loadSchedule()
{
    const LogCapture log;
    NodeInfo_Xml sent;
    NodeInfo_Xml received;
    int schedCycle = 0;
    int slotLen = 0;
    int slotCount = 0;
    readSchedule({sent, received, schedCycle, slotLen, slotCount});
    return sent.size();
}

} // namespace

class LargeProjectTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<TemporaryFolder>(); }
    void cleanup() { m_folder.reset(); }

    void textOfFiftyMillionCharactersIsRead()
    {
        const QByteArray length = ProjectBytes().number(hundredMillion).bytes();
        const QByteArray rest = ProjectBytes()
                                    .text(QStringLiteral("A"))
                                    .text(QString())
                                    .text(QString())
                                    .text(QString())
                                    .text(QString())
                                    .number(0)
                                    .number(0)
                                    .number(0)
                                    .bytes();
        writeRepeated(projectFile(), ProjectBytes().number(1).bytes() + length,
                      QByteArray("\0x", 2), hundredMillion / 2, rest);
        const Measured run = measured([] {
            const Project project = load();
            const bool isRead = project.links.size() == 1 &&
                                project.links.first().lineName.size() == hundredMillion / 2 &&
                                project.links.first().srcNode == QLatin1String("A");
            return isRead ? 0 : 1;
        });
        QCOMPARE(run.result, 0);
        QVERIFY(staysWithin(run, 3, projectFile()));
    }

    // A text that claims more than is there costs no more than what is there.
    void textThatIsCutOffIsDropped()
    {
        writeRepeated(projectFile(), ProjectBytes().number(1).number(0x7FFFFFF0).bytes(),
                      QByteArray("\0x", 2), hundredMillion / 2, {});
        const Measured run = measured([] { return load().links.size(); });
        QCOMPARE(run.result, 0);
        QVERIFY(staysWithin(run, 3, projectFile()));
    }

    // The smallest record is the one of which a file holds most.
    void twoMillionRecordsAreRead()
    {
        constexpr int count = 2000000;
        const QByteArray path = ProjectBytes().text(QString()).number(0).bytes();
        const QByteArray noRecords = ProjectBytes().number(0).bytes();
        writeRepeated(projectFile(), noRecords + noRecords + ProjectBytes().number(count).bytes(),
                      path, count, noRecords);
        const Measured run = measured([] { return load().vLines.size() == count ? 0 : 1; });
        QCOMPARE(run.result, 0);
        QVERIFY(staysWithin(run, 12, projectFile()));
    }

    void numberOfHundredMegabytesIsLoaded_data()
    {
        QTest::addColumn<QByteArray>("tag");
        QTest::newRow("cycle") << QByteArray("<schedCycle>");
        QTest::newRow("slot") << QByteArray("<txslotID>");
    }

    void numberOfHundredMegabytesIsLoaded()
    {
        QFETCH(QByteArray, tag);
        const QByteArray document = outputDocument();
        const int place = document.indexOf(tag) + tag.size();
        writeRepeated(outputFile(), document.left(place), "1", hundredMillion, document.mid(place));
        const Measured run = measured(&loadSchedule);
        QCOMPARE(run.result, 1);
        QVERIFY(staysWithin(run, 6, outputFile()));
    }

    void twoMillionSiblingsAreLoaded()
    {
        const QByteArray document = outputDocument();
        const int place = document.indexOf("<Instance>");
        writeRepeated(outputFile(), document.left(place) + "<Instance/>", "<a/>", 2000000,
                      document.mid(place));
        const Measured run = measured(&loadSchedule);
        QCOMPARE(run.result, 1);
        QVERIFY(staysWithin(run, 40, outputFile()));
    }

private:
    std::unique_ptr<TemporaryFolder> m_folder;
};

ROTUNDA_GUI_TEST_MAIN(LargeProjectTest)
#include "LargeProjectTest.moc"
