#include "synthesis/PatternSolver.h"

#include "tests/support/Spoken.h"
#include "tests/support/Text.h"
#include "tests/synthesis/ModelOfNetwork.h"
#include "tests/synthesis/TestNetwork.h"

#include <QtTest>

// What the complete search writes down about ports, and in which order it asks.

using namespace synthesis;

using Answer = ClauseSolver::Answer;

namespace
{

/// Two frames that leave their talkers together; one waits in S, and long enough to be out of the
/// way with the whole window that it gets there.
ModelOfNetwork oneMustWait()
{
    TestNetwork network;
    network.addFlow(words("A S T Z"), 2000, u("[0,200]"), u("[0,600]"));
    network.addFlow(words("B S T Z"), 2000, u("[0,200]"), u("[0,1600]"));
    return ModelOfNetwork(network.draft);
}

/// Two frames for one listener that leave together; one waits in S for a slot.
ModelOfNetwork oneMustWaitASlot()
{
    TestNetwork network;
    network.addFlow(words("A S Y"), 2000, u("[0,200]"), u("[0,400]"));
    network.addFlow(words("B S Y"), 2000, u("[0,200]"), u("[0,600]"));
    return ModelOfNetwork(network.draft);
}

/// Flows that may be sent in any of so many slots, each on a way of three ports.
TestNetwork wideNetwork(int flows, quint32 choices)
{
    TestNetwork network;
    for (int i = 0; i < flows; ++i)
        network.addFlow(words("A S T Z"), 200 * choices,
                        QStringLiteral("[0,%1]").arg(200 * choices),
                        QStringLiteral("[0,%1]").arg(200 * (choices + 2)));
    return network;
}

void addAllPatterns(SearchModel& model)
{
    for (std::size_t flow = 0; flow < model.flows().size(); ++flow)
        model.addWaitingPatterns(flow);
}

} // namespace

class PatternSolverTest : public QObject
{
    Q_OBJECT

private slots:
    void cellsOfAPortMeetWhereTheirRingsDo()
    {
        TestNetwork network;
        network.addFlow(words("A S T Z"), 800, u("[0,800]"), u("[0,4000]"));
        network.addFlow(words("B S T Z"), 1200, u("[0,800]"), u("[0,4000]"));
        const ModelOfNetwork small(network.draft);
        const quint32 port = small.model.flows()[0].patterns.front().reservations.back().port;
        const Options options;
        SearchBudget budget(options, 2);
        ClauseSolver solver;
        PortClauses clauses(small.model, solver, budget);
        std::vector<int> first;
        std::vector<int> second;
        for (quint32 cell = 0; cell < 4; ++cell)
            first.push_back(clauses.cell(port, 0, cell));
        for (quint32 cell = 0; cell < 6; ++cell)
            second.push_back(clauses.cell(port, 1, cell));
        QCOMPARE(clauses.cell(port, 1, 5), second.back());
        QCOMPARE(budget.steps(), quint64(11 * 10));
        clauses.forbidSharing();
        QCOMPARE(budget.steps(), quint64(11 * 10 + 12 * 2 * 10));
        QCOMPARE(solver.size(), std::size_t(12 * 2)); // each pair that meets, once
        for (std::size_t a = 0; a < first.size(); ++a) {
            for (std::size_t b = 0; b < second.size(); ++b)
                QCOMPARE(solver.solve(budget, options.steps, {first[a], second[b]}),
                         a % 2 == b % 2 ? Answer::Unsatisfiable : Answer::Satisfiable);
        }
    }

