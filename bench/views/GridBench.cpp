#include "views/FlowColorTable.h"
#include "views/TimeSlotInfo.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QProgressBar>

#include <algorithm>
#include <cstdio>
#include <functional>

// What choosing a node costs, against what its bars alone cost.
//
// 64 ports, 5,000 slots a cycle, 20,000 used cells. The bare loops do nothing but make the same
// bars with the same style sheets, and set them into a plain table of the same size. Compare rows
// of one run.

static constexpr int portCount = 64;
static constexpr int slotCount = 5000;
static constexpr int usedCells = 20000;

static PortSchedule busyNode()
{
    PortSchedule ports;
    for (int i = 0; i < usedCells; ++i) {
        const int port = i % portCount;
        const int slot = (i / portCount) * 16 + port % 16;
        ports[port][i % 200 + 1][slot] = 0;
    }
    return ports;
}

static QString styleSheetOf(int flowID)
{
    return QStringLiteral("QProgressBar{background:#ffffff;border-width:0px;border-radius:0px;"
                          "text-align:center;}QProgressBar::chunk{border-radius:0px;}"
                          "QProgressBar{color:#0a0a0a;}QProgressBar::chunk{background:%1;}")
        .arg(flowColor(flowID).name());
}

static QProgressBar* createBar(int flowID)
{
    auto* bar = new QProgressBar;
    bar->setRange(0, 100);
    bar->setValue(25);
    bar->setTextVisible(false);
    bar->setStyleSheet(styleSheetOf(flowID));
    return bar;
}

static void forEachCell(const PortSchedule& ports,
                        const std::function<void(int row, int slot, int flowID)>& visit)
{
    int row = 0;
    for (const auto& flows : ports) {
        for (auto flow = flows.cbegin(); flow != flows.cend(); ++flow) {
            for (auto slot = flow->cbegin(); slot != flow->cend(); ++slot)
                visit(row, slot.key(), flow.key());
        }
        ++row;
    }
}

/// Milliseconds that the work takes with everything it leaves to the event loop.
static double measure(const std::function<void()>& work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    QCoreApplication::processEvents();
    return double(timer.nsecsElapsed()) / 1e6;
}

static double createOnly(const PortSchedule& ports)
{
    QList<QProgressBar*> bars;
    const double time = measure(
        [&] { forEachCell(ports, [&](int, int, int flowID) { bars.append(createBar(flowID)); }); });
    qDeleteAll(bars);
    return time;
}

static double createAndSet(const PortSchedule& ports)
{
    QTableWidget table(portCount, slotCount + 1);
    table.resize(1000, 400);
    table.setStyleSheet(QStringLiteral("QTableWidget::item{padding:0px;}"));
    table.show();
    QCoreApplication::processEvents();
    return measure([&] {
        forEachCell(ports, [&](int row, int slot, int flowID) {
            table.setCellWidget(row, slot + 1, createBar(flowID));
        });
    });
}

static double showNode(TimeSlotInfo& table, const PortSchedule& ports)
{
    return measure([&] { table.showPorts(ports, slotCount); });
}

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    fillFlowColorTable();
    const PortSchedule busy = busyNode();
    PortSchedule quiet;
    for (int port = 0; port < portCount; ++port)
        quiet[port] = {};
    TimeSlotInfo table(nullptr);
    table.resize(1000, 400);
    table.show();
    QCoreApplication::processEvents();

    double bare = 1e12;
    double set = 1e12;
    double shown = 1e12;
    double headers = 1e12;
    double left = 1e12;
    for (int round = 0; round < 2; ++round) {
        bare = std::min(bare, createOnly(busy));
        set = std::min(set, createAndSet(busy));
        headers = std::min(headers, showNode(table, quiet));
        shown = std::min(shown, showNode(table, busy));
        left = std::min(left, showNode(table, quiet));
    }
    std::printf("%-44s %9.0f ms\n", "bars created only", bare);
    std::printf("%-44s %9.0f ms\n", "bars created and set, bare loop", set);
    std::printf("%-44s %9.0f ms\n", "grid without used cells (headers, rows)", headers);
    std::printf("%-44s %9.0f ms\n", "node with 20,000 used cells shown", shown);
    std::printf("%-44s %9.0f ms\n", "next, empty node shown (old bars released)", left);
    std::printf("%-44s %9.2f\n", "shown / bare loop", shown / set);
    return 0;
}
