#include "app/MainWindow.h"
#include "bench/CpuTime.h"
#include "project/ProjectFile.h"
#include "topology/DiagramScene.h"
#include "topology/TopologyWindow.h"
#include "widgets/RowTable.h"

#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QTableWidget>

#include <algorithm>

// What opening, opening again, deleting and clearing a project cost as it grows, in the shown main
// window, and what filling the two tables costs against filling plain shown tables row by row.
//
// Compare ratios of one run; the exponents must not be much above 1.

static QString nameOf(int node)
{
    return QStringLiteral("N%1").arg(node);
}

static QList<FileNodeInfo> gridOfNodes(int count)
{
    const int columns = std::max(1, int(std::ceil(std::sqrt(count))));
    const double distance = 4900.0 / columns; // all of them on the canvas
    QList<FileNodeInfo> nodes;
    for (int i = 0; i < count; ++i) {
        FileNodeInfo node;
        node.type = i % 2;
        const int row = i / columns;
        node.position = QPointF(i % columns * distance, row * distance);
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

/// Opens what the main window keeps to itself.
struct MainWindowProbe {
    static void showProject(MainWindow& window, const Project& project)
    {
        window.showProject(project);
    }
};

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

    /// What "打开工程" does once the file is read.
    void open(int nodes, int rows)
    {
        const Project project{chainOfLinks(nodes), gridOfNodes(nodes), vLinesOver(nodes, rows),
                              flowsOn(rows)};
        MainWindowProbe::showProject(m_window, project);
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

/// nodesARow of 0 leaves the tables empty.
static void measureProjects(const char* title, const QVector<int>& sizes, int nodesARow)
{
    Growth opening;
    Growth reopening;
    Growth deletingRows;
    Growth deletingNodes;
    Growth clearing;
    Studio studio;
    for (const int nodes : sizes) {
        const int rows = nodesARow > 0 ? nodes / nodesARow : 0;
        opening.add(nodes, cpuTime([&] { studio.open(nodes, rows); }));
        reopening.add(nodes, cpuTime([&] { studio.open(nodes, rows); }));
        deletingNodes.add(nodes, cpuTime([&] { studio.deleteAllNodes(); }));
        if (rows > 0)
            deletingRows.add(nodes, cpuTime([&] { studio.deleteAllRows(); }));
        cpuTime([&] { studio.open(nodes, 0); });
        clearing.add(nodes, cpuTime([&] { studio.clearDrawing(); }));
    }
    std::printf("%s, ms of CPU time\n", title);
    opening.print("  open");
    reopening.print("  open again");
    deletingNodes.print("  delete all nodes");
    if (nodesARow > 0)
        deletingRows.print("  delete all rows");
    clearing.print("  clear the drawing");
}

/// The same rows into shown plain tables, one by one, each with its box.
static void fillPlainTables(int rows)
{
    for (const int columns : {4, 8}) {
        QTableWidget table(0, columns);
        table.horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
        table.resize(1000, 300);
        table.show();
        QCoreApplication::processEvents();
        for (int row = 0; row < rows; ++row) {
            table.insertRow(row);
            for (int column = 0; column < columns - 1; ++column)
                table.setItem(row, column, centredItem(QString::number(row)));
            auto* box = new QComboBox;
            box->addItems({QStringLiteral("{A,[0,9000]}"), QStringLiteral("{B,[0,9000]}")});
            table.setCellWidget(row, columns - 1, box);
        }
    }
}

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    measureProjects("drawings of 1250, 2500, 5000, 10000 nodes", {1250, 2500, 5000, 10000}, 0);
    measureProjects("the same with 625, 1250, 2500, 5000 virtual links and flows",
                    {1250, 2500, 5000, 10000}, 2);
    constexpr int rows = 2000;
    const double shown = cpuTime([] { fillPlainTables(rows); });
    Studio studio;
    const double opened = cpuTime([&] { studio.open(rows, rows); });
    std::printf("2000 + 2000 rows: opened %.0f ms, into plain tables %.0f ms, ratio %.3f\n", opened,
                shown, opened / shown);
    return 0;
}
