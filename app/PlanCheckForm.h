#pragma once

#include "app/PlanTable.h"
#include "widgets/SingleDialog.h"

#include <memory>

class PlanTableModel;
class QTableView;

namespace Ui
{
class PlanCheckForm;
}

/// Shows what the check of the loaded schedule found, and its figures on further pages.
///
/// A page is filled when it is opened first. Rows lead to their place in the schedule's tables by
/// double click, by Enter and by a button.
class PlanCheckForm : public SingleDialog
{
    Q_OBJECT

public:
    explicit PlanCheckForm(QWidget* parent);
    ~PlanCheckForm() override;

    /// Replaces what is shown; null says that there is no schedule. The page and the order that
    /// the user chose stay.
    void showCheck(const SharedPlanCheck& check);

signals:
    /// The user wants to see this place.
    void placeChosen(const PlanPlace& place);

private slots:
    void copyPage();
    void goToCurrentRow();

private:
    struct Page {
        QTableView* view = nullptr;
        PlanTableModel* model = nullptr;
        PlanTable (*tableOf)(const SharedPlanCheck&) = nullptr;
        bool filled = false;
    };

    void addPage(QTableView* view, PlanTable (*tableOf)(const SharedPlanCheck&));
    void showSummary();
    void fillCurrentPage();
    void goTo(const QModelIndex& row);
    Page& currentPage();

    std::unique_ptr<Ui::PlanCheckForm> ui;
    SharedPlanCheck m_check;
    std::vector<Page> m_pages; ///< in the order of the tabs
};
