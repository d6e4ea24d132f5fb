#include "bench/synthesis/Growth.h"

#include "bench/planner/Measurement.h"
#include "bench/synthesis/CpuClock.h"

#include "planner/PreProcess.h"
#include "planner/TTPlanning.h"

#include "tests/support/Documents.h"
#include "tests/support/Text.h"
#include "tests/synthesis/EngineProof.h"
#include "tests/synthesis/PlantedNetwork.h"

#include <QDir>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdio>

using namespace synthesis;

namespace
{

constexpr int longest_s = 600;

/// A ring with local traffic, so that a port is loaded alike however many flows there are.
PlantedStyle styleOf(int flows, PlantedStyle::Windows windows)
{
    PlantedStyle style;
    style.shape = PlantedStyle::Ring;
    style.windows = windows;
    style.flows = flows;
    style.switches = flows / 16;
    style.hosts = flows / 4;
    style.farthest = 5;
    // Twenty transmissions of nearly each flow in the cycle.
    style.periods.assign(40, 8000);
    style.periods.back() = 160000;
    return style;
}

/// Searches, and leaves the narrowed document for the stages.
Measurement measureSearch()
{
    const double begin = cpuTime_ms();
    const ParsedNetwork network = parsed(readFile(u("in.xml")));
    const double read = cpuTime_ms();
    const Outcome outcome = synthesizeWindows(network.network.context, {});
    Measurement measured;
    measured[u("search")] = cpuTime_ms() - read;
    measured[u("read")] = read - begin;
    measured[u("peak")] = peakMemory_kB();
    measured[u("flows")] = double(network.network.context.flows.size());
    if (const auto* plan = std::get_if<Found>(&outcome)) {
        measured[u("found")] = 1;
        writeFile(u("ResourceXML/vek_input.xml"),
                  narrowedDocument(*network.document, network.network, *plan));
    }
    return measured;
}

Measurement measureStages()
{
    const double begin = cpuTime_ms();
    planner::PlanningContext context;
    planner::TTPlanner planner;
    Measurement measured;
    measured[u("code")] = planner::preProcess(context);
    measured[u("transmissions")] = double(context.TTStreamInstanceList.size());
    context.reset(); // as a run does before the second stage
    measured[u("code")] += planner::TTPlanning(planner);
    measured[u("stages")] = cpuTime_ms() - begin;
    measured[u("peak")] = peakMemory_kB();
    return measured;
}

Measurement least(const QString& folder, const char* task, int repeat)
{
    Measurement best;
    for (int i = 0; i < repeat; ++i) {
        const Measurement next =
            measureInChild(folder, {u("--child"), QString::fromLatin1(task)}, longest_s);
        for (auto value = next.begin(); value != next.end(); ++value)
            best[value.key()] = i == 0 ? value.value() : std::min(best[value.key()], value.value());
    }
    return best;
}

struct Size {
    double transmissions;
    double search;
};

Size printSize(int flows, PlantedStyle::Windows windows, int repeat)
{
    const QTemporaryDir folder;
    writeFile(folder.filePath(u("in.xml")),
              documentOf(plantedNetwork(styleOf(flows, windows), 1).draft));
    const Measurement search = least(folder.path(), "search", repeat);
    const Measurement stages = least(folder.path(), "stages", repeat);
    std::printf("%-6s%7.0f%9.0f |%9.2f%8.2f%9.2f |%8.3f |%7.1f%7.1f%7.2f%s\n",
                windows == PlantedStyle::Wide ? "wide" : "+/- 5", search[u("flows")],
                stages[u("transmissions")], search[u("search")], search[u("read")],
                stages[u("stages")], search[u("search")] / stages[u("stages")],
                search[u("peak")] / 1024, stages[u("peak")] / 1024,
                search[u("peak")] / stages[u("peak")],
                search[u("found")] == 1 && stages[u("code")] == 0 ? "" : "  NO PLAN");
    std::fflush(stdout);
    return {stages[u("transmissions")], search[u("search")]};
}

/// The slope of log time over log size.
double exponentOf(const std::vector<Size>& sizes)
{
    double x = 0, y = 0, xx = 0, xy = 0;
    for (const Size& size : sizes) {
        const double a = std::log(size.transmissions);
        const double b = std::log(std::max(0.01, size.search));
        x += a;
        y += b;
        xx += a * a;
        xy += a * b;
    }
    const auto n = double(sizes.size());
    return (n * xy - x * y) / (n * xx - x * x);
}

} // namespace

int runGrowthChild(const QString& task)
{
    QLoggingCategory::setFilterRules(u("default.debug=false"));
    printMeasurement(task == u("search") ? measureSearch() : measureStages());
    return 0;
}

void printGrowth(int repeat)
{
    std::printf("\nRings with local traffic. CPU time in ms, the least of the repetitions; memory "
                "in MB. read: the\ndocument; stages: both, with their documents, on the narrowed "
                "network.\n");
    std::printf("%-6s%7s%9s |%9s%8s%9s |%8s |%7s%7s%7s\n", "window", "flows", "transm.", "search",
                "read", "stages", "ratio", "MB", "stages", "ratio");
    for (const PlantedStyle::Windows windows : {PlantedStyle::Wide, PlantedStyle::Tight}) {
        std::vector<Size> sizes;
        for (const int flows : {50, 160, 400, 500, 1600, 5000})
            sizes.push_back(printSize(flows, windows, repeat));
        std::printf("growth exponent of the search: %.2f\n", exponentOf(sizes));
    }
}
