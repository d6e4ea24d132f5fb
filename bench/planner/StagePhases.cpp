#include "bench/planner/StagePhases.h"

#include "planner/ConflictAnalysis.h"
#include "planner/ConflictResolution.h"
#include "planner/DebugDump.h"
#include "planner/InputDocument.h"
#include "planner/IntermediateDocument.h"
#include "planner/PreProcess.h"
#include "planner/RepetitionWatch.h"
#include "planner/TTPlanning.h"
#include "planner/WindowRevision.h"

#include "tests/planner/twin/FirstStage.h"
#include "tests/planner/twin/SecondStage.h"

#include <tinyxml2.h>

using namespace planner;

static QString u(const char* text)
{
    return QString::fromLatin1(text);
}

// The steps of preProcess().
static void runFirstStage(Stopwatch& watch)
{
    PlanningContext context;
    context.reset();
    watch.skip();
    watch.values()[u("code1")] = readInputDocument(context);
    watch.lap(u("1.read"));
    context.clusterCycle = computeClusterCycle(context);
    watch.values()[u("code1")] += checkTimeWindows(context);
    watch.lap(u("1.windows"));
    expandInstances(context);
    watch.lap(u("1.expand"));
    printTTStreamInstanceList(context.TTStreamInstanceList);
    watch.lap(u("1.log"));
    writeHsDocument(context);
    watch.lap(u("1.write"));
    watch.values()[u("flows")] = double(context.flows.size());
}

// The steps of calculateConflictDegree(); false when there is nothing left to resolve.
static bool runPass(TTPlanner& planner, RepetitionWatch& repetition, Stopwatch& watch)
{
    repetition.beforePass();
    watch.lap(u("2.watch"));
    planner.revised.clear();
    const WorstPort worst = planner.degrees.measure(planner.ports, planner.board);
    watch.lap(u("2.degrees"));
    if (worst.maxDegree == 0)
        return false;
    const qint32 code = conflictResolve(planner, worst.nodeID, worst.outport);
    watch.lap(u("2.resolve"));
    watch.values()[u("code2")] = code;
    if (code != code::ok)
        return false;
    flowStatusRevise(planner, worst.nodeID, worst.outport);
    watch.lap(u("2.revise"));
    repetition.isBack(planner.revised);
    watch.lap(u("2.watch"));
    ++watch.values()[u("passes")];
    return true;
}

static double countEntries(const TTPlanner& planner)
{
    double entries = 0;
    for (const PortIndex::Port& port : planner.ports.ports())
        entries += double(port.outport->instances.size());
    return entries;
}

// The steps of TTPlanning().
static void runSecondStage(Stopwatch& watch)
{
    TTPlanner planner;
    watch.skip();
    watch.values()[u("code2")] = readIntermediateDocument(planner);
    watch.lap(u("2.read"));
    groupByPort(planner);
    watch.lap(u("2.group"));
    RepetitionWatch repetition(planner.board);
    watch.lap(u("2.watch"));
    while (runPass(planner, repetition, watch)) {
    }
    giveBackWindows(planner);
    finalizeSlots(planner);
    watch.lap(u("2.finalise"));
    writeOutputDocument(planner);
    watch.lap(u("2.write"));
    watch.values()[u("instances")] = double(planner.TTStreamInstanceList.size());
    watch.values()[u("entries")] = countEntries(planner);
}

Measurement measureEngine()
{
    Stopwatch watch;
    runFirstStage(watch);
    runSecondStage(watch);
    watch.values()[u("peak")] = peakMemory_kB();
    return watch.values();
}

Measurement measureTwin()
{
    Stopwatch watch;
    twin::Context context;
    watch.values()[u("code1")] = twin::preProcess(context);
    twin::Planner planner;
    watch.values()[u("code2")] = twin::planSecondStage(planner);
    watch.lap(u("total"));
    return watch.values();
}

static void load(tinyxml2::XMLDocument& document, const char* path)
{
    if (document.LoadFile(path) != tinyxml2::XML_SUCCESS)
        qFatal("cannot load %s", path);
}

Measurement measureFloor()
{
    Stopwatch watch;
    for (const char* path : {"ResourceXML/vek_input.xml", "OutputXML/vek_hs.xml"}) {
        watch.skip();
        {
            tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
            load(document, path);
        }
        watch.lap(u("floor"));
    }
    for (const char* path : {"OutputXML/vek_hs.xml", "OutputXML/vek_output.xml"}) {
        tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
        load(document, path);
        watch.skip();
        document.SaveFile("saved.xml");
        watch.lap(u("floor"));
    }
    watch.values()[u("peak")] = peakMemory_kB();
    return watch.values();
}
