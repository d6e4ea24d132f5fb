#include "views/FlowColorTable.h"

#include <QList>

QVector<QColor> flowColorTable;

static constexpr int colorCount = 1000;

static int randomComponent()
{
    // The unseeded sequence of qrand() is what makes colours repeatable.
    QT_WARNING_PUSH;
    QT_WARNING_DISABLE_DEPRECATED;
    return qrand() % 256;
    QT_WARNING_POP;
}

static QColor randomColor()
{
    const int blue = randomComponent();
    const int green = randomComponent();
    const int red = randomComponent();
    return QColor(red, green, blue);
}

static QColor unusedColor(QList<QColor>& used)
{
    QColor color = randomColor();
    while (used.contains(color))
        color = randomColor();
    used.append(color);
    return color;
}

void fillFlowColorTable()
{
    flowColorTable.resize(colorCount);
    QList<QColor> used;
    for (QColor& entry : flowColorTable)
        entry = unusedColor(used);
}

QColor flowColor(int flowID)
{
    const int index = flowID % colorCount;
    return flowColorTable.value(index < 0 ? index + colorCount : index);
}
