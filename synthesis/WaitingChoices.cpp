#include "synthesis/WaitingChoices.h"

#include <algorithm>

namespace synthesis
{

using namespace planner;

WaitingChoices::WaitingChoices(const TTFlow& flow, quint16 switchBufferNum)
{
    for (const VirtualLinkPath& path : flow.paths)
        addPath(path, switchBufferNum);
    m_isEmpty = std::any_of(m_listeners.begin(), m_listeners.end(), [](const Listener& listener) {
        return listener.most < listener.least;
    });
}

void WaitingChoices::addPath(const VirtualLinkPath& path, quint16 switchBufferNum)
{
    const auto hops = static_cast<qint64>(path.bridges.size());
    const qint64 least =
        std::max(hops, qint64(path.schedrxwin.start) - qint64(path.schedtxwin.end));
    const qint64 most = std::min(hops * switchBufferNum,
                                 qint64(path.schedrxwin.end) - qint64(path.schedtxwin.start));
    const auto known =
        std::find_if(m_listeners.begin(), m_listeners.end(), [&path](const Listener& listener) {
            return listener.nodeID == path.listenerNodeID;
        });
    m_listenerOfPath.push_back(static_cast<std::size_t>(known - m_listeners.begin()));
    if (known == m_listeners.end()) {
        m_listeners.push_back({path.listenerNodeID, least, most, 0});
        return;
    }
    known->least = std::max(known->least, least);
    known->most = std::min(known->most, most);
}

/// Gives the listeners from this one on as little as possible, the later ones first.
bool WaitingChoices::distribute(std::size_t from, qint64 extra)
{
    for (std::size_t i = m_listeners.size(); i > from; --i) {
        Listener& listener = m_listeners[i - 1];
        listener.extra = std::min(extra, listener.most - listener.least);
        extra -= listener.extra;
    }
    return extra == 0;
}

/// The next way to share out the same extra slots.
bool WaitingChoices::advance()
{
    qint64 behind = 0; // what the listeners behind have
    for (std::size_t i = m_listeners.size(); i > 0; --i) {
        Listener& listener = m_listeners[i - 1];
        if (behind > 0 && listener.extra < listener.most - listener.least) {
            ++listener.extra;
            return distribute(i, behind - 1);
        }
        behind += listener.extra;
    }
    return false;
}

bool WaitingChoices::next(std::vector<qint32>& delays)
{
    if (m_isEmpty || (m_started && !advance() && !distribute(0, ++m_extra)))
        return false;
    m_started = true;
    delays.clear();
    for (const std::size_t listener : m_listenerOfPath) {
        const Listener& chosen = m_listeners[listener];
        delays.push_back(static_cast<qint32>(chosen.least + chosen.extra));
    }
    return true;
}

} // namespace synthesis
