#pragma once

#include "planner/passes/WindowBoard.h"

#include <vector>

namespace planner
{

/// Notices when resolving conflicts has come back to an earlier state and would go on for ever.
///
/// Every pass depends on nothing but the windows and fixed slots on the board, so the same state
/// twice proves a loop. The state is kept at passes 1, 2, 4, 8, ...: any loop comes round within
/// the stretch between two of them, and only one state is held. A digest, brought up to date by
/// what each pass has revised, tells cheaply that the state is another one; only where it agrees
/// are the states themselves compared.
class RepetitionWatch
{
public:
    explicit RepetitionWatch(const WindowBoard& board);

    /// Call before each pass.
    void beforePass(const WindowBoard& board);

    /// Call after each pass that resolved a port, with the instances that it revised: whether the
    /// state is the one that was kept.
    bool isBack(const WindowBoard& board, const std::vector<InstanceIndex>& revised);

    /// Number of passes begun.
    quint64 passes() const { return m_pass; }

private:
    std::vector<quint64> m_digests; ///< by instance
    quint64 m_digest = 0;           ///< their sum
    quint64 m_pass = 0;
    quint64 m_keptDigest = 0;
    std::vector<Hop> m_kept;
};

} // namespace planner
