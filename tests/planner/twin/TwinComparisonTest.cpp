#include "tests/planner/twin/RunRecord.h"
#include "tests/support/Documents.h"
#include "tests/support/ScheduleChecker.h"
#include "tests/support/TemporaryFolder.h"

#include <QDir>
#include <QtTest>

#include <map>

/// Runs product and twin on random networks and compares everything that they leave behind.
///
/// ROTUNDA_RANDOM_NETWORKS sets the number of networks, ROTUNDA_RANDOM_SEED the first seed.
class TwinComparisonTest : public QObject
{
    Q_OBJECT

private slots:
    void productEqualsTwin();
    void networksAreTheSameEverywhere();

private:
    void examine(const RandomNetwork& network, const RunRecord& product, const RunRecord& twin);
    void report(const RandomNetwork& network, const QString& what);
    void printTables() const;

    int m_differences = 0;
    std::map<QString, int> m_outcomes;
    std::map<QString, std::map<QString, int>> m_findings;
    int m_findingPlans = 0;
    int m_unexplained = 0;
};

static quint64 environmentNumber(const char* name, quint64 fallback)
{
    bool ok = false;
    const quint64 value = qEnvironmentVariable(name).toULongLong(&ok);
    return ok ? value : fallback;
}

void TwinComparisonTest::report(const RandomNetwork& network, const QString& what)
{
    const QString folder = QStringLiteral(u"%1/rotunda-twin-seed-%2")
                               .arg(QDir::tempPath(), QString::number(network.seed));
    for (const RandomNetwork::File& file : network.files)
        writeFile(folder + QStringLiteral(u"/ResourceXML/") + file.name, file.bytes);
    qWarning("seed %llu (%s), input in %s: %s", static_cast<unsigned long long>(network.seed),
             qPrintable(network.family), qPrintable(folder), qPrintable(what));
}

/// Counts the outcome and, for a plan, what the checker finds in it.
void TwinComparisonTest::examine(const RandomNetwork& network, const RunRecord& product,
                                 const RunRecord& twin)
{
    ++m_outcomes[product.outcome()];
    const QString difference = firstDifference(product, twin);
    if (!difference.isEmpty()) {
        if (++m_differences <= 10)
            report(network, difference);
        return;
    }
    if (!product.succeeded())
        return;
    const auto findings = checkSchedule({product.windows, product.schedule, twin.finalWindows});
    m_findingPlans += findings.empty() ? 0 : 1;
    for (const ScheduleFinding& finding : findings) {
        ++m_findings[nameOf(finding.kind)][nameOf(finding.cause)];
        if (finding.cause == ScheduleFinding::Unexplained && ++m_unexplained <= 10)
            report(network, nameOf(finding.kind) + QStringLiteral(u", ") + finding.text);
    }
}

void TwinComparisonTest::printTables() const
{
    for (const auto& outcome : m_outcomes)
        qInfo("%7d  %s", outcome.second, qPrintable(outcome.first));
    qInfo("plans with findings: %d", m_findingPlans);
    for (const auto& kind : m_findings) {
        for (const auto& cause : kind.second)
            qInfo("%7d  %s: %s", cause.second, qPrintable(kind.first), qPrintable(cause.first));
    }
}

void TwinComparisonTest::productEqualsTwin()
{
    const TemporaryFolder folder;
    const quint64 count = environmentNumber("ROTUNDA_RANDOM_NETWORKS", 6000);
    const quint64 first = environmentNumber("ROTUNDA_RANDOM_SEED", 1);
    for (quint64 seed = first; seed < first + count; ++seed) {
        const RandomNetwork network = randomNetwork(seed);
        examine(network, runProduct(network), runTwin(network));
    }
    printTables();
    QCOMPARE(m_differences, 0);
    QCOMPARE(m_unexplained, 0);
    for (const QString& outcome : requiredOutcomes())
        QVERIFY2(m_outcomes.count(outcome) > 0, qPrintable(outcome));
}

void TwinComparisonTest::networksAreTheSameEverywhere()
{
    for (const quint64 seed : {quint64(1), quint64(77), quint64(123456789)}) {
        const RandomNetwork a = randomNetwork(seed);
        const RandomNetwork b = randomNetwork(seed);
        QCOMPARE(a.family, b.family);
        QCOMPARE(a.files.size(), b.files.size());
        QCOMPARE(a.files.front().bytes, b.files.front().bytes);
    }
}

QTEST_GUILESS_MAIN(TwinComparisonTest)
#include "TwinComparisonTest.moc"
