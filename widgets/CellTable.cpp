#include "widgets/CellTable.h"

#include "widgets/CellWidget.h"

#include <QHeaderView>

CellTable::CellTable(QWidget* parent) : QTableWidget(parent), m_store(createStore()) {}

// Children of the viewport are moved one by one when it scrolls; those of the store go along.
QWidget* CellTable::createStore()
{
    auto* store = new QWidget(viewport());
    store->hide();
    return store;
}

void CellTable::storeCell(int row, int column, QWidget* cell)
{
    setCellWidget(row, column, cell);
    // By itself the view would keep the addresses of all cell widgets that ever were.
    connect(cell, &QObject::destroyed, this, &CellTable::editorDestroyed);
    cell->setParent(m_store);
    const QModelIndex index = model()->index(row, column);
    if (isVisible() && updatesEnabled() && visualRect(index).intersects(viewport()->rect()))
        showCell(cell, index);
}

// While there is a table to be told of it.
CellTable::~CellTable()
{
    deleteCells();
}

// In the order in which they came: the table would let them go in no order, and each would be
// searched for among all.
void CellTable::deleteCells()
{
    for (const QPointer<QWidget>& cell : qAsConst(m_shown))
        delete cell;
    m_shown.clear();
    delete m_store;
    m_store = nullptr;
}

void CellTable::removeAllRows()
{
    deleteCells();
    m_store = createStore();
    setRowCount(0);
}

void CellTable::scrollContentsBy(int dx, int dy)
{
    QTableWidget::scrollContentsBy(dx, dy);
    updateEditorGeometries();
}

void CellTable::showCell(QWidget* cell, const QModelIndex& index)
{
    if (auto* own = dynamic_cast<CellInView*>(cell))
        own->setInView(true);
    if (cell->parentWidget() != viewport())
        cell->setParent(viewport());
    QStyleOptionViewItem option = viewOptions();
    option.rect = visualRect(index);
    itemDelegate(index)->updateEditorGeometry(cell, option, index);
    cell->show();
    m_shown.append(cell);
}

// One with the focus stays, outside the visible area: hiding it would hand the focus on.
void CellTable::hideCell(QWidget* cell)
{
    auto* own = dynamic_cast<CellInView*>(cell);
    if (!own || cell->hasFocus()) {
        m_shown.append(cell);
        return;
    }
    cell->hide();
    own->setInView(false);
    cell->setParent(m_store);
}

void CellTable::updateEditorGeometries()
{
    const QVector<QPointer<QWidget>> before = m_shown;
    m_shown.clear();
    const QRect area = viewport()->rect();
    const auto lastOr = [](int found, int count) { return found < 0 ? count - 1 : found; };
    const int lastRow = lastOr(rowAt(area.bottom()), rowCount());
    const int lastColumn = lastOr(columnAt(area.right()), columnCount());
    for (int row = qMax(0, rowAt(0)); row <= lastRow; ++row) {
        for (int column = qMax(0, columnAt(0)); column <= lastColumn; ++column) {
            const QModelIndex index = model()->index(row, column);
            if (QWidget* cell = indexWidget(index))
                showCell(cell, index);
        }
    }
    for (const QPointer<QWidget>& cell : before) {
        if (cell && !m_shown.contains(cell))
            hideCell(cell);
    }
}
