#include "app/MainWindow.h"

#include "app/ImportVekForm.h"
#include "app/OutportVekForm.h"
#include "planner/FolderHold.h"
#include "project/DocumentExchange.h"
#include "project/InputDocumentWriter.h"
#include "project/ProjectFile.h"
#include "topology/Arrow.h"
#include "topology/DiagramScene.h"
#include "topology/TopologyWindow.h"

#include <QFile>
#include <QFileDialog>
#include <QFileInfo>

#include <tinyxml2.h>

// Project files, documents from and to other folders, and the input document of the drawn model.

// ---- Project files

static QString projectEnding()
{
    return QStringLiteral(".rotpro");
}

static QString projectFilter()
{
    return MainWindow::tr("Rotunda工程配置文件 (*.rotpro)");
}

void MainWindow::handleActionSaveProject()
{
    QString path =
        QFileDialog::getSaveFileName(this, QStringLiteral(u"保存文件"), QString(), projectFilter(),
                                     nullptr, QFileDialog::DontUseNativeDialog);
    if (path.isEmpty())
        return;
    if (!path.endsWith(projectEnding()))
        path.append(projectEnding());
    saveProject(path, projectOf(*topologyWindow->getScence(), vLineInfoList, flowInfoList));
}

// The schedule and its documents stay: they belong to the last run or import.
void MainWindow::handleActionOpenProject()
{
    const QString path =
        QFileDialog::getOpenFileName(this, tr("打开工程"), QString(), projectFilter(), nullptr,
                                     QFileDialog::DontUseNativeDialog);
    if (path.isEmpty())
        return;
    // Opening a pipe would wait for its other end, and a device may have none.
    QFile file(path);
    if (QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly))
        showProject(readProject(file));
}

// The rows that go are emptied first, so that they need not forget their nodes one by one.
void MainWindow::showProject(const Project& project)
{
    vLineInfoList.clear();
    forgetSynthesis();
    topologyWindow->getScence()->buildByProjectFile(project.nodes, project.links);
    addVLineItemByProjectFile(project.vLines);
    addFlowItemByProjectFile(project.flows);
    topologyWindow->bringDrawingIntoView();
}

// ---- Documents from and to other folders

void MainWindow::showImportForm()
{
    auto* form = new ImportVekForm;
    connect(form, &ImportVekForm::signal_importVekFile, this, &MainWindow::importVekFile);
    form->setModal(true);
    form->show();
}

void MainWindow::showOutportForm()
{
    auto* form = new OutportVekForm;
    connect(form, &OutportVekForm::signal_outportVekFile, this, &MainWindow::outportVekFile);
    form->setModal(true);
    form->show();
}

void MainWindow::importVekFile(QString vekInputFilePath, QString vekOutputFilePath)
{
    // A run that lets events through must find its own documents again, in whatever process.
    if (runInProgress)
        return;
    const planner::FolderHold hold;
    if (!hold.isHeld() || !importDocuments(vekInputFilePath, vekOutputFilePath))
        return;
    loadSchedule();
    if (!planInfoDock)
        planInfo();
}

void MainWindow::outportVekFile(QString dirPath)
{
    if (runInProgress) {
        exportDocuments(dirPath);
        return;
    }
    // While another process plans here, half of a document would be exported, and stay.
    const planner::FolderHold hold;
    if (hold.isHeld())
        exportDocuments(dirPath);
}

// ---- The input document of the drawn model

void MainWindow::generate_vek_input()
{
    XMLDocument doc(true, tinyxml2::PRESERVE_WHITESPACE);
    fillInputDocument(doc);
    saveInputDocument(doc);
}

// Lowest item first: the order in which the scene numbers its nodes.
void MainWindow::fillInputDocument(XMLDocument& doc)
{
    const InputDocumentParts parts = appendParts(doc);
    for (QGraphicsItem* item : topologyWindow->getScence()->items(Qt::AscendingOrder)) {
        auto* node = qgraphicsitem_cast<DiagramItem*>(item);
        auto* arrow = qgraphicsitem_cast<Arrow*>(item);
        if (node && node->diagramType == DiagramItem::Endpoint)
            generateHosts(doc, parts.hosts, node);
        else if (node && node->diagramType == DiagramItem::Switch)
            generateSwitches(doc, parts.switches, node);
        else if (arrow)
            generateLinks(doc, parts.links, arrow);
    }
    generateVirtualLinks(doc, parts.virtuallinks);
    generateFlows(doc, parts.flows);
}

void MainWindow::generateHosts(XMLDocument& doc, XMLElement* hosts, DiagramItem* diaItem)
{
    appendHost(doc, hosts, *diaItem);
}

void MainWindow::generateSwitches(XMLDocument& doc, XMLElement* switches, DiagramItem* diaItem)
{
    appendSwitch(doc, switches, *diaItem);
}

void MainWindow::generateLinks(XMLDocument& doc, XMLElement* links, Arrow* arrow)
{
    appendLink(doc, links, *arrow);
}

void MainWindow::generateVirtualLinks(XMLDocument& doc, XMLElement* virtuallinks)
{
    for (const VLineInfo& vLine : qAsConst(vLineInfoList))
        appendVirtualLink(doc, virtuallinks, vLine);
}

void MainWindow::generateFlows(XMLDocument& doc, XMLElement* flows)
{
    for (const FlowInfo& flow : qAsConst(flowInfoList))
        appendFlow(doc, flows, flow);
}
