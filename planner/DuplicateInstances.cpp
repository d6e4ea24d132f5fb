#include "planner/DuplicateInstances.h"

#include "planner/PortLookup.h"

#include <algorithm>

namespace planner
{

static std::vector<quint32> keysThatRepeat(const std::list<TTStreamInstance>& instances)
{
    std::vector<quint32> keys;
    keys.reserve(instances.size());
    for (const TTStreamInstance& instance : instances)
        keys.push_back(instanceKey(instance));
    std::sort(keys.begin(), keys.end());
    std::vector<quint32> repeated;
    for (size_t i = 1; i < keys.size(); ++i) {
        if (keys[i] == keys[i - 1])
            repeated.push_back(keys[i]);
    }
    return repeated;
}

void DuplicateInstances::rebuild(std::list<TTStreamInstance>& instances)
{
    m_records.clear();
    for (const quint32 key : keysThatRepeat(instances))
        m_records[key];
    if (m_records.empty())
        return;
    quint32 number = 0;
    for (TTStreamInstance& instance : instances) {
        const auto found = m_records.find(instanceKey(instance));
        if (found != m_records.end())
            found->second.push_back({&instance, number});
        ++number;
    }
}

const DuplicateInstances::Records&
DuplicateInstances::recordsOf(const TTStreamInstance& instance) const
{
    if (m_records.empty())
        return m_none;
    const auto found = m_records.find(instanceKey(instance));
    return found != m_records.end() ? found->second : m_none;
}

} // namespace planner
