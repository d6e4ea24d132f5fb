#include "planner/passes/RepetitionWatch.h"

#include <QHash>

#include <type_traits>

namespace planner
{

/// Of the windows and slots of an instance. That two are alike says little; it only spares
/// comparing.
static quint64 digestOf(const WindowBoard& board, InstanceIndex instance)
{
    static_assert(std::has_unique_object_representations_v<Hop>,
                  "the bytes of a hop are its values");
    const quint32 first = board.firstHop(instance).value();
    const quint32 end = board.firstHop(instance.plus(1)).value();
    return qHashBits(board.hops().data() + first, (end - first) * sizeof(Hop), instance.value());
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
