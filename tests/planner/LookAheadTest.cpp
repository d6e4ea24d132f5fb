#include "planner/LaterWindows.h"
#include "planner/SlotTable.h"

#include "tests/planner/PortInstances.h"
#include "tests/support/RandomSource.h"

#include <QtTest>

#include <limits>
#include <set>

using namespace planner;

// The two helpers of the resolution against the walks that they stand for.

/// The windows that a walk over all later instances would yield to.
static std::vector<SlotWindow> walked(const std::vector<std::pair<size_t, SlotWindow>>& windows,
                                      size_t rank, const SlotWindow& own)
{
    std::vector<SlotWindow> found;
    for (const auto& [laterRank, later] : windows) {
        const bool givesWay = later.start == own.start && later.end < own.end;
        const bool stepsAside =
            later.start < own.start && own.start <= later.end && later.end < own.end;
        if (laterRank > rank && (givesWay || stepsAside))
            found.push_back(later);
    }
    return found;
}

static SlotWindow randomWindow(RandomSource& random, int range)
{
    const int start = random.between(-3, range);
    return window(start, random.chance(10) ? start - random.below(4) : start + random.below(range));
}

class LookAheadTest : public QObject
{
    Q_OBJECT

private slots:
    void searchFindsWhatAWalkFinds()
    {
        RandomSource random(11);
        size_t hits = 0;
        for (int round = 0; round < 2000; ++round) {
            std::vector<std::pair<size_t, SlotWindow>> windows;
            LaterWindows later;
            const size_t ranks = static_cast<size_t>(random.between(1, 40));
            const int range = random.pick({2, 6, 30});
            for (size_t rank = 0; rank < ranks; ++rank) {
                for (int copies = random.below(3); copies > 0; --copies) {
                    windows.emplace_back(rank, randomWindow(random, range));
                    later.add(rank, windows.back().second);
                }
            }
            for (size_t rank = 0; rank < ranks; ++rank) {
                const SlotWindow own = randomWindow(random, range);
                const std::vector<SlotWindow> expected = walked(windows, rank, own);
                QCOMPARE(later.find(rank, own), expected);
                hits += expected.size();
            }
        }
        QVERIFY(hits > 10000);
    }

    void searchAmongNothingFindsNothing()
    {
        LaterWindows later;
        QVERIFY(later.find(0, window(0, 9)).empty());
        QVERIFY(later.find(1, window(5, 2)).empty());
    }

    void windowsOfTheSameRankAreNotLater()
    {
        LaterWindows later;
        later.add(0, window(3, 4));
        later.add(1, window(3, 4));
        QCOMPARE(later.find(0, window(3, 9)).size(), size_t(1));
        QCOMPARE(later.find(1, window(3, 9)).size(), size_t(0));
    }

    void slotTableIsASetOfSlots()
    {
        RandomSource random(12);
        for (int round = 0; round < 500; ++round) {
            const qint32 last = random.between(0, 60);
            SlotTable table(last);
            std::set<qint32> taken;
            for (int step = 0; step < 80; ++step) {
                const qint32 slot = random.between(-5, 70);
                if (random.chance(50)) {
                    table.take(slot);
                    if (slot >= 0 && slot <= last)
                        taken.insert(slot);
                }
                qint32 free = slot;
                while (taken.count(free) > 0)
                    ++free;
                QCOMPARE(table.firstFreeFrom(slot), free);
                QCOMPARE(table.isTaken(slot), taken.count(slot) > 0);
            }
        }
    }

    void behindTheLargestSlotComesTheSmallest()
    {
        const qint32 last = std::numeric_limits<qint32>::max();
        SlotTable table(last);
        table.take(last);
        QCOMPARE(table.firstFreeFrom(last), std::numeric_limits<qint32>::min());
        table.take(last - 1);
        QCOMPARE(table.firstFreeFrom(last - 1), std::numeric_limits<qint32>::min());
        QCOMPARE(table.firstFreeFrom(last - 2), last - 2);
    }
};

QTEST_APPLESS_MAIN(LookAheadTest)
#include "LookAheadTest.moc"
