#pragma once

#include "traffic/VLineInfo.h"
#include "widgets/SingleDialog.h"

#include <memory>

class TopologyWindow;

namespace Ui
{
class VLineNodeSelectForm;
}

/// Offers the nodes that may come next on a data path.
class VLineNodeSelectForm : public SingleDialog
{
    Q_OBJECT

public:
    /// Offers the neighbours of the current node in the order of its links, without the previous
    /// one.
    ///
    /// Either node may be null; without a current node nothing is offered.
    VLineNodeSelectForm(DiagramItem* previous, DiagramItem* current, QWidget* parent);
    /// Offers all hosts of the drawing, lowest first.
    VLineNodeSelectForm(TopologyWindow* topologyWindow, QWidget* parent);
    ~VLineNodeSelectForm() override;

signals:
    void sendItem(DiagramItem* currentItem);

private:
    explicit VLineNodeSelectForm(QWidget* parent);
    void offer(DiagramItem* node);
    void confirm();
    void forgetGoneNodes(const GoneNodes& nodes);

    std::unique_ptr<Ui::VLineNodeSelectForm> ui;
    VLineItems nodeList; ///< in the order of the combo box
};
