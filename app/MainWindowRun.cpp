#include "app/MainWindow.h"

#include "app/FlowScheduleForm.h"
#include "app/RunMessages.h"
#include "planner/TTPlanner.h"
#include "project/DocumentFolder.h"
#include "widgets/SingleDialog.h"

#include <QCoreApplication>
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

void MainWindow::Rotunda()
{
    if (runInProgress)
        return;
    generate_vek_input();
    if (callAlgorithm() == 0)
        loadSchedule();
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
    // The document itself, and a file that went meanwhile, leave it as it is.
    if (selected != target && QFile::exists(selected))
        replaceDocument(target, selected);
    if (callAlgorithm() == 0)
        loadSchedule();
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
    runInProgress = true;
    const int result = runStages();
    runInProgress = false;
    // Queued, so that the caller still loads the schedule and closes its dialog.
    if (closeAfterRun)
        QMetaObject::invokeMethod(this, &MainWindow::close, Qt::QueuedConnection);
    closeAfterRun = false;
    return result;
}

int MainWindow::runStages()
{
    delHsXml();
    delOutputXml();
    showStatus(QStringLiteral(u"调度算法预处理中..."));
    planner::PlanningContext context;
    const StageOutcome prepared = outcomeOfPreProcess(firstStage(context));
    showStatus(QStringLiteral(u"调度算法预处理完毕"));
    if (prepared.box != StageOutcome::None) {
        showBox(prepared);
        return prepared.result;
    }
    showStatus(QStringLiteral(u"调度算法规划中..."));
    planner::TTPlanner planner;
    const StageOutcome planned = outcomeOfPlanning(secondStage(planner));
    showStatus(QStringLiteral(u"调度算法规划完毕"));
    showBox(planned);
    return planned.result;
}

void MainWindow::delHsXml()
{
    removeOutput(QStringLiteral("vek_hs.xml"));
}

void MainWindow::delOutputXml()
{
    removeOutput(QStringLiteral("vek_output.xml"));
}
