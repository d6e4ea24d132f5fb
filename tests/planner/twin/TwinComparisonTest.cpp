#include "tests/planner/twin/RandomOddities.h"
#include "tests/planner/twin/RunRecord.h"
#include "tests/planner/twin/ScheduleCauses.h"
#include "tests/support/Documents.h"
#include "tests/support/RandomSource.h"
#include "tests/support/SeedRange.h"
#include "tests/support/Tally.h"
#include "tests/support/TemporaryFolder.h"
#include "verification/PlanVerifier.h"

#include <QDir>
#include <QtTest>

#include <set>

/// Runs product and twin on random networks and compares everything that they leave behind.
///
/// An ordinary run takes shards of this test; TwinOutcomesTest looks at what they have met
/// together.
class TwinComparisonTest : public QObject
{
    Q_OBJECT

private slots:
    void networksComeFromTheirSeed();
    void productEqualsTwin_data();
    void productEqualsTwin();
    void secondStageEqualsTwinOnDisturbedWindows_data();
    void secondStageEqualsTwinOnDisturbedWindows();
    void cleanupTestCase() { m_tally.save(); }

private:
    void examine(const RandomNetwork& network, const RunRecord& product, const RunRecord& twin);
    void verify(const RandomNetwork& network);
    void report(const RandomNetwork& network, const QString& what);

    const SeedRange m_seeds = SeedRange::fromEnvironment(1000);
    Tally m_tally;
    int m_differences = 0;
    int m_unexplained = 0;
};

void TwinComparisonTest::report(const RandomNetwork& network, const QString& what)
{
    const QString folder = QStringLiteral(u"%1/rotunda-twin-seed-%2")
                               .arg(QDir::tempPath(), QString::number(network.seed));
    for (const RandomNetwork::File& file : network.files)
        writeFile(folder + QStringLiteral(u"/") + file.name, file.bytes);
    qWarning("seed %llu (%s), input in %s: %s", static_cast<unsigned long long>(network.seed),
             qPrintable(network.family), qPrintable(folder), qPrintable(what));
}

/// Counts the outcome and, for a plan, what the checker finds in it.
void TwinComparisonTest::examine(const RandomNetwork& network, const RunRecord& product,
                                 const RunRecord& twin)
{
    m_tally.add(QStringLiteral(u"outcome: ") + product.outcome());
    const QString difference = firstDifference(product, twin);
    if (!difference.isEmpty()) {
        if (++m_differences <= 10)
            report(network, difference);
        return;
    }
    if (!product.succeeded())
        return;
    verify(network);
    const auto findings = explainSchedule({product.windows, product.schedule, twin.finalWindows});
    m_tally.add(QStringLiteral(u"plans with findings"), findings.empty() ? 0 : 1);
    for (const ScheduleFinding& finding : findings) {
        m_tally.add(
            QStringLiteral(u"finding: %1: %2").arg(nameOf(finding.kind), nameOf(finding.cause)));
        if (finding.cause == ScheduleFinding::Unexplained && ++m_unexplained <= 10)
            report(network, nameOf(finding.kind) + QStringLiteral(u", ") + finding.text);
    }
}

/// Counts what the verifier finds in the plan that lies in the current directory.
void TwinComparisonTest::verify(const RandomNetwork& network)
{
    QStringList inputs;
    const QDir folder(QStringLiteral(u"ResourceXML"));
    for (const QString& name : folder.entryList({QStringLiteral(u"vek_input.*")}, QDir::Files))
        inputs.append(folder.filePath(name));
    const verification::PlanRecords plan =
        verification::readPlan(inputs, {QStringLiteral(u"OutputXML/vek_output.xml")});
    const verification::Verification verified = verification::verifyPlan(plan);
    std::set<verification::Kind> met;
    std::set<verification::Kind> faults;
    for (const verification::Finding& finding : verified.findings) {
        m_tally.add(QStringLiteral(u"verified: ") + nameOf(finding.kind));
        met.insert(finding.kind);
        if (finding.severity == verification::Severity::Fault)
            faults.insert(finding.kind);
    }
    for (const verification::Kind kind : met)
        m_tally.add(QStringLiteral(u"plans verified with: ") + nameOf(kind));
    m_tally.add(QStringLiteral(u"plans"));
    m_tally.add(QStringLiteral(u"plans with a fault"), faults.empty() ? 0 : 1);
    if (faults == std::set<verification::Kind>{verification::Kind::SharedSlotOverCycle})
        m_tally.add(QStringLiteral(u"plans with a fault over the cycle's end only"));
    if (plan.schedule.transmissions.size() != verified.transmissions)
        report(network, QStringLiteral(u"transmissions were lost on reading"));
}

void TwinComparisonTest::networksComeFromTheirSeed()
{
    for (const quint64 seed : {quint64(1), quint64(77), quint64(123456789)}) {
        const RandomNetwork a = randomNetwork(seed);
        const RandomNetwork b = randomNetwork(seed);
        QCOMPARE(a.family, b.family);
        QCOMPARE(a.files.size(), b.files.size());
        for (size_t i = 0; i < a.files.size(); ++i)
            QCOMPARE(a.files[i].bytes, b.files[i].bytes);
    }
    // Known bytes, so that a seed printed on one machine means the same network on another.
    QCOMPARE(RandomSource(1).next(), Q_UINT64_C(0x910A2DEC89025CC1));
}

void TwinComparisonTest::productEqualsTwin_data()
{
    m_seeds.addBlocks(1000);
}

void TwinComparisonTest::productEqualsTwin()
{
    QFETCH(quint64, first);
    QFETCH(quint64, count);
    const TemporaryFolder folder;
    const int before = m_differences;
    m_tally.add(QStringLiteral(u"networks"), static_cast<int>(count));
    for (quint64 seed = first; seed < first + count; ++seed) {
        const RandomNetwork network = randomNetwork(seed);
        examine(network, runProduct(network), runTwin(network));
    }
    QCOMPARE(m_differences, before);
    QCOMPARE(m_unexplained, 0);
}

void TwinComparisonTest::secondStageEqualsTwinOnDisturbedWindows_data()
{
    SeedRange{m_seeds.first, m_seeds.count / 2}.addBlocks(1000);
}

// Windows that the first stage would not write reach what its own never do, such as a search that
// passes the end of the slot table inside a window.
void TwinComparisonTest::secondStageEqualsTwinOnDisturbedWindows()
{
    QFETCH(quint64, first);
    QFETCH(quint64, count);
    const TemporaryFolder folder;
    for (quint64 seed = first; seed < first + count; ++seed) {
        RandomNetwork network = randomNetwork(seed);
        const RunRecord undisturbed = runProduct(network);
        if (undisturbed.firstCode != 0)
            continue;
        RandomSource random(seed);
        const QByteArray windows = disturbedWindows(random, undisturbed.windows);
        const RunRecord product = planWithProduct(windows);
        m_tally.add(QStringLiteral(u"disturbed windows: ") + product.outcome());
        const QString difference = firstDifference(product, planWithTwin(windows));
        if (difference.isEmpty())
            continue;
        network.files = {{QStringLiteral(u"vek_hs.xml"), windows}};
        report(network, difference);
        QFAIL(qPrintable(difference));
    }
}

QTEST_GUILESS_MAIN(TwinComparisonTest)
#include "TwinComparisonTest.moc"
