#include "planner/search/LaterWindows.h"
#include "planner/search/SlotTable.h"

#include "tests/planner/PortInstances.h"
#include "tests/support/RandomSource.h"
#include "tests/support/Spoken.h"

#include <QtTest>

#include <limits>
#include <set>

using namespace planner;

// The two helpers of the resolution against the walks that they stand for.

/// The orders of the later windows in a box that a walk finds.
static std::vector<qint64> walked(const std::vector<std::pair<Turn, SlotWindow>>& windows,
                                  Turn turn, const WindowBox& box)
{
    std::vector<qint64> found;
    qint64 order = 0;
    for (const auto& [laterTurn, later] : windows) {
        const bool isInside = later.start >= box.firstStart && later.start <= box.lastStart &&
                              later.end >= box.firstEnd && later.end <= box.lastEnd &&
                              order >= box.firstOrder && order <= box.lastOrder;
        if (turn < laterTurn && isInside)
            found.push_back(order);
        ++order;
    }
    return found;
}

static WindowBox randomBox(RandomSource& random, int range)
{
    WindowBox box;
    if (random.chance(70))
        box.firstStart = random.between(-4, range);
    if (random.chance(70))
        box.lastStart = random.chance(30) ? box.firstStart : random.between(-4, 2 * range);
    if (random.chance(70))
        box.firstEnd = random.between(-4, range);
    if (random.chance(70))
        box.lastEnd = random.between(-4, 2 * range);
    if (random.chance(30))
        box.firstOrder = random.below(30);
    if (random.chance(30))
        box.lastOrder = random.below(60);
    return box;
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
                later.passOver(turn);
                const WindowBox box = randomBox(random, range);
                const std::vector<qint64> expected = walked(windows, turn, box);
                std::vector<qint64> found;
                for (const LaterWindows::Later& hit : later.find(box))
                    found.push_back(hit.order);
                QCOMPARE(found, expected);
                QCOMPARE(size_t(later.count(box)), expected.size());
                QCOMPARE(later.any(box), !expected.empty());
                QCOMPARE(later.firstOrder(box), expected.empty() ? box.lastOrder : expected[0]);
                hits += expected.size();
            }
        }
        QVERIFY(hits > 10000);
    }

    void searchAmongNothingFindsNothing()
    {
        LaterWindows later;
        QVERIFY(!later.any({}));
        later.add(Turn(0), window(1, 2));
        later.passOver(Turn(0));
        QVERIFY(later.find({}).empty());
    }

    void windowsOfTheSameTurnAreNotLater()
    {
        LaterWindows later;
        later.add(Turn(0), window(3, 4));
        later.add(Turn(1), window(3, 4));
        later.passOver(Turn(0));
        QCOMPARE(later.count({}), 1U);
        later.passOver(Turn(1));
        QCOMPARE(later.count({}), 0U);
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
                qint32 before = slot - 1;
                while (taken.count(before) > 0)
                    --before;
                QCOMPARE(table.lastFreeBefore(slot), qint64(before));
                qint32 after = slot;
                const int count = random.between(1, 40);
                for (int left = count; left > 0; left -= taken.count(after) > 0 ? 0 : 1)
                    ++after;
                QCOMPARE(table.freeSlotAfter(slot, static_cast<quint32>(count)), qint64(after));
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
        QCOMPARE(table.freeSlotAfter(last - 3, 1), qint64(last) - 2);
        QCOMPARE(table.freeSlotAfter(last - 3, 2), qint64(last) + 1);
        QCOMPARE(table.freeSlotAfter(last, 5), qint64(last) + 5);
    }
};

QTEST_APPLESS_MAIN(LookAheadTest)
#include "LookAheadTest.moc"
