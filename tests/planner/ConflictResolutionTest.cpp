#include "planner/ConflictResolution.h"
#include "planner/passes/PortCopies.h"

#include "tests/planner/PortInstances.h"
#include "tests/support/Failure.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RandomSource.h"
#include "tests/support/Spoken.h"

#include <QLoggingCategory>
#include <QtTest>

#include <algorithm>
#include <limits>

using namespace planner;

using Windows = std::vector<SlotWindow>;
using Slots = QList<int>;

Q_DECLARE_METATYPE(Windows)

/// What a resolution ended with: the slots that were given, in order, until it succeeded or failed,
/// and the number of the exit of a failure (0: silent).
struct Outcome {
    qint32 code = 0;
    int exitNumber = 0;
    Slots slotsGiven;
    QStringList log;
};

static int exitNumberIn(const QStringList& log)
{
    const QRegularExpression line(QStringLiteral("^line: (\\d+) CONFLICT_RESOLVE_FAIL$"));
    return log.isEmpty() ? 0 : line.match(log.last()).captured(1).toInt();
}

static Slots slotsIn(const QStringList& log)
{
    const QString start = QStringLiteral(u"冲突窗口分配时隙: ");
    Slots given;
    for (const QString& line : log) {
        if (line.startsWith(start))
            given.append(line.mid(start.size()).toInt());
    }
    return given;
}

/// Turns the engine's log lines off for its life.
class SilentLog
{
public:
    SilentLog() { QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false")); }
    ~SilentLog() { QLoggingCategory::setFilterRules(QString()); }
    SilentLog(const SilentLog&) = delete;
    SilentLog& operator=(const SilentLog&) = delete;
};

/// A planner whose grouping leaves no lines in the log.
template <typename Make>
static TTPlanner grouped(const Make& make)
{
    const LogCapture log;
    TTPlanner planner = make();
    group(planner);
    return planner;
}

static Outcome resolve(bool asSwitch, const Windows& windows, qint32 maxRxSlot = 100)
{
    TTPlanner planner = grouped([&] { return plannerWithPort(asSwitch, windows, maxRxSlot); });
    const LogCapture log;
    Outcome outcome;
    outcome.code = conflictResolve(planner, 1, 1);
    outcome.log = log.lines();
    outcome.exitNumber = exitNumberIn(outcome.log);
    outcome.slotsGiven = slotsIn(outcome.log);
    int place = 0;
    for (const InstanceCopy& instance : copiesAt(planner, 1, 1)) {
        const VirtualLinkPath& path = instance->paths.front();
        const SlotWindow& fixed = asSwitch ? path.bridges.front().schedtxwin : path.schedtxwin;
        const qint32 slot = outcome.slotsGiven.value(place++);
        if (outcome.code == code::ok && !(fixed == window(slot, slot)))
            failTest("a window did not collapse to its slot");
    }
    return outcome;
}

class ConflictResolutionTest : public QObject
{
    Q_OBJECT

private slots:
    void slotsAreGivenByTheLookAhead_data()
    {
        QTest::addColumn<Windows>("windows");
        QTest::addColumn<Slots>("expected");
        const auto row = [](const char* name, const Windows& windows, const Slots& expected) {
            QTest::newRow(name) << windows << expected;
        };
        row("wider one gives way at equal starts", {window(3, 9), window(3, 5)}, {4, 3});
        row("no precedence between equals", {window(3, 5), window(3, 5)}, {3, 4});
        row("tighter one keeps precedence", {window(3, 5), window(3, 9)}, {3, 4});
        row("earlier and tighter one has its slot elsewhere", {window(4, 9), window(2, 5)}, {4, 2});
        row("current steps off the claimed slot", {window(3, 3), window(4, 9), window(3, 5)},
            {3, 5, 4});
        row("later start never moves the current", {window(2, 9), window(3, 3)}, {2, 3});
        row("alone", {window(7, 7)}, {7});
        row("X ends before W begins", {window(6, 9), window(2, 5)}, {6, 2});
        row("X is no tighter", {window(4, 5), window(2, 5)}, {4, 2});
    }

    void slotsAreGivenByTheLookAhead()
    {
        QFETCH(Windows, windows);
        QFETCH(Slots, expected);
        for (const bool asSwitch : {false, true}) {
            const Outcome outcome = resolve(asSwitch, windows);
            QCOMPARE(outcome.code, code::ok);
            QCOMPARE(outcome.slotsGiven, expected);
        }
    }

