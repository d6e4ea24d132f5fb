#pragma once

#include <QLineEdit>

/// Shows the answer of a file dialog from its start; a cancelled dialog empties the edit.
inline void showPath(QLineEdit& edit, const QString& path)
{
    edit.setText(path);
    edit.setCursorPosition(0);
}
