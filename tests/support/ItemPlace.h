#pragma once

#include "tests/support/Failure.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QtTest>

/// The middle of what is seen of an item on the screen, and what lies on top there.
struct ItemPlace {
    QPoint global;
    QWidget* under = nullptr;

    /// Scrolls to the item and waits until it is on the screen: docks grow step by step.
    ItemPlace(QAbstractItemView& view, const QModelIndex& item)
    {
        view.scrollTo(item);
        const bool isShown = QTest::qWaitFor([&] {
            const QWidget* viewport = view.viewport();
            const QRect seen = view.visualRect(item) & viewport->rect();
            global = viewport->mapToGlobal(seen.center());
            under = QApplication::widgetAt(global);
            return under && !seen.isEmpty() && (under == viewport || viewport->isAncestorOf(under));
        });
        if (!isShown) {
            failTest("the item is not on the screen");
            under = view.viewport();
        }
    }
    QPoint local() const { return under->mapFromGlobal(global); }
};
