#pragma once

#include <QString>

#include <functional>
#include <vector>

class QAbstractItemView;

/// An entry of a context menu and what it does.
struct ViewMenuEntry {
    QString text;
    std::function<void()> act;
    std::function<bool()> isEnabled = {}; ///< asked when the menu opens; always, if it is empty
};

/// Gives a view a context menu, for the right button and for the menu key.
///
/// With the key it opens at the current item, within the view even when that is scrolled away.
void addViewMenu(QAbstractItemView* view, std::vector<ViewMenuEntry> entries);
