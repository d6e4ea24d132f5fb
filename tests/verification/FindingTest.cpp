#include "verification/Findings.h"

#include "tests/verification/SpokenFindings.h"

#include <QtTest>

#include <functional>

// Findings as data: how they are ordered, told apart and put into words.

Q_DECLARE_METATYPE(verification::Finding)

using namespace verification;

namespace
{

/// Findings in the order of a report, each of which is behind the one before for one reason alone.
std::vector<Finding> findingsInOrder()
{
    std::vector<Finding> findings(1);
    const auto next = [&findings](const std::function<void(Finding&)>& change) {
        findings.push_back(findings.back());
        change(findings.back());
    };
    next([](Finding& finding) { finding.detail = QStringLiteral("a"); });
    next([](Finding& finding) { finding.detail = QStringLiteral("b"); });
    next([](Finding& finding) { finding.reason = Reason::PeriodZero; });
    next([](Finding& finding) { finding.high = 1; });
    next([](Finding& finding) { finding.low = 1; });
    next([](Finding& finding) { finding.found = 1; });
    next([](Finding& finding) { finding.transmissions = {{1, Transmission::wholeFlow}}; });
    next([](Finding& finding) { finding.transmissions = {{1, 0}}; });
    next([](Finding& finding) { finding.transmissions = {{1, 0}, {0, 0}}; });
    next([](Finding& finding) { finding.transmissions = {{1, 1}}; });
    next([](Finding& finding) { finding.transmissions = {{2, 0}}; });
    next([](Finding& finding) { finding.slot = -1; });
    next([](Finding& finding) { finding.slot = 0; });
    next([](Finding& finding) { finding.port = 0; });
    next([](Finding& finding) { finding.node = 0; });
    next([](Finding& finding) { finding.kind = Kind::SlotLength; });
    next([](Finding& finding) { finding.severity = Severity::Remark; });
    return findings;
}

} // namespace

class FindingTest : public QObject
{
    Q_OBJECT

private slots:
    void findingsAreOrderedByAllTheirParts()
    {
        const std::vector<Finding> findings = findingsInOrder();
        for (size_t a = 0; a < findings.size(); ++a) {
            for (size_t b = 0; b < findings.size(); ++b) {
                QCOMPARE(findings[a] < findings[b], a < b);
                QCOMPARE(findings[a] == findings[b], a == b);
            }
        }
    }

    void transmissionsAreOrderedByFlowAndNumber()
    {
        const std::vector<Transmission> inOrder{{-1, 5}, {0, -1}, {0, 0}, {0, 1}, {1, -1}};
        for (size_t a = 0; a < inOrder.size(); ++a) {
            for (size_t b = 0; b < inOrder.size(); ++b) {
                QCOMPARE(inOrder[a] < inOrder[b], a < b);
                QCOMPARE(inOrder[a] == inOrder[b], a == b);
            }
        }
    }

    void findingBeginsWithoutPlaceAndNumbers()
    {
        const Finding finding = FindingMaker(Kind::SharedSlot);
        QCOMPARE(describe(finding), QStringLiteral("fault, shared slot"));
        QCOMPARE(finding.node, Finding::nowhere);
        QCOMPARE(finding.port, Finding::nowhere);
        QCOMPARE(finding.slot, Finding::noSlot);
        QCOMPARE(finding.found, qint64(0));
        QCOMPARE(finding.low, qint64(0));
        QCOMPARE(finding.high, qint64(0));
        QCOMPARE(describe(Finding()), QStringLiteral("fault, damaged document"));
        QCOMPARE(Transmission().flowID, 0);
        QCOMPARE(Transmission().seq, 0);
    }

    void severityFollowsFromTheKindUnlessTold()
    {
        QCOMPARE(severityOf(Kind::MissingLink), Severity::Fault);
        QCOMPARE(severityOf(Kind::UnevenPeriod), Severity::Remark);
        QCOMPARE(severityOf(Kind::BeyondCycle), Severity::Remark);
        const Finding told = FindingMaker(Kind::ReceiveSlot).as(Severity::Remark);
        QCOMPARE(told.severity, Severity::Remark);
    }

    void kindsAreListedFromTheFirstToTheLast()
    {
        const std::vector<Kind> kinds = allKinds();
        QCOMPARE(kinds.front(), Kind::DamagedDocument);
        QCOMPARE(kinds.back(), Kind::BeyondCycle);
        for (size_t i = 1; i < kinds.size(); ++i)
            QCOMPARE(static_cast<int>(kinds[i]), static_cast<int>(kinds[i - 1]) + 1);
    }

    void numbersArePutIntoWords_data()
    {
        QTest::addColumn<Finding>("finding");
        QTest::addColumn<QString>("words");
        const auto row = [](const char* words, Kind kind, qint64 found, qint64 low, qint64 high) {
            QTest::newRow(words) << Finding(FindingMaker(kind).numbers(found, low, high))
                                 << QString::fromLatin1(words);
        };
        row("fault, slot length", Kind::SlotLength, 0, 0, 0);
        row("fault, slot length, 1 instead of 0", Kind::SlotLength, 1, 0, 0);
        row("fault, slot length, 0 instead of 2", Kind::SlotLength, 0, 2, 2);
        row("fault, slot length, 0 not in [-2,0]", Kind::SlotLength, 0, -2, 0);
        row("fault, slot length, 0 not in [0,2]", Kind::SlotLength, 0, 0, 2);
        row("fault, missing link, none to node 7", Kind::MissingLink, 7, 0, 0);
        row("fault, missing link, none to node 0", Kind::MissingLink, 0, 0, 0);
    }

    void numbersArePutIntoWords()
    {
        QFETCH(Finding, finding);
        QFETCH(QString, words);
        QCOMPARE(describe(finding), words);
    }

    void placeIsPutIntoWordsFromNumberZeroOn()
    {
        const Finding finding = FindingMaker(Kind::HopOrder).at(0, 0, 0).ofFlow(0);
        QCOMPARE(describe(finding), QStringLiteral("fault, sent before it came, node 0, port 0, "
                                                   "slot 0, flow 0"));
    }

    void transmissionsAreCutBehindTheSixth()
    {
        std::vector<Transmission> transmissions;
        for (int flow = 1; flow <= 6; ++flow)
            transmissions.push_back({flow, 0});
        const Finding six = FindingMaker(Kind::SharedSlot).of(transmissions);
        QVERIFY(describe(six).endsWith(QStringLiteral("flow 1-0, 2-0, 3-0, 4-0, 5-0, 6-0")));
        const Finding seven =
            FindingMaker(Kind::SharedSlot).of(transmissions).of(Transmission{7, 0});
        QVERIFY(describe(seven).endsWith(QStringLiteral("5-0, 6-0, and 1 more")));
    }
};

QTEST_GUILESS_MAIN(FindingTest)
#include "FindingTest.moc"
