#pragma once

#include <QDialog>

#include <memory>

class Arrow;

namespace Ui
{
class EditLineWindow;
}

/// Shows and writes the texts of one link, unchecked; reused for one link after the other.
///
/// Writes nothing once its link is gone. Does not keep the application alive.
class EditLineWindow : public QDialog
{
    Q_OBJECT

public:
    EditLineWindow(QWidget* parent, Arrow* arrow);
    ~EditLineWindow() override;

    /// Shows the link's texts; a null link changes nothing. The link is not owned.
    void setArrow(Arrow* arrow);

signals:
    void updateGraphics();

public slots:
    /// Writes name, ports and bandwidth to the link, and closes.
    void confirmButtonClicked();

private:
    friend struct PropertyDialogProbe;

    std::unique_ptr<Ui::EditLineWindow> ui;
    Arrow* arrow = nullptr;
};
