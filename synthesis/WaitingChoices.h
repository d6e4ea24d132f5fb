#pragma once

#include "planner/PlanningModel.h"

#include <vector>

namespace synthesis
{

/// Lists the delays after which the listeners of a flow may get its frame, least waiting first.
///
/// Paths that end at one listener have one delay, since the documents hold one window for it.
/// Delays lie within one slot and full buffers a hop, and within what the windows can need.
class WaitingChoices
{
public:
    WaitingChoices(const planner::TTFlow& flow, quint16 switchBufferNum);

    /// The next delays by path, in slots; false behind the last.
    ///
    /// In order of the sum over the listeners, then of the earlier listeners' delays.
    bool next(std::vector<qint32>& delays);

private:
    struct Listener {
        quint16 nodeID;
        qint64 least; ///< delay
        qint64 most;
        qint64 extra; ///< beyond the least
    };

    void addPath(const planner::VirtualLinkPath& path, quint16 switchBufferNum);
    bool advance();
    bool distribute(std::size_t from, qint64 extra);

    std::vector<Listener> m_listeners; ///< in order of their first path
    std::vector<std::size_t> m_listenerOfPath;
    qint64 m_extra = 0; ///< of all listeners
    bool m_started = false;
    bool m_isEmpty = false; ///< some listener cannot be reached in time
};

} // namespace synthesis
