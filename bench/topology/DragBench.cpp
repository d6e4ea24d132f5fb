#include "topology/Arrow.h"
#include "topology/DiagramScene.h"
#include "topology/TopologyWindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QGraphicsView>

#include <algorithm>
#include <cstdio>
#include <random>

// What dragging one node costs in drawings of growing size.
//
// Each row drags a node with a given number of links of its own by many small steps, with
// everything that a step brings: the links' stored lines, the scene's index, and painting what
// changed. Compare rows of one run: time must follow the node's own links, not the size of the
// drawing.

static constexpr int dragSteps = 300;

/// A drawing of nodes on a grid with random links between neighbours in the grid.
static void buildDrawing(DiagramScene* scene, int nodeCount, int linkCount)
{
    std::mt19937 random(1);
    const int columns = 25;
    QList<FileNodeInfo> nodes;
    for (int i = 0; i < nodeCount; ++i) {
        FileNodeInfo node;
        node.type = i % 2;
        const int row = i / columns;
        node.position = QPointF(100 + i % columns * 180, 100 + row * 220);
        node.nodeName = QString::number(i);
        nodes.append(node);
    }
    QList<FileArrowInfo> links;
    for (int i = 0; i < linkCount; ++i) {
        const int from = int(random() % quint32(nodeCount));
        const int to = (from + 1 + int(random() % 2) * (columns - 1)) % nodeCount;
        FileArrowInfo link;
        link.srcNode = QString::number(from);
        link.dstNode = QString::number(to);
        link.srcPort = link.dstPort = QStringLiteral("1");
        links.append(link);
    }
    scene->buildByProjectFile(nodes, links);
}

static DiagramItem* nodeWithLinks(DiagramScene* scene, int linkCount)
{
    DiagramItem* best = nullptr;
    for (QGraphicsItem* item : scene->items()) {
        auto* node = qgraphicsitem_cast<DiagramItem*>(item);
        if (node && node->arrows().size() == linkCount)
            best = node;
    }
    return best;
}

/// Microseconds per step; the smallest of several rounds.
static double dragCost(QGraphicsView* view, DiagramItem* node)
{
    view->centerOn(node);
    const QPointF home = node->pos();
    double best = 1e12;
    for (int round = 0; round < 5; ++round) {
        QElapsedTimer timer;
        timer.start();
        for (int step = 0; step < dragSteps; ++step) {
            node->setPos(home + QPointF(step % 40, step % 25));
            QCoreApplication::processEvents();
        }
        best = std::min(best, double(timer.nsecsElapsed()) / 1000.0 / dragSteps);
        node->setPos(home);
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
    std::printf("%8s %8s %10s %14s\n", "nodes", "links", "own links", "us per step");
    for (const int nodes : {50, 125, 250, 500}) {
        buildDrawing(window.getScence(), nodes, nodes * 2);
        for (const int ownLinks : {2, 4, 6}) {
            if (DiagramItem* node = nodeWithLinks(window.getScence(), ownLinks))
                std::printf("%8d %8d %10d %14.1f\n", nodes, nodes * 2, ownLinks,
                            dragCost(view, node));
        }
    }
    return 0;
}
