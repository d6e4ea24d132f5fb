#include "planner/ConflictAnalysis.h"
#include "planner/ConflictResolution.h"
#include "planner/TTPlanning.h"

#include "tests/planner/twin/ConflictAnalysis.h"
#include "tests/planner/twin/ConflictResolution.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RandomSource.h"

#include <QtTest>

// The steps of the second stage one by one, in any order, on records made by hand.

namespace
{

planner::SlotWindow productWindow(const twin::Window& window)
{
    return {window.end, window.start};
}

twin::Window twinWindow(const planner::SlotWindow& window)
{
    return {window.end, window.start};
}

planner::TTStreamInstance productInstance(const twin::Instance& instance)
{
    planner::TTStreamInstance made;
    made.flowID = instance.flowID;
    made.vlid = instance.vlid;
    made.seq = instance.seq;
    for (const twin::Path& path : instance.paths) {
        planner::VirtualLinkPath way;
        way.talkerNodeID = path.talkerNodeID;
        way.talkerOutport = path.talkerOutport;
        way.schedtxwin = productWindow(path.schedtxwin);
        way.txslotID = path.txslotID;
        for (const twin::Hop& hop : path.bridges) {
            way.bridges.emplace_back();
            way.bridges.back().nodeID = hop.nodeID;
            way.bridges.back().outport = hop.outport;
            way.bridges.back().schedtxwin = productWindow(hop.schedtxwin);
            way.bridges.back().txslotID = hop.txslotID;
        }
        way.schedrxwin = productWindow(path.schedrxwin);
        made.paths.push_back(way);
    }
    return made;
}

twin::Instance twinInstance(const planner::TTStreamInstance& instance)
{
    twin::Instance made;
    made.flowID = instance.flowID;
    made.vlid = instance.vlid;
    made.seq = instance.seq;
    for (const planner::VirtualLinkPath& path : instance.paths) {
        twin::Path way;
        way.talkerNodeID = path.talkerNodeID;
        way.talkerOutport = path.talkerOutport;
        way.schedtxwin = twinWindow(path.schedtxwin);
        way.txslotID = path.txslotID;
        for (const planner::BridgeHop& hop : path.bridges) {
            way.bridges.emplace_back();
            way.bridges.back().nodeID = hop.nodeID;
            way.bridges.back().outport = hop.outport;
            way.bridges.back().schedtxwin = twinWindow(hop.schedtxwin);
            way.bridges.back().txslotID = hop.txslotID;
        }
        way.schedrxwin = twinWindow(path.schedrxwin);
        made.paths.push_back(way);
    }
    return made;
}

twin::Instance randomInstance(RandomSource& random)
{
    twin::Instance made;
    made.flowID = static_cast<quint16>(random.between(1, 6));
    made.seq = static_cast<quint16>(random.below(2));
    made.vlid = static_cast<quint16>(random.below(9));
    const auto anyWindow = [&random](int from) {
        const int start = from + random.below(4);
        return twin::Window{start + random.between(-1, 9), start};
    };
    for (int paths = random.below(4); paths > 0; --paths) {
        twin::Path path;
        path.talkerNodeID = static_cast<quint16>(random.between(1, 3));
        path.talkerOutport = static_cast<quint16>(random.below(2));
        path.schedtxwin = anyWindow(0);
        for (int hops = random.below(4); hops > 0; --hops) {
            twin::Hop hop;
            hop.nodeID = static_cast<quint16>(random.between(3, 6));
            hop.outport = static_cast<quint16>(random.below(2));
            hop.schedtxwin = anyWindow(2);
            path.bridges.push_back(hop);
        }
        path.schedrxwin = anyWindow(4);
        made.paths.push_back(path);
    }
    return made;
}

/// Product and twin on the same records, stepped side by side.
class Pair
{
public:
    explicit Pair(RandomSource& random) : m_random(random)
    {
        m_twin.hopBufferNum = static_cast<quint16>(random.below(5));
        m_twin.maxRxSlot = random.between(8, 30);
        for (int count = random.between(1, 9); count > 0; --count)
            m_twin.instances.push_back(randomInstance(random));
        m_product.hopBufferNum = m_twin.hopBufferNum;
        m_product.maxRxSlot = m_twin.maxRxSlot;
        for (const twin::Instance& instance : m_twin.instances)
            m_product.TTStreamInstanceList.push_back(productInstance(instance));
    }

    /// One call, on both sides; what it returned and logged, the product's first.
    std::array<QStringList, 2> step()
    {
        const auto nodeID = static_cast<quint16>(m_random.between(1, 6));
        const auto outport = static_cast<quint16>(m_random.below(2));
        const int call = m_product.nodeList.empty() ? 0 : m_random.below(6);
        return {logOf([&] { return callProduct(call, nodeID, outport); }),
                logOf([&] { return callTwin(call, nodeID, outport); })};
    }

    /// All passes at once against one after the other; false when the twin does not come to an end.
    bool resolveAll()
    {
        const LogCapture log;
        planner::resolveConflicts(m_product);
        m_twin.nodeList = twin::convertInstancesToNodes(m_twin.instances);
        for (int pass = 0; pass < 100; ++pass) {
            if (twin::calculateConflictDegree(m_twin) <= 0)
                return true;
        }
        return false;
    }

    bool areEqual() const
    {
        if (m_product.TTStreamInstanceList.size() != m_twin.instances.size())
            return false;
        auto record = m_product.TTStreamInstanceList.begin();
        for (const twin::Instance& instance : m_twin.instances) {
            if (!(twinInstance(*record++) == instance))
                return false;
        }
        return portsAreEqual();
    }

private:
    template <typename Call>
    static QStringList logOf(const Call& call)
    {
        const LogCapture log;
        const qint32 result = call();
        return log.lines() + QStringList{QString::number(result)};
    }

