#include "app/MainWindow.h"
#include "bench/CpuTime.h"
#include "topology/DiagramScene.h"
#include "topology/TopologyWindow.h"
#include "traffic/TrafficTable.h"

#include <QApplication>
#include <QComboBox>
#include <QTableWidget>

#include <algorithm>

// What opening, opening again, deleting and clearing a project cost as it grows, in the shown main
// window, and what filling the two tables costs against filling shown tables row by row.
//
// Compare ratios of one run; the exponents must not be much above 1.

static QString nameOf(int node)
{
    return QStringLiteral("N%1").arg(node);
}

static QList<FileNodeInfo> gridOfNodes(int count)
{
    const int columns = std::max(1, int(std::sqrt(count)));
    QList<FileNodeInfo> nodes;
    for (int i = 0; i < count; ++i) {
        FileNodeInfo node;
        node.type = i % 2;
        node.position = QPointF(100 + i % columns * 180, 100 + i / columns * 220);
        node.nodeName = nameOf(i);
        nodes.append(node);
    }
    return nodes;
}

static QList<FileArrowInfo> chainOfLinks(int nodes)
{
    QList<FileArrowInfo> links;
    for (int i = 1; i < nodes; ++i) {
        FileArrowInfo link;
        link.srcNode = nameOf(i - 1);
        link.dstNode = nameOf(i);
        links.append(link);
    }
    return links;
}

static QList<FileVLineInfo> vLinesOver(int nodes, int count)
{
    QList<FileVLineInfo> vLines;
    for (int i = 0; i < count; ++i) {
        const int first = i % (nodes - 3);
        QStringList path{nameOf(first), nameOf(first + 1), nameOf(first + 2), nameOf(first + 3)};
        vLines.append({QString::number(i), {path, path}});
    }
    return vLines;
}

static QList<FlowInfo> flowsOn(int count)
{
    QList<FlowInfo> flows;
    for (int i = 0; i < count; ++i) {
        FlowInfo flow;
        flow.flowType = QStringLiteral("TT");
        flow.flowId = flow.vLineId = QString::number(i);
        flow.srcNode = nameOf(i);
        flow.dstNodes = {{nameOf(i + 3), QStringLiteral("0"), QStringLiteral("9000")},
                         {nameOf(i + 3), QStringLiteral("0"), QStringLiteral("9000")}};
        flows.append(flow);
    }
    return flows;
}

/// The main window and what is done to it.
class Studio
{
public:
    Studio() : m_window({}, nullptr)
    {
        m_window.resize(1280, 800);
        m_window.show();
        m_drawing = qobject_cast<TopologyWindow*>(m_window.centralWidget());
        QCoreApplication::processEvents();
    }

    void openNodes(int nodes)
    {
        m_drawing->getScence()->buildByProjectFile(gridOfNodes(nodes), chainOfLinks(nodes));
    }

    void openTables(int nodes, int rows)
    {
        QMetaObject::invokeMethod(&m_window, "addVLineItemByProjectFile",
                                  Q_ARG(QList<FileVLineInfo>, vLinesOver(nodes, rows)));
        QMetaObject::invokeMethod(&m_window, "addFlowItemByProjectFile",
                                  Q_ARG(QList<FlowInfo>, flowsOn(rows)));
    }

    void deleteAllRows()
    {
        for (auto* table : m_window.findChildren<QTableWidget*>())
            table->selectAll();
        QMetaObject::invokeMethod(&m_window, "delVLineEditorTableItem");
        QMetaObject::invokeMethod(&m_window, "delFlowEditorTableItem");
    }

    void deleteAllNodes()
    {
        for (QGraphicsItem* item : m_drawing->getScence()->items())
            item->setSelected(true);
        QMetaObject::invokeMethod(m_drawing, "deleteItem");
    }

    void clearDrawing() { m_drawing->getScence()->clear(); }

private:
    MainWindow m_window;
    TopologyWindow* m_drawing;
};

static void measureDrawings()
{
    Growth opening;
    Growth reopening;
    Growth deleting;
    Growth clearing;
    Studio studio;
    for (const int nodes : {1250, 2500, 5000, 10000}) {
        opening.add(nodes, cpuTime([&] { studio.openNodes(nodes); }));
        reopening.add(nodes, cpuTime([&] { studio.openNodes(nodes); }));
        deleting.add(nodes, cpuTime([&] { studio.deleteAllNodes(); }));
        studio.openNodes(nodes);
        clearing.add(nodes, cpuTime([&] { studio.clearDrawing(); }));
    }
    std::printf("drawings of 1250, 2500, 5000, 10000 nodes, ms of CPU time\n");
    opening.print("  open");
    reopening.print("  open again");
    deleting.print("  delete all");
    clearing.print("  clear");
}

static void measureTables()
{
    Growth opening;
    Growth reopening;
    Growth forgetting;
    Growth deleting;
    Studio studio;
    for (const int rows : {625, 1250, 2500, 5000}) {
        studio.openNodes(2 * rows);
        opening.add(rows, cpuTime([&] { studio.openTables(2 * rows, rows); }));
        reopening.add(rows, cpuTime([&] { studio.openTables(2 * rows, rows); }));
        forgetting.add(rows, cpuTime([&] { studio.openNodes(2 * rows); }));
        deleting.add(rows, cpuTime([&] { studio.deleteAllRows(); }));
    }
    std::printf("tables of 625, 1250, 2500, 5000 rows each, twice as many nodes\n");
    opening.print("  open");
    reopening.print("  open again");
    forgetting.print("  drawing under them replaced");
    deleting.print("  delete all rows");
}

/// The same rows into shown tables, one by one, each with its box.
static void fillShownTables(int rows)
{
    QTableWidget* vLines = createTrafficTable({{}, {}, {}, {}}, {64, 64, 108, 64});
    QTableWidget* flows = createTrafficTable({{}, {}, {}, {}, {}, {}, {}, {}},
                                             {64, 64, 108, 108, 108, 108, 108, 108});
    for (auto* table : {vLines, flows}) {
        table->resize(1000, 300);
        table->show();
        QCoreApplication::processEvents();
        for (int i = 0; i < rows; ++i) {
            const int row = appendTrafficRow(table, {QStringLiteral("1")});
            auto* box = new QComboBox;
            box->addItems({QStringLiteral("{A,[0,9000]}"), QStringLiteral("{B,[0,9000]}")});
            table->setCellWidget(row, table->columnCount() == 4 ? 2 : 7, box);
        }
        delete table;
    }
}

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    measureDrawings();
    measureTables();
    constexpr int rows = 2000;
    const double shown = cpuTime([] { fillShownTables(rows); });
    Studio studio;
    studio.openNodes(rows);
    const double opened = cpuTime([&] { studio.openTables(rows, rows); });
    std::printf("2000 + 2000 rows: opened %.0f ms, into shown tables %.0f ms, ratio %.3f\n", opened,
                shown, opened / shown);
    return 0;
}
