#include "synthesis/WindowSynthesis.h"

#include "synthesis/IntervalProof.h"
#include "synthesis/LessWaiting.h"
#include "synthesis/PatternSolver.h"
#include "synthesis/PlacementSearch.h"
#include "synthesis/Proofs.h"
#include "synthesis/ResolutionSearch.h"
#include "synthesis/TrialPlanning.h"

#include <algorithm>
#include <optional>

namespace synthesis
{

using namespace planner;

namespace
{

/// Places of the flows that reach the documents.
std::vector<std::size_t> searchedPlaces(const PlanningContext& context,
                                        const std::vector<ObstructedFlow>& obstructed)
{
    std::vector<std::size_t> places;
    auto next = obstructed.begin();
    for (std::size_t place = 0; place < context.flows.size(); ++place) {
        if (next != obstructed.end() && next->flow == place)
            ++next;
        else
            places.push_back(place);
    }
    return places;
}

SlotWindow oneSlot(qint32 slot)
{
    SlotWindow window;
    window.start = slot;
    window.end = slot;
    return window;
}

/// The windows of all flows as they were read.
Found ownWindows(const PlanningContext& context)
{
    Found plan;
    for (const TTFlow& flow : context.flows) {
        FlowWindows windows;
        windows.send = flow.paths.front().schedtxwin;
        for (const VirtualLinkPath& path : flow.paths)
            windows.receive.push_back(path.schedrxwin);
        plan.flows.push_back(std::move(windows));
    }
    return plan;
}

Found planOf(const PlanningContext& context, const SearchModel& model,
             const std::vector<Placement>& placements)
{
    Found plan = ownWindows(context);
    for (std::size_t i = 0; i < placements.size(); ++i) {
        const SearchFlow& flow = model.flows()[i];
        const Pattern& pattern = flow.patterns[placements[i].pattern];
        FlowWindows& windows = plan.flows[flow.place];
        windows.send = oneSlot(placements[i].slot);
        windows.receive.clear();
        for (const qint32 delay : pattern.delays)
            windows.receive.push_back(oneSlot(placements[i].slot + delay));
        windows.waiting = pattern.waiting;
        plan.waiting += pattern.waiting;
    }
    return plan;
}

/// The stages of one search, each for what the one before has left open.
class Synthesis
{
    static constexpr quint64 stepsPerTriedTransmission = 500;

public:
    Synthesis(const PlanningContext& context, const std::vector<std::size_t>& places,
              const Options& options)
        : m_context(context),
          m_places(places),
          m_options(options),
          m_repetition(context),
          m_budget(options, places.size()),
          m_model(context, m_repetition, places)
    {
        for (std::size_t flow = 0; flow < places.size(); ++flow) {
            if (m_model.flows()[flow].patterns.empty())
                m_model.addWaitingPatterns(flow);
        }
    }

    Outcome run()
    {
        PlacementSearch placing(m_model, m_budget);
        if (placing.run(m_options.steps / 100))
            return finish(placing.best());
        if (const auto proof = findOverfullInterval(m_context, m_repetition, m_places, m_budget))
            return m_budget.isStopped() ? Outcome(Stopped()) : Outcome(*proof);
        const std::vector<Placement> solved = solve();
        if (!solved.empty())
            return finish(solved);
        if (!m_noneWithoutOverlap && placing.run(m_options.steps / 4))
            return finish(placing.best());
        if (const auto resolved = resolve())
            return *resolved;
        if (m_budget.isStopped())
            return Stopped();
        return spent(placing.best());
    }

private:
    /// Placements of all flows from the complete search; none when it found none.
    std::vector<Placement> solve()
    {
        bool isComplete = true;
        bool hasEach = true;
        for (std::size_t flow = 0; flow < m_places.size(); ++flow) {
            m_model.addWaitingPatterns(flow);
            isComplete = isComplete && m_model.flows()[flow].isComplete;
            hasEach = hasEach && !m_model.flows()[flow].patterns.empty();
        }
        m_noneWithoutOverlap = !hasEach && isComplete;
        if (!hasEach || !m_budget.mayGoOn() || !PortClauses::areFeasible(m_model))
            return {};
        PatternSolver solver(m_model, m_budget);
        const ClauseSolver::Answer answer = solver.run(m_options.steps / 3);
        if (answer == ClauseSolver::Answer::Satisfiable)
            return solver.placements();
        m_noneWithoutOverlap = isComplete && answer == ClauseSolver::Answer::Unsatisfiable;
        return {};
    }

    Outcome finish(const std::vector<Placement>& placements)
    {
        m_budget.setPlaced(placements.size());
        m_budget.report();
        if (m_budget.isStopped())
            return Stopped();
        return planOf(m_context, m_model, withLessWaiting(m_model, placements));
    }

    /// A plan whose overlaps the second stage resolves, judged by the caller.
    std::optional<Found> resolve()
    {
        if (!m_options.isFaultless || !m_budget.mayGoOn())
            return {};
        // Now and then the rules need no help.
        Found own = ownWindows(m_context);
        own.restsOnResolution = true;
        if (judge(own).isFaultless)
            return own;
        if (!PortClauses::areFeasible(m_model))
            return {};
        ResolutionSearch search(m_model, m_budget);
        std::optional<Found> plan;
        search.run(m_budget.left(), [&](const std::vector<Placement>& placements) {
            plan = planOf(m_context, m_model, placements);
            plan->restsOnResolution = true;
            const ResolutionSearch::Verdict verdict = judge(*plan);
            if (!verdict.isFaultless)
                plan.reset();
            return verdict;
        });
        return m_budget.isStopped() ? std::nullopt : plan;
    }

    ResolutionSearch::Verdict judge(const Found& plan)
    {
        // The second stage and the caller take some microseconds for each transmission.
        quint64 transmissions = 0;
        for (const SearchFlow& flow : m_model.flows())
            transmissions += m_repetition.transmissions(*flow.flow) * flow.flow->paths.size();
        m_budget.spend(transmissions * stepsPerTriedTransmission);
        PlanningContext context = m_context;
        applyWindows(context, plan);
        const TrialPlan trial = tryPlanning(std::move(context));
        return {trial.code == code::ok && m_options.isFaultless(plan, trial.outputDocument),
                trial.failedPort};
    }

    BudgetSpent spent(const std::vector<Placement>& best) const
    {
        BudgetSpent outcome;
        outcome.noneWithoutOverlap = m_noneWithoutOverlap;
        for (std::size_t flow = 0; flow < best.size(); ++flow) {
            if (!best[flow].isSet())
                outcome.unplaced.push_back(m_places[flow]);
        }
        return outcome;
    }

    const PlanningContext& m_context;
    const std::vector<std::size_t>& m_places;
    const Options& m_options;
    const Repetition m_repetition;
    SearchBudget m_budget;
    SearchModel m_model;
    bool m_noneWithoutOverlap = false;
};

} // namespace

Outcome synthesizeWindows(const PlanningContext& context, const Options& options)
{
    const std::vector<ObstructedFlow> obstructed = obstaclesOf(context);
    Refused refused;
    std::copy_if(obstructed.begin(), obstructed.end(), std::back_inserter(refused.flows),
                 [](const ObstructedFlow& flow) { return preventsSearch(flow.obstacle); });
    if (!refused.flows.empty())
        return refused;
    if (const auto proof = findFlowWithoutSlot(context))
        return *proof;
    const std::vector<std::size_t> places = searchedPlaces(context, obstructed);
    return Synthesis(context, places, options).run();
}

} // namespace synthesis
