#include "planner/InputDocument.h"
#include "planner/IntermediateDocument.h"
#include "planner/PreProcess.h"

#include "tests/support/LogCapture.h"
#include "tests/support/PeakMemory.h"
#include "tests/support/TemporaryFolder.h"

#include <QtTest>

// Documents of a hundred megabytes in which one thing is endless: both stages answer in seconds,
// within a stated multiple of the file.

using namespace planner;

namespace
{

constexpr int hundredMillion = 100000000;

QString inputFile()
{
    return QStringLiteral("ResourceXML/vek_input.xml");
}

QString hsFile()
{
    return QStringLiteral("OutputXML/vek_hs.xml");
}

QByteArray inputDocument()
{
    return "<vek_input><topology><hosts>"
           "<host><hostname>\"A\"</hostname><nodeID>1</nodeID>"
           "<opts><MAC>\"1:2:3:4:5:6\"</MAC><MTU>1500</MTU><buffernum>4</buffernum></opts></host>"
           "<host><hostname>\"B\"</hostname><nodeID>2</nodeID>"
           "<opts><MAC>\"1:2:3:4:5:6\"</MAC><MTU>1500</MTU><buffernum>4</buffernum></opts></host>"
           "</hosts><switches><switch><switchname>\"S\"</switchname><nodeID>3</nodeID>"
           "<opts><MAC>\"\"</MAC><portnum>8</portnum><MTU>1500</MTU><buffernum>4</buffernum></opts>"
           "</switch></switches><links></links></topology><virtuallinks><virtuallink><vlid>1</vlid>"
           "<datapath>\"A,S,B\"</datapath></virtuallink></virtuallinks><flows><flow>"
           "<type>\"TT\"</type><flowID>1</flowID><period>1000</period><size>64</size>"
           "<vlid>1</vlid><talker><name>\"A\"</name><txwin>[0,1000]</txwin></talker>"
           "<listeners><listener><name>\"B\"</name><rxwin>[0,1000]</rxwin></listener></listeners>"
           "</flow></flows></vek_input>\n";
}

/// In just the form in which the first stage writes it.
QByteArray hsDocument()
{
    PlanningContext context;
    context.clusterCycle = 10000;
    TTStreamInstance instance;
    instance.flowID = 7;
    instance.paths.emplace_back();
    instance.paths.front().bridges.emplace_back();
    context.TTStreamInstanceList = {instance, instance};
    const TemporaryFolder folder;
    writeHsDocument(context);
    QFile file(hsFile());
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

/// Puts an endless text between the first tag of a name and what follows it.
void writeEndless(const QString& path, const QByteArray& document, const QByteArray& tag,
                  const QByteArray& begin, const QByteArray& unit)
{
    const int place = document.indexOf('<' + tag + '>') + tag.size() + 2;
    const int end = document.indexOf("</" + tag, place);
    writeRepeated(path, document.left(place) + begin, unit, hundredMillion / unit.size(),
                  document.mid(end));
}

int codeOf(qint32 code)
{
    return -code; // 0 to 3, as an exit code can tell them
}

int runFirstStage()
{
    const LogCapture log;
    PlanningContext context;
    return codeOf(preProcess(context));
}

int readHsDocument()
{
    const LogCapture log;
    TTPlanner planner;
    return codeOf(readIntermediateDocument(planner));
}

} // namespace

class LargeDocumentsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<TemporaryFolder>(); }
    void cleanup() { m_folder.reset(); }

    void endlessTextOfInputDocumentIsBorne_data()
    {
        QTest::addColumn<QByteArray>("tag");
        QTest::addColumn<QByteArray>("begin");
        QTest::addColumn<QByteArray>("unit");
        QTest::addColumn<int>("code");
        QTest::newRow("name") << QByteArray("switchname") << QByteArray() << QByteArray("S") << 0;
        QTest::newRow("number") << QByteArray("buffernum") << QByteArray() << QByteArray("1") << 0;
        QTest::newRow("period") << QByteArray("period") << QByteArray() << QByteArray("2") << 1;
        QTest::newRow("address") << QByteArray("MAC") << QByteArray() << QByteArray(":") << 0;
        QTest::newRow("brackets") << QByteArray("txwin") << QByteArray() << QByteArray("[") << 3;
        QTest::newRow("commas") << QByteArray("txwin") << QByteArray("[0") << QByteArray(",") << 3;
        QTest::newRow("digits") << QByteArray("txwin") << QByteArray("[") << QByteArray("0") << 3;
    }

    void endlessTextOfInputDocumentIsBorne()
    {
        QFETCH(QByteArray, tag);
        QFETCH(QByteArray, begin);
        QFETCH(QByteArray, unit);
        writeEndless(inputFile(), inputDocument(), tag, begin, unit);
        const Measured run = measured(&runFirstStage);
        QTEST(run.result, "code");
        QVERIFY(staysWithin(run, 9, inputFile()));
    }

    void endlessTextOfIntermediateDocumentIsBorne_data()
    {
        QTest::addColumn<QByteArray>("tag");
        QTest::addColumn<QByteArray>("begin");
        QTest::addColumn<QByteArray>("unit");
        QTest::addColumn<int>("code");
        QTest::newRow("cycle") << QByteArray("schedCycle") << QByteArray() << QByteArray("1") << 0;
        QTest::newRow("number") << QByteArray("flowID") << QByteArray() << QByteArray("1") << 0;
        QTest::newRow("brackets") << QByteArray("schedtxwin") << QByteArray() << QByteArray("[")
                                  << 1;
        QTest::newRow("commas") << QByteArray("schedtxwin") << QByteArray("[0") << QByteArray(",")
                                << 0;
        QTest::newRow("digits") << QByteArray("schedtxwin") << QByteArray("[0,") << QByteArray("9")
                                << 0;
        QTest::newRow("lines") << QByteArray("seq") << QByteArray()
                               << QByteArray("            <Instance>\n") << 1;
    }

    void endlessTextOfIntermediateDocumentIsBorne()
    {
        QFETCH(QByteArray, tag);
        QFETCH(QByteArray, begin);
        QFETCH(QByteArray, unit);
        writeEndless(hsFile(), hsDocument(), tag, begin, unit);
        const Measured run = measured(&readHsDocument);
        QTEST(run.result, "code");
        QVERIFY(staysWithin(run, 11, hsFile()));
    }

    // Four bytes of the file are an element of the tree.
    void twoMillionSiblingsAreBorne()
    {
        const QByteArray input = inputDocument();
        const int behindRoot = input.indexOf("<topology>");
        writeRepeated(inputFile(), input.left(behindRoot), "<a/>", 2000000, input.mid(behindRoot));
        const Measured first = measured(&runFirstStage);
        QCOMPARE(first.result, 0);
        QVERIFY(staysWithin(first, 40, inputFile()));

        const QByteArray windows = hsDocument();
        const int behindHead = windows.indexOf("<slotLen>");
        writeRepeated(hsFile(), windows.left(behindHead), "<a/>", 2000000, windows.mid(behindHead));
        const Measured second = measured(&readHsDocument);
        QCOMPARE(second.result, 0);
        QVERIFY(staysWithin(second, 40, hsFile()));
    }

    void twoMillionSwitchesOnOnePathAreBorne()
    {
        const QByteArray input = inputDocument();
        const int behindTalker = input.indexOf("A,S,B") + 2;
        writeRepeated(inputFile(), input.left(behindTalker), "S,", 2000000,
                      input.mid(behindTalker));
        const Measured run = measured([] {
            const LogCapture log;
            PlanningContext context;
            return codeOf(readInputDocument(context));
        });
        QCOMPARE(run.result, 0);
        QVERIFY(staysWithin(run, 150, inputFile()));
    }

private:
    std::unique_ptr<TemporaryFolder> m_folder;
};

QTEST_GUILESS_MAIN(LargeDocumentsTest)
#include "LargeDocumentsTest.moc"
