#pragma once

#include <QString>
#include <QVector>

#include <functional>

class CellBox;
class QTableWidget;
class QTableWidgetItem;

// Tables whose rows are numbered records that nobody edits in place: a row is appended at the end,
// and rows are deleted by selection.

struct RowTableColumn {
    QString header;
    int width; ///< pixels
};

/// An empty table; its first column is for the numbers of the rows.
QTableWidget* createRowTable(const QVector<RowTableColumn>& columns);

/// An item whose text stands in the middle both ways. The caller owns it.
QTableWidgetItem* centredItem(const QString& text);

/// Appends a row with its number from 1. Returns its index.
int appendRow(QTableWidget* table);

/// Puts a text into a cell, centred, with itself as its tool tip.
void setCellText(QTableWidget* table, int row, int column, const QString& text);

/// Puts a box into a cell of a table that createRowTable() made.
void setCellBox(QTableWidget* table, int row, int column, CellBox* box);

/// Hides a table while it lives, so that many rows come and go without laying out all of its
/// boxes for each of them.
class HiddenTable
{
public:
    explicit HiddenTable(QTableWidget* table);
    ~HiddenTable();
    HiddenTable(const HiddenTable&) = delete;
    HiddenTable& operator=(const HiddenTable&) = delete;

private:
    QTableWidget* m_table;
    bool m_wasHidden;
    bool m_hadFocus;
};

/// Removes rows with their boxes.
void removeRows(QTableWidget* table, int first, int count);

/// Removes the selected ranges and numbers the rows anew; removeElements is called with the first
/// index and the count of each range.
///
/// The ranges are taken once: those behind the first keep their indices although rows are gone by
/// then. Without a selection only a debug line is written.
void deleteSelectedRows(QTableWidget* table, const std::function<void(int, int)>& removeElements);
