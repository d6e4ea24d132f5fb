#pragma once

#include "traffic/FlowInfo.h"
#include "traffic/VLineInfo.h"
#include "widgets/SingleDialog.h"

#include <memory>

class AddDstNodeForm;

namespace Ui
{
class FlowEditorForm;
}

/// Defines one flow on a virtual link; stays open after a refused input.
///
/// Only the first listener's window must be filled. Values are texts that nothing checks further.
class FlowEditorForm : public SingleDialog
{
    Q_OBJECT

public:
    FlowEditorForm(const QList<VLineInfo>& vLines, QWidget* parent);
    ~FlowEditorForm() override;

public slots:
    void confirmButtonClicked();
    void cancelButtonClicked();
    void addDstButtonClicked();
    void deleteAddDstNodeForm();
    void updateDstNodes();

signals:
    void sendFlowInfo(FlowInfo flowInfo);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void readFields();
    QString firstFault() const;

    std::unique_ptr<Ui::FlowEditorForm> ui;
    QList<VLineInfo> vLineInfoList;
    FlowInfo flowInfo;
    AddDstNodeForm* addDstNodeForm = nullptr; ///< null while closed
};
