#pragma once

#include "tests/support/Failure.h"

#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

// Working a dialog by its widgets' object names.

/// A widget of a dialog; null, and the test fails, without the dialog or the widget.
template <typename Widget>
Widget* partOf(const QDialog* dialog, const char* name)
{
    auto* part = dialog ? dialog->findChild<Widget*>(QString::fromUtf8(name)) : nullptr;
    if (!part)
        failTest((dialog ? "the dialog has no " : "no dialog is open with ") + QByteArray(name));
    return part;
}

inline QLineEdit* lineEdit(const QDialog* dialog, const char* name)
{
    return partOf<QLineEdit>(dialog, name);
}

inline QComboBox* comboBox(const QDialog* dialog, const char* name)
{
    return partOf<QComboBox>(dialog, name);
}

/// The texts that a list offers, in its order.
inline QStringList entries(const QComboBox* box)
{
    QStringList texts;
    for (int i = 0; i < box->count(); ++i)
        texts.append(box->itemText(i));
    return texts;
}

/// Replaces the text of a line edit by typing.
inline void typeText(const QDialog* dialog, const char* name, const QString& text)
{
    if (QLineEdit* edit = lineEdit(dialog, name)) {
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        QTest::keyClicks(edit, text);
    }
}

inline void typeText(const QDialog* dialog, const char* name, const char* text)
{
    typeText(dialog, name, QString::fromUtf8(text));
}

inline void clickButton(const QDialog* dialog, const char* name)
{
    if (auto* button = partOf<QPushButton>(dialog, name))
        QTest::mouseClick(button, Qt::LeftButton);
}
