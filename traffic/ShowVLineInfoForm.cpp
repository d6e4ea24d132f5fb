#include "traffic/ShowVLineInfoForm.h"

#include "ui_ShowVLineInfoForm.h"

ShowVLineInfoForm::ShowVLineInfoForm(const VLineItems& path, QWidget* parent) : QDialog(parent)
{
    Ui::ShowVLineInfoForm form;
    form.setupUi(this);
    form.textBrowser->setPlainText(pathText(path));
}
