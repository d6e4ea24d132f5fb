#include "fuzz/PlannerRecords.h"

#include <algorithm>
#include <tuple>

using namespace planner;

namespace
{

template <typename Record, typename Same>
bool sameList(const std::list<Record>& a, const std::list<Record>& b, Same same)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), same);
}

bool sameHop(const BridgeHop& a, const BridgeHop& b)
{
    return std::tie(a.nodeID, a.inport, a.outport) == std::tie(b.nodeID, b.inport, b.outport) &&
           a.schedtxwin == b.schedtxwin;
}

bool samePath(const VirtualLinkPath& a, const VirtualLinkPath& b)
{
    return std::tie(a.talkerNodeID, a.talkerOutport, a.talkerBuffernum) ==
               std::tie(b.talkerNodeID, b.talkerOutport, b.talkerBuffernum) &&
           std::tie(a.listenerNodeID, a.listenerInport) ==
               std::tie(b.listenerNodeID, b.listenerInport) &&
           a.schedtxwin == b.schedtxwin && a.schedrxwin == b.schedrxwin &&
           sameList(a.bridges, b.bridges, &sameHop);
}

bool sameInstance(const TTStreamInstance& a, const TTStreamInstance& b)
{
    return std::tie(a.flowID, a.vlid, a.seq, a.period, a.size) ==
               std::tie(b.flowID, b.vlid, b.seq, b.period, b.size) &&
           sameList(a.paths, b.paths, &samePath);
}

} // namespace

bool holdTheSame(const TTPlanner& a, const TTPlanner& b)
{
    return std::tie(a.hopBufferNum, a.maxRxSlot, a.schedCycle, a.slotLen) ==
               std::tie(b.hopBufferNum, b.maxRxSlot, b.schedCycle, b.slotLen) &&
           sameList(a.TTStreamInstanceList, b.TTStreamInstanceList, &sameInstance);
}
