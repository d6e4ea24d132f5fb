#include "app/OutportVekForm.h"

#include "widgets/DefaultButton.h"
#include "widgets/PathEdit.h"

#include "ui_OutportVekForm.h"

#include <QFileDialog>

OutportVekForm::OutportVekForm(QWidget* parent)
    : QDialog(parent),
      ui(std::make_unique<Ui::OutportVekForm>())
{
    ui->setupUi(this);
    connect(ui->button_selectOutportPath, &QPushButton::clicked, this,
            &OutportVekForm::selectOutportPath);
    connect(ui->button_outport, &QPushButton::clicked, this, &OutportVekForm::outportThenLeave);
    connect(ui->button_cancel, &QPushButton::clicked, this, &QWidget::close);
    offerNextStep();
}

OutportVekForm::~OutportVekForm() = default;

void OutportVekForm::selectOutportPath()
{
    showPath(
        *ui->lineEdit_outportPath,
        QFileDialog::getExistingDirectory(this, QStringLiteral(u"请选择导出Vek规范的文件夹路径"),
                                          QStringLiteral("./"), QFileDialog::DontUseNativeDialog));
    offerNextStep();
}

// Exporting without a path closes the dialog, so Enter asks for the path first.
void OutportVekForm::offerNextStep()
{
    const bool chosen = !ui->lineEdit_outportPath->text().isEmpty();
    makeDefault(chosen ? ui->button_outport : ui->button_selectOutportPath);
}

// Without a path the dialog goes without a word. It closes first: should it be the last window,
// only closing ends the process.
void OutportVekForm::outportThenLeave()
{
    const QString path = ui->lineEdit_outportPath->text();
    if (!path.isEmpty())
        emit signal_outportVekFile(path);
    close();
    deleteLater();
}
