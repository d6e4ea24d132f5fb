#pragma once

#include "widgets/CellWidget.h"

#include <QComboBox>

/// A list in a table's cell: shows its full texts in tool tips, and leaves the wheel to the table.
///
/// Turning the wheel while the table scrolls under it must not choose another entry.
class CellBox : public CellWidget<QComboBox>
{
public:
    explicit CellBox(const QStringList& entries);

    /// Replaces the text of one entry, and its tool tip.
    void setEntry(int index, const QString& text);

    /// Opens the list as wide as its longest entry.
    void showPopup() override;

protected:
    void wheelEvent(QWheelEvent* event) override;
};
