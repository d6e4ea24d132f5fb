#include "project/ProjectStream.h"

#include "tests/project/ProjectBytes.h"
#include "tests/support/Documents.h"

#include <QBuffer>
#include <QDir>
#include <QtTest>

// The project file to the byte, and what the reader makes of damage.

/// Reads well up to some byte, then reports an error.
class FailingDevice : public QBuffer
{
public:
    FailingDevice(const QByteArray& content, int lastGoodByte) : m_lastGoodByte(lastGoodByte)
    {
        setData(content);
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

protected:
    qint64 readData(char* data, qint64 length) override
    {
        return pos() + length > m_lastGoodByte ? -1 : QBuffer::readData(data, length);
    }

private:
    int m_lastGoodByte;
};

static bool isEmpty(const Project& project)
{
    return project.links.isEmpty() && project.nodes.isEmpty() && project.vLines.isEmpty() &&
           project.flows.isEmpty();
}

/// Offsets at which the four lists of a project end.
static QList<int> endsOfLists(const Project& project)
{
    ProjectBytes bytes;
    QList<int> ends;
    ends << bytes.links(project.links).size() << bytes.nodes(project.nodes).size()
         << bytes.vLines(project.vLines).size() << bytes.flows(project.flows).size();
    return ends;
}

/// The project with its first lists only.
static Project firstLists(const Project& whole, int count)
{
    Project project;
    if (count > 0)
        project.links = whole.links;
    if (count > 1)
        project.nodes = whole.nodes;
    if (count > 2)
        project.vLines = whole.vLines;
    if (count > 3)
        project.flows = whole.flows;
    return project;
}

static int completeListsWithin(const QList<int>& ends, int length)
{
    int complete = 0;
    for (const int end : ends)
        complete += end <= length;
    return complete;
}

template <typename Record>
static void checkSmallestSize()
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QDataStream stream(&buffer);
    writeRecord(stream, Record());
    QCOMPARE(qint64(buffer.data().size()), smallestRecord_bytes<Record>);
}

class ProjectFileTest : public QObject
{
    Q_OBJECT

private slots:
    void emptyProjectIsSixteenZeroBytes()
    {
        QCOMPARE(written(Project()), QByteArray(16, '\0'));
        QVERIFY(isEmpty(projectFrom(QByteArray(16, '\0'))));
    }

    void loneHostTakesSixtyFourBytes()
    {
        Project project;
        project.nodes = {{0, QPointF(100, 50), QStringLiteral("a"), QStringLiteral("0"), QString(),
                          QString(), QString(), QString()}};
        const QByteArray expected = QByteArray::fromHex("00000000" // links
                                                        "00000001" // nodes
                                                        "00000000" // host
                                                        "4059000000000000"
                                                        "4049000000000000"
                                                        "000000020061"
                                                        "000000020030"
                                                        "ffffffffffffffffffffffffffffffff"
                                                        "00000000"   // virtual links
                                                        "00000000"); // flows
        QCOMPARE(expected.size(), 64);
        QCOMPARE(written(project), expected);
        const Project read = projectFrom(expected);
        QCOMPARE(read.nodes.size(), 1);
        QCOMPARE(read.nodes.first().position, QPointF(100, 50));
        QCOMPARE(read.nodes.first().nodeName, QStringLiteral("a"));
        QVERIFY(read.nodes.first().mtu.isNull());
    }

    void everyFieldStandsWhereHandWrittenBytesHaveIt()
    {
        QCOMPARE(written(smallProject()), bytesOf(smallProject()));
        RandomSource random(1);
        for (int i = 0; i < 500; ++i) {
            const Project project = randomProject(random);
            QCOMPARE(written(project), bytesOf(project));
        }
    }

    void handWrittenBytesAreReadFieldByField()
    {
        const Project read = projectFrom(bytesOf(smallProject()));
        QCOMPARE(read.links.last().srcPort, QStringLiteral("1"));
        QCOMPARE(read.nodes.last().type, 1);
        QCOMPARE(read.nodes.last().position, QPointF(300, -20));
        QCOMPARE(read.nodes.last().portNum, QStringLiteral("8"));
        QCOMPARE(read.vLines.first().vLinePaths.last().last(), QStringLiteral(u"节点"));
        QCOMPARE(read.flows.first().sendWindowHigh, QStringLiteral("2000"));
        QCOMPARE(read.flows.first().dstNodes.first().rcvWindowLow, QStringLiteral("400"));
        RandomSource random(2);
        for (int i = 0; i < 500; ++i) {
            const QByteArray bytes = bytesOf(randomProject(random));
            QCOMPARE(bytesOf(projectFrom(bytes)), bytes);
        }
    }

