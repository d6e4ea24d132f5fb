#include "tests/verification/NaiveJudge.h"

#include "tests/planner/twin/InputReader.h"

#include <tinyxml2.h>

#include <cstdlib>
#include <numeric>
#include <vector>

namespace
{

using tinyxml2::XMLElement;

struct Row {
    int flow = 0;
    int seq = 0;
    int node = 0;
    int inport = -1;
    int outport = -1;
    qint64 receive = 0;
    qint64 send = 0;
};

struct Plan {
    qint64 cycle = 0;
    qint64 slotLength = 0;
    std::vector<Row> senders;
    std::vector<Row> listeners;
    std::vector<std::pair<int, int>> instances;
};

qint64 valueOf(const XMLElement* parent, const char* name)
{
    return parent->FirstChildElement(name)->Int64Text();
}

int intOf(const XMLElement* parent, const char* name)
{
    return static_cast<int>(valueOf(parent, name));
}

void readInstance(const XMLElement* instance, Plan& plan)
{
    Row row;
    row.flow = intOf(instance, "flowID");
    row.seq = intOf(instance, "seq");
    plan.instances.push_back({row.flow, row.seq});
    const XMLElement* rows = instance->FirstChildElement("path_slot");
    const XMLElement* talker = rows->FirstChildElement("talker");
    row.node = intOf(talker, "nodeID");
    row.outport = intOf(talker, "outport");
    row.send = valueOf(talker, "txslotID");
    plan.senders.push_back(row);
    for (auto* bridge = rows->FirstChildElement("bridges")->FirstChildElement(); bridge;
         bridge = bridge->NextSiblingElement()) {
        row.node = intOf(bridge, "nodeID");
        row.inport = intOf(bridge, "inport");
        row.outport = intOf(bridge, "outport");
        row.receive = valueOf(bridge, "rxslotID");
        row.send = valueOf(bridge, "txslotID");
        plan.senders.push_back(row);
    }
    for (auto* listener = rows->FirstChildElement("listeners")->FirstChildElement(); listener;
         listener = listener->NextSiblingElement()) {
        row.node = intOf(listener, "nodeID");
        row.inport = intOf(listener, "inport");
        row.outport = -1;
        row.receive = valueOf(listener, "rxslotID");
        plan.listeners.push_back(row);
    }
}

Plan readSchedule(const QByteArray& bytes)
{
    tinyxml2::XMLDocument document;
    document.Parse(bytes.constData(), static_cast<size_t>(bytes.size()));
    const XMLElement* root = document.FirstChildElement();
    Plan plan;
    plan.cycle = valueOf(root, "schedCycle");
    plan.slotLength = valueOf(root, "slotLen");
    for (auto* flow = root->FirstChildElement("flows")->FirstChildElement(); flow;
         flow = flow->NextSiblingElement()) {
        for (auto* instance = flow->FirstChildElement(); instance;
             instance = instance->NextSiblingElement())
            readInstance(instance, plan);
    }
    return plan;
}

/// The one row that fits; null when none does, or several.
const Row* onlyRow(const std::vector<Row>& rows, const Row& wanted)
{
    const Row* found = nullptr;
    for (const Row& row : rows) {
        const bool fits = row.flow == wanted.flow && row.seq == wanted.seq &&
                          row.node == wanted.node && row.inport == wanted.inport &&
                          row.outport == wanted.outport;
        if (fits && found)
            return nullptr;
        if (fits)
            found = &row;
    }
    return found;
}

/// Whether two sendings, repeated for ever, are on the wire at one time.
bool meet(const Row& a, const Row& b, qint64 cycle)
{
    const qint64 difference = (a.send - b.send) * 200;
    for (qint64 turn = -100; turn <= 100; ++turn) {
        if (std::llabs(difference + turn * cycle) < 200)
            return true;
    }
    return false;
}

class Judgement
{
public:
    explicit Judgement(const QByteArray& schedule) : m_plan(readSchedule(schedule))
    {
        twin::readInputDocument(m_input);
    }

