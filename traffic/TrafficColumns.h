#pragma once

#include "traffic/FlowInfo.h"

#include <QStringList>

class QTableWidget;

// The columns of the two tables by name. A new one takes an enumerator and a line of the list of
// columns behind it.

enum VLineColumn { VLineNumberColumn, VLineIdColumn, VLinePathsColumn, VLineSwitchesColumn };

QTableWidget* createVLineColumns();

enum FlowColumn {
    FlowNumberColumn,
    FlowTypeColumn,
    FlowIdColumn,
    FlowPeriodColumn,
    FlowSizeColumn,
    FlowVLineColumn,
    SendWindowColumn,
    ReceiveWindowColumn
};

QTableWidget* createFlowColumns();

/// Fills the cells of a row that hold texts.
void setFlowTexts(QTableWidget* table, int row, const FlowInfo& flow);
