#include "tests/planner/twin/RunRecord.h"
#include "tests/planner/twin/ScheduleCauses.h"
#include "tests/support/Tally.h"
#include "verification/Finding.h"

#include <QtTest>

/// Judges what all shards of the comparison have met together.
class TwinOutcomesTest : public QObject
{
    Q_OBJECT

private slots:
    void manyNetworksWereCompared()
    {
        QVERIFY2(m_tally.of(QStringLiteral(u"networks")) >= 5000, "shards are missing");
    }

    void everyOutcomeWasReached()
    {
        list(QStringLiteral(u"outcome: "));
        list(QStringLiteral(u"disturbed windows: "));
        for (const QString& outcome : requiredOutcomes())
            QVERIFY2(m_tally.of(QStringLiteral(u"outcome: ") + outcome) > 0, qPrintable(outcome));
    }

    void everyFindingIsExplained()
    {
        qInfo("plans with findings: %d", m_tally.of(QStringLiteral(u"plans with findings")));
        list(QStringLiteral(u"finding: "));
        for (const auto& finding : m_tally.below(QStringLiteral(u"finding: ")))
            QVERIFY2(!finding.first.endsWith(nameOf(ScheduleFinding::Unexplained)),
                     qPrintable(finding.first));
    }

    // The rules accept what an engineer would not; these counts say how often on networks of all
    // kinds, odd ones among them. What only the repetition of the schedule brings about stands
    // apart.
    void plansAreVerified()
    {
        using verification::Kind;
        list(QStringLiteral(u"plans"));
        list(QStringLiteral(u"verified: "));
        for (const Kind kind :
             {Kind::SharedSlot, Kind::SharedSlotOverCycle, Kind::HopOrder, Kind::LongWait,
              Kind::SendWindow, Kind::ReceiveWindow, Kind::ReceiveSlot, Kind::ListenerSlot,
              Kind::MissingFlow, Kind::UnevenPeriod, Kind::BeyondCycle})
            QVERIFY2(verified(kind) > 0, qPrintable(verification::nameOf(kind)));
        QCOMPARE(verified(Kind::SlotLength), 0);
        QVERIFY(m_tally.of(QStringLiteral(u"plans with a fault")) <
                m_tally.of(QStringLiteral(u"plans")));
    }

private:
    void list(const QString& beginning) const
    {
        for (const auto& [name, count] : m_tally.below(beginning))
            qInfo("%7d  %s%s", count, qPrintable(beginning), qPrintable(name));
    }

    int verified(verification::Kind kind) const
    {
        return m_tally.of(QStringLiteral(u"verified: ") + verification::nameOf(kind));
    }

    const Tally m_tally = Tally::ofAllShards();
};

QTEST_GUILESS_MAIN(TwinOutcomesTest)
#include "TwinOutcomesTest.moc"
