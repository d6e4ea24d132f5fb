#include "verification/SchedulePieces.h"

#include "verification/DocumentReading.h"
#include "verification/InstanceText.h"
#include "verification/ScheduleDocument.h"

#include "tests/support/Documents.h"
#include "tests/verification/SpokenRecords.h"

#include <QtTest>

// Which documents are taken apart, and which instances are read without a tree: those in just the
// form in which they are written. What any other form gives is compared where damage is.

using namespace verification;

namespace
{

QByteArray soundOutput()
{
    return readFile(QStringLiteral(ROTUNDA_SOURCE_FOLDER
                                   "/tests/verification/cases/sound-plan/vek_output.xml"));
}

QByteArray instance()
{
    return "<Instance><flowID>5</flowID><seq>6</seq><path_slot>"
           "<talker><nodeID>1</nodeID><outport>2</outport><txslotID>3</txslotID></talker>"
           "<bridges><bridge><nodeID>11</nodeID><inport>12</inport><rxslotID>13</rxslotID>"
           "<outport>14</outport><txslotID>15</txslotID></bridge>"
           "<bridge><nodeID>21</nodeID><inport>22</inport><rxslotID>23</rxslotID>"
           "<outport>24</outport><txslotID>25</txslotID></bridge></bridges>"
           "<listeners><listener><nodeID>31</nodeID><inport>32</inport><rxslotID>33</rxslotID>"
           "</listener></listeners></path_slot></Instance>";
}

/// The lines of a schedule with one transmission that an instance gives; none when it is not read.
QStringList linesRead(const QByteArray& text)
{
    Schedule schedule;
    schedule.hops.resize(1);
    schedule.listeners.resize(2);
    const QStringList before = linesOf(schedule);
    if (InstanceText(text.constData()).appendTo(schedule))
        return linesOf(schedule);
    return linesOf(schedule) == before ? QStringList() : QStringList{QStringLiteral("a rest")};
}

bool isUsual(const QByteArray& bytes)
{
    return SchedulePieces(bytes).isUsual();
}

} // namespace

class SchedulePiecesTest : public QObject
{
    Q_OBJECT

private slots:
    void instanceAsWrittenIsRead()
    {
        const QStringList lines{QStringLiteral("cycle 0 slot length 0"),
                                QStringLiteral("transmission 5-6 talker 1 hops 1+3 listeners 2+1"),
                                QStringLiteral("hop 0 in 0 at 0 out 0 at 0"),
                                QStringLiteral("hop 1 in -1 at 0 out 2 at 3"),
                                QStringLiteral("hop 11 in 12 at 13 out 14 at 15"),
                                QStringLiteral("hop 21 in 22 at 23 out 24 at 25"),
                                QStringLiteral("listener 0 in 0 at 0"),
                                QStringLiteral("listener 0 in 0 at 0"),
                                QStringLiteral("listener 31 in 32 at 33")};
        QCOMPARE(linesRead(instance()), lines);
        QByteArray spread = instance();
        spread.replace("<", " \t\r\n<").replace(" \t\r\n</", "</").replace("></", ">\n</");
        QCOMPARE(linesRead(spread), lines);
    }

    void emptyListsAreRead()
    {
        QByteArray text = instance();
        const int bridges = text.indexOf("<bridges>");
        text.replace(bridges, text.indexOf("</path_slot>") - bridges, "<bridges/><listeners/>");
        QCOMPARE(linesRead(text).filter(QStringLiteral("transmission")),
                 QStringList{QStringLiteral("transmission 5-6 talker 1 hops 1+1 listeners 2+0")});
        text.replace("<bridges/><listeners/>", "<bridges></bridges><listeners>\n</listeners>");
        QCOMPARE(linesRead(text).filter(QStringLiteral("transmission")),
                 QStringList{QStringLiteral("transmission 5-6 talker 1 hops 1+1 listeners 2+0")});
    }

    void listThatIsMissingIsLeftToTheTree()
    {
        for (const char* name : {"bridges", "listeners"}) {
            QByteArray text = instance();
            const QByteArray end = QByteArray("</") + name + ">";
            const int begin = text.indexOf(QByteArray("<") + name + ">");
            text.remove(begin, text.indexOf(end) + end.size() - begin);
            QCOMPARE(linesRead(text), QStringList());
        }
    }

    void largestNumbersAreRead()
    {
        QByteArray text = instance();
        text.replace(">5<", ">65535<")
            .replace(">3<", ">2147483647<")
            .replace(">6<", ">0000000009<");
        const QStringList lines = linesRead(text);
        QVERIFY(
            lines.contains(QStringLiteral("transmission 65535-9 talker 1 hops 1+3 listeners 2+1")));
        QVERIFY(lines.contains(QStringLiteral("hop 1 in -1 at 0 out 2 at 2147483647")));
    }

