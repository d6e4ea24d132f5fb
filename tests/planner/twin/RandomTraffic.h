#pragma once

#include "tests/planner/twin/NetworkDraft.h"
#include "tests/planner/twin/RandomTopology.h"
#include "tests/support/RandomSource.h"

/// How windows and periods of a draft are chosen.
struct TrafficStyle {
    int firstSlots = 8;    ///< send windows start in this range
    int widest = 6;        ///< slots by which a window may be wider than one slot
    bool wideSend = false; ///< send windows that bind nothing, so that receive windows decide
    bool wideReceive = false;
    int mostInstances = 30;
    bool samePeriod = false;
};

/// Adds virtual links and flows to a draft whose topology stands.
class RandomTraffic
{
public:
    RandomTraffic(RandomSource& random, NetworkDraft& draft, RandomTopology& topology,
                  const TrafficStyle& style)
        : m_random(random),
          m_draft(draft),
          m_topology(topology),
          m_style(style)
    {
    }

    /// A virtual link from a talker to each listener; detours let branches part and meet again.
    void addVirtualLink(int talker, const std::vector<int>& listeners, int detourPercent,
                        int wanderPercent);
    /// A flow on a virtual link with windows in reach of each other, mostly.
    void addFlow(const DraftVirtualLink& link);
    /// Gives the flows periods whose common cycle holds few enough instances.
    void choosePeriods();

private:
    QString windowText(int firstSlot, int lastSlot);
    int bufferOf(bool isSwitch) const;

    RandomSource& m_random;
    NetworkDraft& m_draft;
    RandomTopology& m_topology;
    TrafficStyle m_style;
};
