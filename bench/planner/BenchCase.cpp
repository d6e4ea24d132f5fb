#include "bench/planner/BenchCase.h"

static BenchCase named(const char* name, BenchCase::Shape shape, BenchCase::Windows windows)
{
    BenchCase made;
    made.name = QString::fromLatin1(name);
    made.shape = shape;
    made.windows = windows;
    return made;
}

static BenchCase sized(BenchCase made, int switches, int hosts, int flows, int transmissions)
{
    made.switches = switches;
    made.hostsPerSwitch = hosts;
    made.flowsPerHost = flows;
    made.transmissions = transmissions;
    return made;
}

static BenchCase multicast(BenchCase made, int percent)
{
    made.multicastPercent = percent;
    return made;
}

static BenchCase reaching(BenchCase made, int reach)
{
    made.reach = reach;
    return made;
}

static BenchCase toOneHost(BenchCase made)
{
    made.allToOneHost = true;
    return made;
}

// On a ring, where no way ends early, a transmission passes as many ports at every size.
static void addSeries(std::vector<BenchCase>& cases, const char* name, BenchCase::Windows windows)
{
    for (const int instances : {1000, 3000, 10000, 30000, 100000}) {
        BenchCase made = sized(named(name, BenchCase::Ring, windows), instances / 160, 4, 8, 5);
        made.name += QStringLiteral("-%1").arg(instances);
        made.isGrowth = true;
        cases.push_back(made);
    }
}

// One talker to one listener, so that all transmissions of a period meet at both ports on the way.
static void addCrowdedSeries(std::vector<BenchCase>& cases, const char* name,
                             BenchCase::Windows windows)
{
    for (const int instances : {1000, 3000, 10000, 30000, 100000}) {
        BenchCase made = toOneHost(
            reaching(sized(named(name, BenchCase::Line, windows), 1, 2, instances / 2, 2), 0));
        made.name += QStringLiteral("-%1").arg(instances);
        made.isGrowth = true;
        made.isLogged = false;
        cases.push_back(made);
    }
}

static std::vector<BenchCase> makeCases()
{
    const auto heavy = BenchCase::PerTalker;
    const auto free = BenchCase::Disjoint;
    std::vector<BenchCase> cases{
        sized(named("line-heavy", BenchCase::Line, heavy), 125, 4, 4, 6),
        sized(named("line-free", BenchCase::Line, free), 125, 4, 4, 6),
        sized(named("ring-heavy", BenchCase::Ring, heavy), 125, 4, 4, 6),
        multicast(sized(named("ring-multicast-refused", BenchCase::Ring, heavy), 250, 4, 2, 6), 30),
        multicast(sized(named("ring-multicast", BenchCase::Ring, free), 125, 4, 4, 6), 30),
        sized(named("tree-heavy", BenchCase::Tree, heavy), 127, 4, 4, 6),
        multicast(sized(named("tree-multicast", BenchCase::Tree, free), 127, 4, 4, 6), 30),
        sized(named("mesh-heavy", BenchCase::Mesh, heavy), 100, 4, 5, 6),
        multicast(sized(named("mesh-multicast", BenchCase::Mesh, free), 100, 4, 5, 6), 30),
        reaching(sized(named("long-paths", BenchCase::Line, heavy), 60, 2, 8, 10), 55),
        toOneHost(
            reaching(sized(named("one-port-10000", BenchCase::Mesh, heavy), 25, 4, 10, 10), 25)),
        toOneHost(reaching(
            sized(named("one-port-same-window", BenchCase::Line, BenchCase::Same), 1, 100, 10, 10),
            0)),
        sized(named("line-100000", BenchCase::Line, heavy), 125, 4, 4, 50),
    };
    addSeries(cases, "heavy", heavy);
    addSeries(cases, "free", free);
    addCrowdedSeries(cases, "nested", BenchCase::Nested);
    addCrowdedSeries(cases, "staircase", BenchCase::Staircase);
    return cases;
}

const std::vector<BenchCase>& benchCases()
{
    static const std::vector<BenchCase> cases = makeCases();
    return cases;
}
