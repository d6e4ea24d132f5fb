#include "synthesis/WindowSynthesis.h"

#include "synthesis/PatternSolver.h"
#include "synthesis/PlacementSearch.h"
#include "synthesis/Proofs.h"

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

} // namespace

Outcome synthesizeWindows(const PlanningContext& context, const Options& options)
{
    const std::vector<ObstructedFlow> obstructed = obstaclesOf(context);
    Refused refused;
    for (const ObstructedFlow& flow : obstructed) {
        if (preventsSearch(flow.obstacle))
            refused.flows.push_back(flow);
    }
    if (!refused.flows.empty())
        return refused;
    if (const auto proof = findFlowWithoutSlot(context))
        return *proof;
    SearchModel model(context, Repetition(context), searchedPlaces(context, obstructed));
    for (std::size_t flow = 0; flow < model.flows().size(); ++flow) {
        if (model.flows()[flow].patterns.empty())
            model.addWaitingPatterns(flow);
    }
    SearchBudget budget(options, model.flows().size());
    PlacementSearch search(model, budget);
    if (search.run(options.steps / 20))
        return planOf(context, model, search.best());
    BudgetSpent spent;
    bool complete = true;
    bool each = true;
    for (std::size_t i = 0; i < search.best().size(); ++i) {
        model.addWaitingPatterns(i);
        complete = complete && model.flows()[i].isComplete;
        each = each && !model.flows()[i].patterns.empty();
    }
    if (each && budget.mayGoOn() && PatternSolver::isFeasible(model)) {
        PatternSolver solver(model, budget);
        const ClauseSolver::Answer answer = solver.run(options.steps / 2);
        if (answer == ClauseSolver::Answer::Satisfiable)
            return planOf(context, model, solver.placements());
        spent.noneWithoutOverlap = complete && answer == ClauseSolver::Answer::Unsatisfiable;
    }
    if (budget.isStopped())
        return Stopped();
    for (std::size_t i = 0; i < search.best().size(); ++i) {
        if (!search.best()[i].isSet())
            spent.unplaced.push_back(model.flows()[i].place);
    }
    return spent;
}

} // namespace synthesis
