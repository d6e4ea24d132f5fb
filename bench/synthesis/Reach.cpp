#include "bench/synthesis/Reach.h"

#include "bench/synthesis/CpuClock.h"

#include "synthesis/TrialPlanning.h"

#include "tests/synthesis/EngineProof.h"
#include "tests/synthesis/PlantedNetwork.h"

#include <cstdio>

using namespace synthesis;

namespace
{

struct Family {
    QString name;
    PlantedStyle style;
};

PlantedStyle hosts(int count, int switches, int flows)
{
    PlantedStyle style;
    style.hosts = count;
    style.switches = switches;
    style.flows = flows;
    return style;
}

PlantedStyle tight(PlantedStyle style, int reach)
{
    style.windows = PlantedStyle::Tight;
    style.reach = reach;
    return style;
}

PlantedStyle loaded(PlantedStyle style, int percent)
{
    style.loadPercent = percent;
    return style;
}

PlantedStyle multicast(PlantedStyle style, int percent)
{
    style.multicastPercent = percent;
    return style;
}

PlantedStyle odd(PlantedStyle style)
{
    style.periods = {3000, 5000, 7000};
    return style;
}

std::vector<Family> families()
{
    std::vector<Family> all;
    const auto add = [&all](const QString& name, const PlantedStyle& style) {
        all.push_back({name, style});
    };
    for (const int flows : {5, 20, 50, 80})
        add(QStringLiteral("wide, %1 on 8 hosts").arg(flows), hosts(8, 4, flows));
    add(QStringLiteral("wide, 60 on 60 hosts"), hosts(60, 20, 60));
    for (const int reach : {5, 2, 1}) {
        for (const int flows : {20, 50, 80})
            add(QStringLiteral("+/- %1, %2 on 8 hosts").arg(reach).arg(flows),
                tight(hosts(8, 4, flows), reach));
    }
    add(QStringLiteral("90 %, wide"), loaded(hosts(16, 6, 2000), 90));
    add(QStringLiteral("90 %, +/- 5"), loaded(tight(hosts(16, 6, 2000), 5), 90));
    add(QStringLiteral("90 %, multicast"), loaded(multicast(hosts(16, 6, 2000), 30), 90));
    add(QStringLiteral("odd periods, wide, 80"), odd(hosts(8, 4, 80)));
    add(QStringLiteral("odd periods, +/- 5, 80"), odd(tight(hosts(8, 4, 80), 5)));
    add(QStringLiteral("multicast, +/- 5, 50"), multicast(tight(hosts(8, 4, 50), 5), 100));
    return all;
}

struct Counts {
    int alone = 0;
    int withoutOverlap = 0;
    int byResolution = 0;
    int noneWithoutOverlap = 0; ///< of those that are not reached
    int open = 0;               ///< of those that are not reached
    int load = 0;
    double time_ms = 0;
    double longest_ms = 0;
};

void count(Counts& counts, const Outcome& outcome)
{
    if (const auto* plan = std::get_if<Found>(&outcome)) {
        ++(plan->restsOnResolution ? counts.byResolution : counts.withoutOverlap);
        return;
    }
    const auto* spent = std::get_if<BudgetSpent>(&outcome);
    ++(spent && spent->noneWithoutOverlap ? counts.noneWithoutOverlap : counts.open);
}

void examine(Counts& counts, const PlantedStyle& style, quint64 seed)
{
    const PlantedNetwork planted = plantedNetwork(style, seed);
    const ParsedNetwork network = parsed(documentOf(planted.draft));
    counts.load += planted.busiestPercent;
    counts.alone += tryPlanning(network.network.context).code == planner::code::ok ? 1 : 0;
    Options options;
    options.isFaultless = judgeFor(network);
    const double begin = cpuTime_ms();
    count(counts, synthesizeWindows(network.network.context, options));
    const double time = cpuTime_ms() - begin;
    counts.time_ms += time;
    counts.longest_ms = std::max(counts.longest_ms, time);
}

} // namespace

void printReach(const QString& filter, int networks)
{
    std::printf("Networks with a planted plan; CPU time in ms. alone: planned by the rules as they "
                "are. none: of\nthose not reached, no plan without overlap exists; open: the steps "
                "were spent.\n");
    std::printf("%-24s%6s%6s |%7s%8s%9s%7s |%6s%6s |%8s%9s\n", "family", "load", "alone", "reached",
                "overlap0", "resolved", "%", "none", "open", "mean", "longest");
    for (const Family& family : families()) {
        if (!family.name.contains(filter))
            continue;
        Counts counts;
        for (int seed = 1; seed <= networks; ++seed)
            examine(counts, family.style, static_cast<quint64>(seed));
        const int reached = counts.withoutOverlap + counts.byResolution;
        std::printf("%-24s%5d%%%6d |%7d%8d%9d%6d%% |%6d%6d |%8.1f%9.1f\n", qPrintable(family.name),
                    counts.load / networks, counts.alone, reached, counts.withoutOverlap,
                    counts.byResolution, 100 * reached / networks, counts.noneWithoutOverlap,
                    counts.open, counts.time_ms / networks, counts.longest_ms);
        std::fflush(stdout);
    }
}