    void nullAndEmptyTextsStayApart()
    {
        const Project read = projectFrom(written(smallProject()));
        QVERIFY(read.links.last().bandWidth.isNull());
        QVERIFY(read.nodes.at(1).nodeMac.isNull());
        QVERIFY(!read.nodes.at(1).bufferNum.isNull());
        QVERIFY(read.nodes.at(1).bufferNum.isEmpty());
        QVERIFY(read.vLines.first().vLinePaths.last().at(1).isNull());
        QVERIFY(read.flows.last().flowId.isNull());
        QVERIFY(!read.flows.last().flowPeriod.isNull());
        QVERIFY(read.flows.first().dstNodes.last().dstNodeName.isNull());
        QVERIFY(!read.flows.first().dstNodes.last().rcvWindowLow.isNull());
    }

    void bytesBehindTheLastListArePassedOver()
    {
        const QByteArray bytes = bytesOf(smallProject());
        QCOMPARE(bytesOf(projectFrom(bytes + "more")), bytes);
    }

    void cutFileKeepsTheListsBeforeTheCut()
    {
        const Project whole = smallProject();
        const QByteArray bytes = bytesOf(whole);
        const QList<int> ends = endsOfLists(whole);
        for (int length = 0; length <= bytes.size(); ++length) {
            const Project expected = firstLists(whole, completeListsWithin(ends, length));
            QCOMPARE(bytesOf(projectFrom(bytes.left(length))), bytesOf(expected));
        }
    }

    void deviceThatFailsEndsLikeACutFile()
    {
        const Project whole = smallProject();
        const QByteArray bytes = bytesOf(whole);
        const QList<int> ends = endsOfLists(whole);
        for (int length = 0; length <= bytes.size(); ++length) {
            FailingDevice device(bytes, length);
            const Project expected = firstLists(whole, completeListsWithin(ends, length));
            QCOMPARE(bytesOf(readProject(device)), bytesOf(expected));
        }
    }

    void falseCountEndsItsListAndAllBehind_data()
    {
        QTest::addColumn<qint32>("count");
        QTest::newRow("negative") << -1;
        QTest::newRow("most negative") << std::numeric_limits<qint32>::min();
        QTest::newRow("largest") << std::numeric_limits<qint32>::max();
        QTest::newRow("more than the rest holds") << 200;
    }

    void falseCountEndsItsListAndAllBehind()
    {
        QFETCH(qint32, count);
        const Project whole = smallProject();
        const QByteArray bytes = bytesOf(whole);
        const QList<int> ends = endsOfLists(whole);
        const QByteArray damage = ProjectBytes().number(count).bytes();
        for (int list = 0; list < 4; ++list) {
            QByteArray damaged = bytes;
            damaged.replace(list > 0 ? ends.at(list - 1) : 0, 4, damage);
            QCOMPARE(bytesOf(projectFrom(damaged)), bytesOf(firstLists(whole, list)));
        }
    }

    void falseCountInsideARecordEndsTheOuterListToo()
    {
        const Project whole = smallProject();
        for (const qint32 count : {-1, std::numeric_limits<qint32>::max(), 400}) {
            ProjectBytes paths;
            paths.links(whole.links).nodes(whole.nodes).number(1);
            paths.text(QStringLiteral("1")).number(count).flows(whole.flows);
            QCOMPARE(bytesOf(projectFrom(paths.bytes())), bytesOf(firstLists(whole, 2)));

            ProjectBytes names;
            names.links(whole.links).nodes(whole.nodes).number(1);
            names.text(QStringLiteral("1")).number(1).number(count).flows(whole.flows);
            QCOMPARE(bytesOf(projectFrom(names.bytes())), bytesOf(firstLists(whole, 2)));

            ProjectBytes listeners;
            listeners.links(whole.links).nodes(whole.nodes).vLines(whole.vLines).number(1);
            for (int field = 0; field < 8; ++field)
                listeners.text(QString());
            listeners.number(count).raw(QByteArray(100, '\0'));
            QCOMPARE(bytesOf(projectFrom(listeners.bytes())), bytesOf(firstLists(whole, 3)));
        }
    }

    void textLongerThanTheFileEndsItsList()
    {
        ProjectBytes bytes;
        bytes.links(smallProject().links).number(1).number(0).real(1).real(2);
        bytes.number(-2).raw(QByteArray(300, '\0')); // a length of almost 4 GiB
        QCOMPARE(bytesOf(projectFrom(bytes.bytes())), bytesOf(firstLists(smallProject(), 1)));
    }

    void textOfOddLengthEmptiesItsListAndReadingGoesOn()
    {
        const Project whole = smallProject();
        ProjectBytes bytes;
        bytes.number(2).number(3); // the text itself is not read
        for (int field = 1; field < 6; ++field)
            bytes.text(QStringLiteral("x"));
        bytes.nodes(whole.nodes).vLines(whole.vLines).flows(whole.flows);
        Project expected = whole;
        expected.links.clear();
        QCOMPARE(bytesOf(projectFrom(bytes.bytes())), bytesOf(expected));
    }

