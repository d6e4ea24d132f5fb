#include "topology/DiagramView.h"

#include "topology/Arrow.h"
#include "topology/DiagramScene.h"

#include <QGraphicsSceneContextMenuEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPaintEvent>
#include <QToolTip>

DiagramView::DiagramView(DiagramScene* scene) : QGraphicsView(scene), m_scene(scene)
{
    setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                   QPainter::SmoothPixmapTransform);
    // Nodes, names and links are drawn for white paper, also on a dark desktop.
    QPalette paper = palette();
    paper.setColor(QPalette::Base, Qt::white);
    setPalette(paper);
    setAccessibleName(QStringLiteral(u"画布"));
}

// A name may be wider than its node, or covered by another one.
bool DiagramView::viewportEvent(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QGraphicsView::viewportEvent(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const auto* node = qgraphicsitem_cast<DiagramItem*>(itemAt(help->pos()));
    QToolTip::showText(help->globalPos(), node ? node->nodeName : QString(), viewport());
    return true;
}

// A link may be painted beyond its bounds. Where only such a part is to be repainted the scene
// would leave the link out, so a point of its bounds is added; nothing is painted there.
void DiagramView::paintEvent(QPaintEvent* event)
{
    QRegion region = event->region();
    for (const Arrow* link : Arrow::beyondTheirBounds()) {
        if (link->scene() != scene())
            continue;
        const QRect painted = mapFromScene(link->paintedArea()).boundingRect();
        const QRect bounds = mapFromScene(link->sceneBoundingRect()).boundingRect();
        if (event->region().intersects(painted) && !event->region().intersects(bounds))
            region += QRect(bounds.center(), QSize(1, 1));
    }
    QPaintEvent whole(region);
    QGraphicsView::paintEvent(&whole);
}

void DiagramView::mousePressEvent(QMouseEvent* event)
{
    const bool selects =
        event->button() == Qt::LeftButton && m_scene->currentMode() == DiagramScene::MoveItem;
    if (event->buttons() == event->button()) // a second button does not end what the first began
        setDragMode(selects ? RubberBandDrag : NoDrag);
    QGraphicsView::mousePressEvent(event);
}

// Smoothing would double what a step of a drag costs; the drawing is smooth again when it is over.
void DiagramView::mouseMoveEvent(QMouseEvent* event)
{
    const bool drags = event->buttons() & Qt::LeftButton && scene()->mouseGrabberItem();
    if (drags)
        setRenderHint(QPainter::Antialiasing, false);
    QGraphicsView::mouseMoveEvent(event);
}

void DiagramView::mouseReleaseEvent(QMouseEvent* event)
{
    QGraphicsView::mouseReleaseEvent(event);
    setRenderHint(QPainter::Antialiasing);
}

void DiagramView::wheelEvent(QWheelEvent* event)
{
    const int turned = event->angleDelta().y();
    if (!(event->modifiers() & Qt::ControlModifier) || turned == 0) {
        QGraphicsView::wheelEvent(event);
        return;
    }
    setTransformationAnchor(AnchorUnderMouse);
    emit zoomed(turned > 0 ? 1 : -1);
    setTransformationAnchor(AnchorViewCenter);
    event->accept();
}

void DiagramView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        emit escapePressed();
    QGraphicsView::keyPressEvent(event);
}

// The menu key opens the menu of what is selected, wherever the mouse is.
void DiagramView::contextMenuEvent(QContextMenuEvent* event)
{
    const QList<QGraphicsItem*> selected = scene()->selectedItems();
    if (event->reason() != QContextMenuEvent::Keyboard || selected.isEmpty()) {
        QGraphicsView::contextMenuEvent(event);
        return;
    }
    QGraphicsItem* item = selected.first();
    const QPoint place = mapFromScene(item->sceneBoundingRect().center());
    QGraphicsSceneContextMenuEvent menu(QEvent::GraphicsSceneContextMenu);
    menu.setScreenPos(viewport()->mapToGlobal(place));
    menu.setScenePos(mapToScene(place));
    scene()->sendEvent(item, &menu);
    event->accept();
}

/// Nodes, then links, each in the order of the documents.
QList<QGraphicsItem*> DiagramView::stops() const
{
    QList<QGraphicsItem*> nodes;
    QList<QGraphicsItem*> links;
    for (QGraphicsItem* item : scene()->items(Qt::AscendingOrder)) {
        if (item->type() == DIAGRAM_ITEM_TYPE)
            nodes.append(item);
        else if (item->type() == ARROW_TYPE)
            links.append(item);
    }
    return nodes + links;
}

bool DiagramView::focusNextPrevChild(bool next)
{
    const QList<QGraphicsItem*> all = stops();
    const QList<QGraphicsItem*> selected = scene()->selectedItems();
    const int before =
        selected.isEmpty() ? (next ? -1 : all.size()) : all.indexOf(selected.first());
    const int index = before + (next ? 1 : -1);
    if (index < 0 || index >= all.size())
        return QGraphicsView::focusNextPrevChild(next);
    scene()->clearSelection();
    all.at(index)->setSelected(true);
    ensureVisible(all.at(index));
    return true;
}
