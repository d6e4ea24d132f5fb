#include "app/MainWindow.h"

#include "app/FindingText.h"
#include "app/FormPlace.h"
#include "app/PlanCheckForm.h"
#include "app/ViewMenu.h"
#include "project/DocumentFolder.h"
#include "views/PlanPanelNames.h"
#include "views/TimeSlotInfo.h"

#include <QApplication>
#include <QComboBox>
#include <QDebug>
#include <QDockWidget>
#include <QListView>
#include <QListWidget>

// The check of the loaded schedule: what it says in the log, in the plan result dock and in its
// form.

void MainWindow::checkPlan()
{
    planCheck = std::make_shared<const PlanCheck>(
        documentPaths({inputFolder(), QStringLiteral("vek_input")}),
        documentPaths({outputFolder(), QStringLiteral("vek_output")}));
    for (const QString& line : logLines(planCheck->result()))
        qDebug().noquote() << line;
    if (planCheckForm)
        planCheckForm->showCheck(planCheck);
}

void MainWindow::markCheckedNodes(QListWidget* nodes)
{
    for (int row = 0; planCheck && row < nodes->count(); ++row) {
        QListWidgetItem* item = nodes->item(row);
        const QString findings = nodeToolTip(*planCheck, item->data(Qt::UserRole).toInt());
        if (!findings.isEmpty())
            item->setToolTip(item->text() + QLatin1Char('\n') + findings);
    }
}

void MainWindow::offerPlanCheck(QDockWidget* dock)
{
    const auto offer = [this](QAbstractItemView* view) {
        addViewMenu(view, {{QStringLiteral(u"检查调度表…"), [this] { showPlanCheckForm(); }}});
    };
    offer(dock->findChild<QListWidget*>(planPanel::nodes()));
    for (auto* grid : dock->findChildren<TimeSlotInfo*>())
        offer(grid);
    for (auto* cards : dock->findChildren<QListView*>(QStringLiteral("listView")))
        offer(cards);
}

void MainWindow::showPlanCheckForm()
{
    if (!planCheckForm) {
        planCheckForm = new PlanCheckForm(this);
        connect(planCheckForm, &PlanCheckForm::windowClosed, this, &MainWindow::delPlanCheckForm);
        connect(planCheckForm, &PlanCheckForm::placeChosen, this, &MainWindow::showPlace);
        planCheckForm->showCheck(planCheck);
        planCheckForm->setModal(false);
        placeOverDrawing(planCheckForm, this); // its rows lead to the tables below
    }
    planCheckForm->show();
    planCheckForm->raise();
    planCheckForm->activateWindow();
}

void MainWindow::delPlanCheckForm()
{
    forgetDialog(planCheckForm);
}

// ---- Going to a place

enum class Part { Node, Port };

static bool holds(const NodeInfo_Xml& schedule, const PlanPlace& place, Part part)
{
    const auto node = schedule.constFind(place.node);
    return node != schedule.cend() && (part == Part::Node || node->contains(place.port));
}

// The table that the place is meant for, unless only the other one has its port, or at least its
// node; -1 when neither has.
int MainWindow::tableWith(const PlanPlace& place) const
{
    const int meant = place.receives ? 1 : 0;
    for (const Part part : {Part::Port, Part::Node}) {
        for (const int table : {meant, 1 - meant}) {
            if (holds(table == 1 ? rcvNodeInfo : sendNodeInfo, place, part))
                return table;
        }
    }
    return -1;
}

/// The slot that is meant, or the first one of the flow that is; -1 when it has no cell.
static qint64 slotOf(const PlanPlace& place, const PortSchedule& ports)
{
    if (place.hasSlot())
        return place.slot;
    if (!place.flowID)
        return -1;
    const auto flowSlots = ports.value(place.port).value(*place.flowID);
    return flowSlots.isEmpty() ? -1 : flowSlots.firstKey();
}

void MainWindow::showPlace(const PlanPlace& place)
{
    const int table = tableWith(place);
    if (table < 0)
        return;
    if (!planInfoDock || planInfoDock->isHidden())
        planInfo();
    planInfoDock->raise();
    planInfoDock->findChild<QComboBox*>(planPanel::tableType())->setCurrentIndex(table);
    const PlanView view = currentPlanView();
    for (int row = 0; row < view.nodes->count(); ++row) {
        if (view.nodes->item(row)->data(Qt::UserRole).toInt() == place.node)
            view.nodes->setCurrentRow(row);
    }
    const PortSchedule ports = view.schedule.value(place.node);
    const int row = qMax(0, ports.keys().indexOf(place.port));
    const qint64 slot = slotOf(place, ports);
    const bool hasCell = slot >= 0 && slot < view.table->columnCount() - 1;
    view.table->setCurrentCell(row, hasCell ? int(slot) + 1 : 0);
    view.table->scrollTo(view.table->model()->index(row, 0)); // the port's name, if there is room
    view.table->scrollTo(view.table->currentIndex());
    view.table->setFocus(); // for the keys, once the main window is active again
    // The release of a double click would take the tool tip away at once.
    if (QApplication::mouseButtons() == Qt::NoButton)
        view.table->showToolTip(view.table->currentIndex());
}