    // Without anybody who reads the log, windows that are only passed are passed at once.
    void slotsAreTheSameWithAndWithoutTheLog()
    {
        constexpr qint32 largest = std::numeric_limits<qint32>::max();
        RandomSource random(41);
        int plans = 0;
        for (int round = 0; round < 20000; ++round) {
            Windows windows;
            const int starts = random.pick({1, 3, 12});
            const qint32 first = random.pick({0, 0, -6, largest - 20});
            for (int count = random.between(2, 14); count > 0; --count) {
                const qint64 start = qint64(first) + random.below(starts);
                const qint64 end = std::min<qint64>(start + random.between(-1, 16), largest);
                windows.push_back(window(static_cast<qint32>(start), static_cast<qint32>(end)));
            }
            const qint32 lastSlot = std::max(first, 0) + random.pick({12, 20});
            const bool asSwitch = random.chance(50);
            TTPlanner planner =
                grouped([&] { return plannerWithPort(asSwitch, windows, lastSlot); });
            PortCopies copies(planner.nodeList, 1, 1);
            const PortSlots silent = [&] {
                const SilentLog quiet;
                return findSlots(copies.view(), planner.maxRxSlot);
            }();
            const LogCapture log;
            const PortSlots logged = findSlots(copies.view(), planner.maxRxSlot);
            QCOMPARE(silent.code, logged.code);
            QCOMPARE(silent.slotsGiven, logged.slotsGiven);
            plans += logged.code == code::ok ? 1 : 0;
        }
        QVERIFY(plans > 4000);
        QVERIFY(plans < 16000);
    }

    void logTellsWindowAndSlot()
    {
        const QStringList expected{
            QStringLiteral("conflictResolve"),     QStringLiteral("冲突窗口: [ 4 , 9 ]"),
            QStringLiteral("temptxslot 2"),        QStringLiteral("冲突窗口分配时隙: 4"),
            QStringLiteral("冲突窗口: [ 2 , 5 ]"), QStringLiteral("冲突窗口分配时隙: 2"),
        };
        QCOMPARE(resolve(false, {window(4, 9), window(2, 5)}).log, expected);
    }

    void switchIsMeasuredAgainstTheLaterWindowAndTalkerAgainstItsOwn()
    {
        const Windows windows{window(3, 3), window(4, 4), window(4, 9), window(3, 5)};
        const Outcome asSwitch = resolve(true, windows);
        QCOMPARE(asSwitch.code, code::refused);
        QCOMPARE(asSwitch.exitNumber, 607);
        const Outcome asTalker = resolve(false, windows);
        QCOMPARE(asTalker.slotsGiven, (Slots{3, 4, 6, 5}));
    }

    void laterStartCanLoseItsOnlySlot()
    {
        const Windows windows{window(3, 3), window(3, 9), window(4, 4)};
        const Outcome asTalker = resolve(false, windows);
        QCOMPARE(asTalker.code, code::refused);
        QCOMPARE(asTalker.exitNumber, 465);
        QCOMPARE(asTalker.slotsGiven.mid(0, 2), (Slots{3, 4}));
        QCOMPARE(resolve(true, windows).exitNumber, 556);
    }

    void twoSingleSlotWindowsFail()
    {
        const Windows windows{window(5, 5), window(5, 5)};
        QCOMPARE(resolve(false, windows).exitNumber, 465);
        QCOMPARE(resolve(true, windows).exitNumber, 556);
    }

    void endOfTheTableFailsSilently()
    {
        const Windows windows{window(5, 5), window(5, 5)};
        for (const bool asSwitch : {false, true}) {
            const Outcome outcome = resolve(asSwitch, windows, 5);
            QCOMPARE(outcome.code, code::refused);
            QCOMPARE(outcome.log.last(), QStringLiteral("冲突窗口: [ 5 , 5 ]"));
            // Nor does it tell of a window that is left where the table ends with its start.
            const Outcome reversed = resolve(asSwitch, {window(5, 2), window(5, 2)}, 5);
            QCOMPARE(reversed.code, code::refused);
            QCOMPARE(reversed.log.last(), QStringLiteral("冲突窗口: [ 5 , 2 ]"));
        }
    }

    void windowThatEndsBeforeTheTableIsReported()
    {
        // All slots from 5 to the end of the table are taken, but the window ends at 7.
        Windows windows;
        for (int slot = 5; slot <= 10; ++slot)
            windows.push_back(window(slot, slot));
        windows.push_back(window(5, 7));
        QCOMPARE(resolve(false, windows, 10).exitNumber, 465);
        QCOMPARE(resolve(true, windows, 10).exitNumber, 556);
        windows.back() = window(5, 10);
        QCOMPARE(resolve(false, windows, 10).exitNumber, 0);
        QCOMPARE(resolve(false, windows, 10).code, code::refused);
    }

