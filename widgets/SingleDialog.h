#pragma once

#include <QDialog>

/// A dialog that exists once at a time: whoever opened it keeps a pointer to it, and forgets it
/// when it closes.
///
/// Every way out of it is a close, Escape too: a dialog that was merely hidden would leave the
/// pointer set and could never be opened again.
class SingleDialog : public QDialog
{
    Q_OBJECT

public:
    explicit SingleDialog(QWidget* parent);

public slots:
    void reject() override;

signals:
    /// The dialog has closed; its opener answers with forgetDialog().
    void windowClosed();

protected:
    void closeEvent(QCloseEvent* event) override;
};

/// Forgets a dialog: it is deleted later and the pointer is null at once.
template <typename Dialog>
void forgetDialog(Dialog*& dialog)
{
    if (dialog)
        dialog->deleteLater();
    dialog = nullptr;
}

/// Closes a dialog that may be open; its windowClosed() leads to forgetDialog().
template <typename Dialog>
void closeDialog(Dialog* dialog)
{
    if (dialog)
        dialog->close();
}
