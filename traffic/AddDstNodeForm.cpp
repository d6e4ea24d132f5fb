#include "traffic/AddDstNodeForm.h"

#include "ui_AddDstNodeForm.h"

AddDstNodeForm::AddDstNodeForm(FlowInfo* flow, int listener, QWidget* parent)
    : SingleDialog(parent),
      ui(std::make_unique<Ui::AddDstNodeForm>()),
      flowInfo(flow),
      index(listener)
{
    ui->setupUi(this);
    connect(ui->confirmButton, &QPushButton::clicked, this, &AddDstNodeForm::confirmButtonClicked);
    connect(ui->cancelButton, &QPushButton::clicked, this, &AddDstNodeForm::cancelButtonClicked);
    const DstNodeInfo node = flowInfo->dstNodes.value(index);
    ui->lineEdit_dstNodeName->setText(node.dstNodeName);
    ui->lineEdit_rcvWindowLow->setText(node.rcvWindowLow);
    ui->lineEdit_rcvWindowHigh->setText(node.rcvWindowHigh);
}

AddDstNodeForm::~AddDstNodeForm() = default;

void AddDstNodeForm::confirmButtonClicked()
{
    if (index >= 0 && index < flowInfo->dstNodes.size()) {
        flowInfo->dstNodes[index] = {ui->lineEdit_dstNodeName->text(),
                                     ui->lineEdit_rcvWindowLow->text(),
                                     ui->lineEdit_rcvWindowHigh->text()};
    }
    close();
}

void AddDstNodeForm::cancelButtonClicked()
{
    close();
}
