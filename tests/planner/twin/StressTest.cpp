#include "planner/PreProcess.h"
#include "planner/TTPlanning.h"

#include "tests/planner/twin/NetworkDraft.h"
#include "tests/support/Documents.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"

#include <QLoggingCategory>
#include <QtTest>

#include <numeric>

using namespace planner;

// Inputs at the ends of the number ranges: each ends, with the result that the rules give.

static constexpr int slot_us = 200;

/// Hosts around one switch; every flow goes from host 0, 1, ... to the last host.
class Star
{
public:
    explicit Star(int talkers)
    {
        const int sink = talkers;
        const int bridge = talkers + 1;
        for (int host = 0; host <= sink; ++host)
            m_draft.nodes.push_back({QStringLiteral("H%1").arg(host), false, host, 6, 1});
        m_draft.nodes.push_back({QStringLiteral("S"), true, bridge, 6, talkers + 1});
        for (int host = 0; host <= sink; ++host)
            m_draft.links.push_back({host, bridge, 0, host});
        for (int host = 0; host < talkers; ++host) {
            m_draft.virtualLinks.push_back({host + 1,
                                            {{m_draft.nodes[size_t(host)].name, QStringLiteral("S"),
                                              m_draft.nodes[size_t(sink)].name}}});
        }
    }

    /// A flow that may be sent in these slots and received up to one slot later.
    void addFlow(int talker, quint32 period_us, int firstSlot, int lastSlot)
    {
        DraftFlow flow;
        flow.flowID = static_cast<int>(m_draft.flows.size()) + 1;
        flow.period = period_us;
        flow.vlid = talker + 1;
        flow.talker = m_draft.nodes[size_t(talker)].name;
        flow.txwin = windowText(firstSlot, lastSlot);
        const QString sink = m_draft.nodes[m_draft.nodes.size() - 2].name;
        flow.listeners.push_back({sink, windowText(firstSlot, lastSlot + 1)});
        m_draft.flows.push_back(flow);
    }

    void save() const
    {
        writeFile(QStringLiteral("ResourceXML/vek_input.xml"), documentOf(m_draft));
    }

private:
    NetworkDraft m_draft;
};

/// Both stages on what was saved in the current directory.
struct Run {
    PlanningContext context;
    TTPlanner planner;
    qint32 firstCode = preProcess(context);
    qint32 secondCode = firstCode == code::ok ? TTPlanning(planner) : code::ok;
};

class StressTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // The rounds over the periods of so many flows alone are gigabytes of log.
        QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    }

    void asManyFlowsAsThereAreNumbers()
    {
        const TemporaryFolder folder;
        constexpr int flows = 65535;
        constexpr int talkers = 50;
        Star star(talkers);
        for (int flow = 0; flow < flows; ++flow)
            star.addFlow(flow % talkers, (flows + 5) * slot_us, flow, flow);
        star.save();
        const Run run;
        QCOMPARE(run.firstCode, code::ok);
        QCOMPARE(run.secondCode, code::ok);
        QCOMPARE(run.planner.TTStreamInstanceList.size(), size_t(flows));
        const TTStreamInstance& last = run.planner.TTStreamInstanceList.back();
        QCOMPARE(last.flowID, quint16(flows));
        QCOMPARE(last.paths.front().txslotID, quint32(flows - 1));
        QCOMPARE(last.paths.front().bridges.front().txslotID, quint32(flows));
        const QByteArray output = readFile(QStringLiteral("OutputXML/vek_output.xml"));
        QCOMPARE(output.count("<Instance>"), flows);
    }

    void crowdedPortOfManyFlowsIsResolved()
    {
        const TemporaryFolder folder;
        constexpr int flows = 20000;
        Star star(1);
        for (int flow = 0; flow < flows; ++flow)
            star.addFlow(0, (flows + 20) * slot_us, 0, flows + 1);
        star.save();
        const Run run;
        QCOMPARE(run.firstCode, code::ok);
        QCOMPARE(run.secondCode, code::ok);
        quint32 slot = 0;
        for (const TTStreamInstance& instance : run.planner.TTStreamInstanceList)
            QCOMPARE(instance.paths.front().txslotID, slot++);
    }

    void sequenceNumbersWrap()
    {
        const TemporaryFolder folder;
        constexpr int count = 70000;
        Star star(2);
        star.addFlow(0, 2 * slot_us, 0, 0);
        star.addFlow(1, count * 2 * slot_us, 0, 9);
        star.save();
        const Run run;
        QCOMPARE(run.firstCode, code::ok);
        QCOMPARE(run.context.TTStreamInstanceList.size(), size_t(count + 1));
        const TTStreamInstance& last =
            *std::next(run.context.TTStreamInstanceList.begin(), count - 1);
        QCOMPARE(last.seq, quint16(count - 1 - 65536));
        QCOMPARE(last.paths.front().schedtxwin.start, 2 * (count - 1));
        // The resolved port knows one record for a number; writing it back overwrites the other.
        QCOMPARE(run.secondCode, code::ok);
        const auto first = run.planner.TTStreamInstanceList.begin();
        for (const int number : {0, 1, 4463}) {
            const TTStreamInstance& early = *std::next(first, number);
            const TTStreamInstance& late = *std::next(first, number + 65536);
            QCOMPARE(late.seq, early.seq);
            QCOMPARE(late.paths.front().txslotID, early.paths.front().txslotID);
        }
        QCOMPARE(std::next(first, 5000)->paths.front().txslotID, 10000U);
    }

    void cycleBeyond32BitsIsCut()
    {
        const TemporaryFolder folder;
        constexpr quint32 periods[] = {3000000019U, 1000000007U};
        Star star(2);
        star.addFlow(0, periods[0], 0, 5);
        star.addFlow(1, periods[1], 0, 5);
        star.save();
        const Run run;
        const auto cycle = static_cast<quint32>(quint64(periods[0]) * periods[1]);
        QCOMPARE(std::gcd(periods[0], periods[1]), 1U);
        QCOMPARE(run.firstCode, code::ok);
        QCOMPARE(run.context.clusterCycle, quint64(cycle));
        QCOMPARE(run.secondCode, code::ok);
        QCOMPARE(run.planner.schedCycle, cycle);
        QCOMPARE(run.planner.TTStreamInstanceList.size(),
                 size_t(cycle / periods[0] + cycle / periods[1]));
    }

    void cycleOfTooManyTransmissionsIsRefused()
    {
        const TemporaryFolder folder;
        constexpr int flows = 12000;
        Star star(1);
        for (int flow = 0; flow < flows; ++flow)
            star.addFlow(0, quint32(1000003 + 2 * flow), flow, flow);
        star.save();
        const Run run;
        QVERIFY(run.context.clusterCycle <= 0xFFFFFFFFU);
        size_t instances = 0;
        for (int flow = 0; flow < flows; ++flow)
            instances += run.context.clusterCycle / quint32(1000003 + 2 * flow);
        QVERIFY(3 * instances > maxHops); // of a cycle that is whatever 32 bits have left of it
        QCOMPARE(run.firstCode, code::unreadable);
        QVERIFY(!QFile::exists(QStringLiteral("OutputXML/vek_hs.xml")));
    }
};

QTEST_GUILESS_MAIN(StressTest)
#include "StressTest.moc"
