#pragma once

#include "planner/PlanningModel.h"

#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace planner
{

/// The keys, made of flowID and seq, that several instances of the list have.
std::unordered_set<quint32> keysThatRepeat(const std::list<TTStreamInstance>& instances);

/// Finds the records of the master list that share their flowID and seq with another one.
///
/// Two flows may have one flowID, and seq wraps; then writing back a revised instance overwrites
/// all its records. Keys never change, so the index stays true while windows do.
class DuplicateInstances
{
public:
    /// Takes up the list, whose records must stay where they are.
    void rebuild(std::list<TTStreamInstance>& instances);

    /// Whether the record at this place of the list, from 0, is one of several.
    bool contains(quint32 place) const;

    /// Makes all other records with its flowID and seq copies of the one at this place.
    void overwriteOthers(quint32 place) const;

private:
    std::unordered_map<quint32, std::vector<TTStreamInstance*>> m_records; ///< by flowID and seq
    std::unordered_map<quint32, TTStreamInstance*> m_byPlace; ///< the same records by place
};

} // namespace planner
