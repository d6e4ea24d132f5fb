#include "planner/search/WindowSort.h"

#include <QCryptographicHash>
#include <QtTest>

#include <algorithm>
#include <random>

using namespace planner;

using Windows = std::vector<SlotWindow>;

static void sortByLibrary(Windows& windows)
{
    std::sort(windows.begin(), windows.end(),
              [](const SlotWindow& a, const SlotWindow& b) { return a.start < b.start; });
}

// The end tells equal starts apart, so that the comparison sees their order.
static Windows randomWindows(std::mt19937& random, size_t length, quint32 distinctStarts)
{
    Windows windows(length);
    for (size_t i = 0; i < length; ++i)
        windows[i] = {static_cast<qint32>(i), static_cast<qint32>(random() % distinctStarts) - 5};
    return windows;
}

// Starts that make every median of three a bad pivot, which drives the sort into its heap.
static Windows medianKiller(qint32 length)
{
    Windows windows;
    const qint32 half = length / 2;
    for (qint32 i = 1; i <= half; ++i) {
        const qint32 low = i % 2 == 1 ? i : half + i - 1;
        windows.push_back({i, low});
    }
    for (qint32 i = 1; i <= half; ++i)
        windows.push_back({half + i, 2 * i});
    return windows;
}

static bool sortsLikeLibrary(const Windows& windows)
{
    Windows own = windows;
    Windows expected = windows;
    sortWindowsByStart(own);
    sortByLibrary(expected);
    return own == expected;
}

/// The ends of the windows, which tell them apart.
static QByteArray orderOf(const Windows& windows)
{
    QByteArrayList ends;
    for (const SlotWindow& window : windows)
        ends.append(QByteArray::number(window.end));
    return ends.join(' ');
}

class WindowSortTest : public QObject
{
    Q_OBJECT

private slots:
    void sortsMillionsOfRandomVectorsLikeTheStandardLibrary()
    {
        std::mt19937 random(20260);
        for (int round = 0; round < 2000000; ++round) {
            const size_t length = random() % (round % 100 == 0 ? 300 : 24);
            const quint32 distinct = 1 + random() % (round % 3 == 0 ? 4 : 60);
            const Windows windows = randomWindows(random, length, distinct);
            if (!sortsLikeLibrary(windows))
                QFAIL(qPrintable(QStringLiteral("round %1 differs").arg(round)));
        }
    }

    void longVectorsSortLikeTheStandardLibrary()
    {
        std::mt19937 random(7);
        for (int round = 0; round < 40; ++round)
            QVERIFY(sortsLikeLibrary(randomWindows(random, 20000, round % 2 ? 50 : 1000000)));
    }

    void depthLimitLeadsToTheHeapLikeInTheStandardLibrary()
    {
        for (qint32 length : {40, 64, 100, 1000, 1001, 5000, 20000})
            QVERIFY(sortsLikeLibrary(medianKiller(length)));
    }

    // Where all starts differ there is one order, and the sort of short segments would find it,
    // too.
    void equalStartsInTheHeapComeOutLikeInTheStandardLibrary()
    {
        std::mt19937 random(5);
        for (int round = 0; round < 2000; ++round) {
            Windows windows = medianKiller(2 * qint32(20 + random() % 400));
            const auto equal = static_cast<qint32>(2 + random() % 6);
            for (SlotWindow& window : windows)
                window.start /= equal;
            QVERIFY(sortsLikeLibrary(windows));
        }
    }

    // What another platform's library would sort in another way still has to come out like this.
    void knownVectorsComeOutInTheKnownOrder_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("distinct");
        QTest::addColumn<QByteArray>("digest");
        QTest::newRow("17 windows, 3 starts") << 17 << 3 << QByteArray("a85c6ef25bdff7e6");
        QTest::newRow("40 windows, 5 starts") << 40 << 5 << QByteArray("d6f5f39be287371c");
        QTest::newRow("1000 windows, 30 starts") << 1000 << 30 << QByteArray("5dcfeffb4f9af22c");
        QTest::newRow("median killer") << 5000 << 0 << QByteArray("beac8cf12d93b819");
    }

    void knownVectorsComeOutInTheKnownOrder()
    {
        QFETCH(int, length);
        QFETCH(int, distinct);
        QFETCH(QByteArray, digest);
        std::mt19937 random(11);
        Windows windows = distinct == 0 ? medianKiller(length)
                                        : randomWindows(random, static_cast<size_t>(length),
                                                        static_cast<quint32>(distinct));
        sortWindowsByStart(windows);
        QCOMPARE(
            QCryptographicHash::hash(orderOf(windows), QCryptographicHash::Sha256).toHex().left(16),
            digest);
    }

    void equalStartsChangePlacesBeyondSixteenWindows()
    {
        Windows windows;
        for (qint32 end = 0; end < 20; ++end)
            windows.push_back({end, end % 2});
        sortWindowsByStart(windows);
        QCOMPARE(orderOf(windows), QByteArray("0 2 18 4 6 16 8 10 14 12 19 17 15 13 11 9 7 5 3 1"));
    }

    void sixteenOrFewerStayStable()
    {
        std::mt19937 random(3);
        for (int round = 0; round < 1000; ++round) {
            const Windows windows = randomWindows(random, 16, 4);
            Windows own = windows;
            Windows stable = windows;
            sortWindowsByStart(own);
            std::stable_sort(
                stable.begin(), stable.end(),
                [](const SlotWindow& a, const SlotWindow& b) { return a.start < b.start; });
            QCOMPARE(own, stable);
        }
    }
};

QTEST_APPLESS_MAIN(WindowSortTest)
#include "WindowSortTest.moc"

#include "tests/planner/Windows.h"
