#include "planner/documents/WrittenPieces.h"
#include "planner/DebugDump.h"
#include "planner/IntermediateDocument.h"

#include "tests/support/Documents.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RandomSource.h"
#include "tests/support/TemporaryFolder.h"

#include <QtTest>

#include <memory>

using namespace planner;

static constexpr char instanceBegin[] = "            <Instance>\n";
static constexpr char instanceEnd[] = "            </Instance>\n";

static QString hsFile()
{
    return QStringLiteral("OutputXML/vek_hs.xml");
}

/// All that a document leaves in a planner, and the code of reading it.
static QStringList readingOf(const QByteArray& document)
{
    const LogCapture log;
    writeFile(hsFile(), document);
    TTPlanner planner;
    const qint32 result = readIntermediateDocument(planner);
    QStringList found{QString::number(result)};
    if (result != code::ok)
        return found; // and what is left of the records says nothing
    for (const quint64 value : {quint64(planner.hopBufferNum), quint64(planner.schedCycle),
                                quint64(planner.slotLen), quint64(planner.maxRxSlot)})
        found.append(QString::number(value));
    for (const TTStreamInstance& record : planner.TTStreamInstanceList) {
        found.append(QStringLiteral("%1 %2 %3 %4 %5")
                         .arg(record.flowID)
                         .arg(record.vlid)
                         .arg(record.seq)
                         .arg(record.period)
                         .arg(record.size));
    }
    const LogCapture records;
    printTTStreamInstanceList(planner.TTStreamInstanceList);
    return found + records.lines();
}

/// The document of some hundred kilobytes that the first stage writes, with so many instances a
/// flow.
static QByteArray longDocument(int instances = 7)
{
    PlanningContext context;
    context.clusterCycle = 10000;
    for (int number = 0; number < 300; ++number) {
        TTStreamInstance record;
        record.flowID = static_cast<quint16>(1 + number / instances);
        record.seq = static_cast<quint16>(number % instances);
        for (int paths = 0; paths <= number % 3; ++paths) {
            record.paths.emplace_back();
            VirtualLinkPath& way = record.paths.back();
            way.talkerBuffernum = 4;
            way.schedtxwin = {number + 9, number};
            way.schedrxwin = {number + 20, number + 2};
            way.bridges.resize(static_cast<size_t>(1 + number % 4));
        }
        context.TTStreamInstanceList.push_back(record);
    }
    writeHsDocument(context);
    return readFile(hsFile());
}

/// The pieces of a document, and whether it ended as it is written.
struct Cut {
    explicit Cut(const QByteArray& document)
    {
        writeFile(hsFile(), document);
        WrittenPieces written(hsFile());
        while (written.next())
            pieces.push_back(written.document());
        isComplete = written.isComplete() && !written.next();
    }

    std::vector<QByteArray> pieces;
    bool isComplete = false;
};

