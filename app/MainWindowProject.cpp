#include "app/MainWindow.h"

// Project files, documents from and to other folders, and the input document of the drawn model.

void MainWindow::handleActionOpenProject() {}

void MainWindow::handleActionSaveProject() {}

void MainWindow::showImportForm() {}

void MainWindow::showOutportForm() {}

void MainWindow::importVekFile(QString, QString) {}

void MainWindow::outportVekFile(QString) {}

void MainWindow::generate_vek_input() {}

void MainWindow::generateHosts(XMLDocument&, XMLElement*, DiagramItem*) {}

void MainWindow::generateSwitches(XMLDocument&, XMLElement*, DiagramItem*) {}

void MainWindow::generateLinks(XMLDocument&, XMLElement*, Arrow*) {}

void MainWindow::generateVirtualLinks(XMLDocument&, XMLElement*) {}

void MainWindow::generateFlows(XMLDocument&, XMLElement*) {}
