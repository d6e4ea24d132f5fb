#pragma once

#include "planner/DuplicateInstances.h"

#include <vector>

namespace planner
{

/// Notices when resolving conflicts has come back to an earlier state and would go on for ever.
///
/// Every pass depends on nothing but the windows and fixed slots of the master list, so the same
/// state twice proves a loop. The state is kept at passes 1, 2, 4, 8, ...: any loop comes round
/// within the stretch between two of them, and only one state is held. A digest, brought up to date
/// by what each pass has revised, tells cheaply that the state is another one; only where it agrees
/// are the states themselves compared.
class RepetitionWatch
{
public:
    explicit RepetitionWatch(const std::list<TTStreamInstance>& instances);

    /// Call before each pass.
    void beforePass();

    /// Call after each pass that resolved a port, with the records that it revised: whether the
    /// state is the one that was kept.
    bool isBack(const std::vector<NumberedInstance>& revised);

    /// Number of passes begun.
    quint64 passes() const { return m_pass; }

private:
    std::vector<qint32> state() const;

    const std::list<TTStreamInstance>& m_instances;
    std::vector<quint64> m_digests; ///< of each instance by its place in the list
    quint64 m_digest = 0;           ///< of them all
    quint64 m_pass = 0;
    quint64 m_keptDigest = 0;
    std::vector<qint32> m_kept;
};

} // namespace planner
