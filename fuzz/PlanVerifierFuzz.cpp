#include "fuzz/FuzzFolder.h"

#include "verification/PlanFigures.h"
#include "verification/PlanVerifier.h"
#include "verification/ScheduleDocument.h"

#include <tinyxml2.h>

#include <algorithm>

// A pair of documents, joined by a line of two percent signs, before the verifier.

using namespace verification;

static void parse(const QByteArray& bytes, tinyxml2::XMLDocument& tree)
{
    tree.Parse(bytes.constData(), static_cast<size_t>(bytes.size()));
}

/// What is read piece by piece, where it can be, is what the tree says.
static void comparePieces(const QByteArray& output, const PlanRecords& plan)
{
    PlanRecords pieces;
    if (!readScheduleByPieces(output, pieces.schedule, pieces.damage))
        return;
    require(pieces.schedule.hops.size() == plan.schedule.hops.size() &&
                pieces.schedule.listeners.size() == plan.schedule.listeners.size() &&
                pieces.schedule.transmissions.size() == plan.schedule.transmissions.size() &&
                pieces.schedule.cycle_us == plan.schedule.cycle_us &&
                pieces.schedule.slotLength_us == plan.schedule.slotLength_us,
            "pieces say what the tree says");
    require(pieces.damage.size() <= plan.damage.size() &&
                std::equal(pieces.damage.rbegin(), pieces.damage.rend(), plan.damage.rbegin()),
            "pieces lack what the tree lacks");
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray pair = bytesOf(data, size);
    static const QByteArray border("\n%%\n");
    const int end = pair.indexOf(border);
    const QByteArray input = pair.left(end);
    const QByteArray output = end < 0 ? QByteArray() : pair.mid(end + border.size());
    tinyxml2::XMLDocument inputTree(true, tinyxml2::PRESERVE_WHITESPACE);
    tinyxml2::XMLDocument outputTree(true, tinyxml2::PRESERVE_WHITESPACE);
    parse(input, inputTree);
    parse(output, outputTree);
    const PlanRecords plan = readPlan(inputTree, outputTree);
    if (!outputTree.Error())
        comparePieces(output, plan);
    const Verification verification = verifyPlan(plan);
    require(verifyPlan(plan).findings == verification.findings,
            "a judgement is the same each time");
    require(std::is_sorted(verification.findings.begin(), verification.findings.end()),
            "findings are in order");
    for (const Finding& finding : verification.findings)
        describe(finding);
    figuresOf(plan);
    return 0;
}
