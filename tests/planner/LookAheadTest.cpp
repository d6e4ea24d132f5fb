#include "planner/search/LaterWindows.h"
#include "planner/search/SlotTable.h"

#include "tests/planner/PortInstances.h"
#include "tests/support/RandomSource.h"

#include <QtTest>

#include <limits>
#include <set>

using namespace planner;

// The two helpers of the resolution against the walks that they stand for.

/// The windows that a walk over all later instances would yield to.
static std::vector<SlotWindow> walked(const std::vector<std::pair<Turn, SlotWindow>>& windows,
                                      Turn turn, const SlotWindow& own)
{
    std::vector<SlotWindow> found;
    for (const auto& [laterTurn, later] : windows) {
        const bool givesWay = later.start == own.start && later.end < own.end;
        const bool stepsAside =
            later.start < own.start && own.start <= later.end && later.end < own.end;
        if (turn < laterTurn && (givesWay || stepsAside))
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
            std::vector<std::pair<Turn, SlotWindow>> windows;
            LaterWindows later;
            const Turn end(static_cast<quint32>(random.between(1, 40)));
            const int range = random.pick({2, 6, 30});
            for (Turn turn; turn != end; ++turn) {
                for (int copies = random.below(3); copies > 0; --copies) {
                    windows.emplace_back(turn, randomWindow(random, range));
                    later.add(turn, windows.back().second);
                }
            }
            for (Turn turn; turn != end; ++turn) {
                const SlotWindow own = randomWindow(random, range);
                const std::vector<SlotWindow> expected = walked(windows, turn, own);
                QCOMPARE(later.find(turn, own), expected);
                hits += expected.size();
            }
        }
        QVERIFY(hits > 10000);
    }

    void searchAmongNothingFindsNothing()
    {
        LaterWindows later;
        QVERIFY(later.find(Turn(0), window(0, 9)).empty());
        QVERIFY(later.find(Turn(1), window(5, 2)).empty());
    }

    void windowsOfTheSameTurnAreNotLater()
    {
        LaterWindows later;
        later.add(Turn(0), window(3, 4));
        later.add(Turn(1), window(3, 4));
        QCOMPARE(later.find(Turn(0), window(3, 9)).size(), size_t(1));
        QCOMPARE(later.find(Turn(1), window(3, 9)).size(), size_t(0));
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
