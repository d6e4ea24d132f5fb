#pragma once

#include <QAbstractItemView>
#include <QApplication>
#include <QHelpEvent>
#include <QToolTip>

/// Asks for a tool tip in the middle of an item, as a mouse that rests there does: the event goes
/// to whatever lies on top. QToolTip::text() then tells the tip.
inline void askForToolTip(const QAbstractItemView& view, const QModelIndex& item)
{
    const QPoint global = view.viewport()->mapToGlobal(view.visualRect(item).center());
    QWidget* under = QApplication::widgetAt(global);
    if (!under)
        qFatal("the item is not on the screen");
    QHelpEvent event(QEvent::ToolTip, under->mapFromGlobal(global), global);
    QCoreApplication::sendEvent(under, &event);
}
