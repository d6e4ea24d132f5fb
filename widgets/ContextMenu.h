#pragma once

#include <QMenu>

class QGraphicsItem;

/// A context menu whose entries' shortcuts work while it is open, and only then.
///
/// Two menus may thus carry the same shortcut for what they stand on.
class ContextMenu : public QMenu
{
    Q_OBJECT

public:
    using QMenu::QMenu;

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QAction* actionOf(const QKeyEvent& event) const;
};

/// Leaves exactly this item selected and lets the user choose; returns after the choice.
///
/// The choice may delete the item, so it must not be followed afterwards.
void openContextMenu(QGraphicsItem* item, QMenu* menu, const QPoint& screenPos);
