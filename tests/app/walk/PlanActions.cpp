#include "tests/app/walk/WalkedStudio.h"
#include "views/FlowListWindow.h"
#include "views/TimeSlotInfo.h"

#include <QHelpEvent>
#include <QScrollBar>
#include <QTableWidget>

// ---- Runs

static bool openRunForm(WalkedStudio& walked)
{
    walked.clickToolBar(QStringLiteral(u"调度规划"));
    return walked.probe.flowScheduleForm();
}

/// A run shows one box, and only that of success lets the schedule be another one.
static void noteRun(WalkedStudio& walked, int boxesBefore)
{
    const QStringList seen = walked.dialogs.seen();
    if (seen.size() != boxesBefore + 1)
        walked.complain(QStringLiteral("a run showed %1 boxes").arg(seen.size() - boxesBefore));
    if (!seen.isEmpty() && seen.last().endsWith(QStringLiteral(u"规划成功")))
        walked.noteSchedule();
}

static bool planDrawing(WalkedStudio& walked)
{
    openRunForm(walked);
    const int before = walked.dialogs.seen().size();
    clickButton(walked.probe.flowScheduleForm(), "RotundaButton");
    noteRun(walked, before);
    return true;
}

static bool planExample(WalkedStudio& walked)
{
    const QVector<QString> examples{QStringLiteral("avionics-line"), QStringLiteral("ring"),
                                    QStringLiteral("succeeds-not-sound"),
                                    QStringLiteral("fails-window-check"),
                                    QStringLiteral("fails-resolution")};
    openRunForm(walked);
    const int before = walked.dialogs.seen().size() + 1; // the file dialog
    walked.answerFileDialog(
        WalkedStudio::exampleFile(walked.pickFrom(examples), QStringLiteral("vek_input.xml")),
        [&] { clickButton(walked.probe.flowScheduleForm(), "PlanByUserInputButton"); });
    noteRun(walked, before);
    return true;
}

static bool cancelPlanning(WalkedStudio& walked)
{
    openRunForm(walked);
    walked.dialogs.expectCancelledFileDialog();
    clickButton(walked.probe.flowScheduleForm(), "PlanByUserInputButton");
    return true;
}

static bool writeInput(WalkedStudio& walked)
{
    walked.probe.generateInput();
    if (!readFile(QStringLiteral("ResourceXML/vek_input.xml")).endsWith("</vek_input>\n"))
        walked.complain(QStringLiteral("the input document is not whole"));
    return true;
}

// ---- The dock

static bool togglePlanDock(WalkedStudio& walked)
{
    walked.clickPlanInfo();
    return true;
}

static bool isDockShown(WalkedStudio& walked)
{
    return walked.probe.planInfoDock() && walked.nodes()->isVisible();
}

static TimeSlotInfo* shownGrid(WalkedStudio& walked)
{
    return walked.sendTable()->isVisible() ? walked.sendTable() : walked.rcvTable();
}

static bool chooseTable(WalkedStudio& walked)
{
    if (!isDockShown(walked))
        return false;
    walked.chooseTable(walked.pick(2));
    return true;
}

/// Clicks any item of a view; false without one.
static bool clickAny(WalkedStudio& walked, QAbstractItemView& view, int rows, int columns)
{
    if (rows == 0 || columns == 0)
        return false;
    const QModelIndex index = view.model()->index(walked.pick(rows), walked.pick(columns));
    view.scrollTo(index);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::NoModifier,
                      view.visualRect(index).center());
    return true;
}

static bool clickNode(WalkedStudio& walked)
{
    return isDockShown(walked) && clickAny(walked, *walked.nodes(), walked.nodes()->count(), 1);
}

static bool clickPort(WalkedStudio& walked)
{
    if (!isDockShown(walked))
        return false;
    TimeSlotInfo* grid = shownGrid(walked);
    return clickAny(walked, *grid, grid->rowCount(), std::min(grid->columnCount(), 40));
}

static bool scrollGrid(WalkedStudio& walked)
{
    if (!isDockShown(walked))
        return false;
    QScrollBar* bar = shownGrid(walked)->horizontalScrollBar();
    bar->setValue(walked.pick(bar->maximum() + 1));
    QCoreApplication::processEvents();
    return true;
}

static QListView* shownCards(WalkedStudio& walked)
{
    for (auto* list : walked.probe.planInfoDock()->findChildren<FlowListWindow*>()) {
        if (list->isVisible())
            return list->findChild<QListView*>();
    }
    return nullptr;
}

static bool clickCard(WalkedStudio& walked)
{
    QListView* cards = isDockShown(walked) ? shownCards(walked) : nullptr;
    return cards && clickAny(walked, *cards, cards->model()->rowCount(), 1);
}

static bool askForTips(WalkedStudio& walked)
{
    if (!isDockShown(walked))
        return false;
    QWidget* const viewports[] = {walked.nodes()->viewport(), shownGrid(walked)->viewport()};
    QWidget* viewport = viewports[walked.pick(2)];
    const QPoint at(walked.pick(viewport->width()), walked.pick(viewport->height()));
    QWidget* under = viewport->childAt(at);
    if (!under)
        under = viewport;
    const QPoint global = viewport->mapToGlobal(at);
    QHelpEvent event(QEvent::ToolTip, under->mapFromGlobal(global), global);
    QCoreApplication::sendEvent(under, &event);
    return true;
}

WalkActions planActions()
{
    return {{"open run form", 2, &openRunForm},
            {"plan drawing", 4, &planDrawing},
            {"plan example", 1, &planExample},
            {"cancel planning", 1, &cancelPlanning},
            {"write input document", 2, &writeInput},
            {"toggle plan dock", 2, &togglePlanDock},
            {"choose table", 4, &chooseTable},
            {"click node", 6, &clickNode},
            {"click port", 6, &clickPort},
            {"scroll grid", 3, &scrollGrid},
            {"click card", 4, &clickCard},
            {"ask for tool tip", 3, &askForTips}};
}
