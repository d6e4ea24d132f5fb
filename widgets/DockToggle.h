#pragma once

#include <QDockWidget>

/// Hides a visible dock, and shows a hidden one docked, even if it was floating, before its
/// neighbours.
inline void toggleDock(QDockWidget* dock)
{
    if (dock->isVisible()) {
        dock->setVisible(false);
        return;
    }
    dock->setFloating(false);
    dock->setVisible(true);
    dock->raise();
}