    void badStatusOfARecordOutlivesTheListInsideIt()
    {
        const Project whole = smallProject();
        ProjectBytes bytes;
        bytes.links(whole.links).nodes(whole.nodes);
        bytes.number(1).number(5).number(1).number(1).text(QStringLiteral("A"));
        bytes.flows(whole.flows);
        Project expected = whole;
        expected.vLines.clear();
        QCOMPARE(bytesOf(projectFrom(bytes.bytes())), bytesOf(expected));
    }

    void smallestRecordsHaveTheSizesThatCountsAreCheckedAgainst()
    {
        checkSmallestSize<QString>();
        checkSmallestSize<QStringList>();
        checkSmallestSize<FileArrowInfo>();
        checkSmallestSize<FileNodeInfo>();
        checkSmallestSize<FileVLineInfo>();
        checkSmallestSize<FlowInfo>();
        checkSmallestSize<DstNodeInfo>();
    }

    void badStatusFromBeforeIsSetAsideForTheListAndComesBack()
    {
        QByteArray bytes = ProjectBytes().number(1).text(QStringLiteral("A")).bytes();
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        QDataStream stream(&buffer);
        stream.setStatus(QDataStream::ReadCorruptData);
        QList<QString> names;
        readList(stream, names);
        QCOMPARE(names, QList<QString>{QStringLiteral("A")});
        QCOMPARE(stream.status(), QDataStream::ReadCorruptData);
    }

    void badStatusFromBeforeComesBackAfterAListThatRunsDry()
    {
        QByteArray bytes =
            ProjectBytes().number(1).number(4).bytes(); // a text of which none is left
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        QDataStream stream(&buffer);
        stream.setStatus(QDataStream::ReadCorruptData);
        QList<QString> names;
        readList(stream, names);
        QVERIFY(names.isEmpty());
        QCOMPARE(stream.status(), QDataStream::ReadCorruptData);
    }

    void falseCountIsNoneAndPassesOverTheRest()
    {
        QByteArray bytes = ProjectBytes().number(3).raw(QByteArray(11, '\0')).bytes();
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        QDataStream stream(&buffer);
        QCOMPARE(readCount(stream, 4), 0);
        QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
        QVERIFY(buffer.atEnd());
    }

    void badStatusStaysInForceDuringATransaction()
    {
        QByteArray bytes = ProjectBytes().number(1).text(QStringLiteral("A")).bytes();
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        QDataStream stream(&buffer);
        stream.startTransaction();
        stream.setStatus(QDataStream::ReadCorruptData);
        QList<QString> names{QStringLiteral("before")};
        readList(stream, names);
        QVERIFY(names.isEmpty());
        QVERIFY(stream.status() != QDataStream::Ok);
    }

    void everyCutOfEveryExampleIsReadWithoutHarm()
    {
        const QDir examples(QStringLiteral(ROTUNDA_SOURCE_FOLDER "/examples"));
        int projects = 0;
        for (const QString& name : examples.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            if (examples.exists(name + QStringLiteral("/CMakeLists.txt")))
                continue; // a program in source
            const QByteArray bytes =
                readFile(examples.filePath(QStringLiteral("%1/%1.rotpro").arg(name)));
            const Project whole = projectFrom(bytes);
            QCOMPARE(bytesOf(whole), bytes);
            const QList<int> ends = endsOfLists(whole);
            ++projects;
            // The largest one has more cuts than a test should try; these meet every field.
            const int step = bytes.size() > 10000 ? 7 : 1;
            for (int length = 0; length <= bytes.size(); length += step) {
                const Project read = projectFrom(bytes.left(length));
                const Project expected = firstLists(whole, completeListsWithin(ends, length));
                QCOMPARE(read.links.size(), expected.links.size());
                QCOMPARE(read.nodes.size(), expected.nodes.size());
                QCOMPARE(read.vLines.size(), expected.vLines.size());
                QCOMPARE(read.flows.size(), expected.flows.size());
            }
        }
        QVERIFY(projects >= 6);
    }

    void whateverIsReadCanBeWrittenAndReadAgain()
    {
        RandomSource random(3);
        int damaged = 0;
        for (int i = 0; i < 10000; ++i) {
            const QByteArray original = bytesOf(randomProject(random));
            const QByteArray bytes = mutated(original, random);
            const QByteArray kept = written(projectFrom(bytes));
            QCOMPARE(written(projectFrom(kept)), kept);
            damaged += kept != original;
        }
        QVERIFY(damaged > 5000);
    }
};

QTEST_GUILESS_MAIN(ProjectFileTest)
#include "ProjectFileTest.moc"
