#include "traffic/VLineNodeSelectForm.h"

#include "topology/Arrow.h"
#include "topology/DiagramScene.h"
#include "topology/TopologyWindow.h"

#include "ui_VLineNodeSelectForm.h"

VLineNodeSelectForm::VLineNodeSelectForm(QWidget* parent)
    : SingleDialog(parent),
      ui(std::make_unique<Ui::VLineNodeSelectForm>())
{
    ui->setupUi(this);
    connect(ui->confirmButton, &QPushButton::clicked, this, &VLineNodeSelectForm::confirm);
    connect(ui->cancelButton, &QPushButton::clicked, this, &VLineNodeSelectForm::close);
    connect(&RecordNotifier::instance(), &RecordNotifier::nodesGone, this,
            &VLineNodeSelectForm::forgetGoneNodes);
}

VLineNodeSelectForm::VLineNodeSelectForm(DiagramItem* previous, DiagramItem* current,
                                         QWidget* parent)
    : VLineNodeSelectForm(parent)
{
    if (!current)
        return;
    for (const Arrow* link : current->arrows()) {
        DiagramItem* neighbour = link->endItem == current ? link->startItem : link->endItem;
        if (neighbour != previous)
            offer(neighbour);
    }
}

VLineNodeSelectForm::VLineNodeSelectForm(TopologyWindow* topologyWindow, QWidget* parent)
    : VLineNodeSelectForm(parent)
{
    for (QGraphicsItem* item : topologyWindow->getScence()->items(Qt::AscendingOrder)) {
        auto* node = qgraphicsitem_cast<DiagramItem*>(item);
        if (node && node->diagramType == DiagramItem::Endpoint)
            offer(node);
    }
}

VLineNodeSelectForm::~VLineNodeSelectForm() = default;

void VLineNodeSelectForm::offer(DiagramItem* node)
{
    ui->comboBox_vLineNode->addItem(node->nodeName);
    nodeList.append(node);
}

void VLineNodeSelectForm::forgetGoneNodes(const GoneNodes& nodes)
{
    forgetNodes(nodeList, nodes);
    for (int i = 0; i < nodeList.size(); ++i)
        ui->comboBox_vLineNode->setItemText(i, nodeNameOf(nodeList.at(i)));
}

void VLineNodeSelectForm::confirm()
{
    DiagramItem* chosen = nodeList.value(ui->comboBox_vLineNode->currentIndex());
    if (chosen)
        emit sendItem(chosen);
    close();
}
