#include "verification/PortUse.h"

#include <algorithm>
#include <limits>
#include <tuple>

namespace verification
{

PortUse::PortUse(const PlanRecords& plan) : m_schedule(plan.schedule) {}

// Without a cycle nothing repeats, and a slot is where it is.
qint64 PortUse::startInCycle(qint64 slot) const
{
    const qint64 start = slot * slotLength_us;
    const qint64 cycle = m_schedule.cycle_us;
    if (cycle <= 0)
        return start;
    const qint64 rest = start % cycle;
    return rest < 0 ? rest + cycle : rest;
}

void PortUse::add(int node, int port, qint64 slot, const ScheduledTransmission& transmission)
{
    const auto instance = static_cast<size_t>(&transmission - m_schedule.transmissions.data());
    m_uses.push_back(
        {node, port, startInCycle(slot), slot, {transmission.flowID, transmission.seq}, instance});
}

void PortUse::addSchedule()
{
    m_uses.reserve(m_schedule.hops.size());
    for (const ScheduledTransmission& transmission : m_schedule.transmissions) {
        for (size_t i = 0; i < transmission.hopCount; ++i) {
            const ScheduledHop& hop = m_schedule.hops[transmission.firstHop + i];
            add(hop.node, hop.outport, hop.sendSlot, transmission);
        }
    }
}

void PortUse::addImplied(const ScheduledTransmission& transmission, const HopSlots& hops)
{
    for (size_t i = 0; i < hops.hops().size(); ++i) {
        if (hops.hops()[i].implied) {
            const FlowHop& hop = hops.flow().hops[i];
            add(hop.node, hop.outport, hops.hops()[i].send, transmission);
        }
    }
}

// A frame that comes to a switch by two of its ports has two rows for the port by which it leaves.
// In one slot they are one sending, and one of them is enough.
void PortUse::finish()
{
    const auto orderOf = [](const Use& use) {
        return std::tie(use.node, use.port, use.start_us, use.slot, use.transmission, use.instance);
    };
    std::sort(m_uses.begin(), m_uses.end(),
              [&](const Use& a, const Use& b) { return orderOf(a) < orderOf(b); });
    m_uses.erase(std::unique(m_uses.begin(), m_uses.end(),
                             [&](const Use& a, const Use& b) { return orderOf(a) == orderOf(b); }),
                 m_uses.end());
}

size_t PortUse::endOfPort(size_t first) const
{
    size_t last = first;
    while (last < m_uses.size() && m_uses[last].node == m_uses[first].node &&
           m_uses[last].port == m_uses[first].port)
        ++last;
    return last;
}

std::vector<PortUse::Group> PortUse::groupsOf(size_t first, size_t last) const
{
    std::vector<Group> groups;
    for (size_t i = first; i < last; ++i) {
        if (groups.empty() || m_uses[groups.back().first].start_us != m_uses[i].start_us)
            groups.push_back({i, i});
        groups.back().last = i + 1;
    }
    return groups;
}

std::vector<Transmission> PortUse::transmissionsOf(const Group& group) const
{
    std::vector<Transmission> transmissions;
    for (size_t i = group.first; i < group.last; ++i)
        transmissions.push_back(m_uses[i].transmission);
    std::sort(transmissions.begin(), transmissions.end());
    return transmissions;
}

void PortUse::findSharedSlots(FindingList& findings) const
{
    for (size_t first = 0; first < m_uses.size();) {
        const size_t last = endOfPort(first);
        const std::vector<Group> groups = groupsOf(first, last);
        for (size_t i = 0; i < groups.size(); ++i) {
            findSharedIn(groups[i], findings);
            if (i > 0)
                findOverlap(groups[i - 1], groups[i],
                            m_uses[groups[i].first].start_us - m_uses[groups[i - 1].first].start_us,
                            findings);
        }
        if (m_schedule.cycle_us > 0)
            findOverlap(groups.back(), groups.front(),
                        m_schedule.cycle_us + m_uses[groups.front().first].start_us -
                            m_uses[groups.back().first].start_us,
                        findings);
        first = last;
    }
}

/// One finding for each slot number that several share, and one when several numbers meet.
void PortUse::findSharedIn(const Group& group, FindingList& findings) const
{
    const Use& use = m_uses[group.first];
    const auto finding = [&](Kind kind, const Group& sharing) {
        const std::vector<Transmission> transmissions = transmissionsOf(sharing);
        const auto count = static_cast<qint64>(transmissions.size());
        findings.push_back(FindingMaker(kind)
                               .at(use.node, use.port, m_uses[sharing.first].slot)
                               .of(transmissions)
                               .numbers(count, 1, 1));
    };
    Group same{group.first, group.first};
    for (size_t i = group.first; i <= group.last; ++i) {
        if (i < group.last && m_uses[i].slot == m_uses[same.first].slot)
            continue;
        same.last = i;
        if (same.last - same.first > 1)
            finding(Kind::SharedSlot, same);
        same.first = i;
    }
    if (use.slot != m_uses[group.last - 1].slot)
        finding(Kind::SharedSlotOverCycle, group);
}

// Only a cycle that is no whole number of slots lets slots overlap in part.
void PortUse::findOverlap(const Group& early, const Group& late, qint64 gap_us,
                          FindingList& findings) const
{
    if (gap_us >= slotLength_us)
        return;
    std::vector<Transmission> transmissions = transmissionsOf(early);
    for (const Transmission& transmission : transmissionsOf(late))
        transmissions.push_back(transmission);
    std::sort(transmissions.begin(), transmissions.end());
    const Use& use = m_uses[early.first];
    const auto count = static_cast<qint64>(transmissions.size());
    findings.push_back(FindingMaker(Kind::SharedSlotOverCycle)
                           .at(use.node, use.port, use.slot)
                           .of(transmissions)
                           .numbers(count, 1, 1));
}

void PortUse::findSlotsBeyondCycle(FindingList& findings) const
{
    const qint64 lastSlot = m_schedule.cycle_us / slotLength_us - 1;
    if (lastSlot < 0)
        return;
    for (size_t first = 0; first < m_uses.size();) {
        const size_t last = endOfPort(first);
        std::vector<Transmission> transmissions;
        qint64 slot = std::numeric_limits<qint64>::max();
        for (size_t i = first; i < last; ++i) {
            const Use& use = m_uses[i];
            if (use.slot >= 0 && use.slot <= lastSlot)
                continue;
            slot = std::min(slot, use.slot);
            transmissions.push_back(use.transmission);
        }
        std::sort(transmissions.begin(), transmissions.end());
        if (!transmissions.empty())
            findings.push_back(FindingMaker(Kind::BeyondCycle)
                                   .at(m_uses[first].node, m_uses[first].port, slot)
                                   .of(std::move(transmissions))
                                   .numbers(slot, 0, lastSlot));
        first = last;
    }
}

std::vector<PortLoad> PortUse::loads() const
{
    std::vector<PortLoad> loads;
    for (size_t first = 0; first < m_uses.size();) {
        const size_t last = endOfPort(first);
        PortLoad load;
        load.node = m_uses[first].node;
        load.port = m_uses[first].port;
        load.usedSlots = static_cast<qint64>(groupsOf(first, last).size());
        load.cycleSlots = m_schedule.cycle_us / slotLength_us;
        loads.push_back(load);
        first = last;
    }
    std::stable_sort(loads.begin(), loads.end(), [](const PortLoad& a, const PortLoad& b) {
        return a.usedSlots > b.usedSlots;
    });
    return loads;
}

size_t PortUse::portCount() const
{
    size_t count = 0;
    for (size_t first = 0; first < m_uses.size(); first = endOfPort(first))
        ++count;
    return count;
}

} // namespace verification
