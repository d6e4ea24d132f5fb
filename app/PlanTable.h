#pragma once

#include "app/PlanCheck.h"

#include <QIcon>

#include <functional>

/// What one cell of a page shows, and by what it sorts: by the number, then by the text.
struct PlanCell {
    QString text;
    qint64 order = 0;
    bool isNumber = false;
    double share = noShare; ///< drawn as a bar, 1 for a full one
    QIcon icon;

    static constexpr double noShare = -1;
};

/// A column: its header, and the cell of each row.
struct PlanColumn {
    QString header;
    std::function<PlanCell(int row)> cell;
};

/// A page of the plan check as rows and columns, and where each row leads.
///
/// Its functions keep the check alive that it was made of.
struct PlanTable {
    std::vector<PlanColumn> columns;
    int rowCount = 0;
    std::function<PlanPlace(int row)> place;
};

/// The findings, faults first.
PlanTable findingTable(const SharedPlanCheck& check);

/// The load of each sending port, the fullest first.
PlanTable loadTable(const SharedPlanCheck& check);

/// The latency of each flow to each listener, in slots and us, beside their windows.
PlanTable latencyTable(const SharedPlanCheck& check);

/// The frames that wait in each switch at most, against its buffers.
PlanTable occupancyTable(const SharedPlanCheck& check);
