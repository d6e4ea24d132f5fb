#include "verification/FlowCheck.h"

#include <algorithm>
#include <map>
#include <set>

namespace verification
{

namespace
{

/// What a frame carries on the wire besides its message: preamble, header, check sum, gap.
constexpr qint64 framing_bytes = 38;
/// Shorter messages are filled up.
constexpr qint64 shortestMessage_bytes = 46;

qint64 frameTime_us(qint64 message_bytes, qint64 bandwidth_Mbps)
{
    const qint64 bits = 8 * (std::max(message_bytes, shortestMessage_bytes) + framing_bytes);
    return (bits + bandwidth_Mbps - 1) / bandwidth_Mbps;
}

Reason reasonOf(const NetworkFlow& flow)
{
    switch (flow.state) {
    case FlowState::Taken:
        return Reason::None;
    case FlowState::LeadingNumberZero:
        return Reason::LeadingNumberZero;
    case FlowState::Disagrees:
        return flow.hops.empty() ? Reason::UnknownVirtualLink : Reason::DisagreesWithLink;
    case FlowState::BehindDisagreeing:
        return Reason::BehindDisagreeing;
    case FlowState::NoVirtualLink:
        return Reason::UnknownVirtualLink;
    case FlowState::NoPeriod:
        return Reason::PeriodZero;
    }
    return Reason::None;
}

/// Compares the numbers of the transmissions that are there with 0 to asked - 1.
void checkPresent(const NetworkFlow& flow, std::vector<qint64> present, qint64 asked,
                  FindingList& findings)
{
    const auto found = static_cast<qint64>(present.size());
    if (found == asked)
        return;
    if (found == 0) {
        findings.push_back(FindingMaker(Kind::MissingFlow)
                               .ofFlow(flow.flowID)
                               .numbers(0, asked, asked)
                               .because(reasonOf(flow)));
        return;
    }
    std::sort(present.begin(), present.end());
    qint64 missing = 0;
    for (const qint64 number : present) {
        if (number != missing)
            break;
        ++missing;
    }
    const int seq = static_cast<int>(missing & 0xFFFF);
    findings.push_back(FindingMaker(Kind::MissingTransmission)
                           .of(Transmission{flow.flowID, seq})
                           .numbers(found, asked, asked));
}

void checkPeriod(const NetworkFlow& flow, FindingList& findings)
{
    const qint64 rest = flow.period_us % slotLength_us;
    if (rest != 0)
        findings.push_back(
            FindingMaker(Kind::UnevenPeriod).ofFlow(flow.flowID).numbers(rest, 0, 0));
}

void checkFrame(const NetworkFlow& flow, FindingList& findings)
{
    if (flow.slowestLink_Mbps == 0)
        return;
    const qint64 time = frameTime_us(flow.size, flow.slowestLink_Mbps);
    if (time > slotLength_us)
        findings.push_back(
            FindingMaker(Kind::LongFrame).ofFlow(flow.flowID).numbers(time, 0, slotLength_us));
}

void checkPaths(const NetworkFlow& flow, const std::set<int>& switches, FindingList& findings)
{
    std::set<int> hostsOnPath;
    // The first one is the talker with a row.
    for (size_t i = 1; i < flow.hops.size(); ++i) {
        const FlowHop& hop = flow.hops[i];
        if (hop.isTalker())
            findings.push_back(FindingMaker(Kind::UnlistedTalkerPort)
                                   .at(hop.node, hop.outport)
                                   .ofFlow(flow.flowID));
        else if (switches.count(hop.node) == 0)
            hostsOnPath.insert(hop.node);
    }
    for (const int node : hostsOnPath)
        findings.push_back(FindingMaker(Kind::HostOnPath).at(node).ofFlow(flow.flowID));
    for (const LinkGap& gap : flow.gaps)
        findings.push_back(
            FindingMaker(Kind::MissingLink).at(gap.from).ofFlow(flow.flowID).numbers(gap.to, 0, 0));
    for (const FlowListener& listener : flow.listeners) {
        if (!listener.hasWindow)
            findings.push_back(FindingMaker(Kind::UnaskedListener)
                                   .at(listener.node, listener.inport)
                                   .ofFlow(flow.flowID));
    }
}

} // namespace

void checkCycle(const PlanRecords& plan, FindingList& findings)
{
    const Schedule& schedule = plan.schedule;
    if (schedule.slotLength_us != slotLength_us)
        findings.push_back(FindingMaker(Kind::SlotLength)
                               .numbers(schedule.slotLength_us, slotLength_us, slotLength_us));
    const qint64 cycle = commonCycle(plan.network);
    if (schedule.cycle_us != cycle)
        findings.push_back(
            FindingMaker(Kind::CycleLength).numbers(schedule.cycle_us, cycle, cycle));
}

void checkCompleteness(const PlanRecords& plan, const TransmissionMatch& match,
                       FindingList& findings)
{
    const std::vector<NetworkFlow>& flows = plan.network.flows;
    std::vector<std::vector<qint64>> present(flows.size());
    for (size_t i = 0; i < match.places.size(); ++i) {
        const TransmissionMatch::Place& place = match.places[i];
        const ScheduledTransmission& transmission = plan.schedule.transmissions[i];
        if (place.flow != TransmissionMatch::nobody)
            present[static_cast<size_t>(place.flow)].push_back(place.number);
        else
            findings.push_back(FindingMaker(Kind::ExtraTransmission).of(transmission));
    }
    for (size_t i = 0; i < flows.size(); ++i) {
        const qint64 asked = flows[i].period_us == 0 ? 1 : transmissionsAsked(plan, flows[i]);
        checkPresent(flows[i], std::move(present[i]), asked, findings);
    }
}

void checkFlows(const PlanRecords& plan, FindingList& findings)
{
    std::set<int> switches;
    for (const NetworkNode& node : plan.network.nodes) {
        if (node.isSwitch)
            switches.insert(node.nodeID);
    }
    std::map<int, qint64> flowsOfNumber;
    for (const NetworkFlow& flow : plan.network.flows) {
        if (flow.state != FlowState::Taken)
            continue;
        ++flowsOfNumber[flow.flowID];
        checkPeriod(flow, findings);
        checkFrame(flow, findings);
        checkPaths(flow, switches, findings);
    }
    for (const auto& number : flowsOfNumber) {
        if (number.second > 1)
            findings.push_back(FindingMaker(Kind::RepeatedFlowNumber)
                                   .ofFlow(number.first)
                                   .numbers(number.second, 1, 1));
    }
}

} // namespace verification
