#pragma once

#include "planner/PlanningModel.h"

#include <vector>

namespace planner
{

/// Notices when resolving conflicts has come back to an earlier state and would go on for ever.
///
/// Every pass depends on nothing but the windows and fixed slots of the master list, so the same
/// state twice proves a loop. The state is kept at passes 1, 2, 4, 8, ...: any loop comes round
/// within the stretch between two of them, and only one state is held.
class RepetitionWatch
{
public:
    /// Call before each pass with the master list.
    void beforePass(const std::list<TTStreamInstance>& instances);

    /// Call after each pass that resolved a port: whether the state is the one that was kept.
    bool isBack(const std::list<TTStreamInstance>& instances) const;

    /// Number of passes begun.
    quint64 passes() const { return m_pass; }

private:
    static std::vector<qint32> stateOf(const std::list<TTStreamInstance>& instances);

    quint64 m_pass = 0;
    std::vector<qint32> m_kept;
};

} // namespace planner
