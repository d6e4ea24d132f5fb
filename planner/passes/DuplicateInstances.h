#pragma once

#include "planner/PlanningModel.h"
#include "planner/passes/BoardIndex.h"

#include <unordered_map>
#include <vector>

namespace planner
{

/// For each record that shares its flowID and seq with others, by its number in the list: the first
/// of them.
std::unordered_map<quint32, InstanceIndex>
firstRecordsOfRepeatedKeys(const std::list<TTStreamInstance>& instances);

/// Finds the records of the master list that share their flowID and seq with another one.
///
/// Two flows may have one flowID, and seq wraps; then writing back a revised instance overwrites
/// all its records. Keys never change, so the index stays true while windows do.
class DuplicateInstances
{
public:
    DuplicateInstances() = default;
    /// Takes up the list, whose records must stay where they are.
    explicit DuplicateInstances(std::list<TTStreamInstance>& instances);

    bool contains(InstanceIndex index) const;

    /// Makes all other records with its flowID and seq copies of this one.
    void overwriteOthers(InstanceIndex index) const;

private:
    std::unordered_map<quint32, std::vector<TTStreamInstance*>> m_records; ///< by flowID and seq
    std::unordered_map<quint32, TTStreamInstance*> m_byNumber; ///< the same records by number
};

} // namespace planner
