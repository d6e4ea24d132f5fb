#include "widgets/CellBox.h"

#include <QAbstractItemView>
#include <QWheelEvent>

CellBox::CellBox(const QStringList& entries)
{
    addItems(entries);
    for (int i = 0; i < entries.size(); ++i)
        setItemData(i, entries.at(i), Qt::ToolTipRole);
    setToolTip(currentText());
    setFocusPolicy(Qt::StrongFocus); // by default the wheel would take the focus along
    connect(this, &QComboBox::currentTextChanged, this, &QWidget::setToolTip);
}

void CellBox::setEntry(int index, const QString& text)
{
    setItemText(index, text);
    setItemData(index, text, Qt::ToolTipRole);
}

void CellBox::showPopup()
{
    view()->setMinimumWidth(view()->sizeHintForColumn(0));
    QComboBox::showPopup();
}

void CellBox::wheelEvent(QWheelEvent* event)
{
    event->ignore();
}