    void instanceInAnotherFormIsLeftToTheTree_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        const auto row = [](const char* before, const char* after) {
            QTest::newRow(after) << QByteArray(before) << QByteArray(after);
        };
        for (const char* name :
             {"Instance", "flowID", "seq", "path_slot", "talker", "nodeID", "outport", "txslotID",
              "bridges", "bridge", "inport", "rxslotID", "listeners", "listener"}) {
            const QByteArray tag = QByteArray("<") + name + ">";
            const QByteArray end = QByteArray("</") + name + ">";
            row(tag, QByteArray("<Z>"));
            row(end, QByteArray("</") + name + "s>");
        }
        row(">5<", "><");
        row(">5<", ">a<");
        row(">5<", ">:<");
        row(">5<", ">/<");
        row(">5<", ">-5<");
        row(">5<", "> 5<");
        row(">5<", ">5 <");
        row(">5<", ">65536<");
        row(">3<", ">2147483648<");
        row(">3<", ">00000000003<");
        row("</listener>", "");
        row("</path_slot>", "<more/></path_slot>");
        row("<bridges>", "<bridges>text");
    }

    void instanceInAnotherFormIsLeftToTheTree()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QByteArray text = instance();
        const int place = text.indexOf(before);
        QVERIFY(place >= 0);
        text.replace(place, before.size(), after);
        QCOMPARE(linesRead(text), QStringList());
    }

    void documentAsWrittenIsTakenApart()
    {
        const QByteArray bytes = soundOutput();
        const SchedulePieces pieces(bytes);
        QVERIFY(pieces.isUsual());
        QCOMPARE(pieces.frame()->Name(), "vek_output");
        QCOMPARE(pieces.instances().size(), size_t(3));
        int place = 0;
        for (const SchedulePieces::Piece& piece : pieces.instances()) {
            const int begin = bytes.indexOf("<Instance>", place);
            place = bytes.indexOf("</Instance>", begin) + 11;
            QCOMPARE(QByteArray(piece.begin, static_cast<int>(piece.length)),
                     bytes.mid(begin, place - begin));
        }
    }

    void flowsWithoutInstancesAreTakenApart()
    {
        QVERIFY(isUsual("<a><flows></flows></a>"));
        QVERIFY(isUsual("<a><flows>\n</flows>\n</a>\n"));
        QVERIFY(isUsual("<a><flows><flow></flow></flows></a>"));
    }

    void documentInAnotherFormIsReadAsAWhole_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        for (const char* bytes : {"",
                                  "<a/>",
                                  "<a><flows/></a>",
                                  "<a><flows ></flows></a>",
                                  "<a><flows><flow/></flows></a>",
                                  "<a><flows><flow></flows></a>",
                                  "<a><flows></flow></flows></a>",
                                  "<a><flows>text</flows></a>",
                                  "<a><flows><flow>text</flow></flows></a>",
                                  "<a><flows><flow><b/></flow></flows></a>",
                                  "<a><flows><flow><Instance></flow></flows></a>",
                                  "<a><flows><flow><Instance></Instance ></flow></flows></a>",
                                  "<a><flows><flow><Instance></Instances></flow></flows></a>",
                                  "<a><flows><flow><Instance></Instancex</flow></flows></a>",
                                  "<a><flows><flow><Instance></Instance</flows></a>",
                                  "<a><flows><flow><Instance></flows></a>",
                                  "<a><flows></flows><b/></a>",
                                  "<a><flows></flows></a><b/>",
                                  "<a><flows></flows></b>",
                                  "<a><flows></flows>",
                                  "<flows></flows></a>",
                                  "<a><b><flows></flows></b></a>",
                                  "<a><b><flows></flows></a>",
                                  "<?xml version=\"1.0\"?><a><flows></flows></a>",
                                  "<!-- --><a><flows></flows></a>",
                                  "<a><![CDATA[]]><flows></flows></a>"})
            QTest::newRow(bytes) << QByteArray(bytes);
        QTest::newRow("null character") << QByteArray("<a><flows></flows></a>\n\0 ", 25);
    }

    void documentInAnotherFormIsReadAsAWhole()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(!isUsual(bytes));
    }

    void documentAsWrittenNeedsNoTree()
    {
        Schedule schedule;
        std::vector<Finding> damage;
        QVERIFY(readScheduleByPieces(soundOutput(), schedule, damage));
        QCOMPARE(schedule.transmissions.size(), size_t(3));
        // An instance in another form needs a tree of its own, and no other.
        QByteArray spread = soundOutput();
        spread.replace("<seq>0<", "<seq> 0 <");
        QVERIFY(readScheduleByPieces(spread, schedule, damage));
        QCOMPARE(schedule.transmissions.size(), size_t(6));
        QVERIFY(damage.empty());
    }

    void documentThatDoesNotParseInPiecesLeavesNothingBehind()
    {
        Schedule schedule;
        std::vector<Finding> damage;
        QVERIFY(readScheduleByPieces(soundOutput(), schedule, damage));
        damage.push_back(damageOf(QStringLiteral("before")));
        const QStringList before = linesOf(schedule);
        QByteArray output = soundOutput();
        output.replace(output.indexOf("<seq>"), 12, QByteArray());
        output.replace(output.lastIndexOf("</listeners>"), 12, "</listener>");
        QVERIFY(!readScheduleByPieces(output, schedule, damage));
        QCOMPARE(linesOf(schedule), before);
        QCOMPARE(damage.size(), size_t(1));
    }
};

QTEST_GUILESS_MAIN(SchedulePiecesTest)
#include "SchedulePiecesTest.moc"
