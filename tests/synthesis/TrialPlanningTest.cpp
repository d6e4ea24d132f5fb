#include "synthesis/TrialPlanning.h"

#include "planner/PreProcess.h"
#include "planner/TTPlanning.h"
#include "planner/search/PairKey.h"

#include "tests/planner/Windows.h"
#include "tests/support/Documents.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Spoken.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"
#include "tests/synthesis/EngineProof.h"
#include "tests/synthesis/PlantedNetwork.h"
#include "tests/synthesis/TestNetwork.h"

#include <QtTest>

// A plan that is tried in memory is the one that a run by way of the documents gives.

using namespace synthesis;

namespace
{

/// What a run by way of the documents gives.
struct Run {
    qint32 code;
    QByteArray outputDocument; ///< with code 0
};

Run runOf(const QByteArray& input)
{
    const TemporaryFolder folder;
    const LogCapture log;
    writeFile(u("ResourceXML/vek_input.xml"), input);
    planner::PlanningContext context;
    Run run{planner::preProcess(context), {}};
    if (run.code != 0)
        return run;
    planner::TTPlanner planner;
    run.code = planner::TTPlanning(planner);
    if (run.code == 0)
        run.outputDocument = readFile(u("OutputXML/vek_output.xml"));
    return run;
}

TrialPlan trialOf(const NetworkDraft& draft)
{
    return tryPlanning(parsed(documentOf(draft)).network.context);
}

} // namespace

class TrialPlanningTest : public QObject
{
    Q_OBJECT

private slots:
    void trialAgreesWithARunByWayOfTheDocuments()
    {
        PlantedStyle style;
        style.flows = 12;
        style.reach = 1;
        style.multicastPercent = 30;
        int planned = 0;
        int refused = 0;
        for (quint64 seed = 1; seed <= 60; ++seed) {
            style.windows = seed % 2 == 0 ? PlantedStyle::Tight : PlantedStyle::Wide;
            const NetworkDraft draft = plantedNetwork(style, seed).draft;
            const TrialPlan trial = trialOf(draft);
            const Run run = runOf(documentOf(draft));
            QCOMPARE(trial.code, run.code);
            QCOMPARE(trial.outputDocument, run.outputDocument);
            ++(trial.code == planner::code::ok ? planned : refused);
        }
        QVERIFY(planned > 5);
        QVERIFY(refused > 5);
    }

    void conflictThatStaysNamesItsPort()
    {
        TestNetwork network;
        network.addFlow(words("A S T Z"), 2000, u("[0,200]"), u("[400,600]"));
        network.addFlow(words("A S T Z"), 2000, u("[0,200]"), u("[400,600]"));
        const TrialPlan trial = trialOf(network.draft);
        QCOMPARE(trial.code, planner::code::refused);
        QVERIFY(trial.failedPort.has_value());
        QCOMPARE(*trial.failedPort, planner::pairKey(0, 0));
        QVERIFY(trial.outputDocument.isEmpty());
    }

    void windowsThatTheRulesRefuseHaveNoPort()
    {
        TestNetwork network;
        network.addFlow(words("A S T Z"), 2000, u("[600,800]"), u("[0,200]"));
        const TrialPlan trial = trialOf(network.draft);
        QVERIFY(trial.code != planner::code::ok);
        QCOMPARE(trial.code, runOf(documentOf(network.draft)).code);
        QVERIFY(!trial.failedPort.has_value());
    }

    void cyclesThatDoNotFitIntoMemoryAreNotTried()
    {
        TestNetwork network;
        network.addFlow(words("A S T Z"), 200, u("[0,200]"), u("[400,600]"));
        network.addFlow(words("B S Y"), 1200000000, u("[0,200]"), u("[200,400]"));
        const TrialPlan trial = trialOf(network.draft);
        QCOMPARE(trial.code, planner::code::unreadable);
        QVERIFY(!trial.failedPort.has_value());
        network.draft.flows.back().txwin = u("[600,800]"); // behind what is received
        QCOMPARE(trialOf(network.draft).code, planner::code::refused);
    }

    void windowsOfAPlanAreGivenToAllPaths()
    {
        TestNetwork network;
        network.addFlow(words("A S T Z"), 4000, u("[0,2000]"), u("[0,4000]"));
        network.addListener(words("A S Y"), u("[0,4000]"));
        network.addFlow(words("B S Y"), 4000, u("[0,2000]"), u("[0,4000]"));
        planner::PlanningContext context = parsed(documentOf(network.draft)).network.context;
        Found plan;
        plan.flows.push_back({window(1, 1), {window(3, 3), window(2, 2)}, 0});
        plan.flows.push_back({window(4, 4), {window(7, 7)}, 2});
        applyWindows(context, plan);
        auto windows = plan.flows.begin();
        for (const planner::TTFlow& flow : context.flows) {
            auto receive = windows->receive.begin();
            for (const planner::VirtualLinkPath& path : flow.paths) {
                QCOMPARE(path.schedtxwin, windows->send);
                QCOMPARE(path.schedrxwin, *receive++);
            }
            ++windows;
        }
        QVERIFY(windows == plan.flows.end());
    }
};

QTEST_GUILESS_MAIN(TrialPlanningTest)
#include "TrialPlanningTest.moc"
