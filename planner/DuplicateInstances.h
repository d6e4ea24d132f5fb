#pragma once

#include "planner/PlanningModel.h"

#include <unordered_map>
#include <vector>

namespace planner
{

/// A record of the master list with its place there, from 0.
struct NumberedInstance {
    TTStreamInstance* instance = nullptr;
    quint32 number = 0;
};

/// Finds the records of the master list that share their flowID and seq with another one.
///
/// Two flows may have one flowID, and seq wraps; then writing back a revised instance overwrites
/// all its records. Keys never change, so the index stays true while windows do.
class DuplicateInstances
{
public:
    using Records = std::vector<NumberedInstance>;

    /// Takes up the list, whose records must stay where they are.
    void rebuild(std::list<TTStreamInstance>& instances);

    /// All records with the instance's flowID and seq, in list order; none when it is the only one.
    const Records& recordsOf(const TTStreamInstance& instance) const;

private:
    std::unordered_map<quint32, Records> m_records; ///< by flowID and seq
    Records m_none;
};

} // namespace planner
