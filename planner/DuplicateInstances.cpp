#include "planner/DuplicateInstances.h"

#include "planner/PairKey.h"

#include <algorithm>

namespace planner
{

std::unordered_set<quint32> keysThatRepeat(const std::list<TTStreamInstance>& instances)
{
    std::vector<quint32> keys;
    keys.reserve(instances.size());
    for (const TTStreamInstance& instance : instances)
        keys.push_back(instanceKey(instance));
    std::sort(keys.begin(), keys.end());
    std::unordered_set<quint32> repeated;
    for (size_t i = 1; i < keys.size(); ++i) {
        if (keys[i] == keys[i - 1])
            repeated.insert(keys[i]);
    }
    return repeated;
}

void DuplicateInstances::rebuild(std::list<TTStreamInstance>& instances)
{
    m_records.clear();
    m_byPlace.clear();
    for (const quint32 key : keysThatRepeat(instances))
        m_records[key];
    if (m_records.empty())
        return;
    quint32 place = 0;
    for (TTStreamInstance& instance : instances) {
        const auto found = m_records.find(instanceKey(instance));
        if (found != m_records.end()) {
            found->second.push_back(&instance);
            m_byPlace.emplace(place, &instance);
        }
        ++place;
    }
}

bool DuplicateInstances::contains(quint32 place) const
{
    return !m_byPlace.empty() && m_byPlace.find(place) != m_byPlace.end();
}

void DuplicateInstances::overwriteOthers(quint32 place) const
{
    const TTStreamInstance* revised = m_byPlace.at(place);
    for (TTStreamInstance* record : m_records.at(instanceKey(*revised))) {
        if (record != revised)
            *record = *revised;
    }
}

} // namespace planner
