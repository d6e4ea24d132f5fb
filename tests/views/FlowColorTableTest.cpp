#include "views/FlowColorTable.h"

#include <QSet>
#include <QtTest>

#include <thread>

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED
static int unseededComponent()
{
    return qrand() % 256;
}
QT_WARNING_POP

class FlowColorTableTest : public QObject
{
    Q_OBJECT

private slots:
    void coloursAreInvalidBeforeTheFirstFill() { QVERIFY(!flowColor(5).isValid()); }

    // Nobody seeds the numbers, so the table starts as it does in every fresh thread and process.
    void firstColourComesFromTheUnseededSequence()
    {
        fillFlowColorTable();
        QColor expected;
        std::thread([&expected] {
            const int blue = unseededComponent();
            const int green = unseededComponent();
            const int red = unseededComponent();
            expected = QColor(red, green, blue);
        }).join();
        QCOMPARE(flowColorTable.first(), expected);
        QCOMPARE(expected, QColor(0x46, 0xe2, 0x8f));
    }

    void thousandColoursAllDiffer()
    {
        QCOMPARE(flowColorTable.size(), 1000);
        QSet<QRgb> seen;
        for (const QColor& color : flowColorTable) {
            QVERIFY(color.isValid());
            QCOMPARE(color.alpha(), 255);
            seen.insert(color.rgb());
        }
        QCOMPARE(seen.size(), 1000);
    }

    void flowsAThousandApartShareAColour()
    {
        QCOMPARE(flowColor(7), flowColorTable.at(7));
        QCOMPARE(flowColor(1007), flowColorTable.at(7));
        QCOMPARE(flowColor(65535), flowColorTable.at(535));
        QCOMPARE(flowColor(-1), flowColorTable.at(999));
        for (const int flowID : {0, 1000, -1000})
            QCOMPARE(flowColor(flowID), flowColorTable.at(0));
    }

    void secondFillContinuesTheSequence()
    {
        const QVector<QColor> before = flowColorTable;
        fillFlowColorTable();
        QVERIFY(flowColorTable != before);
        QCOMPARE(flowColorTable.size(), 1000);
    }

    // The sequence gives a colour twice in its forty-fifth table.
    void coloursOfEveryTableDiffer()
    {
        for (int fill = 0; fill < 60; ++fill) {
            fillFlowColorTable();
            QSet<QRgb> seen;
            for (const QColor& color : flowColorTable)
                seen.insert(color.rgb());
            QCOMPARE(seen.size(), 1000);
        }
    }
};

QTEST_APPLESS_MAIN(FlowColorTableTest)
#include "FlowColorTableTest.moc"
