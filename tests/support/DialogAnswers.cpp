#include "tests/support/DialogAnswers.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QtTest>

DialogAnswers::DialogAnswers()
{
    QObject::connect(&m_timer, &QTimer::timeout, [this] { look(); });
    m_timer.start(5);
}

void DialogAnswers::expectMessageBox(std::function<void()> before)
{
    m_expected.append({Answer::MessageBox, QString(), std::move(before)});
}

void DialogAnswers::expectFile(const QString& path)
{
    m_expected.append({Answer::File, path, {}});
}

void DialogAnswers::expectCancelledFileDialog()
{
    m_expected.append({Answer::CancelledFile, QString(), {}});
}

void DialogAnswers::look()
{
    QWidget* window = QApplication::activeModalWidget();
    if (!window || !window->isVisible() || window == m_current)
        return;
    m_current = window;
    if (!answerMessageBox(window) && !answerFileDialog(window))
        m_current.clear();
}

bool DialogAnswers::answerMessageBox(QWidget* window)
{
    auto* box = qobject_cast<QMessageBox*>(window);
    if (!box)
        return false;
    m_seen.append(QStringLiteral("%1: %2").arg(box->windowTitle(), box->text()));
    m_icons.append(box->icon());
    if (m_expected.isEmpty() || m_expected.first().kind != Answer::MessageBox) {
        m_unexpected.append(m_seen.last());
    } else {
        const Answer answer = m_expected.takeFirst();
        if (answer.before)
            answer.before();
    }
    const QList<QAbstractButton*> buttons = box->buttons();
    QTest::mouseClick(buttons.isEmpty() ? nullptr : buttons.first(), Qt::LeftButton);
    return true;
}

bool DialogAnswers::answerFileDialog(QWidget* window)
{
    auto* dialog = qobject_cast<QFileDialog*>(window);
    if (!dialog)
        return false;
    m_seen.append(QStringLiteral("%1 [%2]").arg(dialog->windowTitle(),
                                                dialog->nameFilters().join(QStringLiteral(";;"))));
    m_startFolders.append(dialog->directory().absolutePath());
    m_parents.append(dialog->parentWidget());
    m_allOwn = m_allOwn && dialog->testOption(QFileDialog::DontUseNativeDialog);
    if (m_expected.isEmpty() || m_expected.first().kind == Answer::MessageBox) {
        m_unexpected.append(m_seen.last());
        dialog->reject();
        return true;
    }
    const Answer answer = m_expected.takeFirst();
    auto* edit = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    if (answer.kind == Answer::CancelledFile || !edit) {
        dialog->reject();
        return true;
    }
    edit->setText(answer.path);
    const auto enter = [edit] { QTest::keyClick(edit, Qt::Key_Enter); };
    // Not within the timer's own event, so that it sees a box that asks about the file.
    if (dialog->acceptMode() == QFileDialog::AcceptSave)
        QTimer::singleShot(0, edit, enter);
    else
        enter();
    return true;
}
