#pragma once

#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <QWidget>

#include <functional>

/// Answers blocking boxes and file dialogs, in the order given, while the object lives.
///
/// Dialogs block the code under test, so a timer looks for the next one, records it, and answers it
/// through its real widgets. A dialog that nobody expects is closed and recorded in unexpected().
class DialogAnswers
{
public:
    DialogAnswers();
    DialogAnswers(const DialogAnswers&) = delete;
    DialogAnswers& operator=(const DialogAnswers&) = delete;

    /// Presses the default button of the next message box; before() runs while it is open.
    void expectMessageBox(std::function<void()> before = {});
    /// Types a path into the next file dialog and accepts it.
    void expectFile(const QString& path);
    /// Cancels the next file dialog.
    void expectCancelledFileDialog();

    /// "caption: text" of each message box, and "caption [filter]" of each file dialog, in order.
    const QStringList& seen() const { return m_seen; }
    /// The QMessageBox::Icon of each message box, in order.
    const QList<int>& icons() const { return m_icons; }
    const QStringList& unexpected() const { return m_unexpected; }
    /// Folders in which the file dialogs started, and whose children they were.
    const QStringList& startFolders() const { return m_startFolders; }
    const QList<QWidget*>& parents() const { return m_parents; }
    /// Whether each file dialog so far was the toolkit's own, not the desktop's.
    bool allFileDialogsWereOwn() const { return m_allOwn; }
    bool allAnswered() const { return m_expected.isEmpty() && m_unexpected.isEmpty(); }

private:
    struct Answer {
        enum Kind { MessageBox, File, CancelledFile } kind;
        QString path;
        std::function<void()> before;
    };

    void look();
    bool answerMessageBox(QWidget* window);
    bool answerFileDialog(QWidget* window);

    QTimer m_timer;
    QList<Answer> m_expected;
    QStringList m_seen;
    QList<int> m_icons;
    QStringList m_unexpected;
    QStringList m_startFolders;
    QList<QWidget*> m_parents;
    bool m_allOwn = true;
    QPointer<QWidget> m_current;
};
