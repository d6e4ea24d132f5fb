#include "tests/planner/twin/ScheduleRows.h"

#include "tests/support/Failure.h"

#include <tinyxml2.h>

#include <QString>

#include <cstdio>

namespace
{

using tinyxml2::XMLElement;

qint64 number(const XMLElement* parent, const char* name)
{
    const XMLElement* element = parent->FirstChildElement(name);
    return element ? QByteArray(element->GetText()).toLongLong() : -1;
}

/// Slots are written without a sign although windows may begin before the cycle does.
qint64 slot(const XMLElement* parent)
{
    return static_cast<qint32>(static_cast<quint32>(number(parent, "txslotID")));
}

CheckedWindow window(const XMLElement* parent)
{
    long long start = 0;
    long long end = 0;
    const char* text = parent->FirstChildElement("schedtxwin")->GetText();
    if (std::sscanf(text, "[%lld,%lld]", &start, &end) != 2)
        failTest(QByteArray("no window: ") + text);
    return {start, end};
}

CheckedHop sender(const XMLElement* element)
{
    CheckedHop hop;
    hop.nodeID = static_cast<int>(number(element, "nodeID"));
    hop.inport = static_cast<int>(number(element, "inport"));
    hop.outport = static_cast<int>(number(element, "outport"));
    return hop;
}

template <typename Visit>
void forEach(const XMLElement* parent, const char* name, Visit visit)
{
    for (auto* e = parent->FirstChildElement(name); e; e = e->NextSiblingElement(name))
        visit(e);
}

template <typename Read>
std::vector<CheckedInstance> readInstances(const QByteArray& bytes, Read read)
{
    tinyxml2::XMLDocument document;
    if (document.Parse(bytes.constData(), static_cast<size_t>(bytes.size())) !=
        tinyxml2::XML_SUCCESS) {
        failTest("the checker was given a document that does not load");
        return {};
    }
    std::vector<CheckedInstance> instances;
    const XMLElement* flows = document.FirstChildElement()->FirstChildElement("flows");
    forEach(flows, "flow", [&](const XMLElement* flow) {
        forEach(flow, "Instance", [&](const XMLElement* element) {
            CheckedInstance instance;
            instance.flowID = static_cast<int>(number(element, "flowID"));
            instance.seq = static_cast<int>(number(element, "seq"));
            read(element, instance);
            instances.push_back(instance);
        });
    });
    return instances;
}

} // namespace

std::vector<CheckedInstance> readWindows(const QByteArray& document)
{
    return readInstances(document, [](const XMLElement* element, CheckedInstance& instance) {
        const XMLElement* windows = element->FirstChildElement("path_schedwin");
        forEach(windows, "path", [&](const XMLElement* path) {
            std::vector<CheckedHop> hops;
            const auto add = [&](const XMLElement* e) {
                hops.push_back(sender(e));
                hops.back().window = window(e);
            };
            forEach(path, "talker", add);
            forEach(path, "bridge", add);
            instance.paths.push_back(hops);
        });
    });
}

std::vector<CheckedInstance> readSchedule(const QByteArray& document)
{
    return readInstances(document, [](const XMLElement* element, CheckedInstance& instance) {
        const auto add = [&](const XMLElement* e) {
            instance.senders.push_back(sender(e));
            instance.senders.back().slot = slot(e);
        };
        const XMLElement* slotTree = element->FirstChildElement("path_slot");
        forEach(slotTree, "talker", add);
        forEach(slotTree->FirstChildElement("bridges"), "bridge", add);
    });
}
