#include "widgets/ContextMenu.h"

#include <QGraphicsItem>
#include <QGraphicsScene>
#include <QKeyEvent>

QAction* ContextMenu::actionOf(const QKeyEvent& event) const
{
    const QKeySequence pressed(event.key() | int(event.modifiers()));
    for (QAction* action : actions()) {
        if (action->isEnabled() && action->shortcut() == pressed)
            return action;
    }
    return nullptr;
}

// Keys of the menu's own entries are not for the window below, which would leave the menu open.
bool ContextMenu::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride && actionOf(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QMenu::event(event);
}

void ContextMenu::keyPressEvent(QKeyEvent* event)
{
    if (QAction* action = actionOf(*event)) {
        close();
        action->trigger();
    } else {
        QMenu::keyPressEvent(event);
    }
}

void openContextMenu(QGraphicsItem* item, QMenu* menu, const QPoint& screenPos)
{
    item->scene()->clearSelection();
    item->setSelected(true);
    if (menu)
        menu->exec(screenPos);
}
