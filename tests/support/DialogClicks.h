#pragma once

#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

// Working a dialog by its widgets' object names.

inline QLineEdit* lineEdit(QDialog* dialog, const char* name)
{
    return dialog->findChild<QLineEdit*>(QString::fromUtf8(name));
}

inline QComboBox* comboBox(QDialog* dialog, const char* name)
{
    return dialog->findChild<QComboBox*>(QString::fromUtf8(name));
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
inline void typeText(QDialog* dialog, const char* name, const QString& text)
{
    lineEdit(dialog, name)->selectAll();
    QTest::keyClick(lineEdit(dialog, name), Qt::Key_Delete);
    QTest::keyClicks(lineEdit(dialog, name), text);
}

inline void typeText(QDialog* dialog, const char* name, const char* text)
{
    typeText(dialog, name, QString::fromUtf8(text));
}

inline void clickButton(QDialog* dialog, const char* name)
{
    QTest::mouseClick(dialog->findChild<QPushButton*>(QString::fromUtf8(name)), Qt::LeftButton);
}
