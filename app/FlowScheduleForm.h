#pragma once

#include "widgets/SingleDialog.h"

#include <memory>

namespace Ui
{
class FlowScheduleForm;
}

/// Asks whether to plan what is drawn or a document from outside.
///
/// The signals are direct, so a whole run happens inside the click; the dialog closes after it and
/// cannot be closed before.
class FlowScheduleForm : public SingleDialog
{
    Q_OBJECT

public:
    explicit FlowScheduleForm(QWidget* parent);
    ~FlowScheduleForm() override;

signals:
    void Rotunda();
    void PlanByUserInput();

protected:
    void closeEvent(QCloseEvent* event) override;

private slots:
    void RotundaButtonClicked();
    void PlanByUserInputClicked();

private:
    void runThenClose(void (FlowScheduleForm::*run)());

    std::unique_ptr<Ui::FlowScheduleForm> ui;
    bool runInProgress = false;
};
