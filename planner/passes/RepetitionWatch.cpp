#include "planner/passes/RepetitionWatch.h"

namespace planner
{

static quint64 mixed(quint64 digest, quint64 value)
{
    digest = (digest ^ value) * 0x9E3779B97F4A7C15ULL;
    return digest ^ (digest >> 29);
}

static quint64 digestOf(const WindowBoard& board, InstanceIndex instance)
{
    quint64 digest = quint64(instance.value()) + 1;
    const HopIndex end = board.firstHop(instance.plus(1));
    for (HopIndex index = board.firstHop(instance); index != end; ++index) {
        const Hop& hop = board.hop(index);
        digest = mixed(digest, quint64(static_cast<quint32>(hop.window.start)) << 32 |
                                   static_cast<quint32>(hop.window.end));
        digest = mixed(digest, hop.slot);
    }
    return digest;
}

RepetitionWatch::RepetitionWatch(const WindowBoard& board)
{
    m_digests.reserve(board.instanceCount());
    for (InstanceIndex instance; instance.value() < board.instanceCount(); ++instance) {
        m_digests.push_back(digestOf(board, instance));
        m_digest += m_digests.back();
    }
}

void RepetitionWatch::beforePass(const WindowBoard& board)
{
    ++m_pass;
    const bool isPowerOfTwo = (m_pass & (m_pass - 1)) == 0;
    if (!isPowerOfTwo)
        return;
    m_kept = board.hops();
    m_keptDigest = m_digest;
}

bool RepetitionWatch::isBack(const WindowBoard& board, const std::vector<InstanceIndex>& revised)
{
    for (const InstanceIndex instance : revised) {
        quint64& digest = m_digests[instance.value()];
        m_digest -= digest;
        digest = digestOf(board, instance);
        m_digest += digest;
    }
    return m_digest == m_keptDigest && board.hops() == m_kept;
}

} // namespace planner
