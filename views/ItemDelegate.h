#pragma once

#include <QMetaType>
#include <QString>
#include <QStyledItemDelegate>

/// The text of one flow card.
struct ItemData {
    QString caption;
    QString slotText;
};

Q_DECLARE_METATYPE(ItemData)

/// Paints a card: rounded frame, caption, slot number, and a swatch of the flow's colour.
///
/// The colour is read from Qt::UserRole, the ItemData from Qt::UserRole + 1.
class ItemDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};
