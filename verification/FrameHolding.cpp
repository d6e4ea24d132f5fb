#include "verification/FrameHolding.h"

#include <algorithm>
#include <tuple>

namespace verification
{

FrameHolding::FrameHolding(const PlanRecords& plan) : m_cycle_us(plan.schedule.cycle_us)
{
    for (const NetworkNode& node : plan.network.nodes) {
        if (node.isSwitch)
            m_buffers.emplace(node.nodeID, node.buffers);
    }
    if (m_cycle_us <= 0)
        return;
    for (const ScheduledTransmission& transmission : plan.schedule.transmissions)
        addTransmission(plan.schedule, transmission);
}

// Rows of a switch that name one input port are one frame, which leaves for good by the last.
void FrameHolding::addTransmission(const Schedule& schedule,
                                   const ScheduledTransmission& transmission)
{
    const auto begin = schedule.hops.begin() + static_cast<std::ptrdiff_t>(transmission.firstHop);
    std::vector<ScheduledHop> rows(begin,
                                   begin + static_cast<std::ptrdiff_t>(transmission.hopCount));
    const auto frameOf = [](const ScheduledHop& hop) { return std::tie(hop.node, hop.inport); };
    std::sort(rows.begin(), rows.end(), [&](const ScheduledHop& a, const ScheduledHop& b) {
        return frameOf(a) < frameOf(b);
    });
    for (size_t i = 0; i < rows.size();) {
        qint64 receive = rows[i].receiveSlot;
        qint64 send = rows[i].sendSlot;
        const size_t first = i;
        for (; i < rows.size() && frameOf(rows[i]) == frameOf(rows[first]); ++i) {
            receive = std::min(receive, rows[i].receiveSlot);
            send = std::max(send, rows[i].sendSlot);
        }
        if (rows[first].inport != FlowHop::noPort && m_buffers.count(rows[first].node) > 0)
            addFrame(rows[first].node, receive, send);
    }
}

// A frame that stays for longer than a cycle meets those of the same flow behind it.
void FrameHolding::addFrame(int node, qint64 receiveSlot, qint64 sendSlot)
{
    if (sendSlot <= receiveSlot)
        return;
    Holding& holding = m_holdings[node];
    const qint64 length = (sendSlot - receiveSlot) * slotLength_us;
    holding.always += length / m_cycle_us;
    const qint64 rest = length % m_cycle_us;
    if (rest == 0)
        return;
    qint64 start = (receiveSlot + 1) * slotLength_us % m_cycle_us;
    start += start < 0 ? m_cycle_us : 0;
    const qint64 end = (start + rest) % m_cycle_us;
    holding.always += end < start && end > 0 ? 1 : 0;
    holding.changes.push_back({start, 1});
    if (end > 0)
        holding.changes.push_back({end, -1});
}

SwitchOccupancy FrameHolding::mostFrames(int node, Holding holding) const
{
    std::sort(holding.changes.begin(), holding.changes.end(), [](const Change& a, const Change& b) {
        return std::tie(a.time_us, a.frames) < std::tie(b.time_us, b.frames);
    });
    SwitchOccupancy occupancy;
    occupancy.node = node;
    occupancy.buffers = m_buffers.at(node);
    occupancy.mostFrames = holding.always;
    qint64 frames = holding.always;
    for (const Change& change : holding.changes) {
        frames += change.frames;
        if (frames > occupancy.mostFrames) {
            occupancy.mostFrames = frames;
            occupancy.slot = change.time_us / slotLength_us;
        }
    }
    return occupancy;
}

std::vector<SwitchOccupancy> FrameHolding::occupancies() const
{
    std::vector<SwitchOccupancy> occupancies;
    for (const auto& holding : m_holdings)
        occupancies.push_back(mostFrames(holding.first, holding.second));
    std::sort(occupancies.begin(), occupancies.end(),
              [](const SwitchOccupancy& a, const SwitchOccupancy& b) { return a.node < b.node; });
    return occupancies;
}

void FrameHolding::findFullBuffers(FindingList& findings) const
{
    for (const SwitchOccupancy& occupancy : occupancies()) {
        if (occupancy.mostFrames > occupancy.buffers)
            findings.push_back(FindingMaker(Kind::FullBuffers)
                                   .at(occupancy.node, Finding::nowhere, occupancy.slot)
                                   .numbers(occupancy.mostFrames, 0, occupancy.buffers));
    }
}

} // namespace verification
