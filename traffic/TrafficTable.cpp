#include "traffic/TrafficTable.h"

#include "widgets/CellBox.h"
#include "widgets/CellTable.h"

#include <QDebug>
#include <QDockWidget>
#include <QGridLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTableWidget>

#include <algorithm>

static constexpr int rowHeight = 25;

QTableWidget* createTrafficTable(const QStringList& headers, const QList<int>& widths)
{
    auto* table = new CellTable;
    table->setRowCount(0);
    table->setColumnCount(headers.size());
    for (int column = 0; column < widths.size(); ++column)
        table->setColumnWidth(column, widths.at(column));
    table->setHorizontalHeaderLabels(headers);
    for (int column = 0; column < headers.size(); ++column)
        table->horizontalHeaderItem(column)->setToolTip(headers.at(column));
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

QDockWidget* createTrafficDock(const QString& title, const QString& objectName, QTableWidget* table,
                               QWidget* parent, TrafficDockButtons& buttons)
{
    auto* dock = new QDockWidget(title, parent);
    dock->setVisible(true);
    dock->setObjectName(objectName);
    auto* content = new QWidget(dock);
    auto* layout = new QGridLayout(content);
    auto* row = new QHBoxLayout;
    buttons.add = new QPushButton(QStringLiteral(u"添加"));
    buttons.remove = new QPushButton(QStringLiteral(u"删除"));
    row->addWidget(buttons.add);
    row->addWidget(buttons.remove);
    row->addStretch();
    layout->addLayout(row, 0, 0);
    layout->addWidget(table, 1, 0);
    dock->setWidget(content);
    return dock;
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

int appendTrafficRow(QTableWidget* table, const QStringList& texts)
{
    const int row = table->rowCount();
    table->insertRow(row);
    numberRow(table, row);
    for (int i = 0; i < texts.size(); ++i)
        table->setItem(row, i + 1, centredItem(texts.at(i)));
    if (table->isVisible())
        table->scrollToItem(table->item(row, 0));
    return row;
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
void removeTrafficRows(QTableWidget* table, int first, int count)
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
        removeTrafficRows(table, range.topRow(), count);
        firstMoved = std::min(firstMoved, range.topRow());
    }
    for (int row = firstMoved; row < table->rowCount(); ++row)
        numberRow(table, row);
}
