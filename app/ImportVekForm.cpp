#include "app/ImportVekForm.h"

#include "widgets/DefaultButton.h"
#include "widgets/PathEdit.h"

#include "ui_ImportVekForm.h"

#include <QFileDialog>

ImportVekForm::ImportVekForm(QWidget* parent)
    : QDialog(parent),
      ui(std::make_unique<Ui::ImportForm>())
{
    ui->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    connect(ui->button_selectInput, &QPushButton::clicked, this, &ImportVekForm::selectInput);
    connect(ui->button_selectOutput, &QPushButton::clicked, this, &ImportVekForm::selectOutput);
    connect(ui->button_import, &QPushButton::clicked, this, &ImportVekForm::importThenLeave);
    connect(ui->button_cancel, &QPushButton::clicked, this, &QWidget::close);
    offerNextStep();
}

ImportVekForm::~ImportVekForm() = default;

void ImportVekForm::selectInput()
{
    select(*ui->lineEdit_inputPath, QStringLiteral(u"导入vek_input.xml"),
           QStringLiteral("vek_input(vek_input.xml)"));
}

void ImportVekForm::selectOutput()
{
    select(*ui->lineEdit_outputPath, QStringLiteral(u"导入vek_output.xml"),
           QStringLiteral("vek_output(vek_output.xml)"));
}

void ImportVekForm::select(QLineEdit& edit, const QString& caption, const QString& filter)
{
    showPath(edit, QFileDialog::getOpenFileName(this, caption, QString(), filter, nullptr,
                                                QFileDialog::DontUseNativeDialog));
    offerNextStep();
}

// Importing with a path missing closes the dialog, so Enter asks for that path first.
void ImportVekForm::offerNextStep()
{
    if (ui->lineEdit_inputPath->text().isEmpty())
        makeDefault(ui->button_selectInput);
    else if (ui->lineEdit_outputPath->text().isEmpty())
        makeDefault(ui->button_selectOutput);
    else
        makeDefault(ui->button_import);
}

// With a path missing the dialog goes without a word.
void ImportVekForm::importThenLeave()
{
    const QString inputPath = ui->lineEdit_inputPath->text();
    const QString outputPath = ui->lineEdit_outputPath->text();
    if (!inputPath.isEmpty() && !outputPath.isEmpty())
        emit signal_importVekFile(inputPath, outputPath);
    close();
}
