#include "tests/support/LogCapture.h"
#include "tests/support/RandomSource.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/synthesis/EngineProof.h"
#include "tests/synthesis/ExhaustiveSearch.h"
#include "tests/synthesis/PlantedNetwork.h"

#include <QtTest>

// Compares the search with one that tries everything, on networks of up to eight flows.

using namespace synthesis;

static quint64 networkCount()
{
    const QByteArray text = qgetenv("ROTUNDA_SMALL_NETWORKS");
    return text.isEmpty() ? 1500 : text.toULongLong();
}

static PlantedStyle styleOf(RandomSource& random)
{
    using Style = PlantedStyle;
    Style style;
    style.shape = random.pick({Style::Line, Style::Star, Style::Tree, Style::Ring});
    style.windows = Style::Tight;
    style.switches = random.between(1, 3);
    style.hosts = random.between(2, 4);
    style.flows = random.between(1, 8);
    static const std::vector<std::vector<quint32>> pools = {
        {600, 1200}, {800}, {1000}, {1200, 1800}, {600, 800}, {500, 750}, {700, 1400}, {300, 900},
    };
    style.periods = random.pick(pools);
    style.buffers = random.between(1, 5);
    style.multicastPercent = random.pick({0, 0, 30});
    style.reach = random.between(0, 2);
    style.waitPercent = random.pick({0, 40, 100});
    return style;
}

/// Moves and narrows a window so that the planted plan may be lost.
static QString disturbed(RandomSource& random, const QString& window)
{
    const QStringList bounds = window.mid(1, window.size() - 2).split(QLatin1Char(','));
    int low = bounds.first().toInt();
    int high = bounds.last().toInt();
    if (random.chance(30))
        low = std::max(0, low + 200 * random.between(-1, 2));
    if (random.chance(30))
        high += 200 * random.between(-2, 1);
    return QStringLiteral("[%1,%2]").arg(QString::number(low), QString::number(high));
}

static void disturb(RandomSource& random, NetworkDraft& draft)
{
    for (DraftFlow& flow : draft.flows) {
        flow.txwin = disturbed(random, flow.txwin);
        for (DraftListener& listener : flow.listeners)
            listener.rxwin = disturbed(random, listener.rxwin);
    }
}

/// Lets all talkers send in the same few slots.
static void crowd(RandomSource& random, NetworkDraft& draft)
{
    const int last = random.between(1, 3) * 200;
    for (DraftFlow& flow : draft.flows) {
        flow.txwin = QStringLiteral("[0,%1]").arg(last);
        for (DraftListener& listener : flow.listeners)
            listener.rxwin = QStringLiteral("[200,%1]").arg(last + random.between(2, 6) * 200);
    }
}

class SmallNetworksTest : public QObject
{
    Q_OBJECT

private slots:
    void outcomeAgreesWithTryingEverything()
    {
        const TemporaryFolder folder;
        for (quint64 seed = 1; seed <= networkCount(); ++seed) {
            RandomSource random(seed);
            PlantedNetwork planted = plantedNetwork(styleOf(random), seed);
            if (planted.draft.flows.empty())
                continue;
            if (random.chance(15))
                crowd(random, planted.draft);
            else if (random.chance(70))
                disturb(random, planted.draft);
            const ParsedNetwork network = parsed(documentOf(planted.draft));
            Options options;
            options.isFaultless = judgeFor(network);
            const QString difference =
                differenceOf(network, synthesizeWindows(network.network.context, options));
            QVERIFY2(difference.isEmpty(),
                     qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(difference)));
        }
    }

    void everyOutcomeWasMet()
    {
        qInfo(
            "%d without overlap, %d by resolution, %d flows without a slot, %d intervals, %d open",
            m_found, m_resolved, m_noSlot, m_overfull, m_spent);
        if (networkCount() < 1000)
            QSKIP("too few networks for the rare outcomes");
        QVERIFY(m_found > 100);
        QVERIFY(m_resolved > 0);
        QVERIFY(m_noSlot > 20);
        QVERIFY(m_overfull > 20);
        QVERIFY(m_spent > 0);
    }

private:
    /// What an exhaustive search or the engine says against the outcome.
    QString differenceOf(const ParsedNetwork& network, const Outcome& outcome)
    {
        const planner::PlanningContext& context = network.network.context;
        const LogCapture quiet;
        if (const auto* plan = std::get_if<Found>(&outcome)) {
            ++(plan->restsOnResolution ? m_resolved : m_found);
            if (plan->restsOnResolution && hasPlanWithoutOverlap(context))
                return QStringLiteral("overlaps although it need not");
            return faultOf(network, *plan);
        }
        if (hasPlanWithoutOverlap(context))
            return QStringLiteral("a plan without overlap exists");
        if (const auto* proof = std::get_if<NoSlot>(&outcome)) {
            ++m_noSlot;
            return hasAnyPlan(context, {proof->flow}) ? QStringLiteral("the flow has slots")
                                                      : QString();
        }
        if (const auto* proof = std::get_if<Overfull>(&outcome)) {
            ++m_overfull;
            return hasAnyPlan(context, proof->flows) ? QStringLiteral("the flows have a plan")
                                                     : QString();
        }
        ++m_spent;
        const auto* spent = std::get_if<BudgetSpent>(&outcome);
        return spent && spent->noneWithoutOverlap ? QString() : QStringLiteral("left open");
    }

    int m_found = 0;
    int m_resolved = 0;
    int m_noSlot = 0;
    int m_overfull = 0;
    int m_spent = 0;
};

QTEST_GUILESS_MAIN(SmallNetworksTest)
#include "SmallNetworksTest.moc"
