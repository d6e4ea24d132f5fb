#include "topology/Arrow.h"

#include "topology/DiagramItem.h"
#include "topology/RecordNotifier.h"
#include "widgets/ContextMenu.h"

#include <QFontMetrics>
#include <QGraphicsScene>
#include <QGraphicsSceneContextMenuEvent>
#include <QPainter>
#include <QPen>

#include <cmath>

static constexpr qreal lineWidth = 2.0;
static constexpr qreal labelMargin = 100.0; // keeps labels beside the line inside the repaint area
static constexpr qreal selectionDistance = 4.0; // of the dashed parallels from the line

static QSet<const Arrow*> linksBeyondTheirBounds;

static QPen solidPen(const QColor& color)
{
    return QPen(QBrush(color), lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

Arrow::Arrow(DiagramItem* start, DiagramItem* end, QMenu* menu, QGraphicsItem* parent)
    : QGraphicsLineItem(parent),
      srcNode(start->nodeName),
      dstNode(end->nodeName),
      startItem(start),
      endItem(end),
      contextMenu(menu)
{
    setFlag(ItemIsSelectable);
    setPen(solidPen(color));
}

Arrow::~Arrow()
{
    linksBeyondTheirBounds.remove(this);
    emit RecordNotifier::instance().linkGone(this);
}

QRectF Arrow::boundingRect() const
{
    const qreal extra = (pen().widthF() + labelMargin) / 2.0;
    return QRectF(line().p1(), QSizeF(line().dx(), line().dy()))
        .normalized()
        .adjusted(-extra, -extra, extra, extra);
}

QPainterPath Arrow::shape() const
{
    return QGraphicsLineItem::shape();
}

QPointF Arrow::centerOf(const DiagramItem* item) const
{
    return mapFromItem(item, item->pixmapCenter());
}

QLineF Arrow::centerLine() const
{
    return QLineF(centerOf(startItem), centerOf(endItem));
}

QSize Arrow::labelSize() const
{
    return QSize(QFontMetrics(font).horizontalAdvance(srcPort), textHeight);
}

QRectF Arrow::paintedArea() const
{
    if (!startItem || !endItem)
        return QRectF();
    const QLineF line = centerLine();
    const QSizeF labels = labelSize();
    const qreal besides = selectionDistance + lineWidth;
    const qreal width = qMax(labels.width(), besides);
    const qreal height = qMax(labels.height(), besides);
    return mapRectToScene(
        QRectF(line.p1(), line.p2()).normalized().adjusted(-width, -height, width, height));
}

void Arrow::compareWithBounds()
{
    if (sceneBoundingRect().contains(paintedArea()))
        linksBeyondTheirBounds.remove(this);
    else
        linksBeyondTheirBounds.insert(this);
}

const QSet<const Arrow*>& Arrow::beyondTheirBounds()
{
    return linksBeyondTheirBounds;
}

void Arrow::updatePosition()
{
    setLine(centerLine());
}

// Storing another line repaints the bounds before and after; that leaves what is beyond them, and
// all of it when the line is the same.
void Arrow::followLeavingNode()
{
    const QLineF stored = line();
    const QRectF area = paintedArea();
    updatePosition();
    if (stored == line() || !sceneBoundingRect().contains(area))
        scene()->update(area);
}

void Arrow::followArrivedNode()
{
    compareWithBounds();
    if (linksBeyondTheirBounds.contains(this))
        scene()->update(paintedArea());
}

qint32 Arrow::intersectEdge(DiagramItem* item, const QLineF& line, QPointF* point) const
{
    const QPointF center = centerOf(item);
    const int halfWidth = item->pixmap.width() / 2; // whole pixels
    const int halfHeight = item->pixmap.height() / 2;
    const QPointF topLeft = center + QPointF(-halfWidth, -halfHeight);
    const QPointF topRight = center + QPointF(halfWidth, -halfHeight);
    const QPointF bottomRight = center + QPointF(halfWidth, halfHeight);
    const QPointF bottomLeft = center + QPointF(-halfWidth, halfHeight);
    const QLineF edges[] = {{topLeft, topRight},
                            {topRight, bottomRight},
                            {bottomRight, bottomLeft},
                            {bottomLeft, topLeft}};
    for (qint32 i = 0; i < 4; ++i) {
        if (edges[i].intersects(line, point) == QLineF::BoundedIntersection)
            return i + 1;
    }
    return 0;
}

void Arrow::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    if (!startItem || !endItem || startItem->collidesWithItem(endItem, Qt::IntersectsItemShape))
        return;
    const QLineF centers = centerLine();
    if (qFuzzyIsNull(centers.length()))
        return;
    paintLabels(painter, centers);
    painter->setPen(solidPen(color));
    painter->drawLine(centers);
    if (isSelected())
        paintSelection(painter);
}

/// Left top corner of a label beside the point where the line leaves an edge of the node's box.
static QPoint labelCorner(qint32 edge, const QPointF& point, int width, int height)
{
    switch (edge) {
    case 1:
        return QPoint(int(point.x()), int(point.y() - height));
    case 4:
        return QPoint(int(point.x() - width), int(point.y()));
    default:
        return QPoint(int(point.x()), int(point.y()));
    }
}

// The width of the source port's text serves both labels.
void Arrow::paintLabels(QPainter* painter, const QLineF& centers) const
{
    QPointF startPoint;
    QPointF endPoint;
    const qint32 startEdge = intersectEdge(startItem, centers, &startPoint);
    const qint32 endEdge = intersectEdge(endItem, centers, &endPoint);
    if (startEdge == 0 || endEdge == 0)
        return;
    painter->setFont(font);
    painter->setPen(textColor);
    const QSize size = labelSize();
    const auto drawLabel = [&](const QPointF& point, qint32 edge, const QString& text) {
        const QPoint corner = labelCorner(edge, point, size.width(), size.height());
        painter->drawText(QRect(corner, size), Qt::AlignCenter, text);
    };
    drawLabel(startPoint, startEdge, srcPort);
    drawLabel(endPoint, endEdge, dstPort);
}

// Smoothed, a line of one pixel would be two grey ones.
void Arrow::paintSelection(QPainter* painter) const
{
    const bool smooth = painter->testRenderHint(QPainter::Antialiasing);
    painter->setRenderHint(QPainter::Antialiasing, false);
    const bool steep = std::abs(line().dy() / line().dx()) > 1.0;
    const QPointF offset = steep ? QPointF(selectionDistance, 0) : QPointF(0, selectionDistance);
    painter->setPen(QPen(QBrush(color), 1.0, Qt::DashLine, Qt::SquareCap, Qt::BevelJoin));
    painter->drawLine(line().translated(offset));
    painter->drawLine(line().translated(-offset));
    painter->setRenderHint(QPainter::Antialiasing, smooth);
}

void Arrow::contextMenuEvent(QGraphicsSceneContextMenuEvent* event)
{
    openContextMenu(this, contextMenu, event->screenPos());
}
