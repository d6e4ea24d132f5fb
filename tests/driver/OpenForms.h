#pragma once

#include <QApplication>
#include <QWidget>

// The windows that are open, by their class and wherever they belong.

template <typename Form>
QList<Form*> openForms(const QWidgetList& windows = QApplication::topLevelWidgets())
{
    QList<Form*> found;
    for (QWidget* widget : windows) {
        auto* form = qobject_cast<Form*>(widget);
        if (form && form->isVisible())
            found.append(form);
    }
    return found;
}

/// The one that is open; null without one.
template <typename Form>
Form* openForm()
{
    return openForms<Form>().value(0);
}