/// An intermediate document read piece by piece gives what it gives as a whole.
class WrittenPiecesTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<TemporaryFolder>(); }

    void cleanup() { m_folder.reset(); }

    void documentIsReadInPiecesAsItIsInOne()
    {
        const QByteArray written = longDocument();
        QVERIFY(written.size() > 200000);
        const QStringList reading = readingOf(written);
        QCOMPARE(reading.first(), QStringLiteral("0"));
        // A blank ahead of it is no form that is cut.
        QCOMPARE(reading, readingOf(' ' + written));
    }

    void entitiesAreReadInPiecesToo()
    {
        const QByteArray written = longDocument();
        QByteArray other = written;
        other.replace("<seq>1</seq>", "<seq>&#49;</seq>");
        QVERIFY(other != written);
        QCOMPARE(readingOf(other), readingOf(written));
        QCOMPARE(readingOf(' ' + other), readingOf(written));
    }

    void piecesFollowTheWrittenFormAndNoOther()
    {
        const QByteArray written = longDocument();
        QVERIFY(Cut(written).isComplete);
        QVERIFY(Cut(written).pieces.size() > 3);
        QVERIFY(!Cut(' ' + written).isComplete);
        QVERIFY(!Cut(written + ' ').isComplete);
        QVERIFY(!Cut(QByteArray(written).replace('\n', "\r\n")).isComplete);
        QVERIFY(!Cut("<vek_hs><flows><flow></flow></flows></vek_hs>").isComplete);
        const int head = written.indexOf(instanceBegin);
        QCOMPARE(Cut(written.mid(head)).pieces.size(), std::size_t(0));
        QCOMPARE(Cut(QByteArray(written).insert(head, "<other/>\n")).pieces.size(), std::size_t(0));
    }

    void pieceMayBeginWithItsFlow()
    {
        const QByteArray written = longDocument(1);
        const Cut cut(written);
        QVERIFY(cut.isComplete);
        QVERIFY(cut.pieces.size() > 3);
    }

    void longInstanceIsOnePiece()
    {
        QByteArray written = longDocument();
        const int first = written.indexOf(instanceEnd) + int(sizeof instanceEnd) - 1;
        written.remove(first, written.indexOf("        </flow>\n    </flows>") - first);
        written.insert(written.indexOf("<seq>") + 5, QByteArray(300000, '0'));
        const Cut cut(written);
        QVERIFY(cut.isComplete);
        QCOMPARE(cut.pieces, std::vector<QByteArray>{written});
    }

    // Where a zero is, all ends, also when what is left without it would be a document.
    void nothingIsReadBehindAZero()
    {
        const QByteArray written = longDocument();
        const int begin = written.indexOf(instanceBegin);
        const int end = written.indexOf(instanceEnd) + int(sizeof instanceEnd) - 1;
        QByteArray instance = written.mid(begin, end - begin);
        instance.insert(instance.indexOf("<seq>") + 5, QByteArray(4096 - instance.size(), '0'));
        QByteArray document = written.left(begin);
        for (int i = 0; i < 100; ++i)
            document += instance;
        document += "        </flow>\n    </flows>\n</vek_hs>\n";
        QVERIFY(Cut(document).isComplete);
        document[70000] = '\0';
        const Cut cut(document);
        QVERIFY(!cut.isComplete);
        QCOMPARE(cut.pieces.size(), std::size_t(0));
    }

    // A piece that lacked something would only send the reader back to the whole.
    void eachPieceIsADocumentOfItsOwn()
    {
        const QByteArray written = longDocument();
        const QByteArray head = written.left(written.indexOf(instanceBegin));
        const QByteArray end = "        </flow>\n    </flows>\n</vek_hs>\n";
        const std::vector<QByteArray> documents = Cut(written).pieces;
        QStringList instances;
        for (const QByteArray& piece : documents) {
            QVERIFY(piece.startsWith(head));
            QVERIFY(piece.endsWith(end));
            QVERIFY(piece.size() < written.size() / 2);
            instances += readingOf(piece).filter(QStringLiteral("  flowID:"));
        }
        QCOMPARE(instances, readingOf(written).filter(QStringLiteral("  flowID:")));
        QCOMPARE(instances.size(), 300);
    }

    // Whatever is wrong with a document, and wherever: the outcome is that of reading it as a
    // whole.
    void damageIsMetAsInTheWhole()
    {
        const QByteArray written = longDocument();
        const std::vector<QByteArray> oddities{"x",
                                               QByteArray(1, '\0'),
                                               "<!-- ",
                                               "-->",
                                               "<![CDATA[",
                                               "            </Instance>\n",
                                               "            <Instance>\n",
                                               "        </flow>\n        <flow>\n",
                                               "        </flow>\n    </flows>\n</vek_hs>\n",
                                               "    </flows>\n    <flows>\n",
                                               "<other/>",
                                               "&lt;",
                                               "\r"};
        RandomSource random(51);
        int accepted = 0;
        for (int round = 0; round < 120; ++round) {
            QByteArray damaged = written;
            int at = random.below(damaged.size());
            if (random.chance(50)) // between two lines, where it can pass for the form
                at = damaged.indexOf('\n', at) + 1;
            if (random.chance(50))
                damaged.insert(at, random.pick(oddities));
            else if (random.chance(50))
                damaged.remove(at, random.between(1, 300));
            else
                damaged.truncate(at);
            const QStringList reading = readingOf(damaged);
            QCOMPARE(reading, readingOf(' ' + damaged));
            accepted += reading.first() == QLatin1String("0") ? 1 : 0;
        }
        QVERIFY(accepted > 5);
        QVERIFY(accepted < 115);
    }

    void documentThatBreaksOffLeavesThePlannerAsItWas()
    {
        QByteArray written = longDocument();
        written.truncate(written.size() * 3 / 4);
        writeFile(hsFile(), written);
        TTPlanner planner;
        planner.hopBufferNum = 3;
        planner.maxRxSlot = 7;
        planner.schedCycle = 9;
        planner.slotLen = 11;
        planner.TTStreamInstanceList.resize(5);
        const LogCapture log;
        QCOMPARE(readIntermediateDocument(planner), code::unreadable);
        QCOMPARE(int(planner.hopBufferNum), 3);
        QCOMPARE(planner.maxRxSlot, 0); // a reading begins with it
        QCOMPARE(int(planner.schedCycle), 9);
        QCOMPARE(int(planner.slotLen), 11);
        QCOMPARE(int(planner.TTStreamInstanceList.size()), 5);
    }

    // Each gives two documents in one piece, or something beside the flows, where it stands alone.
    void pieceThatHoldsMoreThanItsFlowsIsReadWithTheWhole()
    {
        const QByteArray written = longDocument();
        const QByteArray end = "        </flow>\n    </flows>\n</vek_hs>\n";
        const QByteArray begin = "<vek_hs>\n    <flows>\n        <flow>\n";
        const QByteArray lineEnd = "</Instance>\n";
        const int place = written.indexOf(lineEnd, written.size() / 2) + lineEnd.size();
        const std::vector<QByteArray> insertions{
            "<other/>\n",
            "        </flow>\n    </flows>\n<other/><flows>\n        <flow>\n",
            end.simplified() + "<other/>" + begin,
            end.simplified() + begin,
            end + begin,
            end + "</other>\n",
            "        </flow>\n    </flows>\n<\v/vek_hs ></other>\n",
            "        </flow>\n    </flows>\n    <flows>\n        <flow>\n"};
        for (const QByteArray& insertion : insertions) {
            const QByteArray odd = QByteArray(written).insert(place, insertion);
            QCOMPARE(readingOf(odd), readingOf(' ' + odd));
            const QByteArray oddAtTheEnd =
                QByteArray(written).replace(end, insertion + QByteArray(end)); // in the last piece
            QCOMPARE(readingOf(oddAtTheEnd), readingOf(' ' + oddAtTheEnd));
            const QByteArray oddBehind = written + insertion;
            QCOMPARE(readingOf(oddBehind), readingOf(' ' + oddBehind));
        }
    }

private:
    std::unique_ptr<TemporaryFolder> m_folder;
};

QTEST_GUILESS_MAIN(WrittenPiecesTest)
#include "WrittenPiecesTest.moc"
