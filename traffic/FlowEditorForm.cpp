#include "traffic/FlowEditorForm.h"

#include "traffic/AddDstNodeForm.h"

#include "ui_FlowEditorForm.h"

#include <QMessageBox>

#include <algorithm>

FlowEditorForm::FlowEditorForm(const QList<VLineInfo>& vLines, QWidget* parent)
    : SingleDialog(parent),
      ui(std::make_unique<Ui::FlowEditorForm>()),
      vLineInfoList(vLines)
{
    ui->setupUi(this);
    connect(&RecordNotifier::instance(), &RecordNotifier::nodesGone, this,
            [this](const GoneNodes& nodes) { forgetNodes(vLineInfoList, nodes); });
    connect(ui->confirmButton, &QPushButton::clicked, this, &FlowEditorForm::confirmButtonClicked);
    connect(ui->cancelButton, &QPushButton::clicked, this, &FlowEditorForm::cancelButtonClicked);
    connect(ui->addDstButton, &QPushButton::clicked, this, &FlowEditorForm::addDstButtonClicked);
    for (const VLineInfo& vLine : qAsConst(vLineInfoList))
        ui->comboBox_vLineId->addItem(vLine.vLineId);
    connect(ui->comboBox_vLineId, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &FlowEditorForm::updateDstNodes);
    updateDstNodes();
}

FlowEditorForm::~FlowEditorForm() = default;

// Of several virtual links with one identifier the first one counts. All receive windows are lost.
void FlowEditorForm::updateDstNodes()
{
    const QString id = ui->comboBox_vLineId->currentText();
    const auto vLine = std::find_if(vLineInfoList.cbegin(), vLineInfoList.cend(),
                                    [&id](const VLineInfo& each) { return each.vLineId == id; });
    if (vLine == vLineInfoList.cend())
        return;
    ui->lineEdit_srcNode->setText(nodeNameOf(talkerOf(*vLine)));
    ui->comboBox_dstNode->clear();
    flowInfo.dstNodes.clear();
    for (const VLineItems& path : vLine->vLinePaths) {
        const QString name = nodeNameOf(path.value(path.size() - 1));
        ui->comboBox_dstNode->addItem(name);
        flowInfo.dstNodes.append({name, QString(), QString()});
    }
}

void FlowEditorForm::addDstButtonClicked()
{
    const int index = ui->comboBox_dstNode->currentIndex();
    if (addDstNodeForm || index < 0)
        return;
    addDstNodeForm = new AddDstNodeForm(&flowInfo, index, this);
    connect(addDstNodeForm, &AddDstNodeForm::windowClosed, this,
            &FlowEditorForm::deleteAddDstNodeForm);
    addDstNodeForm->setModal(true);
    addDstNodeForm->show();
}

void FlowEditorForm::deleteAddDstNodeForm()
{
    forgetDialog(addDstNodeForm);
}

void FlowEditorForm::readFields()
{
    flowInfo.flowType = ui->comboBox_flowType->currentText();
    flowInfo.flowId = ui->lineEdit_flowId->text();
    flowInfo.flowPeriod = ui->lineEdit_flowPeriod->text();
    flowInfo.flowSize = ui->lineEdit_flowSize->text();
    flowInfo.vLineId = ui->comboBox_vLineId->currentText();
    flowInfo.srcNode = ui->lineEdit_srcNode->text();
    flowInfo.sendWindowLow = ui->lineEdit_sendWindowLow->text();
    flowInfo.sendWindowHigh = ui->lineEdit_sendWindowHigh->text();
}

// The text of the first test that fails; empty when all pass.
QString FlowEditorForm::firstFault() const
{
    const DstNodeInfo first = flowInfo.dstNodes.value(0);
    if (flowInfo.flowId.isEmpty())
        return QStringLiteral(u"流标识必须为非空值。");
    if (flowInfo.flowPeriod.isEmpty())
        return QStringLiteral(u"周期必须为非空值。");
    if (flowInfo.flowSize.isEmpty())
        return QStringLiteral(u"消息长度必须为非空值。");
    if (flowInfo.vLineId.isEmpty())
        return QStringLiteral(u"虚链路ID必须为非空值。");
    if (flowInfo.sendWindowLow.isEmpty() || flowInfo.sendWindowHigh.isEmpty())
        return QStringLiteral(u"源端发送窗口必须为非空值。");
    if (first.rcvWindowLow.isEmpty() || first.rcvWindowHigh.isEmpty())
        return QStringLiteral(u"目的端接收窗口必须为非空值。");
    return QString();
}

void FlowEditorForm::confirmButtonClicked()
{
    readFields();
    const QString fault = firstFault();
    if (!fault.isEmpty()) {
        QMessageBox::information(this, QStringLiteral(u"添加流量错误提示"), fault, QMessageBox::Ok);
        return;
    }
    emit sendFlowInfo(flowInfo);
    close();
}

void FlowEditorForm::cancelButtonClicked()
{
    close();
}

void FlowEditorForm::closeEvent(QCloseEvent* event)
{
    closeDialog(addDstNodeForm);
    SingleDialog::closeEvent(event);
}