    void pairThatMeetsTwiceIsForbiddenOnce()
    {
        for (const quint32 ring : {2, 3}) {
            TestNetwork network;
            network.addFlow(words("A S T Z"), ring * 200, u("[0,400]"), u("[0,4000]"));
            network.addFlow(words("B S T Z"), ring * 200, u("[0,400]"), u("[0,4000]"));
            network.addFlow(words("B S T Z"), ring * 600, u("[0,400]"), u("[0,4000]"));
            const ModelOfNetwork small(network.draft);
            const quint32 port = small.model.flows()[0].patterns.front().reservations.back().port;
            const Options options;
            SearchBudget budget(options, 2);
            ClauseSolver solver;
            PortClauses clauses(small.model, solver, budget);
            clauses.cell(port, 0, 0);
            clauses.cell(port, 1, 0);
            clauses.cell(port, 2, 1);
            clauses.forbidSharing();
            QCOMPARE(solver.size(), std::size_t(2));
            QCOMPARE(budget.steps(), quint64(3 * 10 + ring * 3 * 3 * 10));
        }
    }

    void clausesEndWithTheSteps()
    {
        TestNetwork network;
        network.addFlow(words("A S T Z"), 2000, u("[0,2000]"), u("[0,4000]"));
        network.addFlow(words("B S T Z"), 2000, u("[0,2000]"), u("[0,4000]"));
        const ModelOfNetwork small(network.draft);
        Options options;
        options.steps = 100;
        SearchBudget budget(options, 2);
        ClauseSolver solver;
        PortClauses clauses(small.model, solver, budget);
        for (quint32 cell = 0; cell < 4; ++cell)
            clauses.cell(cell % 2, cell / 2, 0);
        clauses.forbidSharing();
        QCOMPARE(budget.steps(), quint64(40 + 3 * 20 + 20));
    }

    void onlySoManyCellsAreWrittenDown()
    {
        const auto areFeasible = [](const TestNetwork& network) {
            return PortClauses::areFeasible(ModelOfNetwork(network.draft).model);
        };
        QVERIFY(areFeasible(wideNetwork(16, 62500))); // three million
        TestNetwork network = wideNetwork(15, 62500);
        network.addFlow(words("A S T Z"), 200 * 62500, QStringLiteral("[0,%1]").arg(200 * 62499),
                        u("[0,12500400]"));
        QVERIFY(areFeasible(network));
        network.addFlow(words("A S Y"), 200 * 62500, u("[0,400]"), u("[0,4000]")); // and one more
        QVERIFY(!areFeasible(network));
    }

    void onlyPortsThatRecurSoonAreWrittenDown()
    {
        QVERIFY(PortClauses::areFeasible(ModelOfNetwork(wideNetwork(1, 65536).draft).model));
        QVERIFY(!PortClauses::areFeasible(ModelOfNetwork(wideNetwork(1, 65537).draft).model));
        TestNetwork odd;
        odd.addFlow(words("A S T Z"), 200 * 255, u("[0,400]"), u("[0,4000]"));
        odd.addFlow(words("B S T Z"), 200 * 257, u("[0,400]"), u("[0,4000]"));
        QVERIFY(PortClauses::areFeasible(ModelOfNetwork(odd.draft).model));
        TestNetwork network;
        network.addFlow(words("A S T Z"), 200 * 256, u("[0,400]"), u("[0,4000]"));
        network.addFlow(words("B S Y"), 200 * 257, u("[0,400]"), u("[0,4000]"));
        QVERIFY(PortClauses::areFeasible(ModelOfNetwork(network.draft).model));
        network.addFlow(words("B S T Z"), 200 * 257, u("[0,400]"), u("[0,4000]"));
        QVERIFY(!PortClauses::areFeasible(ModelOfNetwork(network.draft).model));
    }

    void planWithoutWaitingIsAskedForWithHalfTheSteps()
    {
        std::vector<qint64> looks;
        for (const quint64 steps : {0, 1, 2, 2}) {
            ModelOfNetwork small = looks.size() < 3 ? oneMustWait() : oneMustWaitASlot();
            addAllPatterns(small.model);
            const Options options;
            SearchBudget budget(options, 2);
            PatternSolver solver(small.model, budget);
            const quint64 before = budget.steps();
            const Answer answer = solver.run(steps);
            QCOMPARE(answer, steps == 0 ? Answer::Unknown : Answer::Satisfiable);
            looks.push_back(qint64((budget.steps() - before) / 5000));
        }
        QCOMPARE(looks, (std::vector<qint64>{0, 1, 2, 2})); // without waiting, then with it
    }

