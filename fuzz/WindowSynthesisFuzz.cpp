#include "fuzz/FuzzFolder.h"

#include "planner/PreProcess.h"
#include "planner/TTPlanning.h"

#include "synthesis/NetworkDocument.h"

#include "verification/PlanVerifier.h"

#include <tinyxml2.h>

#include <algorithm>
#include <set>

// An input document of any bytes, for which windows are searched with few steps.

using namespace synthesis;

namespace
{

void parse(const QByteArray& bytes, tinyxml2::XMLDocument& tree)
{
    tree.Parse(bytes.constData(), static_cast<size_t>(bytes.size()));
}

/// Few transmissions on a short cycle: a search of any kind ends at once.
bool isSmall(const planner::PlanningContext& context)
{
    constexpr quint64 mostInstances = 48;
    constexpr quint32 longestCycle_us = 100000;
    planner::PlanningContext counted = context;
    counted.clusterCycle = planner::clusterCycleOf(context);
    return counted.clusterCycle <= longestCycle_us &&
           planner::instanceCount(counted) <= mostInstances;
}

/// Whether the schedule can tell the nodes of each path from each other: it knows them by number.
bool hasPlainPaths(const planner::PlanningContext& context)
{
    std::set<int> known;
    const std::size_t nodes = context.hosts.size() + context.switches.size();
    for (const planner::HostInfo& host : context.hosts)
        known.insert(host.nodeID);
    for (const planner::SwitchInfo& info : context.switches)
        known.insert(info.nodeID);
    for (const planner::TTFlow& flow : context.flows) {
        for (const planner::VirtualLinkPath& path : flow.paths) {
            std::set<int> passed{path.talkerNodeID, path.listenerNodeID};
            for (const planner::BridgeHop& hop : path.bridges)
                passed.insert(hop.nodeID);
            if (passed.size() != path.bridges.size() + 2 ||
                !std::includes(known.begin(), known.end(), passed.begin(), passed.end()))
                return false;
        }
    }
    return known.size() == nodes;
}

/// Whether the schedule is without what a search is to avoid: frames that meet, or come at a time
/// that was not asked for. What is odd about the network itself stays odd.
bool keepsSlots(const tinyxml2::XMLDocument& input, const QByteArray& output)
{
    tinyxml2::XMLDocument outputTree(true, tinyxml2::PRESERVE_WHITESPACE);
    parse(output, outputTree);
    const auto verification = verification::verifyPlan(verification::readPlan(input, outputTree));
    for (const verification::Finding& finding : verification.findings) {
        if (finding.severity == verification::Severity::Fault &&
            finding.kind >= verification::Kind::SharedSlot &&
            finding.kind <= verification::Kind::ReceiveWindow)
            return false;
    }
    return true;
}

/// Has the narrowed document planned by both stages; gives the schedule.
QByteArray plannedFrom(const QByteArray& narrowed)
{
    putFile(QStringLiteral("ResourceXML"), QStringLiteral("vek_input.xml"), narrowed);
    planner::PlanningContext context;
    require(planner::preProcess(context) == planner::code::ok, "the first stage takes the windows");
    planner::TTPlanner planner;
    require(planner::TTPlanning(planner) == planner::code::ok,
            "the second stage takes the windows");
    return takeFile(QStringLiteral("OutputXML/vek_output.xml"));
}

void checkPlan(const InputNetwork& network, const tinyxml2::XMLDocument& asked,
               const QByteArray& narrowed)
{
    const QByteArray output = plannedFrom(narrowed);
    if (!hasPlainPaths(network.context))
        return;
    tinyxml2::XMLDocument narrowedTree(true, tinyxml2::PRESERVE_WHITESPACE);
    parse(narrowed, narrowedTree);
    require(keepsSlots(narrowedTree, output), "the plan keeps the windows that were found");
    require(keepsSlots(asked, output), "the plan keeps the windows that were asked for");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
    parse(bytesOf(data, size), document);
    if (document.Error())
        return 0;
    const InputNetwork network = readNetwork(document);
    if (!network.isSearchable() || !isSmall(network.context))
        return 0;
    Options options;
    options.steps = 20000;
    options.isFaultless = [&](const Found& plan, const QByteArray& output) {
        tinyxml2::XMLDocument narrowed(true, tinyxml2::PRESERVE_WHITESPACE);
        parse(narrowedDocument(document, network, plan), narrowed);
        return keepsSlots(narrowed, output);
    };
    const Outcome outcome = synthesizeWindows(network.context, options);
    if (const auto* plan = std::get_if<Found>(&outcome))
        checkPlan(network, document, narrowedDocument(document, network, *plan));
    return 0;
}
