#pragma once

#include "traffic/VLineInfo.h"
#include "widgets/SingleDialog.h"

#include <memory>

class AddVLineForm;
class TopologyWindow;

namespace Ui
{
class VLineEditorForm;
}

/// Defines one virtual link; closes after a refused input as well, which is lost then.
class VLineEditorForm : public SingleDialog
{
    Q_OBJECT

public:
    VLineEditorForm(TopologyWindow* topologyWindow, QWidget* parent);
    ~VLineEditorForm() override;

public slots:
    void rcvItems(VLineItems items);
    void delCurrentVLine();

signals:
    void sendVLineInfo(VLineInfo vLineInfo);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void addPath();
    void confirm();
    void offerNextStep();
    void forgetGoneNodes(const GoneNodes& nodes);

    std::unique_ptr<Ui::VLineEditorForm> ui;
    TopologyWindow* topologyWindow;
    VLineInfo vLineInfo;
    AddVLineForm* addVLineForm = nullptr; ///< null while closed
};
