#pragma once

// How a form opens a dialog that exists once, and what becomes of it.

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
