#include "topology/EditItemWindow.h"

#include "topology/Arrow.h"
#include "topology/DiagramItem.h"
#include "topology/RecordNotifier.h"
#include "widgets/LabelColumn.h"

#include "ui_EditItemWindow.h"

EditItemWindow::EditItemWindow(QWidget* parent, DiagramItem* node)
    : SingleDialog(parent),
      ui(std::make_unique<Ui::EditItemWindow>())
{
    ui->setupUi(this);
    alignLabels(this);
    if (node && node->diagramType == DiagramItem::Endpoint)
        ui->widget_portNum->hide();
    connect(ui->confirmButton, &QPushButton::clicked, this, &EditItemWindow::confirmButtonClicked);
    connect(ui->cancelButton, &QPushButton::clicked, this, &EditItemWindow::close);
    connect(&RecordNotifier::instance(), &RecordNotifier::nodesGone, this,
            [this](const GoneNodes& gone) {
                if (gone.contains(item))
                    item = nullptr;
            });
    setItem(node);
}

EditItemWindow::~EditItemWindow() = default;

void EditItemWindow::setItem(DiagramItem* node)
{
    if (!node)
        return;
    item = node;
    ui->lineEdit_nodeName->setText(item->nodeName);
    ui->lineEdit_nodeId->setText(item->nodeId);
    ui->lineEdit_nodeMac->setText(item->nodeMac);
    ui->lineEdit_portNum->setText(item->portNum);
    ui->lineEdit_mtu->setText(item->mtu);
    ui->lineEdit_bufferNum->setText(item->bufferNum);
}

void EditItemWindow::confirmButtonClicked()
{
    if (item)
        writeItem();
    close();
    emit updateGraphics();
}

void EditItemWindow::writeItem()
{
    item->nodeName = ui->lineEdit_nodeName->text();
    item->nodeId = ui->lineEdit_nodeId->text();
    item->nodeMac = ui->lineEdit_nodeMac->text();
    item->portNum = ui->lineEdit_portNum->text();
    item->mtu = ui->lineEdit_mtu->text();
    item->bufferNum = ui->lineEdit_bufferNum->text();
    for (Arrow* arrow : item->arrows()) {
        if (arrow->startItem == item)
            arrow->srcNode = item->nodeName;
        else if (arrow->endItem == item)
            arrow->dstNode = item->nodeName;
    }
}
