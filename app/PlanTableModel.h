#pragma once

#include "app/PlanTable.h"

#include <QAbstractTableModel>

/// Shows a page of the plan check; cells are composed when they are shown.
///
/// Sorting orders row numbers by keys that are taken once, so that 100,000 rows sort at a click.
/// Numbers sort by value, and numbers within texts too: "SW2" comes before "SW10".
class PlanTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Role { ShareRole = Qt::UserRole }; ///< a double, 1 for a full bar; invalid without a bar

    using QAbstractTableModel::QAbstractTableModel;

    /// Replaces what is shown; the order that the user chose stays.
    void showTable(PlanTable table);

    /// Where a row leads, rows as shown.
    PlanPlace placeOf(int row) const;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// Sorts by a column; column -1 is the order in which the table came.
    void sort(int column, Qt::SortOrder order) override;

private:
    void orderRows();

    PlanTable m_table;
    std::vector<int> m_rows; ///< rows of the table in the order shown
    int m_sortColumn = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
};

/// Headers and rows of a model as shown, cells separated by tabulators and lines ended by newlines,
/// as spreadsheets take it.
QString tabSeparated(const QAbstractItemModel& model);
