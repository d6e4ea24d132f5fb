#include "app/PlanTableModel.h"

#include "app/NaturalOrder.h"

#include <QStringList>

#include <algorithm>
#include <numeric>

void PlanTableModel::showTable(PlanTable table)
{
    beginResetModel();
    m_table = std::move(table);
    orderRows();
    endResetModel();
}

PlanPlace PlanTableModel::placeOf(int row) const
{
    return m_table.place(m_rows[size_t(row)]);
}

int PlanTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int PlanTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_table.columns.size());
}

QVariant PlanTableModel::data(const QModelIndex& index, int role) const
{
    const bool isShown = role == Qt::DisplayRole || role == Qt::ToolTipRole ||
                         role == Qt::TextAlignmentRole || role == Qt::DecorationRole ||
                         role == ShareRole;
    if (!index.isValid() || !isShown)
        return QVariant();
    const PlanCell cell = m_table.columns[size_t(index.column())].cell(m_rows[size_t(index.row())]);
    switch (role) {
    case Qt::TextAlignmentRole:
        return int(Qt::AlignVCenter | (cell.isNumber ? Qt::AlignRight : Qt::AlignLeft));
    case Qt::DecorationRole:
        return cell.icon.isNull() ? QVariant() : QVariant(cell.icon);
    case ShareRole:
        return cell.share == PlanCell::noShare ? QVariant() : QVariant(cell.share);
    default:
        return cell.text;
    }
}

QVariant PlanTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section >= columnCount())
        return QVariant();
    return m_table.columns[size_t(section)].header;
}

// The selected cell is one of the persistent indexes: it follows its row.
void PlanTableModel::sort(int column, Qt::SortOrder order)
{
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const std::vector<int> before = m_rows;
    m_sortColumn = column;
    m_sortOrder = order;
    orderRows();
    std::vector<int> shownAt(m_rows.size());
    for (size_t i = 0; i < m_rows.size(); ++i)
        shownAt[size_t(m_rows[i])] = int(i);
    const QModelIndexList kept = persistentIndexList();
    for (const QModelIndex& old : kept) {
        const int row = shownAt[size_t(before[size_t(old.row())])];
        changePersistentIndex(old, index(row, old.column()));
    }
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void PlanTableModel::orderRows()
{
    m_rows.resize(size_t(m_table.rowCount));
    std::iota(m_rows.begin(), m_rows.end(), 0);
    if (m_sortColumn < 0 || m_sortColumn >= columnCount())
        return;
    std::vector<PlanCell> cells;
    cells.reserve(m_rows.size());
    for (int row = 0; row < m_table.rowCount; ++row)
        cells.push_back(m_table.columns[size_t(m_sortColumn)].cell(row));
    const auto isBefore = [&](int a, int b) {
        const PlanCell& left = cells[size_t(a)];
        const PlanCell& right = cells[size_t(b)];
        if (left.order != right.order)
            return left.order < right.order;
        return !left.isNumber && isBeforeNaturally(left.text, right.text);
    };
    if (m_sortOrder == Qt::AscendingOrder)
        std::stable_sort(m_rows.begin(), m_rows.end(), isBefore);
    else
        std::stable_sort(m_rows.begin(), m_rows.end(),
                         [&](int a, int b) { return isBefore(b, a); });
}

static QString asOneCell(QString text)
{
    for (QChar& c : text) {
        if (c == QLatin1Char('\t') || c == QLatin1Char('\n') || c == QLatin1Char('\r'))
            c = QLatin1Char(' ');
    }
    return text;
}

QString tabSeparated(const QAbstractItemModel& model)
{
    QString text;
    const auto appendLine = [&](const std::function<QVariant(int column)>& cell) {
        for (int column = 0; column < model.columnCount(); ++column) {
            if (column > 0)
                text.append(QLatin1Char('\t'));
            text.append(asOneCell(cell(column).toString()));
        }
        text.append(QLatin1Char('\n'));
    };
    appendLine([&](int column) { return model.headerData(column, Qt::Horizontal); });
    for (int row = 0; row < model.rowCount(); ++row)
        appendLine([&](int column) { return model.index(row, column).data(); });
    return text;
}
