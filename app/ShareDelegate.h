#pragma once

#include <QStyledItemDelegate>

/// Paints a cell of PlanTableModel; one with a share as a bar behind its text.
///
/// A share above 1 fills the bar in red, and its text tells how much.
class ShareDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};
