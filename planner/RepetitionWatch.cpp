#include "planner/RepetitionWatch.h"

namespace planner
{

static quint64 mixed(quint64 digest, quint64 value)
{
    digest = (digest ^ value) * 0x9E3779B97F4A7C15ULL;
    return digest ^ (digest >> 29);
}

RepetitionWatch::RepetitionWatch(const WindowBoard& board) : m_board(board)
{
    m_digests.reserve(board.instanceCount());
    for (quint32 instance = 0; instance < board.instanceCount(); ++instance) {
        m_digests.push_back(digestOf(instance));
        m_digest += m_digests.back();
    }
}

quint64 RepetitionWatch::digestOf(quint32 instance) const
{
    quint64 digest = quint64(instance) + 1;
    const quint32 end = m_board.firstStop(instance + 1);
    for (quint32 number = m_board.firstStop(instance); number != end; ++number) {
        const Stop& stop = m_board.stop(number);
        digest = mixed(digest, quint64(static_cast<quint32>(stop.window.start)) << 32 |
                                   static_cast<quint32>(stop.window.end));
        digest = mixed(digest, stop.slot);
    }
    return digest;
}

void RepetitionWatch::beforePass()
{
    ++m_pass;
    const bool isPowerOfTwo = (m_pass & (m_pass - 1)) == 0;
    if (!isPowerOfTwo)
        return;
    m_kept = m_board.stops();
    m_keptDigest = m_digest;
}

bool RepetitionWatch::isBack(const std::vector<quint32>& revised)
{
    for (const quint32 instance : revised) {
        m_digest -= m_digests[instance];
        m_digests[instance] = digestOf(instance);
        m_digest += m_digests[instance];
    }
    return m_digest == m_keptDigest && m_board.stops() == m_kept;
}

} // namespace planner
