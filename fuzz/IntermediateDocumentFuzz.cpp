#include "fuzz/FuzzFolder.h"
#include "fuzz/PlannerRecords.h"

#include "planner/IntermediateDocument.h"
#include "planner/OutputDocument.h"
#include "planner/TTPlanning.h"

#include "verification/ScheduleDocument.h"

#include <tinyxml2.h>

// An intermediate document of any bytes: read in pieces and as a whole, then planned.

using namespace planner;

static qint32 readFrom(const QByteArray& document, TTPlanner& planner)
{
    putFile(QStringLiteral("OutputXML"), QStringLiteral("vek_hs.xml"), document);
    return readIntermediateDocument(planner);
}

static void plan(TTPlanner& planner)
{
    TTPlanner again = planner;
    const qint32 result = planInstances(planner);
    require(planInstances(again) == result, "planning ends alike each time");
    if (result != code::ok)
        return;
    const QByteArray document = outputDocument(planner);
    require(outputDocument(again) == document, "planning gives the same schedule each time");
    tinyxml2::XMLDocument tree(true, tinyxml2::PRESERVE_WHITESPACE);
    require(tree.Parse(document.constData(), static_cast<size_t>(document.size())) == 0,
            "what was planned is a document");
    verification::Schedule schedule;
    std::vector<verification::Finding> damage;
    verification::readSchedule(*tree.FirstChildElement(), schedule, damage);
    require(damage.empty(), "what was planned can be read");
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray document = bytesOf(data, size);
    TTPlanner planner;
    const qint32 result = readFrom(document, planner);
    // A blank ahead of it is no form that is read in pieces.
    TTPlanner whole;
    require(readFrom(' ' + document, whole) == result, "pieces are refused when the whole is");
    if (result != code::ok)
        return 0;
    require(holdTheSame(planner, whole), "pieces say what the whole says");
    constexpr std::size_t mostInstances = 32;
    if (planner.TTStreamInstanceList.size() <= mostInstances)
        plan(planner);
    return 0;
}
