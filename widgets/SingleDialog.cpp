#include "widgets/SingleDialog.h"

SingleDialog::SingleDialog(QWidget* parent) : QDialog(parent) {}

void SingleDialog::reject()
{
    close();
}

void SingleDialog::closeEvent(QCloseEvent*)
{
    emit windowClosed();
}
