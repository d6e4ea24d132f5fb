#include "synthesis/ResolutionSearch.h"

#include "planner/search/PairKey.h"

#include "tests/support/Spoken.h"
#include "tests/support/Text.h"
#include "tests/synthesis/ModelOfNetwork.h"
#include "tests/synthesis/TestNetwork.h"

#include <QtTest>

#include <set>

// Which placements are offered for a trial, and which never again after one that failed.

using namespace synthesis;

namespace
{

/// Two frames that leave together and have to arrive before one could wait out of the other's way.
NetworkDraft oneMustOverlap()
{
    TestNetwork network;
    network.addFlow(words("A S T Z"), 2000, u("[0,200]"), u("[0,600]"));
    network.addFlow(words("B S T Z"), 2000, u("[0,200]"), u("[0,1000]"));
    return network.draft;
}

/// "send-receive" of each flow.
QString spoken(const SearchModel& model, const std::vector<Placement>& placements)
{
    QStringList texts;
    for (std::size_t flow = 0; flow < placements.size(); ++flow) {
        const Placement& own = placements[flow];
        const qint32 arrival = own.slot + model.flows()[flow].patterns[own.pattern].delays.front();
        texts.append(QStringLiteral("%1-%2").arg(own.slot).arg(arrival));
    }
    return texts.join(QLatin1Char(' '));
}

/// All placements that are offered when none passes; the port is named for each that fails.
QStringList offered(const NetworkDraft& draft, const std::optional<quint32>& failedPort)
{
    ModelOfNetwork network(draft);
    for (std::size_t flow = 0; flow < network.places.size(); ++flow)
        network.model.addWaitingPatterns(flow);
    const Options options;
    SearchBudget budget(options, network.places.size());
    ResolutionSearch search(network.model, budget);
    QStringList all;
    const auto passed = search.run(options.steps, [&](const std::vector<Placement>& placements) {
        all.append(spoken(network.model, placements));
        return ResolutionSearch::Verdict{false, failedPort};
    });
    all.sort();
    return passed.empty() ? all : QStringList(u("one has passed"));
}

} // namespace

class ResolutionSearchTest : public QObject
{
    Q_OBJECT

private slots:
    void placementsThatPassAreTheAnswer()
    {
        ModelOfNetwork network(oneMustOverlap());
        for (std::size_t flow = 0; flow < network.places.size(); ++flow)
            network.model.addWaitingPatterns(flow);
        const Options options;
        SearchBudget budget(options, 2);
        ResolutionSearch search(network.model, budget);
        QString seen;
        const auto passed =
            search.run(options.steps, [&](const std::vector<Placement>& placements) {
                seen = spoken(network.model, placements);
                return ResolutionSearch::Verdict{true, {}};
            });
        QCOMPARE(spoken(network.model, passed), seen);
        QVERIFY(seen == QLatin1String("0-2 0-3") || seen == QLatin1String("0-2 0-4"));
    }

    // A frame that gets there at once has slot 1 of the port behind S; the other one must wait.
    void eachPlacementIsOfferedOnce()
    {
        QCOMPARE(offered(oneMustOverlap(), {}), (QStringList{u("0-2 0-3"), u("0-2 0-4")}));
    }
};

QTEST_GUILESS_MAIN(ResolutionSearchTest)
#include "ResolutionSearchTest.moc"
