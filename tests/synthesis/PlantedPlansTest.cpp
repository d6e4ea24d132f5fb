#include "tests/support/RandomSource.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/synthesis/EngineProof.h"
#include "tests/synthesis/PlantedNetwork.h"

#include <QtTest>

// Networks of many shapes that have a plan: what is found is proven by the engine and the verifier.
//
// ROTUNDA_PLANTED_NETWORKS sets their number, ROTUNDA_PLANTED_SEED the first seed.

using namespace synthesis;

static quint64 environmentNumber(const char* name, quint64 preset)
{
    const QByteArray text = qgetenv(name);
    return text.isEmpty() ? preset : text.toULongLong();
}

/// A few steps, so that what is hard costs the test little; far more than most networks need.
static constexpr quint64 stepsPerNetwork = 8000000;

static PlantedStyle styleOf(quint64 seed)
{
    using Style = PlantedStyle;
    RandomSource random(seed ^ 0x5EED);
    Style style;
    style.shape = random.pick({Style::Line, Style::Ring, Style::Star, Style::Tree, Style::Mesh});
    style.windows = random.pick({Style::Wide, Style::Tight, Style::Mixed});
    style.switches = random.between(1, 8);
    style.hosts = random.between(2, 16);
    const bool isLarge = random.chance(2);
    style.flows = isLarge ? random.between(200, 500) : random.between(5, 80);
    if (isLarge) {
        style.hosts = 60;
        style.switches = 20;
    }
    static const std::vector<std::vector<quint32>> pools = {
        {2000, 4000, 8000}, {4000, 8000, 16000}, {5000, 10000},
        {3000, 4000, 6000}, {2000, 3000, 5000},  {4000},
        {1000, 20000},      {2600, 3900},
    };
    style.periods = random.pick(pools);
    style.buffers = random.pick({1, 2, 4, 4, 7});
    style.multicastPercent = random.pick({0, 0, 20, 60});
    style.reach = random.between(1, 8);
    style.waitPercent = random.pick({0, 20, 50});
    style.loadPercent = random.between(1, 9) * 10;
    return style;
}

class PlantedPlansTest : public QObject
{
    Q_OBJECT

private slots:
    void everythingFoundIsPlannedWithoutConflictOrFault_data()
    {
        QTest::addColumn<quint64>("first");
        QTest::addColumn<quint64>("count");
        const quint64 block = 250;
        for (quint64 done = 0; done < m_networks; done += block)
            QTest::newRow(qPrintable(QStringLiteral("from seed %1").arg(m_firstSeed + done)))
                << m_firstSeed + done << qMin(block, m_networks - done);
    }

    void everythingFoundIsPlannedWithoutConflictOrFault()
    {
        QFETCH(quint64, first);
        QFETCH(quint64, count);
        const TemporaryFolder folder;
        for (quint64 seed = first; seed < first + count; ++seed) {
            const PlantedNetwork planted = plantedNetwork(styleOf(seed), seed);
            const ParsedNetwork network = parsed(documentOf(planted.draft));
            QVERIFY(network.network.isSearchable());
            Options options;
            options.steps = stepsPerNetwork;
            options.isFaultless = judgeFor(network);
            const Outcome outcome = synthesizeWindows(network.network.context, options);
            // A plan was planted, so nothing may be proven away.
            QVERIFY2(!std::holds_alternative<NoSlot>(outcome), qPrintable(QString::number(seed)));
            QVERIFY2(!std::holds_alternative<Overfull>(outcome), qPrintable(QString::number(seed)));
            ++m_total;
            if (const auto* plan = std::get_if<Found>(&outcome)) {
                ++m_found;
                m_resolved += plan->restsOnResolution ? 1 : 0;
                m_waiting += plan->waiting > 0 ? 1 : 0;
                const QString fault = faultOf(network, *plan);
                QVERIFY2(fault.isEmpty(),
                         qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(fault)));
            } else {
                const auto& spent = std::get<BudgetSpent>(outcome);
                QVERIFY(!spent.unplaced.empty());
                m_noneWithoutOverlap += spent.noneWithoutOverlap ? 1 : 0;
            }
        }
    }

    void nearlyAllAreFound()
    {
        qInfo("%d of %d found, %d with waiting, %d by resolution; of the others %d have no plan "
              "without overlap",
              m_found, m_total, m_waiting, m_resolved, m_noneWithoutOverlap);
        if (m_networks < 1000)
            QSKIP("too few networks for a share");
        QVERIFY(m_found * 100 >= m_total * 90);
        QVERIFY(m_waiting > 0);
    }

private:
    const quint64 m_networks = environmentNumber("ROTUNDA_PLANTED_NETWORKS", 2000);
    const quint64 m_firstSeed = environmentNumber("ROTUNDA_PLANTED_SEED", 1);
    int m_total = 0;
    int m_found = 0;
    int m_waiting = 0;
    int m_resolved = 0;
    int m_noneWithoutOverlap = 0;
};

QTEST_GUILESS_MAIN(PlantedPlansTest)
#include "PlantedPlansTest.moc"
