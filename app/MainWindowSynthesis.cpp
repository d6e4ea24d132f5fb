#include "app/MainWindow.h"

#include "app/FormPlace.h"
#include "app/SynthesisForm.h"
#include "app/ViewMenu.h"
#include "traffic/FlowText.h"
#include "traffic/TrafficColumns.h"
#include "widgets/CellBox.h"
#include "widgets/SingleDialog.h"

#include <QDockWidget>
#include <QTableWidget>

// The search for windows with a plan, and the windows that it gives to the flows.

void MainWindow::offerSynthesis()
{
    addViewMenu(flowTable, {{QStringLiteral(u"在窗口内求解…"), [this] { showSynthesisForm(); }},
                            {QStringLiteral(u"恢复原窗口"), [this] { restoreWindows(); },
                             [this] { return narrowedFlows.canRestore(flowInfoList); }}});
}

QByteArray MainWindow::drawnDocument()
{
    XMLDocument doc(true, tinyxml2::PRESERVE_WHITESPACE);
    fillInputDocument(doc);
    tinyxml2::XMLPrinter printer;
    doc.Print(&printer);
    return QByteArray(printer.CStr(), printer.CStrSize() - 1);
}

// A form that shows an earlier search gives way: its flows may be others by now.
void MainWindow::showSynthesisForm()
{
    closeDialog(synthesisForm);
    synthesisForm = new SynthesisForm(drawnDocument(), flowInfoList, windowSearch, this);
    connect(synthesisForm, &SynthesisForm::windowClosed, this, &MainWindow::delSynthesisForm);
    connect(synthesisForm, &SynthesisForm::adopted, this, &MainWindow::adoptWindows);
    connect(synthesisForm, &SynthesisForm::flowsInTheWayFound, this, &MainWindow::selectFlows);
    for (const auto changed : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(flowTable->model(), changed, synthesisForm, &SynthesisForm::markOutdated);
    synthesisForm->setModal(false);
    placeOverDrawing(synthesisForm, this); // it speaks of the flow table below
    synthesisForm->show();
    synthesisForm->start();
}

void MainWindow::delSynthesisForm()
{
    forgetDialog(synthesisForm);
}

// Nodes, links and virtual links may have changed too, without a word.
void MainWindow::adoptWindows()
{
    if (drawnDocument() != synthesisForm->document()) {
        synthesisForm->markOutdated();
        return;
    }
    showWindowsOf(narrowedFlows.adopt(flowInfoList, synthesisForm->windows()));
    closeDialog(synthesisForm);
}

void MainWindow::restoreWindows()
{
    if (synthesisForm)
        synthesisForm->markOutdated();
    showWindowsOf(narrowedFlows.restore(flowInfoList));
}

void MainWindow::showWindowsOf(const QList<int>& rows)
{
    for (const int row : rows) {
        const FlowInfo& flow = flowInfoList.at(row);
        setFlowTexts(flowTable, row, flow);
        auto* listeners = dynamic_cast<CellBox*>(flowTable->cellWidget(row, ReceiveWindowColumn));
        for (int i = 0; listeners && i < flow.dstNodes.size(); ++i)
            listeners->setEntry(i, receiveWindowText(flow.dstNodes.at(i)));
    }
}

void MainWindow::selectFlows(const QList<int>& rows)
{
    if (rows.isEmpty())
        return;
    QItemSelection selection;
    for (const int row : rows)
        selection.select(flowTable->model()->index(row, 0),
                         flowTable->model()->index(row, flowTable->columnCount() - 1));
    flowTable->setCurrentCell(rows.first(), 0, QItemSelectionModel::NoUpdate);
    flowTable->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void MainWindow::forgetSynthesis()
{
    closeDialog(synthesisForm);
    narrowedFlows.forget();
}
