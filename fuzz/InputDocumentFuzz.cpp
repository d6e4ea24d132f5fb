#include "fuzz/FuzzFolder.h"
#include "fuzz/PlannerRecords.h"

#include "planner/InputDocument.h"
#include "planner/IntermediateDocument.h"
#include "planner/PreProcess.h"

#include "project/ScheduleReader.h"

// An input document of any bytes: what the first stage reads, the whole stage when the cycle is
// short, and the names that the studio takes from the same document.

using namespace planner;

/// Whether the stage makes so few transmissions of what was read that it ends at once.
static bool isShort(const PlanningContext& context)
{
    constexpr quint64 mostInstances = 64;
    PlanningContext counted = context;
    counted.clusterCycle = clusterCycleOf(context);
    return instanceCount(counted) <= mostInstances;
}

static void planWindows()
{
    PlanningContext context;
    if (preProcess(context) != code::ok)
        return;
    TTPlanner fromDocument;
    require(readIntermediateDocument(fromDocument) == code::ok,
            "the second stage reads what the first one wrote");
    TTPlanner fromMemory;
    takeInstances(fromMemory, context);
    require(holdTheSame(fromDocument, fromMemory), "the document says what the stage found");
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    putFile(QStringLiteral("ResourceXML"), QStringLiteral("vek_input.xml"), bytesOf(data, size));
    NodeNames names;
    readNodeNames(names);
    PlanningContext context;
    if (readInputDocument(context) == code::ok && isShort(context))
        planWindows();
    return 0;
}