    void givingWayBeyondTheWindowFails()
    {
        // The second takes 3 and must leave it to the third, but 4 is taken.
        const Windows windows{window(4, 4), window(3, 4), window(3, 3)};
        QCOMPARE(resolve(false, windows).exitNumber, 486);
        QCOMPARE(resolve(true, windows).exitNumber, 580);
    }

    void laterWindowWithoutFreeSlotFails()
    {
        const Windows windows{window(3, 3), window(4, 4), window(4, 9), window(3, 4)};
        QCOMPARE(resolve(false, windows).exitNumber, 500);
        QCOMPARE(resolve(true, windows).exitNumber, 594);
    }

    void steppingAsideBeyondTheOwnWindowFails()
    {
        // Two later windows claim a slot each: the talker is moved twice, out of its window.
        const Windows windows{window(3, 3), window(4, 6), window(2, 5), window(6, 6)};
        QCOMPARE(resolve(false, windows).code, code::ok);
        const Windows full{window(3, 3), window(5, 5), window(6, 6), window(4, 6), window(3, 5)};
        QCOMPARE(resolve(false, full).exitNumber, 512);
    }

    void talkerThatWouldSearchBeyondTheTableFails()
    {
        const Outcome outcome = resolve(false, {window(3, 9), window(3, 5)}, 3);
        QCOMPARE(outcome.code, code::refused);
        QCOMPARE(outcome.exitNumber, 486);
    }

    void switchMayGiveWayBeyondTheTable()
    {
        const Outcome outcome = resolve(true, {window(3, 9), window(3, 5)}, 3);
        QCOMPARE(outcome.code, code::ok);
        QCOMPARE(outcome.slotsGiven, (Slots{4, 3}));
    }

    void slotsBeyondTheTableAreNeverTaken()
    {
        const Outcome outcome = resolve(true, {window(8, 9), window(8, 9)}, 3);
        QCOMPARE(outcome.code, code::ok);
        QCOMPARE(outcome.slotsGiven, (Slots{8, 8}));
    }

    void negativeSlotsAreNeverTaken()
    {
        const Outcome outcome = resolve(false, {window(-2, 3), window(-2, 3)});
        QCOMPARE(outcome.slotsGiven, (Slots{-2, -2}));
    }

    void steppingAsideBeyondTheTableFails()
    {
        // Moved to 4 by the second window, the first hop is beyond the table; for the third window
        // it would search there for ever, although it holds no slot that is claimed.
        const Windows windows{window(3, 9), window(3, 5), window(2, 5)};
        const Outcome outcome = resolve(true, windows, 3);
        QCOMPARE(outcome.code, code::refused);
        QCOMPARE(outcome.exitNumber, 607);
        QVERIFY(outcome.log.contains(QStringLiteral("temptxslot 2")));
        QCOMPARE(resolve(false, {window(3, 9), window(2, 5)}, 2).exitNumber, 512);
    }

    void hugeTablesTakeNoMemory()
    {
        const qint32 last = std::numeric_limits<qint32>::max();
        QCOMPARE(resolve(false, {window(3, 5), window(3, 5)}, last).slotsGiven, (Slots{3, 4}));
        QCOMPARE(resolve(false, {window(last, last), window(3, 5)}, last).code, code::ok);
    }

    void searchBehindTheLargestSlotWrapsWithoutFailing()
    {
        const qint32 last = std::numeric_limits<qint32>::max();
        const qint32 least = std::numeric_limits<qint32>::min();
        for (const bool asSwitch : {false, true}) {
            const Outcome outcome =
                resolve(asSwitch, {window(last, 5), window(last, 5), window(last, 5)}, last);
            QCOMPARE(outcome.code, code::ok);
            QCOMPARE(outcome.slotsGiven, (Slots{last, least, least}));
        }
        // So does giving way, one slot for each of the three.
        const SlotWindow tighter = window(last - 1, last - 1);
        for (const bool asSwitch : {false, true}) {
            const Outcome outcome =
                resolve(asSwitch, {window(last - 1, last), tighter, tighter, tighter}, last);
            QCOMPARE(outcome.slotsGiven.value(0), least + 1);
            QCOMPARE(outcome.code, code::refused); // the three have one slot
        }
        // Ahead of the largest slot it ends where the table does, but for a switch.
        for (const bool asSwitch : {false, true}) {
            const Outcome outcome =
                resolve(asSwitch, {window(last - 1, last), tighter, tighter}, last - 3);
            QCOMPARE(outcome.code, asSwitch ? code::ok : code::refused);
            QCOMPARE(outcome.exitNumber, asSwitch ? 0 : 486);
        }
        // One slot earlier the search meets the largest slot, which lies behind the window.
        const Outcome outcome =
            resolve(false, {window(last - 1, 5), window(last, 5), window(last - 1, 5)}, last);
        QCOMPARE(outcome.code, code::refused);
        QCOMPARE(outcome.slotsGiven, (Slots{last - 1, last}));
    }

