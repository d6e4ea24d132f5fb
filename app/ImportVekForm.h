#pragma once

#include <QDialog>

#include <memory>

class QLineEdit;

namespace Ui
{
class ImportForm;
}

/// Asks for an input and an output document that are to be shown as the current schedule.
///
/// Closes and with that frees itself however it is left, so that nobody needs to hold it.
class ImportVekForm : public QDialog
{
    Q_OBJECT

public:
    explicit ImportVekForm(QWidget* parent = nullptr);
    ~ImportVekForm() override;

signals:
    /// Both paths are as the file dialogs gave them and not empty.
    void signal_importVekFile(QString vekInputFilePath, QString vekOutputFilePath);

private slots:
    void selectInput();
    void selectOutput();
    void importThenLeave();

private:
    void select(QLineEdit& edit, const QString& caption, const QString& filter);
    void offerNextStep();

    std::unique_ptr<Ui::ImportForm> ui;
};
