#pragma once

#include "tests/support/Failure.h"
#include "tests/support/ItemPlace.h"

#include <QContextMenuEvent>
#include <QMenu>

// Context menus of views, opened as a user does.

/// Presses the right button in the middle of an item: the event goes to whatever lies on top.
inline void openMenuByMouse(QAbstractItemView& view, const QModelIndex& item)
{
    const ItemPlace place(view, item);
    QContextMenuEvent event(QContextMenuEvent::Mouse, place.local(), place.global);
    QApplication::sendEvent(place.under, &event);
}

/// Presses the menu key in a view: the toolkit sends it to the widget with the focus, at its
/// cursor.
inline void openMenuByKey(QAbstractItemView& view)
{
    view.window()->activateWindow();
    view.setFocus();
    if (!QTest::qWaitFor([&] { return QApplication::focusWidget() == &view; })) {
        failTest("the view does not take the focus");
        return;
    }
    const QPoint at = view.inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, at, view.mapToGlobal(at));
    QApplication::sendEvent(&view, &event);
}

/// The menu that is open; null, and the test fails, without one.
inline QMenu* openMenu()
{
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (!menu)
        failTest("no menu is open");
    return menu;
}

/// Closes the menu that is open; without one the test fails.
inline void closeMenu()
{
    if (QMenu* menu = openMenu())
        menu->close();
}

inline QStringList entriesOf(const QMenu* menu)
{
    QStringList texts;
    for (const QAction* action : menu ? menu->actions() : QList<QAction*>())
        texts.append(action->text());
    return texts;
}

/// Walks down to the entry by keys and presses Enter.
inline void chooseByKeys(QMenu* menu, const QString& text)
{
    for (int i = 0; menu && i < menu->actions().size(); ++i) {
        QTest::keyClick(menu, Qt::Key_Down);
        if (menu->activeAction() && menu->activeAction()->text() == text) {
            QTest::keyClick(menu, Qt::Key_Return);
            return;
        }
    }
    failTest("the menu has no such entry");
}

inline void chooseByMouse(QMenu* menu, const QString& text)
{
    for (QAction* action : menu ? menu->actions() : QList<QAction*>()) {
        if (action->text() == text) {
            QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier,
                              menu->actionGeometry(action).center());
            return;
        }
    }
    failTest("the menu has no such entry");
}
