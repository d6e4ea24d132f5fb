#include "verification/TransmissionMatch.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <unordered_map>

namespace verification
{

namespace
{

/// A document counts transmissions in 16 bits.
constexpr qint64 seqCount = 65536;

constexpr qint64 endless = std::numeric_limits<qint64>::max();

/// Walks the transmissions that one flowID and seq can mean, in the order of the input document.
struct Cursor {
    size_t flow = 0; ///< place among the flows of the number
    qint64 turn = 0; ///< times that the count of the flow has wrapped
};

class Matching
{
public:
    explicit Matching(const PlanRecords& plan) : m_plan(plan)
    {
        const std::vector<NetworkFlow>& flows = plan.network.flows;
        for (size_t i = 0; i < flows.size(); ++i) {
            if (flows[i].state == FlowState::Taken)
                m_flowsOfNumber[flows[i].flowID].push_back(static_cast<int>(i));
        }
    }

    TransmissionMatch run()
    {
        TransmissionMatch match;
        match.places.reserve(m_plan.schedule.transmissions.size());
        for (const ScheduledTransmission& transmission : m_plan.schedule.transmissions)
            match.places.push_back(place(transmission.flowID, transmission.seq));
        return match;
    }

private:
    TransmissionMatch::Place place(int flowID, int seq)
    {
        const auto found = m_flowsOfNumber.find(flowID);
        if (found == m_flowsOfNumber.end())
            return {};
        const std::vector<int>& flows = found->second;
        Cursor& cursor = m_cursors[qint64(flowID) * seqCount + seq];
        for (; cursor.flow < flows.size(); ++cursor.flow, cursor.turn = 0) {
            const int flow = flows[cursor.flow];
            const qint64 number = seq + seqCount * cursor.turn;
            if (number < transmissionsAsked(m_plan, m_plan.network.flows[size_t(flow)])) {
                ++cursor.turn;
                return {flow, number};
            }
        }
        return {};
    }

    const PlanRecords& m_plan;
    std::unordered_map<int, std::vector<int>> m_flowsOfNumber;
    std::unordered_map<qint64, Cursor> m_cursors; ///< by flowID and seq
};

} // namespace

TransmissionMatch matchTransmissions(const PlanRecords& plan)
{
    return Matching(plan).run();
}

qint64 commonCycle(const Network& network)
{
    qint64 cycle = 0;
    for (const NetworkFlow& flow : network.flows) {
        const bool counts =
            flow.state == FlowState::Taken || flow.state == FlowState::LeadingNumberZero;
        if (!counts || flow.period_us <= 0)
            continue;
        if (cycle == 0)
            cycle = flow.period_us;
        const qint64 factor = flow.period_us / std::gcd(cycle, flow.period_us);
        cycle = cycle > endless / factor ? endless : cycle * factor;
    }
    return cycle;
}

qint64 transmissionsAsked(const PlanRecords& plan, const NetworkFlow& flow)
{
    return std::max<qint64>(1, plan.schedule.cycle_us / flow.period_us);
}

} // namespace verification
