#include "topology/RecordNotifier.h"

#include <utility>

RecordNotifier& RecordNotifier::instance()
{
    static RecordNotifier notifier;
    return notifier;
}

void RecordNotifier::announce(const DiagramItem* node)
{
    if (m_waits)
        m_waiting.insert(node);
    else
        emit nodesGone({node});
}

RecordNotifier::Together::Together()
{
    instance().m_waits = true;
}

RecordNotifier::Together::~Together()
{
    RecordNotifier& notifier = instance();
    notifier.m_waits = false;
    const GoneNodes gone = std::exchange(notifier.m_waiting, {});
    if (!gone.isEmpty())
        emit notifier.nodesGone(gone);
}
