#include "bench/CpuTime.h"
#include "topology/Arrow.h"
#include "topology/DiagramScene.h"
#include "topology/TopologyWindow.h"

#include <QApplication>
#include <QGraphicsView>
#include <QMouseEvent>

#include <algorithm>
#include <cstdio>

// What dragging one node costs in drawings of growing size, against the same drawing in a plain
// view whose nodes only store their links' new lines, and what building a drawing costs.
//
// Each measurement drags a node with a given number of links of its own by mouse, in many small
// steps, with everything that a step brings: the links' stored lines, the scene's index, and
// painting what changed. All links run between neighbours in a grid and the dragged node stands in
// its middle, so that drawings differ in nothing else. Time must follow the node's own links, not
// the size of the drawing. Compare ratios of one run.

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

template <typename Scene>
static DiagramItem* nodeNamed(const Scene& scene, const QString& name)
{
    for (QGraphicsItem* item : scene.items()) {
        auto* node = dynamic_cast<DiagramItem*>(item);
        if (node && node->nodeName == name)
            return node;
    }
    return nullptr;
}

/// A node that repaints nothing but what Qt does by itself.
class PlainNode : public DiagramItem
{
public:
    explicit PlainNode(const FileNodeInfo& record)
        : DiagramItem(static_cast<DiagramType>(record.type), nullptr)
    {
        nodeName = record.nodeName;
        setPos(record.position);
    }

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override
    {
        for (Arrow* arrow : qAsConst(arrowList)) {
            if (change == ItemPositionChange)
                arrow->updatePosition();
        }
        return value;
    }
};

/// The same drawing in a plain scene, to be shown by a plain view.
static void buildPlain(QGraphicsScene& scene, const QList<FileNodeInfo>& nodes,
                       const QList<FileArrowInfo>& links)
{
    QVector<PlainNode*> built;
    for (const FileNodeInfo& node : nodes) {
        built.append(new PlainNode(node));
        scene.addItem(built.last());
    }
    for (const FileArrowInfo& link : links) {
        PlainNode* from = built.at(link.srcNode.toInt());
        PlainNode* to = built.at(link.dstNode.toInt());
        auto* arrow = new Arrow(from, to, nullptr, nullptr);
        arrow->srcPort = link.srcPort;
        arrow->dstPort = link.dstPort;
        from->addArrow(arrow);
        to->addArrow(arrow);
        arrow->setZValue(-1000.0);
        scene.addItem(arrow);
        arrow->updatePosition();
    }
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

/// Microseconds of CPU time a step; the smallest of several rounds.
static double dragCost(QGraphicsView* view, const DiagramItem* node)
{
    view->centerOn(node);
    const QPoint grip = view->mapFromScene(node->mapToScene(node->pixmapCenter()));
    double best = 1e12;
    for (int round = 0; round < 5; ++round) {
        sendMouse(view, QEvent::MouseButtonPress, grip);
        const double milliseconds = cpuTime([&] {
            for (int step = 0; step < dragSteps; ++step)
                sendMouse(view, QEvent::MouseMove, grip + QPoint(step % 40, step % 25));
        });
        best = std::min(best, 1000.0 * milliseconds / dragSteps);
        sendMouse(view, QEvent::MouseMove, grip);
        sendMouse(view, QEvent::MouseButtonRelease, grip);
    }
    return best;
}

static double unpaintedDragCost(QGraphicsView* view, const DiagramItem* node)
{
    view->viewport()->setUpdatesEnabled(false);
    const double cost = dragCost(view, node);
    view->viewport()->setUpdatesEnabled(true);
    return cost;
}

static double plainDragCost(const QSize& size, int nodes, int ownLinks)
{
    QGraphicsScene scene(0, 0, 5000, 5000);
    buildPlain(scene, gridNodes(nodes), gridLinks(nodes, ownLinks));
    QGraphicsView view(&scene);
    view.resize(size);
    view.show();
    QCoreApplication::processEvents();
    return dragCost(&view, nodeNamed(scene, QString::number(middleOf(nodes))));
}

/// One table: the dragged node has this number of links.
static void measure(TopologyWindow& window, int ownLinks)
{
    auto* view = window.findChild<QGraphicsView*>();
    Growth building;
    Growth dragging;
    Growth unpainted;
    Growth plain;
    double ratio = 0;
    for (const int nodes : {75, 125, 250, 500}) {
        const QList<FileArrowInfo> links = gridLinks(nodes, ownLinks);
        building.add(nodes, cpuTime([&] {
                         window.getScence()->buildByProjectFile(gridNodes(nodes), links);
                     }));
        const DiagramItem* node = nodeNamed(*window.getScence(), QString::number(middleOf(nodes)));
        const double cost = dragCost(view, node);
        const double plainCost = plainDragCost(view->size(), nodes, ownLinks);
        ratio = cost / plainCost;
        dragging.add(nodes, cost);
        plain.add(nodes, plainCost);
        unpainted.add(nodes, unpaintedDragCost(view, node));
    }
    std::printf("a node with %d links in drawings of 75, 125, 250, 500 nodes\n", ownLinks);
    building.print("  build, ms");
    dragging.print("  drag, us a step");
    plain.print("  in a plain view");
    unpainted.print("  without painting");
    std::printf("  at 500 nodes against the plain view: ratio %.2f\n", ratio);
}

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    TopologyWindow window;
    window.resize(1280, 800);
    window.show();
    for (const int ownLinks : {0, 2, 4, 8})
        measure(window, ownLinks);
    return 0;
}
