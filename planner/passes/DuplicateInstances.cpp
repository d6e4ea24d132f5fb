#include "planner/passes/DuplicateInstances.h"

#include <algorithm>
#include <unordered_set>

namespace planner
{

static std::unordered_set<quint32> keysThatRepeat(const std::list<TTStreamInstance>& instances)
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

/// Calls visit(record, number) for each record that shares its key with another one.
template <typename Instances, typename Visit>
static void forEachRepeated(Instances& instances, const Visit& visit)
{
    const std::unordered_set<quint32> repeated = keysThatRepeat(instances);
    if (repeated.empty())
        return;
    InstanceIndex number;
    for (auto& instance : instances) {
        if (repeated.count(instanceKey(instance)) > 0)
            visit(instance, number);
        ++number;
    }
}

std::unordered_map<quint32, InstanceIndex>
firstRecordsOfRepeatedKeys(const std::list<TTStreamInstance>& instances)
{
    std::unordered_map<quint32, InstanceIndex> firstOfKey;
    std::unordered_map<quint32, InstanceIndex> firstOfNumber;
    forEachRepeated(instances, [&](const TTStreamInstance& instance, InstanceIndex number) {
        const auto first = firstOfKey.emplace(instanceKey(instance), number).first;
        firstOfNumber.emplace(number.value(), first->second);
    });
    return firstOfNumber;
}

DuplicateInstances::DuplicateInstances(std::list<TTStreamInstance>& instances)
{
    forEachRepeated(instances, [this](TTStreamInstance& instance, InstanceIndex number) {
        m_records[instanceKey(instance)].push_back(&instance);
        m_byNumber.emplace(number.value(), &instance);
    });
}

bool DuplicateInstances::contains(InstanceIndex index) const
{
    return !m_byNumber.empty() && m_byNumber.count(index.value()) > 0;
}

void DuplicateInstances::overwriteOthers(InstanceIndex index) const
{
    const TTStreamInstance* revised = m_byNumber.at(index.value());
    for (TTStreamInstance* record : m_records.at(instanceKey(*revised))) {
        if (record != revised)
            *record = *revised;
    }
}

} // namespace planner
