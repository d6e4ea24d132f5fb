#include "widgets/LabelColumn.h"

#include <QBoxLayout>
#include <QLabel>

#include <algorithm>

void alignLabels(QWidget* form)
{
    QList<QLabel*> labels;
    int width = 0;
    for (const QHBoxLayout* row : form->findChildren<QHBoxLayout*>()) {
        if (auto* label = qobject_cast<QLabel*>(row->itemAt(0)->widget())) {
            labels.append(label);
            width = std::max(width, label->sizeHint().width());
        }
    }
    for (QLabel* label : qAsConst(labels))
        label->setMinimumWidth(width);
}
