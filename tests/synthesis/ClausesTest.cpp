#include "synthesis/PatternSolver.h"

#include "tests/support/RandomSource.h"
#include "tests/support/Spoken.h"
#include "tests/synthesis/ModelOfNetwork.h"

#include <QtTest>

#include <algorithm>

// The complete search: the clauses that it writes, the steps that they cost, and its answers.

using namespace synthesis;

using Answer = ClauseSolver::Answer;

namespace
{

std::vector<int> newVariables(ClauseSolver& solver, int count)
{
    std::vector<int> variables(static_cast<std::size_t>(count));
    std::generate(variables.begin(), variables.end(), [&solver] { return solver.newVariable(); });
    return variables;
}

/// Clauses that give each of the things one of the places; all variables.
std::vector<int> placeThings(ClauseSolver& solver, int things, int places)
{
    std::vector<std::vector<int>> byPlace(static_cast<std::size_t>(places));
    std::vector<int> all;
    for (int thing = 0; thing < things; ++thing) {
        std::vector<int> any;
        for (std::vector<int>& place : byPlace) {
            any.push_back(solver.newVariable());
            place.push_back(any.back());
        }
        solver.addClause(any);
        all.insert(all.end(), any.begin(), any.end());
    }
    for (const std::vector<int>& place : byPlace)
        solver.addAtMostOne(place);
    return all;
}

} // namespace

class ClausesTest : public QObject
{
    Q_OBJECT

private slots:
    void atMostOneIsTrue()
    {
        for (int count = 0; count < 12; ++count) {
            ClauseSolver solver;
            const std::vector<int> literals = newVariables(solver, count);
            solver.addAtMostOne(literals);
            const Options options;
            SearchBudget budget(options, 0);
            for (const int a : literals) {
                QCOMPARE(solver.solve(budget, options.steps, {a}), Answer::Satisfiable);
                QVERIFY(solver.isTrue(a));
                for (const int b : literals)
                    QCOMPARE(solver.solve(budget, options.steps, {a, b}),
                             a == b ? Answer::Satisfiable : Answer::Unsatisfiable);
            }
        }
    }

    // Pairs need no further variables, a chain needs one for each literal but the last.
    void fewAreForbiddenInPairsAndManyInAChain()
    {
        const std::size_t sizes[] = {0, 0, 2, 6, 12, 20, 28, 34};
        const int variables[] = {0, 1, 2, 3, 4, 5, 11, 13};
        for (int count = 0; count < 8; ++count) {
            ClauseSolver solver;
            const std::vector<int> literals = newVariables(solver, count);
            solver.addAtMostOne(literals);
            QCOMPARE(solver.size(), sizes[count]);
            QCOMPARE(solver.newVariable(), variables[count] + 1);
        }
    }

    void assumptionsThatContradictAreToBlame()
    {
        ClauseSolver solver;
        const int a = solver.newVariable();
        const int b = solver.newVariable();
        const int c = solver.newVariable();
        solver.addClause({-a, -b});
        const Options options;
        SearchBudget budget(options, 0);
        QCOMPARE(solver.solve(budget, options.steps, {a, b, c}), Answer::Unsatisfiable);
        QVERIFY(solver.isToBlame(a) && solver.isToBlame(b) && !solver.isToBlame(c));
    }

    // Ten conflicts at first and twice as many each time, at 500 steps and one more for 64
    // literals.
    void conflictsCostStepsBySizeOfTheClauses()
    {
        ClauseSolver solver;
        placeThings(solver, 20, 20);
        const Options options;
        SearchBudget budget(options, 0);
        QCOMPARE(solver.size(), std::size_t(400 + 20 * (2 + 19 * 2 + 18 * 4)));
        QCOMPARE(solver.solve(budget, options.steps, {}), Answer::Satisfiable);
        QCOMPARE(budget.steps() % (10 * (500 + solver.size() / 64)), quint64(0));
        ClauseSolver easy;
        easy.addClause({easy.newVariable()});
        SearchBudget few(options, 0);
        QCOMPARE(easy.solve(few, 1, {}), Answer::Satisfiable);
        QCOMPARE(few.steps(), quint64(5000));
    }

    void questionThatIsTooHardEndsWithItsSteps()
    {
        ClauseSolver solver;
        placeThings(solver, 14, 13);
        const quint64 unit = 10 * (500 + solver.size() / 64);
        const Options options;
        // The looks at the budget come after 10, 20, 40, 80, 160, 320, 640, 640 conflicts.
        const quint64 ends[][2] = {{1, 1},   {2, 3},   {3, 3},    {4, 7},    {8, 15},
                                   {16, 31}, {32, 63}, {64, 127}, {128, 191}};
        for (const auto& end : ends) {
            SearchBudget budget(options, 0);
            QCOMPARE(solver.solve(budget, end[0] * unit, {}), Answer::Unknown);
            QCOMPARE(budget.steps(), end[1] * unit);
        }
        Options few;
        few.steps = 6 * unit;
        SearchBudget budget(few, 0);
        QCOMPARE(solver.solve(budget, options.steps, {}), Answer::Unknown);
        QCOMPARE(budget.steps(), 7 * unit);
        QCOMPARE(solver.solve(budget, options.steps, {}), Answer::Unknown);
        QCOMPARE(budget.steps(), 7 * unit);
    }

    void questionThatIsTooHardCanBeStoppedWhileItIsAsked()
    {
        ClauseSolver solver;
        placeThings(solver, 14, 13);
        int calls = 0;
        quint64 steps = 0;
        Options options;
        options.progress = [&](const Progress& progress) {
            calls += progress.steps == steps;
            steps = progress.steps;
            return calls < 3;
        };
        SearchBudget budget(options, 0);
        QCOMPARE(solver.solve(budget, options.steps, {}), Answer::Unknown);
        QVERIFY(budget.isStopped());
        QVERIFY(steps < options.steps / 100);
    }

    void callerIsAskedNowAndThenWhileAQuestionIsHard()
    {
        ClauseSolver solver;
        placeThings(solver, 14, 13);
        int calls = 0;
        Options options;
        options.progress = [&calls](const Progress&) { return ++calls > 0; };
        SearchBudget budget(options, 0);
        QCOMPARE(solver.solve(budget, 1000000, {}), Answer::Unknown);
        QCOMPARE(calls, 37); // a few of them between two looks at the budget
    }

    void answerOfAnImpossibleQuestionIsFound()
    {
        ClauseSolver solver;
        placeThings(solver, 5, 4);
        const Options options;
        SearchBudget budget(options, 0);
        QCOMPARE(solver.solve(budget, options.steps, {}), Answer::Unsatisfiable);
    }
};

QTEST_GUILESS_MAIN(ClausesTest)
#include "ClausesTest.moc"
