#pragma once

#include <QDialog>

#include <memory>

class DiagramItem;

namespace Ui
{
class EditItemWindow;
}

/// Shows and writes the texts of one node, unchecked; a host has no port count.
///
/// Writes nothing once its node is gone.
class EditItemWindow : public QDialog
{
    Q_OBJECT

public:
    EditItemWindow(QWidget* parent, DiagramItem* item);
    ~EditItemWindow() override;

    /// Shows the node's texts; a null node changes nothing. The node is not owned.
    void setItem(DiagramItem* item);

signals:
    void windowClosed();
    void updateGraphics();

public slots:
    /// Writes the texts to the node and its name to its links, and closes.
    void confirmButtonClicked();
    /// Escape closes the dialog like its title bar does.
    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    friend struct PropertyDialogProbe;

    void writeItem();

    std::unique_ptr<Ui::EditItemWindow> ui;
    DiagramItem* item = nullptr;
};
