#pragma once

#include "tests/support/ItemPlace.h"

#include <QHelpEvent>
#include <QToolTip>

/// Asks for a tool tip in the middle of an item, as a mouse that rests there does: the event goes
/// to whatever lies on top. QToolTip::text() then tells the tip.
inline void askForToolTip(QAbstractItemView& view, const QModelIndex& item)
{
    const ItemPlace place(view, item);
    QHelpEvent event(QEvent::ToolTip, place.local(), place.global);
    QCoreApplication::sendEvent(place.under, &event);
}