    void failureLeavesTheMasterListAndOtherPortsAsTheyWere()
    {
        const LogCapture log;
        TTPlanner planner = plannerWithPort(false, {window(3, 9), window(5, 5), window(5, 5)}, 99);
        QCOMPARE(conflictResolve(planner, 1, 1), code::refused);
        QCOMPARE(planner.TTStreamInstanceList.front().paths.front().schedtxwin, window(3, 9));
        QCOMPARE(copiesAt(planner, 60, 1).front()->paths.front().schedtxwin, window(3, 9));
        // The two ahead of the one that found no slot have theirs.
        const std::list<InstanceCopy>& copies = copiesAt(planner, 1, 1);
        QCOMPARE(copies.front()->paths.front().schedtxwin, window(3, 3));
        QCOMPARE((*std::next(copies.begin()))->paths.front().txslotID, 5U);
        QCOMPARE(copies.back()->paths.front().txslotID, 0U);
    }

    void portThatNobodyUsesNeedsNoWork()
    {
        const LogCapture log;
        TTPlanner planner = plannerWithPort(false, {window(1, 2)}, 9);
        QCOMPARE(conflictResolve(planner, 1, 2), code::ok);
        QCOMPARE(conflictResolve(planner, 2, 1), code::ok);
        QCOMPARE(copiesAt(planner, 1, 1).front()->paths.front().schedtxwin, window(1, 2));
    }

    void instanceWithoutHopAtThePortIsPassedOver()
    {
        TTPlanner planner = grouped([] {
            TTPlanner made = plannerWithPort(false, {window(1, 2), window(1, 2), window(1, 2)}, 9);
            made.TTStreamInstanceList.front().paths.clear();
            std::next(made.TTStreamInstanceList.begin())->paths.front().talkerOutport = 2;
            return made;
        });
        const LogCapture log;
        QCOMPARE(conflictResolve(planner, 1, 1), code::ok);
        QCOMPARE(log.lines().size(), 3);
        QCOMPARE(copiesAt(planner, 1, 1).back()->paths.front().txslotID, 1U);
    }

    void talkerIsNeverComparedWithASwitch()
    {
        const LogCapture log;
        TTPlanner planner = plannerWithPort(false, {window(3, 9)}, 99);
        TTPlanner other = plannerWithPort(true, {window(3, 5)}, 99);
        planner.TTStreamInstanceList.push_back(other.TTStreamInstanceList.front());
        planner.TTStreamInstanceList.back().flowID = 2;
        group(planner);
        QCOMPARE(conflictResolve(planner, 1, 1), code::ok);
        QCOMPARE(copiesAt(planner, 1, 1).front()->paths.front().txslotID, 3U);
        QCOMPARE(copiesAt(planner, 1, 1).back()->paths.front().bridges.front().txslotID, 4U);
    }

    void everyBranchThroughThePortGetsTheSlot()
    {
        const LogCapture log;
        for (const bool asSwitch : {false, true}) {
            TTPlanner planner = plannerWithPort(asSwitch, {window(3, 9)}, 99);
            std::list<VirtualLinkPath>& paths = planner.TTStreamInstanceList.front().paths;
            paths.push_back(paths.front());
            (asSwitch ? paths.back().bridges.front().schedtxwin : paths.back().schedtxwin) =
                window(7, 8);
            group(planner);
            QCOMPARE(conflictResolve(planner, 1, 1), code::ok);
            for (const VirtualLinkPath& path : copiesAt(planner, 1, 1).front()->paths) {
                QCOMPARE(asSwitch ? path.bridges.front().schedtxwin : path.schedtxwin,
                         window(3, 3));
            }
        }
    }

    void everyBranchOfALaterInstanceMovesTheCurrentOne()
    {
        const LogCapture log;
        TTPlanner planner = plannerWithPort(false, {window(3, 9), window(3, 5)}, 99);
        std::list<VirtualLinkPath>& paths = planner.TTStreamInstanceList.back().paths;
        paths.push_back(paths.front());
        group(planner);
        QCOMPARE(conflictResolve(planner, 1, 1), code::ok);
        QCOMPARE(copiesAt(planner, 1, 1).front()->paths.front().txslotID, 5U);
    }
};

QTEST_APPLESS_MAIN(ConflictResolutionTest)
#include "ConflictResolutionTest.moc"
