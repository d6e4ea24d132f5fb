#include "verification/PlanFigures.h"

#include "verification/FrameHolding.h"
#include "verification/PortUse.h"

#include <algorithm>

namespace verification
{

namespace
{

/// Measures how long frames take, flow by flow.
class LatencyMeasure
{
public:
    explicit LatencyMeasure(const Network& network) : m_network(network)
    {
        for (const NetworkFlow& flow : network.flows)
            m_latencies.emplace_back(flow.listeners.size());
    }

    /// A listener that several branches reach gets the frame of the first one.
    void add(const HopSlots& hops)
    {
        const NetworkFlow& flow = hops.flow();
        const auto flowPlace = static_cast<size_t>(&flow - m_network.flows.data());
        for (const FlowEnd& end : flow.ends) {
            const HopSlots::Entry& talker = hops.hops()[static_cast<size_t>(end.talker)];
            const HopSlots::Entry& last = hops.hops()[static_cast<size_t>(end.from)];
            if (talker.known && last.known)
                m_latencies[flowPlace][static_cast<size_t>(end.listener)].add(last.send -
                                                                              talker.send);
        }
    }

    std::vector<FlowLatency> take() const
    {
        std::vector<FlowLatency> latencies;
        for (size_t i = 0; i < m_latencies.size(); ++i) {
            for (size_t l = 0; l < m_latencies[i].size(); ++l) {
                if (m_latencies[i][l].count > 0)
                    latencies.push_back(latencyOf(m_network.flows[i], l, m_latencies[i][l]));
            }
        }
        return latencies;
    }

private:
    struct Extremes {
        size_t count = 0;
        qint64 smallest = 0;
        qint64 largest = 0;

        void add(qint64 slots)
        {
            smallest = count == 0 ? slots : std::min(smallest, slots);
            largest = count == 0 ? slots : std::max(largest, slots);
            ++count;
        }
    };

    static FlowLatency latencyOf(const NetworkFlow& flow, size_t place, const Extremes& extremes)
    {
        const FlowListener& listener = flow.listeners[place];
        FlowLatency latency;
        latency.flowID = flow.flowID;
        latency.talker = flow.hops.front().node;
        latency.listener = listener.node;
        latency.transmissions = extremes.count;
        latency.smallest = extremes.smallest;
        latency.largest = extremes.largest;
        latency.sendWindow = flow.sendWindow;
        latency.receiveWindow = listener.window;
        latency.hasReceiveWindow = listener.hasWindow;
        return latency;
    }

    const Network& m_network;
    std::vector<std::vector<Extremes>> m_latencies; ///< by flow and listener
};

} // namespace

PlanFigures figuresOf(const PlanRecords& plan)
{
    PlanWalk walk(plan);
    PortUse ports(plan);
    LatencyMeasure latencies(plan.network);
    ports.addSchedule();
    walk.forEachOfFlow(
        [&](const ScheduledTransmission& transmission, const HopSlots& hops, qint64) {
            ports.addImplied(transmission, hops);
            latencies.add(hops);
        });
    ports.finish();
    PlanFigures figures;
    figures.loads = ports.loads();
    figures.latencies = latencies.take();
    figures.switches = FrameHolding(plan).occupancies();
    return figures;
}

} // namespace verification
