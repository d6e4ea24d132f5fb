#include "app/MainWindow.h"

#include "project/InputDocumentWriter.h"
#include "topology/Arrow.h"
#include "topology/DiagramScene.h"
#include "topology/TopologyWindow.h"

// Project files, documents from and to other folders, and the input document of the drawn model.

void MainWindow::handleActionOpenProject() {}

void MainWindow::handleActionSaveProject() {}

void MainWindow::showImportForm() {}

void MainWindow::showOutportForm() {}

void MainWindow::importVekFile(QString, QString) {}

void MainWindow::outportVekFile(QString) {}

// ---- The input document of the drawn model

// Lowest item first: the order in which the scene numbers its nodes.
void MainWindow::generate_vek_input()
{
    XMLDocument doc(true, tinyxml2::PRESERVE_WHITESPACE);
    XMLElement* root = appendElement(doc, &doc, "vek_input");
    root->SetAttribute("xmlns", "urn:ietf:params:xml:ns:yang:vek_input");
    XMLElement* topology = appendElement(doc, root, "topology");
    XMLElement* hosts = appendElement(doc, topology, "hosts");
    XMLElement* switches = appendElement(doc, topology, "switches");
    XMLElement* links = appendElement(doc, topology, "links");
    for (QGraphicsItem* item : topologyWindow->getScence()->items(Qt::AscendingOrder)) {
        auto* node = qgraphicsitem_cast<DiagramItem*>(item);
        auto* arrow = qgraphicsitem_cast<Arrow*>(item);
        if (node && node->diagramType == DiagramItem::Endpoint)
            generateHosts(doc, hosts, node);
        else if (node && node->diagramType == DiagramItem::Switch)
            generateSwitches(doc, switches, node);
        else if (arrow)
            generateLinks(doc, links, arrow);
    }
    generateVirtualLinks(doc, appendElement(doc, root, "virtuallinks"));
    generateFlows(doc, appendElement(doc, root, "flows"));
    saveInputDocument(doc);
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
