#include "widgets/DefaultButton.h"

#include <QPushButton>

void makeDefault(QPushButton* button)
{
    button->setDefault(true);
    if (qobject_cast<QPushButton*>(button->window()->focusWidget()))
        button->setFocus();
}