    qint32 callProduct(int call, quint16 nodeID, quint16 outport)
    {
        switch (call) {
        case 0: {
            const std::list<planner::TTStreamInstance> copy = m_product.TTStreamInstanceList;
            m_product.nodeList = planner::convertInstancesToNodes(copy);
            return 0;
        }
        case 1:
            return planner::conflictResolve(m_product, nodeID, outport);
        case 2:
            planner::flowStatusRevise(m_product, nodeID, outport);
            return 0;
        case 3:
            return planner::reviseWindows(m_product, nodeID, outport,
                                          m_product.TTStreamInstanceList.front());
        case 4: // the records behind the grouping change
            m_product.TTStreamInstanceList.push_back(m_product.TTStreamInstanceList.front());
            m_product.TTStreamInstanceList.pop_front();
            return 0;
        default:
            return planner::calculateConflictDegree(m_product);
        }
    }

    qint32 callTwin(int call, quint16 nodeID, quint16 outport)
    {
        switch (call) {
        case 0:
            m_twin.nodeList = twin::convertInstancesToNodes(m_twin.instances);
            return 0;
        case 1:
            return twin::conflictResolve(m_twin, nodeID, outport);
        case 2:
            twin::flowStatusRevise(m_twin, nodeID, outport);
            return 0;
        case 3:
            twin::reviseWindows(m_twin, nodeID, outport, m_twin.instances.front());
            return 0;
        case 4:
            m_twin.instances.push_back(m_twin.instances.front());
            m_twin.instances.pop_front();
            return 0;
        default:
            return twin::calculateConflictDegree(m_twin);
        }
    }

    bool portsAreEqual() const
    {
        if (m_product.nodeList.size() != m_twin.nodeList.size())
            return false;
        auto node = m_product.nodeList.begin();
        for (const twin::Node& expected : m_twin.nodeList) {
            if (node->nodeID != expected.nodeID ||
                !std::equal(node->outports.begin(), node->outports.end(), expected.outports.begin(),
                            expected.outports.end(), &Pair::isSamePort))
                return false;
            ++node;
        }
        return true;
    }

    static bool isSamePort(const planner::NodeOutport& port, const twin::Outport& expected)
    {
        return port.outport == expected.outport && port.degree == expected.degree &&
               std::equal(port.instances.begin(), port.instances.end(), expected.instances.begin(),
                          expected.instances.end(),
                          [](const planner::InstanceCopy& copy, const twin::Instance& instance) {
                              return twinInstance(*copy) == instance;
                          });
    }

    RandomSource& m_random;
    planner::TTPlanner m_product;
    twin::Planner m_twin;
};

} // namespace

class StepComparisonTest : public QObject
{
    Q_OBJECT

private slots:
    void anyOrderOfCallsLeavesWhatTheTwinLeaves()
    {
        RandomSource random(31);
        int resolutions = 0;
        for (int round = 0; round < 4000; ++round) {
            Pair pair(random);
            for (int step = 0; step < 12; ++step) {
                const auto [product, twin] = pair.step();
                QCOMPARE(product, twin);
                QVERIFY2(pair.areEqual(), qPrintable(product.join(QLatin1Char('\n'))));
                resolutions += product.count(QStringLiteral("Resolve: 0"));
            }
        }
        QVERIFY(resolutions > 2000);
    }

    void allPassesTogetherLeaveWhatTheTwinLeaves()
    {
        RandomSource random(33);
        int ended = 0;
        for (int round = 0; round < 4000; ++round) {
            Pair pair(random);
            if (!pair.resolveAll())
                continue;
            QVERIFY2(pair.areEqual(), qPrintable(QStringLiteral(u"round %1").arg(round)));
            ++ended;
        }
        QVERIFY(ended > 3800);
    }

    // A grouping adds the instances one by one, as anybody may.
    void groupingIsAddingOneByOne()
    {
        const LogCapture log;
        RandomSource random(32);
        for (int round = 0; round < 500; ++round) {
            std::list<planner::TTStreamInstance> instances;
            for (int count = random.between(1, 12); count > 0; --count)
                instances.push_back(productInstance(randomInstance(random)));
            std::list<planner::Node> added;
            for (const planner::TTStreamInstance& instance : instances) {
                const auto copy = std::make_shared<const planner::TTStreamInstance>(instance);
                for (const planner::VirtualLinkPath& path : instance.paths) {
                    planner::addInstanceToPort(added, copy, path.talkerNodeID, path.talkerOutport);
                    for (const planner::BridgeHop& hop : path.bridges)
                        planner::addInstanceToPort(added, copy, hop.nodeID, hop.outport);
                }
            }
            QCOMPARE(layoutOf(planner::convertInstancesToNodes(instances)), layoutOf(added));
        }
    }

private:
    static QStringList layoutOf(const std::list<planner::Node>& nodes)
    {
        QStringList layout;
        for (const planner::Node& node : nodes) {
            for (const planner::NodeOutport& port : node.outports) {
                layout.append(QStringLiteral(u"%1.%2 degree %3")
                                  .arg(node.nodeID)
                                  .arg(port.outport)
                                  .arg(port.degree));
                for (const planner::InstanceCopy& copy : port.instances)
                    layout.append(QStringLiteral(u" %1/%2 %3")
                                      .arg(copy->flowID)
                                      .arg(copy->seq)
                                      .arg(copy->paths.size()));
            }
        }
        return layout;
    }
};

QTEST_APPLESS_MAIN(StepComparisonTest)
#include "StepComparisonTest.moc"
