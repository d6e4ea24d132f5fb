#include "app/FlowScheduleForm.h"

#include "ui_FlowScheduleForm.h"

#include <QCloseEvent>

FlowScheduleForm::FlowScheduleForm(QWidget* parent)
    : SingleDialog(parent),
      ui(std::make_unique<Ui::FlowScheduleForm>())
{
    ui->setupUi(this);
    connect(ui->RotundaButton, &QPushButton::clicked, this,
            &FlowScheduleForm::RotundaButtonClicked);
    connect(ui->PlanByUserInputButton, &QPushButton::clicked, this,
            &FlowScheduleForm::PlanByUserInputClicked);
}

FlowScheduleForm::~FlowScheduleForm() = default;

void FlowScheduleForm::RotundaButtonClicked()
{
    runThenClose(&FlowScheduleForm::Rotunda);
}

void FlowScheduleForm::PlanByUserInputClicked()
{
    runThenClose(&FlowScheduleForm::PlanByUserInput);
}

// A run lets events through: a second click or a close then must not reach into it.
void FlowScheduleForm::runThenClose(void (FlowScheduleForm::*run)())
{
    if (runInProgress)
        return;
    runInProgress = true;
    emit(this->*run)();
    runInProgress = false;
    close();
}

void FlowScheduleForm::closeEvent(QCloseEvent* event)
{
    if (runInProgress)
        event->ignore();
    else
        SingleDialog::closeEvent(event);
}
