#include "bench/planner/StagePhases.h"

#include "planner/PreProcess.h"
#include "planner/TTPlanning.h"

#include "tests/planner/twin/FirstStage.h"
#include "tests/planner/twin/SecondStage.h"
#include "tests/support/Text.h"

#include <tinyxml2.h>

using namespace planner;

static QString nameOf(StagePart part)
{
    static const QStringList names =
        u("1.read 1.windows 1.expand 1.log 1.write 2.read 2.group 2.degrees 2.resolve 2.revise "
          "2.watch 2.back 2.finalise 2.write")
            .split(QLatin1Char(' '));
    return names.at(static_cast<int>(part));
}

static void countFound(const TTPlanner& planner, Measurement& values)
{
    values[u("instances")] = double(planner.TTStreamInstanceList.size());
    for (const Node& node : planner.nodeList) {
        for (const NodeOutport& port : node.outports)
            values[u("entries")] += double(port.instances.size());
    }
}

Measurement measureEngine()
{
    Stopwatch watch;
    Measurement& values = watch.values();
    const StageListener lap = [&watch](StagePart part) {
        watch.lap(nameOf(part));
        if (part == StagePart::Revise)
            ++watch.values()[u("passes")];
    };
    {
        PlanningContext context;
        watch.skip();
        values[u("code1")] = preProcess(context, lap);
        values[u("flows")] = double(context.flows.size());
        watch.skip();
    }
    watch.lap(u("1.free"));
    {
        TTPlanner planner;
        values[u("code2")] = TTPlanning(planner, lap);
        countFound(planner, values);
        watch.skip();
    }
    watch.lap(u("2.free"));
    values[u("peak")] = peakMemory_kB();
    return values;
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
