#pragma once

#include "widgets/CellTable.h"

#include <QColor>
#include <QMap>
#include <QVector>

/// The ports of one node: port, flow id, then slots; as the schedule holds them below a node.
using PortSchedule = QMap<int, QMap<int, QMap<int, qint64>>>;

/// Grid of one node's schedule: a row a port, a column a slot, a coloured cell where a flow sends.
///
/// A cell's tool tip names its flows, so that they can be told without comparing colours.
class TimeSlotInfo : public CellTable
{
    Q_OBJECT

public:
    explicit TimeSlotInfo(QWidget* parent);

    /// Prepares headers and one row for each port, behind those that are there; no slot is
    /// coloured.
    ///
    /// slotCount is the number of slots in the cycle; at most mostSlots get a column.
    void setupSlotTable(const PortSchedule& ports, int slotCount);

    /// Colours one cell; a slot without a column is passed over. The flow set last is shown.
    void setSlotCell(int row, int slot, int flowID);

    /// Prepares the grid and colours all slots of all ports, from empty; without repainting
    /// between.
    void showPorts(const PortSchedule& ports, int slotCount);

    /// Columns beyond this number would take more memory than a view is worth.
    static constexpr int mostSlots = 100000;

    /// Shows the tool tip of a cell beside it, without a mouse; that of an unused cell is none.
    void showToolTip(const QModelIndex& cell);

protected:
    /// Shows the tool tip of a used cell; it is composed when asked for.
    bool viewportEvent(QEvent* event) override;
    /// Whoever walks over the cells by keys sees their tool tips too.
    void keyPressEvent(QKeyEvent* event) override;

private:
    void labelColumns();
    QString toolTipAt(const QModelIndex& cell) const;

    QVector<PortSchedule::mapped_type> rowFlows; ///< flow id, then slots, of each row's port
    QColor backgroundColor;                      ///< the empty part of a cell
    QColor textColor;
};
