#pragma once

#include <QPointer>
#include <QTableWidget>

class CellInView;

/// A table of any number of cell widgets, of which only those in view are shown.
///
/// cellWidget() returns each of them, in view or not. Scrolling, laying out and painting cost what
/// is in view.
class CellTable : public QTableWidget
{
    Q_OBJECT

public:
    explicit CellTable(QWidget* parent = nullptr);
    ~CellTable() override;

    /// Puts a CellWidget into a cell, in place of one that is there; the table owns it.
    ///
    /// Give viewport() as its parent when making many: changing a parent costs.
    template <typename Cell>
    void setCell(int row, int column, Cell* cell)
    {
        storeCell(row, column, cell);
    }

    /// Removes all rows and deletes their cell widgets; the columns and their headers stay.
    void removeAllRows();

protected:
    /// Shows the cells that came into view and hides those that left it.
    void updateEditorGeometries() override;
    void scrollContentsBy(int dx, int dy) override;

private:
    void storeCell(int row, int column, QWidget* cell);
    void showCell(QWidget* cell, const QModelIndex& index);
    void hideCell(QWidget* cell);
    void deleteCells();
    QWidget* createStore();

    QWidget* m_store; ///< hidden parent of what is out of view
    QVector<QPointer<QWidget>> m_shown;
};
