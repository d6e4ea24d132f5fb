#include "topology/Arrow.h"
#include "topology/DiagramScene.h"
#include "topology/TopologyWindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QGraphicsView>
#include <QMouseEvent>

#include <algorithm>
#include <cstdio>

// What dragging one node costs in drawings of growing size, and what building one costs.
//
// Each row drags a node with a given number of links of its own by mouse, in many small steps, with
// everything that a step brings: the links' stored lines, the scene's index, and painting what
// changed. All links run between neighbours in a grid and the dragged node stands in its middle, so
// that rows differ in nothing else. Time must follow the node's own links, not the size of the
// drawing.

static constexpr int columns = 25;
static constexpr int columnWidth = 180;
static constexpr int rowHeight = 220;
static constexpr int dragSteps = 300;

static int middleOf(int nodeCount)
{
    return nodeCount / columns / 2 * columns + columns / 2;
}

static FileArrowInfo linkRecord(int from, int to)
{
    FileArrowInfo link;
    link.srcNode = QString::number(from);
    link.dstNode = QString::number(to);
    link.srcPort = link.dstPort = QStringLiteral("1");
    return link;
}

static QList<FileNodeInfo> gridNodes(int nodeCount)
{
    QList<FileNodeInfo> nodes;
    for (int i = 0; i < nodeCount; ++i) {
        const int row = i / columns;
        FileNodeInfo node;
        node.type = i % 2;
        node.position = QPointF(100 + i % columns * columnWidth, 100 + row * rowHeight);
        node.nodeName = QString::number(i);
        nodes.append(node);
    }
    return nodes;
}

/// Two links a node on average, of which the middle node has ownLinks (at most 8).
static QList<FileArrowInfo> gridLinks(int nodeCount, int ownLinks)
{
    const int middle = middleOf(nodeCount);
    const int around[] = {1,           columns,     -1,           -columns,
                          columns + 1, columns - 1, -columns - 1, 1 - columns};
    QList<FileArrowInfo> links;
    for (int i = 0; i < ownLinks; ++i)
        links.append(linkRecord(middle, middle + around[i]));
    for (const int step : {1, columns, columns + 1}) {
        const bool changesColumn = step != columns;
        for (int i = 0; i + step < nodeCount && links.size() < 2 * nodeCount; ++i) {
            const bool lastColumn = i % columns == columns - 1;
            if (i != middle && i + step != middle && !(changesColumn && lastColumn))
                links.append(linkRecord(i, i + step));
        }
    }
    return links;
}

static DiagramItem* nodeNamed(DiagramScene* scene, const QString& name)
{
    for (QGraphicsItem* item : scene->items()) {
        auto* node = qgraphicsitem_cast<DiagramItem*>(item);
        if (node && node->nodeName == name)
            return node;
    }
    return nullptr;
}

static void sendMouse(QGraphicsView* view, QEvent::Type type, const QPoint& position)
{
    const bool moves = type == QEvent::MouseMove;
    const bool releases = type == QEvent::MouseButtonRelease;
    QMouseEvent event(type, position, view->viewport()->mapToGlobal(position),
                      moves ? Qt::NoButton : Qt::LeftButton,
                      releases ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view->viewport(), &event);
    QCoreApplication::processEvents();
}

/// Microseconds per step; the smallest of several rounds.
static double dragCost(QGraphicsView* view, DiagramItem* node)
{
    view->centerOn(node);
    const QPoint grip = view->mapFromScene(node->mapToScene(node->pixmapCenter()));
    double best = 1e12;
    for (int round = 0; round < 5; ++round) {
        sendMouse(view, QEvent::MouseButtonPress, grip);
        QElapsedTimer timer;
        timer.start();
        for (int step = 0; step < dragSteps; ++step)
            sendMouse(view, QEvent::MouseMove, grip + QPoint(step % 40, step % 25));
        best = std::min(best, double(timer.nsecsElapsed()) / 1000.0 / dragSteps);
        sendMouse(view, QEvent::MouseMove, grip);
        sendMouse(view, QEvent::MouseButtonRelease, grip);
    }
    return best;
}

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    TopologyWindow window;
    window.resize(1280, 800);
    window.show();
    auto* view = window.findChild<QGraphicsView*>();
    std::printf("%6s %6s %10s %12s %14s %18s\n", "nodes", "links", "own links", "build ms",
                "drag us/step", "without painting");
    for (const int nodes : {75, 125, 250, 500}) {
        for (const int ownLinks : {0, 2, 4, 8}) {
            const QList<FileArrowInfo> links = gridLinks(nodes, ownLinks);
            QElapsedTimer timer;
            timer.start();
            window.getScence()->buildByProjectFile(gridNodes(nodes), links);
            const double buildMs = double(timer.nsecsElapsed()) / 1e6;
            DiagramItem* node = nodeNamed(window.getScence(), QString::number(middleOf(nodes)));
            const double painted = dragCost(view, node);
            view->viewport()->setUpdatesEnabled(false);
            const double unpainted = dragCost(view, node);
            view->viewport()->setUpdatesEnabled(true);
            std::printf("%6d %6d %10d %12.1f %14.1f %18.1f\n", nodes, links.size(), ownLinks,
                        buildMs, painted, unpainted);
        }
    }
    return 0;
}
