#include "bench/CpuTime.h"
#include "tests/support/HeapUse.h"
#include "views/FlowColorTable.h"
#include "views/TimeSlotInfo.h"

#include <QApplication>
#include <QProgressBar>
#include <QScrollBar>

#include <algorithm>

// What choosing a node, leaving it and scrolling cost in the grid, against what its bars alone
// cost: the same bars with the same style sheets, made and put nowhere; how that grows, and what
// stays in memory. Compare ratios of one run.

/// Used slots spread over the first ports, each slot once; of 200 flows.
static PortSchedule busyNode(int ports, int slotsAPort)
{
    PortSchedule schedule;
    for (int port = 0; port < ports; ++port) {
        for (int i = 0; i < slotsAPort; ++i)
            schedule[port][(port + i) % 200 + 1][i] = 0;
    }
    return schedule;
}

static PortSchedule quietNode(int ports)
{
    PortSchedule schedule;
    for (int port = 0; port < ports; ++port)
        schedule[port] = {};
    return schedule;
}

static QString styleSheetOf(int flowID)
{
    return QStringLiteral("QProgressBar{background:#ffffff;border-width:0px;border-radius:0px;"
                          "text-align:center;}QProgressBar::chunk{border-radius:0px;}"
                          "QProgressBar{color:#0a0a0a;}QProgressBar::chunk{background:%1;}")
        .arg(flowColor(flowID).name());
}

static double barsAlone(const PortSchedule& schedule)
{
    QList<QProgressBar*> bars;
    const double time = cpuTime([&] {
        for (const auto& flows : schedule) {
            for (auto flow = flows.cbegin(); flow != flows.cend(); ++flow) {
                for (int i = 0; i < flow->size(); ++i) {
                    auto* bar = new QProgressBar;
                    bar->setRange(0, 100);
                    bar->setValue(25);
                    bar->setTextVisible(false);
                    bar->setStyleSheet(styleSheetOf(flow.key()));
                    bars.append(bar);
                }
            }
        }
    });
    qDeleteAll(bars);
    return time;
}

/// Milliseconds a step from the left to the right end of the grid, at most 60 steps.
static double scrollStep(TimeSlotInfo& table)
{
    QScrollBar* bar = table.horizontalScrollBar();
    const int steps = std::min(60, bar->maximum());
    const double time = cpuTime([&] {
        for (int step = 1; step <= steps; ++step) {
            bar->setValue(step);
            QCoreApplication::processEvents();
        }
    });
    bar->setValue(0);
    return time / std::max(1, steps);
}

/// Milliseconds of CPU time, the smallest of three rounds.
struct GridCost {
    double bars = 1e12;
    double shown = 1e12;
    double left = 1e12;
    double step = 1e12;
};

struct Case {
    const char* name;
    int ports;
    int usedSlots; ///< of each port
    int slotCount;
};

static GridCost costOf(const Case& grid)
{
    const PortSchedule busy = busyNode(grid.ports, grid.usedSlots);
    const PortSchedule quiet = quietNode(grid.ports);
    GridCost cost;
    for (int round = 0; round < 3; ++round) {
        TimeSlotInfo table(nullptr);
        table.resize(1000, 400);
        table.show();
        cpuTime([&] { table.showPorts(quiet, grid.slotCount); });
        cost.bars = std::min(cost.bars, barsAlone(busy));
        cost.shown = std::min(cost.shown, cpuTime([&] { table.showPorts(busy, grid.slotCount); }));
        cost.step = std::min(cost.step, scrollStep(table));
        cost.left = std::min(cost.left, cpuTime([&] { table.showPorts(quiet, grid.slotCount); }));
    }
    return cost;
}

static void measure(const Case& grid)
{
    const GridCost cost = costOf(grid);
    std::printf("%-36s %9.0f %9.0f %9.0f %9.2f   %6.2f %6.2f\n", grid.name, cost.bars, cost.shown,
                cost.left, cost.step, cost.shown / cost.bars, cost.left / cost.bars);
}

static void measureGrowth()
{
    Growth bars;
    Growth shown;
    Growth left;
    Growth step;
    for (const int usedSlots : {39, 78, 156, 312, 624}) {
        const GridCost cost = costOf({"", 64, usedSlots, 5000});
        const double cells = 64.0 * usedSlots;
        bars.add(cells, cost.bars);
        shown.add(cells, cost.shown);
        left.add(cells, cost.left);
        step.add(cells, cost.step);
    }
    std::printf("2,500 to 40,000 used cells in 64 rows, ms of CPU time\n");
    bars.print("  bars alone");
    shown.print("  choosing the node");
    left.print("  leaving it");
    step.print("  a scrolling step");
}

static void measureMemory()
{
    constexpr int rounds = 100;
    TimeSlotInfo table(nullptr);
    table.resize(1000, 400);
    table.show();
    const auto chooseTwoNodes = [&] {
        for (const int ports : {64, 16}) {
            table.showPorts(busyNode(ports, 78), 5000);
            QCoreApplication::processEvents();
        }
    };
    for (int round = 0; round < 10; ++round)
        chooseTwoNodes();
    const qint64 before = heapUse();
    for (int round = 0; round < rounds; ++round)
        chooseTwoNodes();
    std::printf("memory after ten rounds of choosing two nodes: %+.1f kB a round\n",
                double(heapUse() - before) / 1000 / rounds);
}

static void measureColumns()
{
    constexpr int columns = 80000;
    constexpr int ports = 8;
    double bare = 1e12;
    double labelled = 1e12;
    for (int round = 0; round < 3; ++round) {
        QTableWidget plain(ports, 0);
        plain.show();
        bare = std::min(bare, cpuTime([&] { plain.setColumnCount(columns + 1); }));
        TimeSlotInfo table(nullptr);
        table.show();
        labelled = std::min(labelled, cpuTime([&] { table.showPorts(quietNode(ports), columns); }));
    }
    std::printf(
        "80,000 columns, 8 ports: bare setColumnCount %.0f ms, with labels %.0f ms, ratio %.2f\n",
        bare, labelled, labelled / bare);
}

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    fillFlowColorTable();
    measureColumns();
    std::printf("%-36s %9s %9s %9s %9s   %6s %6s\n", "ms of CPU time", "bars", "chosen", "left",
                "a step", "chosen", "left");
    for (const Case& grid : {Case{"5,000 used cells in 64 rows", 64, 78, 5000},
                             Case{"20,000 used cells in 64 rows", 64, 312, 5000},
                             Case{"20,000 used cells in 20,000 rows", 20000, 1, 20},
                             Case{"50,000 used cells in one row", 1, 50000, 50000}})
        measure(grid);
    measureGrowth();
    measureMemory();
    return 0;
}
