#include "tests/app/walk/StudioFaults.h"

#include "app/FlowScheduleForm.h"
#include "app/ImportVekForm.h"
#include "app/OutportVekForm.h"
#include "app/PlanCheckForm.h"
#include "app/SynthesisForm.h"
#include "traffic/AddDstNodeForm.h"
#include "traffic/AddVLineForm.h"
#include "traffic/FlowEditorForm.h"
#include "traffic/FlowText.h"
#include "traffic/ShowVLineInfoForm.h"
#include "traffic/TrafficColumns.h"
#include "traffic/VLineEditorForm.h"
#include "traffic/VLineNodeSelectForm.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QTableWidget>

static QString faultInPaths(WalkedStudio& walked)
{
    const QList<DiagramItem*> nodes = walked.editor.nodes();
    for (const VLineInfo& vLine : walked.probe.vLineInfoList()) {
        for (const VLineItems& path : vLine.vLinePaths) {
            for (DiagramItem* node : path) {
                if (node && !nodes.contains(node))
                    return QStringLiteral("a path holds a node that is gone");
            }
        }
    }
    return QString();
}

static QString faultInVLineTable(WalkedStudio& walked)
{
    const QTableWidget* table = walked.probe.vLineTable();
    const QList<VLineInfo>& vLines = walked.probe.vLineInfoList();
    if (table->rowCount() != vLines.size())
        return QStringLiteral("the table of virtual links differs from its list");
    for (int row = 0; row < vLines.size(); ++row) {
        const auto* paths = qobject_cast<QComboBox*>(table->cellWidget(row, VLinePathsColumn));
        if (table->item(row, VLineNumberColumn)->text() != QString::number(row + 1) ||
            table->item(row, VLineIdColumn)->text() != vLines.at(row).vLineId ||
            paths->count() != vLines.at(row).vLinePaths.size())
            return QStringLiteral("row %1 of the virtual links is another one").arg(row);
    }
    return QString();
}

static QString faultInFlowTable(WalkedStudio& walked)
{
    const QTableWidget* table = walked.probe.flowTable();
    const QList<FlowInfo>& flows = walked.probe.flowInfoList();
    if (table->rowCount() != flows.size())
        return QStringLiteral("the table of flows differs from its list");
    for (int row = 0; row < flows.size(); ++row) {
        const FlowInfo& flow = flows.at(row);
        QStringList listeners;
        for (const DstNodeInfo& listener : flow.dstNodes)
            listeners.append(receiveWindowText(listener));
        const auto text = [&](FlowColumn column) { return table->item(row, column)->text(); };
        if (text(FlowNumberColumn) != QString::number(row + 1) ||
            text(FlowIdColumn) != flow.flowId || text(FlowPeriodColumn) != flow.flowPeriod ||
            text(FlowVLineColumn) != flow.vLineId ||
            text(SendWindowColumn) != sendWindowText(flow) ||
            entries(qobject_cast<QComboBox*>(table->cellWidget(row, ReceiveWindowColumn))) !=
                listeners)
            return QStringLiteral("row %1 of the flows is another one").arg(row);
    }
    return QString();
}

static QString faultInSchedule(WalkedStudio& walked)
{
    if (walked.probe.sendNodeInfo() != walked.sent || walked.probe.rcvNodeInfo() != walked.received)
        return QStringLiteral("the schedule is not that of the last run or import");
    if (!walked.probe.planInfoDock())
        return QString();
    const bool receives = walked.part<QComboBox>("comboboxFlowTableType")->currentIndex() == 1;
    const NodeInfo_Xml& schedule = receives ? walked.received : walked.sent;
    const QListWidget* list = walked.nodes();
    for (int row = 0; row < list->count(); ++row) {
        if (!schedule.contains(list->item(row)->data(Qt::UserRole).toInt()))
            return QStringLiteral("a node is listed that the schedule has not");
    }
    const QListWidgetItem* node = list->selectedItems().value(0);
    const TimeSlotInfo* grid = receives ? walked.rcvTable() : walked.sendTable();
    if (node && grid->rowCount() != schedule.value(node->data(Qt::UserRole).toInt()).size())
        return QStringLiteral("the grid has not the ports of its node");
    return QString();
}

/// Whether a form that exists once is open exactly while it is remembered.
template <typename Form>
static bool isRemembered(const QWidgetList& windows, Form* remembered)
{
    QList<Form*> expected;
    if (remembered)
        expected.append(remembered);
    return openForms<Form>(windows) == expected;
}

template <typename... Forms>
static bool isAnyOpenTwice(const QWidgetList& windows)
{
    return ((openForms<Forms>(windows).size() > 1) || ...);
}

static QString faultInForms(WalkedStudio& walked)
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    const MainWindowProbe& probe = walked.probe;
    if (!isRemembered(windows, probe.vLineEditorForm()) ||
        !isRemembered(windows, probe.flowEditorForm()) ||
        !isRemembered(windows, probe.flowScheduleForm()) ||
        !isRemembered(windows, probe.synthesisForm()) ||
        !isRemembered(windows, probe.showVLineInfoForm()))
        return QStringLiteral("a form is open and not remembered, or the other way round");
    const bool isPathOpen = !openForms<AddVLineForm>(windows).isEmpty();
    if ((isPathOpen && !probe.vLineEditorForm()) ||
        (!isPathOpen && !openForms<VLineNodeSelectForm>(windows).isEmpty()) ||
        (!probe.flowEditorForm() && !openForms<AddDstNodeForm>(windows).isEmpty()))
        return QStringLiteral("a form is open without the one that it belongs to");
    if (isAnyOpenTwice<PlanCheckForm, AddVLineForm, VLineNodeSelectForm, AddDstNodeForm,
                       ImportVekForm, OutportVekForm>(windows))
        return QStringLiteral("a form is open twice");
    for (const QWidget* window : windows) {
        const bool isPassing = window == QApplication::activePopupWidget() ||
                               qobject_cast<const QMessageBox*>(window) ||
                               qobject_cast<const QFileDialog*>(window);
        if (isPassing && window->isVisible())
            return QStringLiteral("left open: %1 %2")
                .arg(QString::fromUtf8(window->metaObject()->className()), window->windowTitle());
    }
    return QString();
}

QString findFault(WalkedStudio& walked)
{
    for (const QString& fault :
         {findFault(walked.editor), faultInPaths(walked), faultInVLineTable(walked),
          faultInFlowTable(walked), faultInSchedule(walked), faultInForms(walked)}) {
        if (!fault.isEmpty())
            return fault;
    }
    return QString();
}
