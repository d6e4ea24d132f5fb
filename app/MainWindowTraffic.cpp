#include "app/MainWindow.h"

// Virtual links and flows: docks, tables and their editors.

void MainWindow::vLineEditor() {}

void MainWindow::flowEditor() {}

void MainWindow::showVLineEditorForm() {}

void MainWindow::deleteVLineEditorWindow() {}

void MainWindow::addVLineEditorTableItem(VLineInfo) {}

void MainWindow::delVLineEditorTableItem() {}

void MainWindow::showVLineWindow(int) {}

void MainWindow::delShowVLineWindow() {}

void MainWindow::addVLineItemByProjectFile(QList<FileVLineInfo>) {}

void MainWindow::showFlowEditorWindow() {}

void MainWindow::deleteFlowEditorWindow() {}

void MainWindow::addFlowEditorTableItem(FlowInfo) {}

void MainWindow::delFlowEditorTableItem() {}

void MainWindow::addFlowItemByProjectFile(QList<FlowInfo>) {}
