#include "topology/DiagramTextItem.h"

DiagramTextItem::DiagramTextItem(QGraphicsItem* parent) : QGraphicsTextItem(parent)
{
    setFlag(ItemIsMovable);
    setFlag(ItemIsSelectable);
}

void DiagramTextItem::mouseDoubleClickEvent(QGraphicsSceneMouseEvent* event)
{
    if (textInteractionFlags() == Qt::NoTextInteraction)
        setTextInteractionFlags(Qt::TextEditorInteraction);
    QGraphicsTextItem::mouseDoubleClickEvent(event);
}

void DiagramTextItem::focusOutEvent(QFocusEvent* event)
{
    setTextInteractionFlags(Qt::NoTextInteraction);
    emit lostFocus(this);
    QGraphicsTextItem::focusOutEvent(event);
}

QVariant DiagramTextItem::itemChange(GraphicsItemChange change, const QVariant& value)
{
    if (change == ItemSelectedHasChanged)
        emit selectedChange(this);
    return value;
}
