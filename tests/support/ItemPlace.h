#pragma once

#include <QAbstractItemView>
#include <QApplication>
#include <QtTest>

/// The middle of an item on the screen, and what lies on top there.
struct ItemPlace {
    QPoint global;
    QWidget* under = nullptr;

    /// Scrolls to the item and waits until it is on the screen: docks grow step by step.
    ItemPlace(QAbstractItemView& view, const QModelIndex& item)
    {
        view.scrollTo(item);
        const bool isShown = QTest::qWaitFor([&] {
            global = view.viewport()->mapToGlobal(view.visualRect(item).center());
            under = QApplication::widgetAt(global);
            return under && view.isAncestorOf(under);
        });
        if (!isShown)
            qFatal("the item is not on the screen");
    }
    QPoint local() const { return under->mapFromGlobal(global); }
};
