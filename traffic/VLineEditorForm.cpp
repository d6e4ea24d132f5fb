#include "traffic/VLineEditorForm.h"

#include "traffic/AddVLineForm.h"
#include "widgets/DefaultButton.h"

#include "ui_VLineEditorForm.h"

#include <QMessageBox>

VLineEditorForm::VLineEditorForm(TopologyWindow* window, QWidget* parent)
    : SingleDialog(parent),
      ui(std::make_unique<Ui::VLineEditorForm>()),
      topologyWindow(window)
{
    ui->setupUi(this);
    connect(ui->addVLineButton, &QPushButton::clicked, this, &VLineEditorForm::addPath);
    connect(ui->delVLineButton, &QPushButton::clicked, this, &VLineEditorForm::delCurrentVLine);
    connect(ui->confirmButton, &QPushButton::clicked, this, &VLineEditorForm::confirm);
    connect(ui->cancelButton, &QPushButton::clicked, this, &VLineEditorForm::close);
    connect(&RecordNotifier::instance(), &RecordNotifier::nodesGone, this,
            &VLineEditorForm::forgetGoneNodes);
    connect(ui->lineEdit_VLineId, &QLineEdit::textChanged, this, &VLineEditorForm::offerNextStep);
    offerNextStep();
}

VLineEditorForm::~VLineEditorForm() = default;

void VLineEditorForm::addPath()
{
    if (addVLineForm)
        return;
    vLineInfo.vLineId = ui->lineEdit_VLineId->text();
    addVLineForm = new AddVLineForm(topologyWindow, vLineInfo, this);
    connect(addVLineForm, &AddVLineForm::windowClosed, this,
            [this] { forgetDialog(addVLineForm); });
    connect(addVLineForm, &AddVLineForm::sendItems, this, &VLineEditorForm::rcvItems);
    addVLineForm->show();
}

void VLineEditorForm::rcvItems(VLineItems items)
{
    vLineInfo.vLinePaths.append(items);
    ui->comboBox_VLineInfo->addItem(pathText(items));
    ui->comboBox_VLineInfo->setCurrentIndex(ui->comboBox_VLineInfo->count() - 1);
    offerNextStep();
}

void VLineEditorForm::delCurrentVLine()
{
    const int index = ui->comboBox_VLineInfo->currentIndex();
    if (index < 0)
        return;
    vLineInfo.vLinePaths.removeAt(index);
    ui->comboBox_VLineInfo->removeItem(index);
    offerNextStep();
}

// A confirmation that is refused closes the form, so Enter confirms only what will be accepted.
void VLineEditorForm::offerNextStep()
{
    const bool complete =
        !ui->lineEdit_VLineId->text().isEmpty() && !vLineInfo.vLinePaths.isEmpty();
    makeDefault(complete ? ui->confirmButton : ui->addVLineButton);
}

void VLineEditorForm::confirm()
{
    const QString caption = QStringLiteral(u"添加虚链路错误提示");
    vLineInfo.vLineId = ui->lineEdit_VLineId->text();
    if (vLineInfo.vLineId.isEmpty()) {
        QMessageBox::information(this, caption, QStringLiteral(u"虚链路Id必须为非空值。"),
                                 QMessageBox::Ok);
    } else if (vLineInfo.vLinePaths.isEmpty()) {
        QMessageBox::information(this, caption, QStringLiteral(u"虚链路信息必须为非空值。"),
                                 QMessageBox::Ok);
    } else {
        emit sendVLineInfo(vLineInfo);
    }
    close();
}

void VLineEditorForm::forgetGoneNodes(const GoneNodes& nodes)
{
    forgetNodes(vLineInfo.vLinePaths, nodes);
    for (int i = 0; i < vLineInfo.vLinePaths.size(); ++i)
        ui->comboBox_VLineInfo->setItemText(i, pathText(vLineInfo.vLinePaths.at(i)));
}

void VLineEditorForm::closeEvent(QCloseEvent* event)
{
    closeDialog(addVLineForm);
    SingleDialog::closeEvent(event);
}
