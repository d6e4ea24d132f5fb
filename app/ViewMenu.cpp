#include "app/ViewMenu.h"

#include <QAbstractItemView>
#include <QMenu>

static void openMenu(QAbstractItemView* view, const std::vector<ViewMenuEntry>& entries,
                     const QPoint& position)
{
    auto* menu = new QMenu(view);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const ViewMenuEntry& entry : entries) {
        QAction* action = menu->addAction(entry.text);
        action->setEnabled(!entry.isEnabled || entry.isEnabled());
        QObject::connect(action, &QAction::triggered, view, entry.act);
    }
    const QRect inside = view->viewport()->rect();
    const QPoint kept(qBound(inside.left(), position.x(), inside.right()),
                      qBound(inside.top(), position.y(), inside.bottom()));
    menu->popup(view->viewport()->mapToGlobal(kept));
}

void addViewMenu(QAbstractItemView* view, std::vector<ViewMenuEntry> entries)
{
    view->setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(view, &QWidget::customContextMenuRequested, view,
                     [view, entries = std::move(entries)](const QPoint& position) {
                         openMenu(view, entries, position);
                     });
}
