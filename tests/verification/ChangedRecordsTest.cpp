#include "verification/PlanVerifier.h"

#include "tests/support/Documents.h"

#include <QtTest>

// The records of the sound plan, changed in a number or two, give just these findings: the edges
// of each rule.

using namespace verification;

namespace
{

QString fileOf(const char* document)
{
    return QStringLiteral(ROTUNDA_SOURCE_FOLDER "/tests/verification/cases/sound-plan/") +
           QString::fromLatin1(document);
}

/// Flow 1 goes A, S1, S2, B twice a cycle of 20 slots; flow 2 once, and at S2 also to C.
PlanRecords soundPlan()
{
    return readPlan({fileOf("vek_input.xml")}, {fileOf("vek_output.xml")});
}

struct Change {
    const char* name;
    void (*make)(PlanRecords&);
    const char* lines; ///< of the findings
};

// Places in the records of the sound plan.
enum Hop { A10, S110, S210, A11, S111, S211, A20, S120, S220B, S220C };
enum Listener { B10, B11, B20, C20 };

std::vector<ScheduledHop>& hops(PlanRecords& plan)
{
    return plan.schedule.hops;
}

std::vector<ScheduledListener>& listeners(PlanRecords& plan)
{
    return plan.schedule.listeners;
}

NetworkFlow& flow(PlanRecords& plan, int number)
{
    return plan.network.flows[static_cast<size_t>(number - 1)];
}

NetworkNode& node(PlanRecords& plan, int nodeID)
{
    for (NetworkNode& node : plan.network.nodes) {
        if (node.nodeID == nodeID)
            return node;
    }
    return plan.network.nodes.front();
}

void setFrame(PlanRecords& plan, int bytes, qint64 bandwidth_Mbps)
{
    flow(plan, 1).size = bytes;
    flow(plan, 1).slowestLink_Mbps = bandwidth_Mbps;
}

/// Takes out one transmission; its rows stay, as nobody's.
void takeOut(PlanRecords& plan, int place)
{
    plan.schedule.transmissions.erase(plan.schedule.transmissions.begin() + place);
}

void swapHops(PlanRecords& plan, Hop a, Hop b)
{
    std::swap(hops(plan)[a], hops(plan)[b]);
}

const Change pathChanges[] = {
    {"wait as long as the buffers", [](PlanRecords& plan) { node(plan, 12).buffers = 1; }, ""},
    {"wait one longer", [](PlanRecords& plan) { node(plan, 12).buffers = 0; },
     "fault, wait beyond the buffers, node 12, port 2, slot 2, flow 1-0, 1 not in [1,0]\n"
     "fault, wait beyond the buffers, node 12, port 2, slot 5, flow 2-0, 1 not in [1,0]\n"
     "fault, wait beyond the buffers, node 12, port 2, slot 12, flow 1-1, 1 not in [1,0]\n"
     "fault, wait beyond the buffers, node 12, port 3, slot 5, flow 2-0, 1 not in [1,0]\n"
     "remark, more frames than buffers, node 12, slot 2, 1 instead of 0"},
    {"late hop of a switch without buffers",
     [](PlanRecords& plan) {
         node(plan, 12).buffers = 0;
         hops(plan)[S210].sendSlot = 1;
     },
     "fault, sent before it came, node 12, port 2, slot 1, flow 1-0, 1 instead of 2\n"
     "fault, wait beyond the buffers, node 12, port 2, slot 5, flow 2-0, 1 not in [1,0]\n"
     "fault, wait beyond the buffers, node 12, port 2, slot 12, flow 1-1, 1 not in [1,0]\n"
     "fault, wait beyond the buffers, node 12, port 3, slot 5, flow 2-0, 1 not in [1,0]\n"
     "fault, outside the receive window, node 2, port 1, slot 1, flow 1-0, 1 not in [2,4]\n"
     "fault, receive slot of a listener, node 2, port 1, slot 2, flow 1-0, 2 instead of 1\n"
     "remark, more frames than buffers, node 12, slot 5, 1 instead of 0"},
    {"late hop of a host on the path",
     [](PlanRecords& plan) {
         node(plan, 12).isSwitch = false;
         hops(plan)[S210].sendSlot = 1;
     },
     "fault, sent before it came, node 12, port 2, slot 1, flow 1-0, 1 instead of 2\n"
     "fault, outside the receive window, node 2, port 1, slot 1, flow 1-0, 1 not in [2,4]\n"
     "fault, receive slot of a listener, node 2, port 1, slot 2, flow 1-0, 2 instead of 1\n"
     "remark, path through a host, node 12, flow 1\n"
     "remark, path through a host, node 12, flow 2"},
    {"host next to the talker", [](PlanRecords& plan) { node(plan, 11).isSwitch = false; },
     "remark, path through a host, node 11, flow 1\n"
     "remark, path through a host, node 11, flow 2"},
    {"expected one later behind a sender of two paths",
     [](PlanRecords& plan) { hops(plan)[S220C].receiveSlot = 5; },
     "fault, receive slot of a switch, node 12, port 1, slot 5, flow 2-0, 5 instead of 4"},
    {"expected earlier behind a sender of one path",
     [](PlanRecords& plan) { hops(plan)[S210].receiveSlot = 0; },
     "fault, receive slot of a switch, node 12, port 1, slot 0, flow 1-0, 0 instead of 1"},
    {"listener of a branch expects late", [](PlanRecords& plan) { listeners(plan)[C20].slot = 6; },
     "fault, receive slot of a listener, node 3, port 1, slot 6, flow 2-0, 6 instead of 5"},
    {"listener behind a sender of two paths expects late",
     [](PlanRecords& plan) {
         flow(plan, 2).hops[3].paths = 2;
         listeners(plan)[C20].slot = 6;
     },
     "remark, receive slot of a listener, node 3, port 1, slot 6, flow 2-0, 6 instead of 5"},
    {"listener without window gets it anywhere",
     [](PlanRecords& plan) {
         flow(plan, 1).listeners[0].hasWindow = false;
         listeners(plan)[B10].slot = 9;
     },
     "fault, receive slot of a listener, node 2, port 1, slot 9, flow 1-0, 9 instead of 2\n"
     "remark, listener without a receive window, node 2, port 1, flow 1"},
    {"window of the listener is empty",
     [](PlanRecords& plan) {
         flow(plan, 2).listeners[1].window = {5, 4};
     },
     "fault, outside the receive window, node 3, port 1, slot 5, flow 2-0, 5 not in [5,4]"},
    {"window begins as the frame comes",
     [](PlanRecords& plan) {
         flow(plan, 2).listeners[1].window = {5, 5};
     },
     ""},
    {"rows without the listener still have their arrival",
     [](PlanRecords& plan) {
         plan.schedule.transmissions[0].listenerCount = 0;
         flow(plan, 1).listeners[0].window = {3, 9};
     },
     "fault, outside the receive window, node 2, port 1, slot 2, flow 1-0, 2 not in [3,9]\n"
     "fault, outside the receive window, node 2, port 1, slot 12, flow 1-1, 12 not in [13,19]\n"
     "fault, missing hop, node 2, port 1, flow 1-0"},
    {"last sender without a row",
     [](PlanRecords& plan) { --plan.schedule.transmissions[0].hopCount; },
     "fault, missing hop, node 12, port 2, flow 1-0"},
    {"neither last sender nor listener with a row",
     [](PlanRecords& plan) {
         --plan.schedule.transmissions[0].hopCount;
         plan.schedule.transmissions[0].listenerCount = 0;
     },
     "fault, missing hop, node 2, port 1, flow 1-0\n"
     "fault, missing hop, node 12, port 2, flow 1-0"},
    {"talker of a later transmission without a row",
     [](PlanRecords& plan) {
         ScheduledTransmission& transmission = plan.schedule.transmissions[1];
         transmission.hasTalker = false;
         ++transmission.firstHop;
         --transmission.hopCount;
     },
     "fault, missing hop, node 1, port 1, flow 1-1"},
    {"row in place of another of the path",
     [](PlanRecords& plan) { hops(plan)[S220C] = hops(plan)[S220B]; },
     "fault, missing hop, node 12, port 3, flow 2-0\n"
     "fault, port the path does not use, node 12, port 2, slot 5, flow 2-0"},
    {"rows in another order",
     [](PlanRecords& plan) {
         swapHops(plan, S110, S210);
         swapHops(plan, A20, S220C);
         std::swap(listeners(plan)[B20], listeners(plan)[C20]);
     },
     ""},
    {"row at another port of arrival", [](PlanRecords& plan) { hops(plan)[S110].inport = 9; },
     "fault, missing hop, node 11, port 2, flow 1-0\n"
     "fault, port the path does not use, node 11, port 2, slot 1, flow 1-0"},
    {"row of a switch at a talker", [](PlanRecords& plan) { hops(plan)[S110].node = 1; },
     "fault, missing hop, node 11, port 2, flow 1-0\n"
     "fault, hop off the path, node 1, port 2, slot 1, flow 1-0"},
    {"row of a talker at a switch", [](PlanRecords& plan) { hops(plan)[A10].node = 11; },
     "fault, missing hop, node 1, port 1, flow 1-0\n"
     "fault, hop off the path, node 11, port 1, slot 0, flow 1-0"},
    {"talker's other port as the first switch behind it says",
     [](PlanRecords& plan) {
         NetworkFlow& branching = flow(plan, 2);
         const int talker = static_cast<int>(branching.hops.size());
         branching.hops.insert(branching.hops.end(),
                               {{1, FlowHop::noPort, 2, 2}, {12, 4, 2, 1}, {12, 4, 3, 1}});
         branching.steps.insert(branching.steps.end(),
                                {{talker, talker + 1}, {talker, talker + 2}});
         hops(plan).insert(hops(plan).end(), {{12, 4, 2, 3, 6}, {12, 4, 3, 4, 6}});
         plan.schedule.transmissions[2].hopCount += 2;
     },
     "remark, receive slot of a switch, node 12, port 4, slot 4, flow 2-0, 4 instead of 3\n"
     "remark, talker port without a row, node 1, port 2, flow 2"},
    {"talker's other port of which nobody says when",
     [](PlanRecords& plan) {
         NetworkFlow& branching = flow(plan, 2);
         const int talker = static_cast<int>(branching.hops.size());
         branching.hops.insert(branching.hops.end(), {{1, FlowHop::noPort, 2, 1}, {12, 4, 2, 1}});
         branching.steps.push_back({talker, talker + 1});
     },
     "fault, missing hop, node 1, port 2, flow 2-0\n"
     "fault, missing hop, node 12, port 2, flow 2-0\n"
     "remark, talker port without a row, node 1, port 2, flow 2"},
    {"listener twice", [](PlanRecords& plan) { listeners(plan)[C20] = listeners(plan)[B20]; },
     "fault, missing hop, node 3, port 1, flow 2-0\n"
     "fault, port the path does not use, node 2, port 1, slot 5, flow 2-0"},
    {"listener at another port", [](PlanRecords& plan) { listeners(plan)[C20].inport = 2; },
     "fault, missing hop, node 3, port 1, flow 2-0\n"
     "fault, port the path does not use, node 3, port 2, slot 5, flow 2-0"},
};

const Change flowChanges[] = {
    {"frame of a slot", [](PlanRecords& plan) { setFrame(plan, 162, 8); }, ""},
    {"frame of a byte more", [](PlanRecords& plan) { setFrame(plan, 163, 8); },
     "remark, frame longer than a slot, flow 1, 201 not in [0,200]"},
    {"shortest frame", [](PlanRecords& plan) { setFrame(plan, 46, 1); },
     "remark, frame longer than a slot, flow 1, 672 not in [0,200]"},
    {"frame that is filled up", [](PlanRecords& plan) { setFrame(plan, 0, 1); },
     "remark, frame longer than a slot, flow 1, 672 not in [0,200]"},
    {"frame above the shortest", [](PlanRecords& plan) { setFrame(plan, 47, 1); },
     "remark, frame longer than a slot, flow 1, 680 not in [0,200]"},
    {"part of a microsecond", [](PlanRecords& plan) { setFrame(plan, 46, 3); },
     "remark, frame longer than a slot, flow 1, 224 not in [0,200]"},
    {"bandwidth that nobody names", [](PlanRecords& plan) { setFrame(plan, 60000, 0); }, ""},
    {"flow that is not taken",
     [](PlanRecords& plan) {
         flow(plan, 1).state = FlowState::Disagrees;
         flow(plan, 1).period_us = 2100;
         setFrame(plan, 60000, 1);
     },
     "fault, missing flow, flow 1, 0 instead of 1, it disagrees with its virtual link\n"
     "fault, transmission nobody asks for, flow 1-0\n"
     "fault, transmission nobody asks for, flow 1-1"},
    {"missing link",
     [](PlanRecords& plan) {
         flow(plan, 1).gaps = {{0, 0}, {11, 2}};
     },
     "fault, missing link, node 0, flow 1, none to node 0\n"
     "fault, missing link, node 11, flow 1, none to node 2"},
    {"missing second of four, rows in any order",
     [](PlanRecords& plan) {
         flow(plan, 1).period_us = 1000;
         std::swap(plan.schedule.transmissions[0], plan.schedule.transmissions[1]);
         flow(plan, 1).sendWindow = {0, 19};
         flow(plan, 1).listeners[0].window = {0, 19};
     },
     "fault, missing transmission, flow 1-2, 2 instead of 4"},
    {"missing first", [](PlanRecords& plan) { takeOut(plan, 0); },
     "fault, missing transmission, flow 1-0, 1 instead of 2"},
    {"no period and no transmission",
     [](PlanRecords& plan) {
         takeOut(plan, 2);
         flow(plan, 2).state = FlowState::NoPeriod;
         flow(plan, 2).period_us = 0;
     },
     "fault, cycle length, 4000 instead of 2000\n"
     "fault, missing flow, flow 2, 0 instead of 1, it has no period"},
    {"disagrees for want of a path",
     [](PlanRecords& plan) {
         takeOut(plan, 2);
         flow(plan, 2).state = FlowState::Disagrees;
         flow(plan, 2).hops.clear();
     },
     "fault, cycle length, 4000 instead of 2000\n"
     "fault, missing flow, flow 2, 0 instead of 1, its virtual link has no path"},
    {"period of a flow that is not taken",
     [](PlanRecords& plan) {
         takeOut(plan, 2);
         flow(plan, 2).state = FlowState::BehindDisagreeing;
         flow(plan, 2).period_us = 1234;
     },
     "fault, cycle length, 4000 instead of 2000\n"
     "fault, missing flow, flow 2, 0 instead of 3, a flow before it disagrees with its virtual "
     "link"},
    {"number of a flow that leads as 0",
     [](PlanRecords& plan) {
         takeOut(plan, 2);
         flow(plan, 2).state = FlowState::LeadingNumberZero;
         flow(plan, 2).period_us = 3000;
     },
     "fault, cycle length, 4000 instead of 6000\n"
     "fault, missing flow, flow 2, 0 instead of 1, flows of number 0 before all others are in "
     "no document"},
    {"two flows of a number share their transmissions by order",
     [](PlanRecords& plan) {
         flow(plan, 2).flowID = 1;
         plan.schedule.transmissions[2].flowID = 1;
         plan.schedule.transmissions[2].seq = 1;
     },
     "fault, missing flow, flow 1, 0 instead of 1\n"
     "fault, transmission nobody asks for, flow 1-1\n"
     "remark, repeated flow number, flow 1, 2 instead of 1"},
    {"cycle shorter than a period", [](PlanRecords& plan) { plan.schedule.cycle_us = 3800; },
     "fault, cycle length, 3800 instead of 4000\n"
     "fault, transmission nobody asks for, flow 1-1"},
    {"no cycle", [](PlanRecords& plan) { plan.schedule.cycle_us = 0; },
     "fault, cycle length, 0 instead of 4000\n"
     "fault, transmission nobody asks for, flow 1-1"},
};

/// What these shift on their ports is late on its way, too; only findings of ports are told.
const Change portChanges[] = {
    {"three in one slot",
     [](PlanRecords& plan) {
         plan.network.flows[0].sendWindow = plan.network.flows[1].sendWindow = {-20, 20};
         hops(plan)[A11].sendSlot = 0;
         hops(plan)[A20].sendSlot = 0;
     },
     "fault, shared slot, node 1, port 1, slot 0, flow 1-0, 1-1, 2-0, 3 instead of 1"},
    {"slot that is used on the next port, too",
     [](PlanRecords& plan) {
         hops(plan)[A11].sendSlot = 0;
         hops(plan)[A20].sendSlot = 0;
         hops(plan)[A20].outport = 2;
     },
     "fault, shared slot, node 1, port 1, slot 0, flow 1-0, 1-1, 2 instead of 1"},
    {"one before and one behind the cycle in one slot",
     [](PlanRecords& plan) {
         hops(plan)[A10].sendSlot = -1;
         hops(plan)[A11].sendSlot = 39;
         hops(plan)[A20].sendSlot = 19;
     },
     "fault, shared slot over the cycle's end, node 1, port 1, slot -1, flow 1-0, 1-1, 2-0, 3 "
     "instead of 1\n"
     "remark, slot beyond the cycle, node 1, port 1, slot -1, flow 1-0, 1-1, -1 not in [0,19]"},
    {"two slots of a cycle shared with one behind it",
     [](PlanRecords& plan) {
         hops(plan)[A10].sendSlot = 20;
         hops(plan)[A11].sendSlot = 20;
         hops(plan)[A20].sendSlot = 0;
     },
     "fault, shared slot, node 1, port 1, slot 20, flow 1-0, 1-1, 2 instead of 1\n"
     "fault, shared slot over the cycle's end, node 1, port 1, slot 0, flow 1-0, 1-1, 2-0, 3 "
     "instead of 1\n"
     "remark, slot beyond the cycle, node 1, port 1, slot 20, flow 1-0, 1-1, 20 not in [0,19]"},
    {"cycle of no whole slots, meeting over its end",
     [](PlanRecords& plan) {
         plan.schedule.cycle_us = 4001;
         hops(plan)[A11].sendSlot = 20;
     },
     "fault, shared slot over the cycle's end, node 1, port 1, slot 20, flow 1-0, 1-1, 2 "
     "instead of 1\n"
     "remark, slot beyond the cycle, node 1, port 1, slot 20, flow 1-1, 20 not in [0,19]"},
    {"cycle of no whole slots, meeting inside",
     [](PlanRecords& plan) {
         plan.schedule.cycle_us = 3900;
         hops(plan)[A11].sendSlot = 22;
     },
     "fault, shared slot over the cycle's end, node 1, port 1, slot 22, flow 1-1, 2-0, 2 "
     "instead of 1\n"
     "remark, slot beyond the cycle, node 1, port 1, slot 22, flow 1-1, 22 not in [0,18]"},
    {"slots that follow each other",
     [](PlanRecords& plan) {
         hops(plan)[A11].sendSlot = 1;
         hops(plan)[A20].sendSlot = 19;
     },
     ""},
    {"slot outside of every port's cycle",
     [](PlanRecords& plan) {
         for (const Hop hop : {A10, S110, S210})
             hops(plan)[hop].sendSlot -= 20;
         for (const Hop hop : {A20, S120, S220B, S220C})
             hops(plan)[hop].sendSlot += 20;
     },
     "remark, slot beyond the cycle, node 1, port 1, slot -20, flow 1-0, 2-0, -20 not in "
     "[0,19]\n"
     "remark, slot beyond the cycle, node 11, port 2, slot -19, flow 1-0, 2-0, -19 not in "
     "[0,19]\n"
     "remark, slot beyond the cycle, node 12, port 2, slot -18, flow 1-0, 2-0, -18 not in "
     "[0,19]\n"
     "remark, slot beyond the cycle, node 12, port 3, slot 25, flow 2-0, 25 not in [0,19]"},
    {"cycle of one slot", [](PlanRecords& plan) { plan.schedule.cycle_us = 200; },
     "fault, shared slot over the cycle's end, node 1, port 1, slot 0, flow 1-0, 1-1, 2-0, 3 "
     "instead of 1\n"
     "fault, shared slot over the cycle's end, node 11, port 2, slot 1, flow 1-0, 1-1, 2-0, 3 "
     "instead of 1\n"
     "fault, shared slot over the cycle's end, node 12, port 2, slot 2, flow 1-0, 1-1, 2-0, 3 "
     "instead of 1\n"
     "remark, slot beyond the cycle, node 1, port 1, slot 3, flow 1-1, 2-0, 3 instead of 0\n"
     "remark, slot beyond the cycle, node 11, port 2, slot 1, flow 1-0, 1-1, 2-0, 1 instead of "
     "0\n"
     "remark, slot beyond the cycle, node 12, port 2, slot 2, flow 1-0, 1-1, 2-0, 2 instead of "
     "0\n"
     "remark, slot beyond the cycle, node 12, port 3, slot 5, flow 2-0, 5 instead of 0"},
    {"cycle of a microsecond",
     [](PlanRecords& plan) {
         plan.schedule.cycle_us = 1;
         plan.schedule.transmissions.resize(2);
     },
     "fault, shared slot over the cycle's end, node 1, port 1, slot 0, flow 1-0, 1-0, 1-1, "
     "1-1, 4 instead of 1\n"
     "fault, shared slot over the cycle's end, node 1, port 1, slot 0, flow 1-0, 1-1, 2 "
     "instead of 1\n"
     "fault, shared slot over the cycle's end, node 11, port 2, slot 1, flow 1-0, 1-0, 1-1, "
     "1-1, 4 instead of 1\n"
     "fault, shared slot over the cycle's end, node 11, port 2, slot 1, flow 1-0, 1-1, 2 "
     "instead of 1\n"
     "fault, shared slot over the cycle's end, node 12, port 2, slot 2, flow 1-0, 1-0, 1-1, "
     "1-1, 4 instead of 1\n"
     "fault, shared slot over the cycle's end, node 12, port 2, slot 2, flow 1-0, 1-1, 2 "
     "instead of 1"},
    {"cycle of less than a slot", [](PlanRecords& plan) { plan.schedule.cycle_us = 199; },
     "fault, shared slot over the cycle's end, node 1, port 1, slot 0, flow 1-0, 2-0, 2 "
     "instead of 1\n"
     "fault, shared slot over the cycle's end, node 1, port 1, slot 3, flow 1-1, 2-0, 2 "
     "instead of 1\n"
     "fault, shared slot over the cycle's end, node 1, port 1, slot 10, flow 1-0, 1-1, 2 "
     "instead of 1\n"
     "fault, shared slot over the cycle's end, node 11, port 2, slot 1, flow 1-0, 2-0, 2 "
     "instead of 1\n"
     "fault, shared slot over the cycle's end, node 11, port 2, slot 4, flow 1-1, 2-0, 2 "
     "instead of 1\n"
     "fault, shared slot over the cycle's end, node 11, port 2, slot 11, flow 1-0, 1-1, 2 "
     "instead of 1\n"
     "fault, shared slot over the cycle's end, node 12, port 2, slot 2, flow 1-0, 2-0, 2 "
     "instead of 1\n"
     "fault, shared slot over the cycle's end, node 12, port 2, slot 5, flow 1-1, 2-0, 2 "
     "instead of 1\n"
     "fault, shared slot over the cycle's end, node 12, port 2, slot 12, flow 1-0, 1-1, 2 "
     "instead of 1\n"
     "fault, shared slot over the cycle's end, node 12, port 3, slot 5, flow 2-0, 2-0, 2 "
     "instead of 1"},
};

bool isOfPort(Kind kind)
{
    return kind == Kind::SharedSlot || kind == Kind::SharedSlotOverCycle ||
           kind == Kind::BeyondCycle;
}

const Change* const tables[] = {pathChanges, flowChanges, portChanges};

template <size_t count>
void addRows(const Change (&changes)[count], int table)
{
    for (size_t i = 0; i < count; ++i)
        QTest::newRow(changes[i].name) << table << static_cast<int>(i);
}

} // namespace

class ChangedRecordsTest : public QObject
{
    Q_OBJECT

private slots:
    void changeGivesItsFindings_data()
    {
        QTest::addColumn<int>("table");
        QTest::addColumn<int>("place");
        addRows(pathChanges, 0);
        addRows(flowChanges, 1);
        addRows(portChanges, 2);
    }

    void changeGivesItsFindings()
    {
        QFETCH(int, table);
        QFETCH(int, place);
        const Change& change = tables[table][place];
        PlanRecords plan = soundPlan();
        change.make(plan);
        QStringList lines;
        for (const Finding& finding : verifyPlan(plan).findings) {
            if (table != 2 || isOfPort(finding.kind))
                lines.append(describe(finding));
        }
        const QString expected = QString::fromLatin1(change.lines);
        QCOMPARE(lines, expected.isEmpty() ? QStringList() : expected.split(QLatin1Char('\n')));
    }
};

QTEST_GUILESS_MAIN(ChangedRecordsTest)
#include "ChangedRecordsTest.moc"
