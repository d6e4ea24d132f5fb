#include "planner/RepetitionWatch.h"

namespace planner
{

/// Calls visit(window, slot) for each window of an instance.
template <typename Visit>
static void forEachWindow(const TTStreamInstance& instance, const Visit& visit)
{
    for (const VirtualLinkPath& path : instance.paths) {
        visit(path.schedtxwin, path.txslotID);
        for (const BridgeHop& hop : path.bridges)
            visit(hop.schedtxwin, hop.txslotID);
        visit(path.schedrxwin, path.rxslotID);
    }
}

static quint64 mixed(quint64 digest, quint32 value)
{
    digest = (digest ^ value) * 0x9E3779B97F4A7C15ULL;
    return digest ^ (digest >> 29);
}

static quint64 digestOf(const TTStreamInstance& instance, quint64 number)
{
    quint64 digest = number + 1;
    forEachWindow(instance, [&digest](const SlotWindow& window, quint32 slot) {
        digest = mixed(digest, static_cast<quint32>(window.start));
        digest = mixed(digest, static_cast<quint32>(window.end));
        digest = mixed(digest, slot);
    });
    return digest;
}

RepetitionWatch::RepetitionWatch(const std::list<TTStreamInstance>& instances)
    : m_instances(instances)
{
    m_digests.reserve(instances.size());
    for (const TTStreamInstance& instance : instances) {
        m_digests.push_back(digestOf(instance, m_digests.size()));
        m_digest += m_digests.back();
    }
}

void RepetitionWatch::beforePass()
{
    ++m_pass;
    const bool isPowerOfTwo = (m_pass & (m_pass - 1)) == 0;
    if (!isPowerOfTwo)
        return;
    m_kept = state();
    m_keptDigest = m_digest;
}

bool RepetitionWatch::isBack(const std::vector<NumberedInstance>& revised)
{
    for (const NumberedInstance& record : revised) {
        quint64& digest = m_digests[record.number];
        m_digest -= digest;
        digest = digestOf(*record.instance, record.number);
        m_digest += digest;
    }
    return m_digest == m_keptDigest && state() == m_kept;
}

std::vector<qint32> RepetitionWatch::state() const
{
    std::vector<qint32> state;
    for (const TTStreamInstance& instance : m_instances) {
        forEachWindow(instance, [&state](const SlotWindow& window, quint32 slot) {
            state.insert(state.end(), {window.start, window.end, static_cast<qint32>(slot)});
        });
    }
    return state;
}

} // namespace planner
