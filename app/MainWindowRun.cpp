#include "app/MainWindow.h"

#include "app/FlowScheduleForm.h"
#include "app/RunMessages.h"
#include "planner/FolderHold.h"
#include "planner/TTPlanner.h"
#include "project/DocumentFolder.h"
#include "widgets/SingleDialog.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <QStatusBar>

// The scheduling run: the dialog that starts it, the documents around it, its two stages.

// The integer-button form of the boxes, without a parent and with the buttons 1, 1, 0.
static void showBox(const StageOutcome& outcome)
{
    if (outcome.box == StageOutcome::Information)
        QMessageBox::information(nullptr, outcome.caption, outcome.text, 1, 1, 0);
    if (outcome.box == StageOutcome::Warning)
        QMessageBox::warning(nullptr, outcome.caption, outcome.text, 1, 1, 0);
}

void MainWindow::flowSchedule()
{
    if (flowScheduleForm)
        return;
    flowScheduleForm = new FlowScheduleForm(this);
    connect(flowScheduleForm, &FlowScheduleForm::windowClosed, this,
            &MainWindow::delFlowScheduleWindow);
    connect(flowScheduleForm, &FlowScheduleForm::Rotunda, this, &MainWindow::Rotunda);
    connect(flowScheduleForm, &FlowScheduleForm::PlanByUserInput, this,
            &MainWindow::planByUserInput);
    flowScheduleForm->setModal(false);
    flowScheduleForm->show();
}

void MainWindow::delFlowScheduleWindow()
{
    forgetDialog(flowScheduleForm);
}

// Another studio in the same folder would plan this one's document, and this one would show its
// schedule: the folder is kept from the first document to the last.
void MainWindow::planHere(const std::function<void()>& provideInput)
{
    const planner::FolderHold hold;
    if (!hold.isHeld()) {
        refuseRun();
        return;
    }
    provideInput();
    const bool hasInput = !documentPaths({inputFolder(), QStringLiteral("vek_input")}).isEmpty();
    if (runInHeldFolder(hasInput) == 0)
        loadSchedule();
}

void MainWindow::Rotunda()
{
    if (!runInProgress)
        planHere([this] { generate_vek_input(); });
}

void MainWindow::planByUserInput()
{
    if (runInProgress)
        return;
    ensureDocumentFolder(inputFolder());
    const QString target = inputDocumentPath();
    const QString selected = QFileDialog::getOpenFileName(
        this, QStringLiteral(u"导入xml"), QString(), QStringLiteral("vek_input(vek_input.xml)"));
    if (selected.isEmpty())
        return;
    planHere([&] {
        // The document itself, and a file that went meanwhile, leave it as it is.
        if (selected != target && QFile::exists(selected))
            replaceDocument(target, selected);
    });
}

void MainWindow::loadSchedule()
{
    parse_vek_output();
    checkPlan();
    if (planInfoDock)
        updateNodeInfo();
}

void MainWindow::showStatus(const QString& text)
{
    mainStatusBar->showMessage(text, 0);
    QCoreApplication::processEvents();
}

int MainWindow::callAlgorithm()
{
    if (runInProgress)
        return -1;
    const planner::FolderHold hold;
    return hold.isHeld() ? runInHeldFolder(true) : refuseRun();
}

// What the user reads when the input document does not get to its place.
int MainWindow::refuseRun()
{
    qDebug() << "run: the folder cannot be planned in, or another process plans in it";
    const StageOutcome refused = outcomeOfPreProcess(planner::code::folderMissing);
    showBox(refused);
    return refused.result;
}

int MainWindow::runInHeldFolder(bool hasInput)
{
    runInProgress = true;
    const int result = runStages(hasInput);
    runInProgress = false;
    // Queued, so that the caller still loads the schedule and closes its dialog.
    if (closeAfterRun)
        QMetaObject::invokeMethod(this, &MainWindow::close, Qt::QueuedConnection);
    closeAfterRun = false;
    return result;
}

int MainWindow::runStages(bool hasInput)
{
    delHsXml();
    delOutputXml();
    showStatus(QStringLiteral(u"调度算法预处理中..."));
    planner::PlanningContext context;
    const StageOutcome prepared = outcomeOfPreProcess(runFirstStage(context, hasInput));
    showStatus(QStringLiteral(u"调度算法预处理完毕"));
    if (prepared.box != StageOutcome::None) {
        showBox(prepared);
        return prepared.result;
    }
    showStatus(QStringLiteral(u"调度算法规划中..."));
    const StageOutcome planned = outcomeOfPlanning(runSecondStage(context.isCut));
    showStatus(QStringLiteral(u"调度算法规划完毕"));
    showBox(planned);
    return planned.result;
}

// The first stage plans an empty network, with success, where there is no document. That is not
// what the user asked for whose document could not be brought there.
int MainWindow::runFirstStage(planner::PlanningContext& context, bool hasInput)
{
    const qint32 result = firstStage(context);
    return result == planner::code::ok && !hasInput ? qint32(planner::code::folderMissing) : result;
}

// Success would show another run's schedule where a document of an earlier one can be neither
// removed nor written, and none where the disk filled up.
int MainWindow::runSecondStage(bool windowsAreCut)
{
    if (isStuckOutput(QStringLiteral("vek_hs.xml")))
        return planner::code::unreadable;
    planner::TTPlanner planner;
    const qint32 result = secondStage(planner);
    const bool isLost =
        windowsAreCut || planner.isCut || isStuckOutput(QStringLiteral("vek_output.xml"));
    if (result != planner::code::ok || !isLost)
        return result;
    delOutputXml(); // nobody shall take it for a plan
    return planner::code::unreadable;
}

void MainWindow::delHsXml()
{
    removeOutput(QStringLiteral("vek_hs.xml"));
}

void MainWindow::delOutputXml()
{
    removeOutput(QStringLiteral("vek_output.xml"));
}
