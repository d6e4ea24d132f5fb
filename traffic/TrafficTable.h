#pragma once

#include <QStringList>

#include <functional>

class CellBox;
class QDockWidget;
class QPushButton;
class QTableWidget;
class QTableWidgetItem;
class QWidget;

// What the tables of virtual links and of flows share.

/// An empty table that nobody edits; one width (pixels) and one header a column.
QTableWidget* createTrafficTable(const QStringList& headers, const QList<int>& widths);

/// The two buttons of a table's dock.
struct TrafficDockButtons {
    QPushButton* add = nullptr;
    QPushButton* remove = nullptr;
};

/// A visible dock that takes the table, below its two buttons "添加" and "删除".
QDockWidget* createTrafficDock(const QString& title, const QString& objectName, QTableWidget* table,
                               QWidget* parent, TrafficDockButtons& buttons);

/// An item whose text stands in the middle both ways. The caller owns it.
QTableWidgetItem* centredItem(const QString& text);

/// Appends a row: its number from 1, then the texts, all centred. Returns its index.
int appendTrafficRow(QTableWidget* table, const QStringList& texts);

/// Puts a box into a cell of a table that createTrafficTable() made.
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
void removeTrafficRows(QTableWidget* table, int first, int count);

/// Removes the selected ranges and numbers the rows anew; removeElements is called with the first
/// index and the count of each range.
///
/// The ranges are taken once: those behind the first keep their indices although rows are gone by
/// then. Without a selection only a debug line is written.
void deleteSelectedRows(QTableWidget* table, const std::function<void(int, int)>& removeElements);
