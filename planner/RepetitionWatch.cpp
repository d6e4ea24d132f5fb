#include "planner/RepetitionWatch.h"

namespace planner
{

void RepetitionWatch::beforePass(const std::list<TTStreamInstance>& instances)
{
    ++m_pass;
    const bool isPowerOfTwo = (m_pass & (m_pass - 1)) == 0;
    if (isPowerOfTwo)
        m_kept = stateOf(instances);
}

bool RepetitionWatch::isBack(const std::list<TTStreamInstance>& instances) const
{
    return stateOf(instances) == m_kept;
}

std::vector<qint32> RepetitionWatch::stateOf(const std::list<TTStreamInstance>& instances)
{
    std::vector<qint32> state;
    const auto append = [&state](const SlotWindow& window, quint32 txslotID) {
        state.insert(state.end(), {window.start, window.end, static_cast<qint32>(txslotID)});
    };
    for (const TTStreamInstance& instance : instances) {
        for (const VirtualLinkPath& path : instance.paths) {
            append(path.schedtxwin, path.txslotID);
            for (const BridgeHop& hop : path.bridges)
                append(hop.schedtxwin, hop.txslotID);
            append(path.schedrxwin, path.rxslotID);
        }
    }
    return state;
}

} // namespace planner