    void planWithoutWaitingIsAskedForOnce()
    {
        TestNetwork network;
        network.addFlow(words("A S T Z"), 2000, u("[0,200]"), u("[0,1600]"));
        network.addFlow(words("B S T Z"), 2000, u("[200,400]"), u("[0,1600]"));
        ModelOfNetwork small(network.draft);
        addAllPatterns(small.model);
        const Options options;
        SearchBudget budget(options, 2);
        PatternSolver solver(small.model, budget);
        const quint64 before = budget.steps();
        QCOMPARE(solver.run(options.steps), Answer::Satisfiable);
        QCOMPARE((budget.steps() - before) / 5000, quint64(1));
    }

    void answerIsAPlanWithWaitingWhereItMustBe()
    {
        ModelOfNetwork small = oneMustWait();
        addAllPatterns(small.model);
        const Options options;
        SearchBudget budget(options, 2);
        PatternSolver solver(small.model, budget);
        QCOMPARE(solver.run(options.steps), Answer::Satisfiable);
        const std::vector<Placement> placements = solver.placements();
        QCOMPARE(placements.size(), std::size_t(2));
        QCOMPARE(placements[0].pattern, 0U);
        QCOMPARE(placements[0].slot, 0);
        QVERIFY(small.model.flows()[1].patterns[placements[1].pattern].waiting >= 4);
        QCOMPARE(sharedCell(small.model, placements), QString());
    }

    void flowsDoNotWaitWhereTheyNeedNot()
    {
        TestNetwork network;
        for (int i = 0; i < 8; ++i)
            network.addFlow(words(i % 2 == 0 ? "A S T Z" : "B S T Z"), 2000, u("[0,2000]"),
                            u("[0,4000]"));
        ModelOfNetwork wide(network.draft);
        addAllPatterns(wide.model);
        const Options options;
        SearchBudget budget(options, 8);
        PatternSolver solver(wide.model, budget);
        QCOMPARE(solver.run(options.steps), Answer::Satisfiable);
        for (const Placement& placement : solver.placements())
            QCOMPARE(placement.pattern, 0U);
        QCOMPARE(sharedCell(wide.model, solver.placements()), QString());
    }

    void moreFlowsThanCellsAreProvenImpossible()
    {
        TestNetwork network;
        for (int i = 0; i < 4; ++i)
            network.addFlow(words("A S T Z"), 600, u("[0,600]"), u("[0,4000]"));
        ModelOfNetwork crowd(network.draft);
        addAllPatterns(crowd.model);
        const Options options;
        SearchBudget budget(options, 4);
        PatternSolver solver(crowd.model, budget);
        QCOMPARE(solver.run(options.steps), Answer::Unsatisfiable);
    }

    void nothingIsWrittenDownWhenStepsAreSpent()
    {
        ModelOfNetwork small = oneMustWait();
        addAllPatterns(small.model);
        Options options;
        options.steps = 1;
        SearchBudget budget(options, 2);
        const PatternSolver solver(small.model, budget);
        // One flow is written, then it is seen; and one port.
        quint64 cells = 0;
        const SearchFlow& first = small.model.flows()[0];
        for (const Pattern& pattern : first.patterns) {
            for (const Reservation& reservation : pattern.reservations)
                cells += quint64(pattern.choices(first.ringSlots)) * reservation.length;
        }
        const quint64 ports = small.model.portCount() - 1; // that of the other talker has no cells
        QCOMPARE(budget.steps(), 10 * cells + 10 * ports);
    }
};

QTEST_GUILESS_MAIN(PatternSolverTest)
#include "PatternSolverTest.moc"
