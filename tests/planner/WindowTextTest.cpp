#include "planner/WindowText.h"
#include "planner/documents/DocumentAccess.h"

#include "tests/planner/Windows.h"
#include "tests/support/RandomSource.h"

#include <QtTest>

#include <limits>

#include <tinyxml2.h>

using namespace planner;

static QString asLatin(const QByteArray& text)
{
    return QString::fromLatin1(text);
}

// Windows as texts, and the small parts of reading a document.
class WindowTextTest : public QObject
{
    Q_OBJECT

private slots:
    void writtenFormIsReadAtOnce_data()
    {
        QTest::addColumn<int>("start");
        QTest::addColumn<int>("end");
        QTest::newRow("small") << 1 << 2;
        QTest::newRow("negative") << -7 << -3;
        QTest::newRow("largest") << std::numeric_limits<qint32>::min()
                                 << std::numeric_limits<qint32>::max();
    }

    void writtenFormIsReadAtOnce()
    {
        QFETCH(int, start);
        QFETCH(int, end);
        SlotWindow read;
        QVERIFY(readWrittenWindow(windowText(window(start, end)).c_str(), read));
        QCOMPARE(read, window(start, end));
    }

    void anyOtherFormIsLeftToTheWholeReading_data()
    {
        QTest::addColumn<QByteArray>("text");
        for (const char* text : {"",
                                 "x1,2]",
                                 "1,2]",
                                 "[1",
                                 "[1;2]",
                                 "[1,",
                                 "[1,2",
                                 "[1,2]x",
                                 "[1,2)",
                                 "[,2]",
                                 "[1,]",
                                 "[x,2]",
                                 "[1,x]",
                                 "[ 1,2]",
                                 "[1 ,2]",
                                 "[+1,2]",
                                 "[99999999999,2]",
                                 "[1,99999999999]",
                                 "[1,2,3]",
                                 "[[1,2]",
                                 "[1.5,2]"})
            QTest::newRow(text) << QByteArray(text);
    }

    void anyOtherFormIsLeftToTheWholeReading()
    {
        QFETCH(QByteArray, text);
        SlotWindow ignored;
        QVERIFY(!readWrittenWindow(text.constData(), ignored));
    }

    void bothReadingsAgree()
    {
        RandomSource random(61);
        int taken = 0;
        for (int round = 0; round < 20000; ++round) {
            QByteArray text(windowText(window(random.between(-20, 20), random.below(300))).c_str());
            for (int changes = random.below(3); changes > 0; --changes)
                text[random.below(text.size())] = "[],-0123456789 x"[random.below(16)];
            SlotWindow read;
            if (!readWrittenWindow(text.constData(), read))
                continue;
            ++taken;
            QCOMPARE(read, windowInSlots(parseSlotWindow(asLatin(text))));
        }
        QVERIFY(taken > 5000);
        QVERIFY(taken < 19000);
    }

    void windowsOfDocumentsAreEqualInBothBounds()
    {
        QVERIFY((RawWindow{1, 2} == RawWindow{1, 2}));
        QVERIFY(!(RawWindow{1, 2} == RawWindow{3, 2}));
        QVERIFY(!(RawWindow{1, 2} == RawWindow{1, 3}));
        QVERIFY((RawWindow() == RawWindow{0, 0}));
        QCOMPARE(SlotWindow(), window(0, 0));
    }

    void textBeginsAtItsFirstBracket()
    {
        QCOMPARE(windowBounds(QStringLiteral("x[1,2]")),
                 (QStringList{QStringLiteral("1"), QStringLiteral("2")}));
        QCOMPARE(windowBounds(QStringLiteral("1,2]")), QStringList{QString()});
        QCOMPARE(windowBounds(QStringLiteral("[1[2,3]")), QStringList{QStringLiteral("1")});
    }

    void damageIsToldInWords()
    {
        HopBudget budget(7);
        budget.spend(7);
        QString told;
        try {
            budget.spend(1);
        } catch (const DocumentTooLarge& error) {
            told = error.message();
        }
        QCOMPARE(told, QStringLiteral("its transmissions have more than 7 hops"));
        try {
            rootElement(tinyxml2::XMLDocument());
        } catch (const DocumentError& error) {
            told = error.message();
        }
        QCOMPARE(told, QStringLiteral("the document has no element"));
    }
};

QTEST_APPLESS_MAIN(WindowTextTest)

#include "WindowTextTest.moc"
