#include "views/ItemDelegate.h"

#include <QPainter>
#include <QPainterPath>

static constexpr qreal cornerRadius = 7;

static QPainterPath cardOutline(const QRectF& rect)
{
    const QPointF across(cornerRadius, 0);
    const QPointF down(0, cornerRadius);
    QPainterPath path;
    path.moveTo(rect.topRight() - across);
    path.lineTo(rect.topLeft() + across);
    path.quadTo(rect.topLeft(), rect.topLeft() + down);
    path.lineTo(rect.bottomLeft() - down);
    path.quadTo(rect.bottomLeft(), rect.bottomLeft() + across);
    path.lineTo(rect.bottomRight() - across);
    path.quadTo(rect.bottomRight(), rect.bottomRight() - down);
    path.lineTo(rect.topRight() + down);
    path.quadTo(rect.topRight(), rect.topRight() - across);
    return path;
}

static void drawOutline(QPainter* painter, const QRectF& rect, QStyle::State state)
{
    if (state & QStyle::State_Selected) {
        painter->setPen(Qt::blue);
        painter->setBrush(Qt::blue);
    } else {
        painter->setPen(state & QStyle::State_MouseOver ? Qt::green : Qt::gray);
        painter->setBrush(Qt::NoBrush);
    }
    painter->drawPath(cardOutline(rect));
}

void ItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const
{
    if (!index.isValid())
        return;
    painter->save();
    const QRectF rect(option.rect.x(), option.rect.y(), option.rect.width() - 1,
                      option.rect.height() - 1);
    const auto color = index.data(Qt::UserRole).value<QColor>();
    const auto data = index.data(Qt::UserRole + 1).value<ItemData>();
    drawOutline(painter, rect, option.state);

    const qreal left = rect.left() + 10;
    const qreal captionWidth = rect.width() - 30;
    const QRectF caption(left, rect.top() + 10, captionWidth, 20);
    const QRectF swatch(left + captionWidth - 1, rect.top() + 10, 10, 10);
    const QRectF slotText(left, rect.bottom() - 25, rect.width() - 10, 20);
    painter->setBrush(color);
    painter->setPen(color);
    painter->drawRect(swatch);
    painter->setPen(Qt::black);
    painter->setFont(QFont(QStringLiteral("Times"), 12, 75));
    painter->drawText(caption, Qt::AlignLeft | Qt::TextDontClip, data.caption);
    painter->setPen(QColor(68, 68, 68));
    painter->setFont(QFont(QStringLiteral("Times"), 10));
    painter->drawText(slotText, Qt::AlignLeft | Qt::TextDontClip, data.slotText);
    painter->restore();
}

QSize ItemDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const
{
    return QSize(160, 60);
}
