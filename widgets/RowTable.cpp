#include "widgets/RowTable.h"

#include "widgets/CellBox.h"
#include "widgets/CellTable.h"

#include <QDebug>
#include <QHeaderView>
#include <QTableWidget>

#include <algorithm>

static constexpr int rowHeight = 25;

QTableWidget* createRowTable(const QVector<RowTableColumn>& columns)
{
    auto* table = new CellTable;
    table->setRowCount(0);
    table->setColumnCount(columns.size());
    for (int i = 0; i < columns.size(); ++i) {
        table->setColumnWidth(i, columns.at(i).width);
        table->setHorizontalHeaderItem(i, new QTableWidgetItem(columns.at(i).header));
        table->horizontalHeaderItem(i)->setToolTip(columns.at(i).header);
    }
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    // Each selected range deletes its rows: two cells of one row would take a second row with it.
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setAlternatingRowColors(true);
    table->setWordWrap(false);
    table->verticalHeader()->setVisible(false);
    table->verticalHeader()->setDefaultSectionSize(rowHeight);
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    return table;
}

QTableWidgetItem* centredItem(const QString& text)
{
    auto* item = new QTableWidgetItem(text);
    item->setTextAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    item->setToolTip(text);
    return item;
}

static void numberRow(QTableWidget* table, int row)
{
    QTableWidgetItem* item = centredItem(QString::number(row + 1));
    item->setFlags(item->flags() & ~Qt::ItemIsEditable);
    table->setItem(row, 0, item);
}

int appendRow(QTableWidget* table)
{
    const int row = table->rowCount();
    table->insertRow(row);
    numberRow(table, row);
    if (table->isVisible())
        table->scrollToItem(table->item(row, 0));
    return row;
}

void setCellText(QTableWidget* table, int row, int column, const QString& text)
{
    table->setItem(row, column, centredItem(text));
}

void setCellBox(QTableWidget* table, int row, int column, CellBox* box)
{
    static_cast<CellTable*>(table)->setCell(row, column, box);
}

HiddenTable::HiddenTable(QTableWidget* table)
    : m_table(table),
      m_wasHidden(table->isHidden()),
      m_hadFocus(table->hasFocus())
{
    m_table->hide();
}

HiddenTable::~HiddenTable()
{
    m_table->setHidden(m_wasHidden);
    if (m_hadFocus)
        m_table->setFocus();
}

// The boxes go in the order in which they came. Left to the table they go in no order, and each one
// is searched for among all others then.
void removeRows(QTableWidget* table, int first, int count)
{
    const HiddenTable hidden(table);
    for (int row = first; row < first + count; ++row) {
        for (int column = 0; column < table->columnCount(); ++column)
            delete table->cellWidget(row, column);
    }
    table->model()->removeRows(first, count);
}

void deleteSelectedRows(QTableWidget* table, const std::function<void(int, int)>& removeElements)
{
    const QList<QTableWidgetSelectionRange> ranges = table->selectedRanges();
    if (ranges.isEmpty())
        qDebug() << "请选择一行";
    const HiddenTable hidden(table);
    int firstMoved = table->rowCount();
    for (const QTableWidgetSelectionRange& range : ranges) {
        const int count = std::min(range.rowCount(), table->rowCount() - range.topRow());
        if (count <= 0)
            continue;
        removeElements(range.topRow(), count);
        removeRows(table, range.topRow(), count);
        firstMoved = std::min(firstMoved, range.topRow());
    }
    for (int row = firstMoved; row < table->rowCount(); ++row)
        numberRow(table, row);
}