    QString run()
    {
        judgeCycle();
        judgeMeetings();
        size_t expectedInstances = 0;
        size_t expectedSenders = 0;
        size_t expectedListeners = 0;
        for (const twin::Flow& flow : m_input.flows) {
            const qint64 count = m_plan.cycle / flow.period;
            for (qint64 seq = 0; seq < count; ++seq)
                judgeTransmission(flow, static_cast<int>(seq));
            expectedInstances += static_cast<size_t>(count);
            expectedSenders += static_cast<size_t>(count) * distinctSenders(flow);
            expectedListeners += static_cast<size_t>(count) * flow.paths.size();
        }
        require(m_plan.instances.size() == expectedInstances, "instances");
        require(m_plan.senders.size() == expectedSenders, "senders");
        require(m_plan.listeners.size() == expectedListeners, "listeners");
        return m_unsound;
    }

private:
    void require(bool holds, const char* what)
    {
        if (!holds && m_unsound.isEmpty())
            m_unsound = QString::fromLatin1(what);
    }

    void judgeCycle()
    {
        quint64 common = 1;
        for (const twin::Flow& flow : m_input.flows)
            common = std::lcm(common, quint64(flow.period));
        require(m_plan.slotLength == 200, "slot length");
        require(m_plan.cycle == static_cast<qint64>(common), "cycle");
    }

    void judgeMeetings()
    {
        for (const Row& a : m_plan.senders) {
            for (const Row& b : m_plan.senders) {
                const bool other = a.flow != b.flow || a.seq != b.seq;
                if (other && a.node == b.node && a.outport == b.outport)
                    require(!meet(a, b, m_plan.cycle), "meeting");
            }
        }
    }

    static size_t distinctSenders(const twin::Flow& flow)
    {
        std::vector<std::array<int, 3>> senders;
        for (const twin::Path& path : flow.paths) {
            for (const twin::Hop& hop : path.bridges) {
                const std::array<int, 3> sender{hop.nodeID, hop.inport, hop.outport};
                bool known = false;
                for (const auto& other : senders)
                    known = known || other == sender;
                if (!known)
                    senders.push_back(sender);
            }
        }
        return senders.size() + 1;
    }

    void judgeTransmission(const twin::Flow& flow, int seq)
    {
        const qint64 shift = qint64(seq) * (flow.period / 200);
        for (const twin::Path& path : flow.paths)
            judgePath(path, flow.flowID, seq, shift);
    }

    void judgePath(const twin::Path& path, int flow, int seq, qint64 shift)
    {
        const Row* before =
            onlyRow(m_plan.senders, {flow, seq, path.talkerNodeID, -1, path.talkerOutport, 0, 0});
        require(before, "talker");
        if (!before)
            return;
        require(before->send - shift >= path.schedtxwin.start, "send window");
        require(before->send - shift <= path.schedtxwin.end, "send window");
        for (const twin::Hop& hop : path.bridges) {
            const Row* now =
                onlyRow(m_plan.senders, {flow, seq, hop.nodeID, hop.inport, hop.outport, 0, 0});
            require(now, "switch");
            if (!now)
                return;
            require(now->receive == before->send, "receive slot");
            require(now->send > before->send, "order");
            require(now->send - before->send <= hop.buffernum, "buffers");
            before = now;
        }
        const Row* listener = onlyRow(
            m_plan.listeners, {flow, seq, path.listenerNodeID, path.listenerInport, -1, 0, 0});
        require(listener, "listener");
        if (!listener)
            return;
        require(listener->receive == before->send, "listener slot");
        require(listener->receive - shift >= path.schedrxwin.start, "receive window");
        require(listener->receive - shift <= path.schedrxwin.end, "receive window");
    }

    twin::Context m_input;
    const Plan m_plan;
    QString m_unsound;
};

} // namespace

QString unsoundness(const QByteArray& schedule)
{
    return Judgement(schedule).run();
}
