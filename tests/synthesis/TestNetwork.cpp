#include "tests/synthesis/TestNetwork.h"

static DraftNode node(const char* name, bool isSwitch, int nodeID)
{
    DraftNode made;
    made.name = QString::fromLatin1(name);
    made.isSwitch = isSwitch;
    made.nodeID = nodeID;
    made.buffernum = 4;
    return made;
}

TestNetwork::TestNetwork()
{
    draft.nodes = {node("A", false, 0), node("B", false, 1), node("Y", false, 2),
                   node("Z", false, 3), node("S", true, 4),  node("T", true, 5)};
    const int ends[][2] = {{0, 4}, {1, 4}, {2, 4}, {4, 5}, {5, 3}};
    for (const auto& end : ends) {
        DraftLink link;
        link.a = end[0];
        link.b = end[1];
        link.portA = draft.nodes[static_cast<size_t>(link.a)].ports++;
        link.portB = draft.nodes[static_cast<size_t>(link.b)].ports++;
        draft.links.push_back(link);
    }
}

DraftFlow& TestNetwork::addFlow(const QStringList& path, quint32 period, const QString& txwin,
                                const QString& rxwin)
{
    DraftFlow flow;
    flow.flowID = flow.vlid = static_cast<int>(draft.flows.size()) + 1;
    flow.period = period;
    flow.talker = path.first();
    flow.txwin = txwin;
    draft.flows.push_back(flow);
    DraftVirtualLink link;
    link.vlid = flow.vlid;
    draft.virtualLinks.push_back(link);
    addListener(path, rxwin);
    return draft.flows.back();
}

void TestNetwork::addListener(const QStringList& path, const QString& rxwin)
{
    draft.virtualLinks.back().paths.push_back(path);
    draft.flows.back().listeners.push_back({path.last(), rxwin});
}

void TestNetwork::addOverlappingPair(int start_us, quint32 period)
{
    const auto until = [start_us](int length) {
        return QStringLiteral("[%1,%2]").arg(start_us).arg(start_us + length);
    };
    addFlow({QStringLiteral("A"), QStringLiteral("S"), QStringLiteral("T"), QStringLiteral("Z")},
            period, until(200), until(600));
    addFlow({QStringLiteral("B"), QStringLiteral("S"), QStringLiteral("T"), QStringLiteral("Z")},
            period, until(200), until(1000));
}
