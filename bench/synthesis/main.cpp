#include "synthesis/NetworkDocument.h"
#include "synthesis/TrialPlanning.h"

#include "tests/synthesis/EngineProof.h"
#include "tests/synthesis/PlantedNetwork.h"

#include <tinyxml2.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

using namespace synthesis;

static double now()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

int main(int argc, char** argv)
{
    PlantedStyle style;
    int count = 20;
    quint64 steps = Options::defaultSteps;
    bool verbose = false;
    for (int i = 1; i + 1 < argc; i += 2) {
        const QByteArray key = argv[i];
        const int value = std::atoi(argv[i + 1]);
        if (key == "shape") style.shape = PlantedStyle::Shape(value);
        if (key == "windows") style.windows = PlantedStyle::Windows(value);
        if (key == "switches") style.switches = value;
        if (key == "hosts") style.hosts = value;
        if (key == "flows") style.flows = value;
        if (key == "multi") style.multicastPercent = value;
        if (key == "wait") style.waitPercent = value;
        if (key == "load") style.loadPercent = value;
        if (key == "buffers") style.buffers = value;
        if (key == "reach") style.reach = value;
        if (key == "count") count = value;
        if (key == "msteps") steps = quint64(value) * 1000000;
        if (key == "v") verbose = value;
        if (key == "periods") {
            style.periods.clear();
            for (const QByteArray& p : QByteArray(argv[i + 1]).split(','))
                style.periods.push_back(p.toUInt());
        }
    }
    int alone = 0, found = 0, proof = 0, none = 0, resolved = 0;
    double worst = 0, total = 0;
    int load = 0, flows = 0;
    for (int seed = 1; seed <= count; ++seed) {
        const PlantedNetwork planted = plantedNetwork(style, seed);
        tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
        const QByteArray bytes = documentOf(planted.draft);
        document.Parse(bytes.constData(), bytes.size());
        const InputNetwork network = readNetwork(document);
        load += planted.busiestPercent;
        flows += planted.draft.flows.size();
                const bool planned = tryPlanning(network.context).code == 0;
        alone += planned;
        Options options;
        options.steps = steps;
        quint64 used = 0;
        const ParsedNetwork parsedNetwork = parsed(bytes);
        int trials = 0;
        const auto judge = judgeFor(parsedNetwork);
        options.isFaultless = [&](const Found& plan, const QByteArray& out) { ++trials; const bool ok = judge(plan, out); return ok; };
        options.progress = [&](const Progress& p) { used = p.steps; return true; };
        const double begin = now();
        const Outcome outcome = synthesizeWindows(network.context, options);
        const double time = now() - begin;
        total += time;
        worst = std::max(worst, time);
        if (verbose)
            std::printf("seed %d: flows %zu load %d alone %d outcome %zu time %.3f steps %.1fM waiting %lld missing %zu judged %d\n", seed,
                        planted.draft.flows.size(), planted.busiestPercent, planned, outcome.index(), time, used / 1e6,
                        std::holds_alternative<Found>(outcome) ? std::get<Found>(outcome).waiting : -1,
                        std::holds_alternative<BudgetSpent>(outcome) ? std::get<BudgetSpent>(outcome).unplaced.size() : 0, trials);
        if (const auto* plan = std::get_if<Found>(&outcome)) {
            planner::PlanningContext context = network.context;
            applyWindows(context, *plan);
            if (tryPlanning(context).code != 0)
                std::printf("seed %d: REFUSED\n", seed);
            ++found;
            resolved += plan->restsOnResolution;
        } else if (std::holds_alternative<BudgetSpent>(outcome))
            none += std::get<BudgetSpent>(outcome).noneWithoutOverlap;
        else
            ++proof;
    }
    std::printf("flows %.1f load %.1f%%: alone %d found %d (resolved %d) none-without %d proof %d of %d; mean %.3f worst %.3f s\n", double(flows) / count,
                double(load) / count, alone, found, resolved, none, proof, count, total / count, worst);
}
