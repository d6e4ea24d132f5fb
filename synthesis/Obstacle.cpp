#include "synthesis/Obstacle.h"

#include "planner/PreProcess.h"

#include "synthesis/Repetition.h"

#include <map>
#include <set>

namespace synthesis
{

using namespace planner;

bool preventsSearch(Obstacle obstacle)
{
    switch (obstacle) {
    case Obstacle::OtherType:
    case Obstacle::WrongTalker:
    case Obstacle::UnknownListener:
    case Obstacle::BehindDisagreement:
    case Obstacle::LeadingZero:
        return false;
    case Obstacle::PeriodZero:
    case Obstacle::NoPath:
    case Obstacle::SharedNumber:
    case Obstacle::NoBuffers:
    case Obstacle::PeriodBelowSlot:
    case Obstacle::CycleTooLong:
        return true;
    }
    return true;
}

namespace
{

/// The switches whose buffers hold no frame; the first of a number counts.
std::set<quint16> switchesWithoutBuffers(const PlanningContext& context)
{
    std::map<quint16, quint16> buffers;
    for (const SwitchInfo& info : context.switches)
        buffers.emplace(info.nodeID, info.buffernum);
    std::set<quint16> empty;
    for (const auto& entry : buffers) {
        if (entry.second == 0)
            empty.insert(entry.first);
    }
    return empty;
}

bool passesOneOf(const std::set<quint16>& nodes, const TTFlow& flow)
{
    for (const VirtualLinkPath& path : flow.paths) {
        for (const BridgeHop& hop : path.bridges) {
            if (nodes.count(hop.nodeID) > 0)
                return true;
        }
    }
    return false;
}

/// Judges the flows of a context one by one.
class ObstacleSearch
{
public:
    explicit ObstacleSearch(const PlanningContext& context)
        : m_hasNoBuffers(context.switchBufferNum == 0),
          m_emptySwitches(switchesWithoutBuffers(context)),
          m_isTooLong(isTooLong(context))
    {
        bool atHead = true;
        for (const TTFlow& flow : context.flows) {
            atHead = atHead && flow.flowID == 0;
            if (!atHead)
                ++m_uses[flow.flowID];
        }
    }

    /// Flows must come in their order.
    bool find(const TTFlow& flow, Obstacle& obstacle)
    {
        m_atHead = m_atHead && flow.flowID == 0;
        if (m_atHead)
            obstacle = Obstacle::LeadingZero;
        else if (flow.period == 0)
            obstacle = Obstacle::PeriodZero;
        else if (flow.paths.empty())
            obstacle = Obstacle::NoPath;
        else if (m_uses[flow.flowID] > 1)
            obstacle = Obstacle::SharedNumber;
        else if (m_hasNoBuffers || passesOneOf(m_emptySwitches, flow))
            obstacle = Obstacle::NoBuffers;
        else if (periodInSlots(flow) == 0)
            obstacle = Obstacle::PeriodBelowSlot;
        else if (m_isTooLong)
            obstacle = Obstacle::CycleTooLong;
        else
            return false;
        return true;
    }

private:
    static bool isTooLong(const PlanningContext& context)
    {
        for (const TTFlow& flow : context.flows) {
            if (flow.period == 0)
                return false; // there is no cycle then
        }
        const Repetition repetition(context);
        return !repetition.isSearchable();
    }

    const bool m_hasNoBuffers;
    const std::set<quint16> m_emptySwitches;
    const bool m_isTooLong;
    bool m_atHead = true;
    std::map<quint16, int> m_uses; ///< of a number, by flows that reach the documents
};

} // namespace

std::vector<ObstructedFlow> obstaclesOf(const PlanningContext& context)
{
    std::vector<ObstructedFlow> found;
    ObstacleSearch search(context);
    std::size_t place = 0;
    for (const TTFlow& flow : context.flows) {
        ObstructedFlow obstructed{place++, Obstacle::OtherType};
        if (search.find(flow, obstructed.obstacle))
            found.push_back(obstructed);
    }
    return found;
}

} // namespace synthesis
