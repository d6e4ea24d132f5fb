#include "app/ShareDelegate.h"

#include "app/PlanTableModel.h"

#include <QApplication>
#include <QPainter>

static constexpr int barMargin = 3;
static constexpr int columnPadding = 12;
static constexpr int leastBarWidth = 160;

static void drawBar(QPainter* painter, const QRect& rect, double share, const QPalette& palette)
{
    // Translucent, so that the text in front of it can be read on light and dark desktops.
    QColor fill = share > 1 ? QColor(220, 50, 40) : palette.color(QPalette::Highlight);
    fill.setAlpha(110);
    QRect filled = rect;
    filled.setWidth(int(rect.width() * qBound(0.0, share, 1.0)));
    painter->fillRect(rect, palette.color(QPalette::Base));
    painter->fillRect(filled, fill);
    painter->setPen(palette.color(QPalette::Mid));
    painter->drawRect(rect.adjusted(0, 0, -1, -1));
}

void ShareDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const
{
    const QVariant share = index.data(PlanTableModel::ShareRole);
    if (!share.isValid()) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionViewItem item(option);
    initStyleOption(&item, index);
    const QString text = item.text;
    item.text.clear();
    const QStyle* style = item.widget ? item.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);

    painter->save();
    const QRect bar = item.rect.adjusted(barMargin, barMargin, -barMargin, -barMargin);
    drawBar(painter, bar, share.toDouble(), item.palette);
    painter->setPen(item.palette.color(QPalette::Text));
    painter->drawText(bar, Qt::AlignCenter, text);
    painter->restore();
}

QSize ShareDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.rwidth() += columnPadding;
    if (index.data(PlanTableModel::ShareRole).isValid())
        size.setWidth(qMax(size.width(), leastBarWidth));
    return size;
}
