#pragma once

#include "traffic/FlowInfo.h"
#include "widgets/SingleDialog.h"

#include <memory>

namespace Ui
{
class AddDstNodeForm;
}

/// Edits the receive window of one listener; empty bounds are accepted.
class AddDstNodeForm : public SingleDialog
{
    Q_OBJECT

public:
    /// flowInfo is not owned and must outlive the form; index is the listener in its dstNodes.
    AddDstNodeForm(FlowInfo* flowInfo, int index, QWidget* parent);
    ~AddDstNodeForm() override;

public slots:
    void confirmButtonClicked();
    void cancelButtonClicked();

private:
    std::unique_ptr<Ui::AddDstNodeForm> ui;
    FlowInfo* flowInfo;
    int index;
};
