#include "topology/DiagramItem.h"

#include "topology/Arrow.h"
#include "topology/NodeItemsByName.h"
#include "topology/RecordNotifier.h"
#include "widgets/ContextMenu.h"

#include <QGraphicsScene>
#include <QGraphicsSceneContextMenuEvent>
#include <QPainter>
#include <QPixmapCache>
#include <QStyleOptionGraphicsItem>

#include <algorithm>

static QPixmap pixmapOf(DiagramItem::DiagramType type, const char* ending)
{
    switch (type) {
    case DiagramItem::Endpoint:
        return QPixmap(QStringLiteral(":/images/endpoint") + QLatin1String(ending));
    case DiagramItem::Switch:
        return QPixmap(QStringLiteral(":/images/switch") + QLatin1String(ending));
    }
    return QPixmap();
}

/// The picture smoothly stretched, which is done once for all nodes of a kind.
static QPixmap stretched(const QPixmap& picture, const QSize& size)
{
    const QString key = QStringLiteral("rotunda-%1-%2-%3")
                            .arg(picture.cacheKey())
                            .arg(size.width())
                            .arg(size.height());
    QPixmap result;
    if (!QPixmapCache::find(key, &result)) {
        result = picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        QPixmapCache::insert(key, result);
    }
    return result;
}

DiagramItem::DiagramItem(DiagramType type, QMenu* menu, QGraphicsItem* parent)
    : QGraphicsPixmapItem(parent),
      diagramType(type),
      pixmap(pixmapOf(type, ".png")),
      contextMenu(menu),
      largePixmap(pixmapOf(type, "@2x.png"))
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
    paintPicture(painter, image);
    if (isSelected())
        paintFrame(painter, image);
    painter->setFont(font);
    painter->setPen(textColor);
    painter->drawText(QRect(image.left(), image.top() + image.height(), image.width(), textHeight),
                      Qt::AlignCenter, nodeName);
}

void DiagramItem::paintPicture(QPainter* painter, const QRect& target) const
{
    if (pixmap.isNull())
        return;
    const qreal scale = painter->deviceTransform().m11();
    const bool smooth = painter->testRenderHint(QPainter::SmoothPixmapTransform);
    const bool isOwn = pixmap.cacheKey() == QGraphicsPixmapItem::pixmap().cacheKey();
    if (scale > 1.0 && isOwn && !largePixmap.isNull())
        painter->drawPixmap(target, largePixmap, QRect());
    else if (smooth && qFuzzyCompare(scale, 1.0))
        painter->drawPixmap(target.topLeft(), stretched(pixmap, target.size()));
    else
        painter->drawPixmap(target, pixmap, QRect());
}

// Smoothed, the lines of one pixel would be two grey ones.
void DiagramItem::paintFrame(QPainter* painter, const QRect& image)
{
    const int right = image.left() + image.width();
    const int bottom = image.top() + image.height();
    const QPoint corners[] = {image.topLeft(), QPoint(right, image.top()), QPoint(right, bottom),
                              QPoint(image.left(), bottom)};
    const bool smooth = painter->testRenderHint(QPainter::Antialiasing);
    painter->setRenderHint(QPainter::Antialiasing, false);
    painter->setPen(QPen(QBrush(Qt::black), 1.0, Qt::DashLine, Qt::SquareCap, Qt::BevelJoin));
    for (int i = 0; i < 4; ++i)
        painter->drawLine(corners[i], corners[(i + 1) % 4]);
    painter->setRenderHint(QPainter::Antialiasing, smooth);
}

void DiagramItem::contextMenuEvent(QGraphicsSceneContextMenuEvent* event)
{
    openContextMenu(this, contextMenu, event->screenPos());
}

// Told before the item moves, so the links' stored lines lag one move behind; what they paint does
// not, so it is repainted where it was and where it is. The node asks first to be repainted itself:
// then the scene does all of it at once, before anything is painted at the new place.
QVariant DiagramItem::itemChange(GraphicsItemChange change, const QVariant& value)
{
    if (change == ItemPositionChange)
        update();
    for (Arrow* arrow : qAsConst(arrowList)) {
        if (change == ItemPositionChange && arrow->scene())
            arrow->followLeavingNode();
        else if (change == ItemPositionChange)
            arrow->updatePosition();
        else if (change == ItemPositionHasChanged && arrow->scene())
            arrow->followArrivedNode();
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
