#include "planner/IntermediateDocument.h"
#include "planner/PlanningLog.h"
#include "planner/PreProcess.h"
#include "planner/TTPlanning.h"

#include "tests/planner/twin/RandomNetworks.h"
#include "tests/planner/twin/RunRecord.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RandomSource.h"
#include "tests/support/TemporaryFolder.h"

#include <QtTest>

using namespace planner;

// The stages without documents give what they give with them.
class InMemoryPlanningTest : public QObject
{
    Q_OBJECT

private slots:
    void planInMemoryIsThatOfTheDocuments()
    {
        const TemporaryFolder folder;
        int planned = 0;
        for (quint64 seed = 1; seed <= 600; ++seed) {
            const RunRecord record = runProduct(randomNetwork(seed));
            if (record.firstCode != 0)
                continue;
            // The input document is still there; the run has left no context.
            const LogCapture log;
            PlanningContext context;
            QCOMPARE(preProcess(context), 0);
            TTPlanner planner;
            takeInstances(planner, context);
            const qint32 code = planInstances(planner);
            QCOMPARE(code, record.secondCode);
            if (code != 0)
                continue;
            QCOMPARE(outputDocument(planner), record.schedule);
            ++planned;
        }
        QVERIFY(planned > 100);
    }

    void cycleWithoutALogIsTheSame()
    {
        RandomSource random(5);
        const LogCapture log;
        for (int i = 0; i < 2000; ++i) {
            PlanningContext context;
            // Some multiples pass 32 bits, which cuts them round by round.
            const int most = random.pick({50, 5000, 2000000});
            for (int flows = random.below(6); flows > 0; --flows) {
                context.flows.emplace_back();
                context.flows.back().period = static_cast<quint32>(random.between(1, most));
            }
            const quint32 cycle = clusterCycleOf(context);
            QCOMPARE(context.clusterCycle, quint64(0));
            QCOMPARE(cycle, computeClusterCycle(context));
        }
    }

    void quietPlanningEndsWithItsScope()
    {
        const LogCapture log;
        {
            const QuietPlanning quiet;
            const QuietPlanning nested;
            qCDebug(planningLog) << "not seen";
        }
        qCDebug(planningLog) << "seen";
        QCOMPARE(log.lines(), QStringList{QStringLiteral("seen")});
    }
};

QTEST_GUILESS_MAIN(InMemoryPlanningTest)
#include "InMemoryPlanningTest.moc"
