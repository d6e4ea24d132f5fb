#pragma once

#include "widgets/SingleDialog.h"

#include <memory>

class DiagramItem;

namespace Ui
{
class EditItemWindow;
}

/// Shows and writes the texts of one node, unchecked; a host has no port count.
///
/// Writes nothing once its node is gone.
class EditItemWindow : public SingleDialog
{
    Q_OBJECT

public:
    EditItemWindow(QWidget* parent, DiagramItem* item);
    ~EditItemWindow() override;

    /// Shows the node's texts; a null node changes nothing. The node is not owned.
    void setItem(DiagramItem* item);

signals:
    void updateGraphics();

public slots:
    /// Writes the texts to the node and its name to its links, and closes.
    void confirmButtonClicked();

private:
    friend struct PropertyDialogProbe;

    void writeItem();

    std::unique_ptr<Ui::EditItemWindow> ui;
    DiagramItem* item = nullptr;
};
