#include "topology/ContextMenu.h"

#include <QGraphicsItem>
#include <QGraphicsScene>
#include <QKeyEvent>

void ContextMenu::keyPressEvent(QKeyEvent* event)
{
    const QKeySequence pressed(event->key() | int(event->modifiers()));
    for (QAction* action : actions()) {
        if (action->isEnabled() && action->shortcut() == pressed) {
            close();
            action->trigger();
            return;
        }
    }
    QMenu::keyPressEvent(event);
}

void openContextMenu(QGraphicsItem* item, QMenu* menu, const QPoint& screenPos)
{
    item->scene()->clearSelection();
    item->setSelected(true);
    if (menu)
        menu->exec(screenPos);
}
