#pragma once

#include <QDialog>

#include <memory>

namespace Ui
{
class OutportVekForm;
}

/// Asks for the folder to which the two documents are copied.
///
/// Exporting frees the dialog; cancelling, or closing it otherwise, only hides it: the object
/// stays.
class OutportVekForm : public QDialog
{
    Q_OBJECT

public:
    explicit OutportVekForm(QWidget* parent = nullptr);
    ~OutportVekForm() override;

signals:
    /// The path is as the file dialog gave it and not empty.
    void signal_outportVekFile(QString outportPath);

private slots:
    void selectOutportPath();
    void outportThenLeave();

private:
    void offerNextStep();

    std::unique_ptr<Ui::OutportVekForm> ui;
};
