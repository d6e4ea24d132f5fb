#include "topology/DiagramItem.h"

#include "topology/Arrow.h"
#include "topology/ContextMenu.h"
#include "topology/NodeItemsByName.h"
#include "topology/RecordNotifier.h"

#include <QGraphicsScene>
#include <QGraphicsSceneContextMenuEvent>
#include <QPainter>
#include <QStyleOptionGraphicsItem>

#include <algorithm>

static QPixmap pixmapOf(DiagramItem::DiagramType type)
{
    switch (type) {
    case DiagramItem::Endpoint:
        return QPixmap(QStringLiteral(":/images/endpoint.png"));
    case DiagramItem::Switch:
        return QPixmap(QStringLiteral(":/images/switch.png"));
    }
    return QPixmap();
}

DiagramItem::DiagramItem(DiagramType type, QMenu* menu, QGraphicsItem* parent)
    : QGraphicsPixmapItem(parent),
      diagramType(type),
      pixmap(pixmapOf(type)),
      contextMenu(menu)
{
    setPixmap(pixmap);
    setFlag(ItemIsMovable);
    setFlag(ItemIsSelectable);
    setFlag(ItemSendsGeometryChanges);
}

DiagramItem::~DiagramItem()
{
    forgetNodeByName(this);
    RecordNotifier::instance().announce(this);
}

QRectF DiagramItem::boundingRect() const
{
    return QRectF(-0.5, -0.5, pixmap.width() + 1.0, pixmap.height() + 1.0 + textHeight);
}

void DiagramItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget*)
{
    const QRect all = option->rect;
    const QRect image(all.topLeft(), QSize(all.width(), all.height() - textHeight));
    const int bandTop = all.top() + image.height();
    painter->drawPixmap(image, pixmap, QRect());
    if (isSelected()) {
        const QPoint corners[] = {image.topLeft(), QPoint(all.left() + image.width(), all.top()),
                                  QPoint(all.left() + image.width(), bandTop),
                                  QPoint(all.left(), bandTop)};
        painter->setPen(QPen(QBrush(Qt::black), 1.0, Qt::DashLine, Qt::SquareCap, Qt::BevelJoin));
        for (int i = 0; i < 4; ++i)
            painter->drawLine(corners[i], corners[(i + 1) % 4]);
    }
    painter->setFont(font);
    painter->setPen(textColor);
    painter->drawText(QRect(all.left(), bandTop, image.width(), textHeight), Qt::AlignCenter,
                      nodeName);
}

void DiagramItem::contextMenuEvent(QGraphicsSceneContextMenuEvent* event)
{
    openContextMenu(this, contextMenu, event->screenPos());
}

// Told before the item moves, so the links' stored lines lag one move behind.
QVariant DiagramItem::itemChange(GraphicsItemChange change, const QVariant& value)
{
    if (change == ItemPositionChange) {
        for (Arrow* arrow : qAsConst(arrowList))
            arrow->updatePosition();
    }
    return value;
}

void DiagramItem::setNameFont(const QFont& nameFont, qint32 height)
{
    prepareGeometryChange();
    font = nameFont;
    textHeight = height;
}

void DiagramItem::addArrow(Arrow* arrow)
{
    arrowList.append(arrow);
}

void DiagramItem::removeArrow(Arrow* arrow)
{
    arrowList.removeOne(arrow);
}

void DiagramItem::removeArrows()
{
    const QList<Arrow*> links = arrowList;
    for (Arrow* arrow : links) {
        if (!arrowList.contains(arrow))
            continue; // a link from the node to itself stands in the list twice
        arrow->startItem->removeArrow(arrow);
        arrow->endItem->removeArrow(arrow);
        scene()->removeItem(arrow);
        delete arrow;
    }
}

bool DiagramItem::isLinkedTo(const DiagramItem* other) const
{
    return std::any_of(arrowList.begin(), arrowList.end(), [other](const Arrow* arrow) {
        return arrow->startItem == other || arrow->endItem == other;
    });
}
