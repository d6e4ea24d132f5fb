#include "tests/app/walk/WalkedStudio.h"
#include "topology/EditItemWindow.h"
#include "topology/EditLineWindow.h"

#include <QButtonGroup>
#include <QToolButton>

static bool chooseFontSize(WalkedStudio& walked)
{
    QComboBox* sizes = TopologyWindowProbe::fontSizes(walked.editor.window);
    sizes->setCurrentIndex(walked.pick(sizes->count()));
    return true;
}

static bool chooseScale(WalkedStudio& walked)
{
    QComboBox* scales = TopologyWindowProbe::scales(walked.editor.window);
    scales->setCurrentIndex(walked.pick(scales->count()));
    return true;
}

static bool chooseBackground(WalkedStudio& walked)
{
    const auto buttons = TopologyWindowProbe::backgroundButtons(walked.editor.window)->buttons();
    walked.pickFrom(buttons)->click();
    return true;
}

static bool chooseColor(WalkedStudio& walked)
{
    TopologyWindow& tool = walked.editor.window;
    QToolButton* const buttons[] = {TopologyWindowProbe::textColorButton(tool),
                                    TopologyWindowProbe::fillColorButton(tool),
                                    TopologyWindowProbe::lineColorButton(tool)};
    QToolButton* button = buttons[walked.pick(3)];
    if (walked.pick(2))
        walked.pickFrom(button->menu()->actions())->trigger();
    button->click();
    return true;
}

static bool toggleBold(WalkedStudio& walked)
{
    TopologyWindowProbe::boldAction(walked.editor.window)->trigger();
    return true;
}

static bool selectAnything(WalkedStudio& walked)
{
    const QList<QGraphicsItem*> items = walked.editor.scene()->items();
    for (QGraphicsItem* item : items)
        item->setSelected(walked.pick(8) == 0);
    return !items.isEmpty();
}

static bool typeProperties(WalkedStudio& walked)
{
    const QVector<const char*> numbers{"0", "1", "2", "8", "1000", "-1", "x", ""};
    const auto fill = [&](QDialog* form, const char* field, const QVector<const char*>& texts) {
        if (walked.pick(3))
            typeText(form, field, walked.pickFrom(texts));
    };
    EditItemWindow* node = walked.editor.nodeDialog();
    if (node && node->isVisible()) {
        fill(node, "lineEdit_nodeName", {"A", "B", "S1", "S2", "N1", "N2", ""});
        fill(node, "lineEdit_nodeMac", {"2:0:0:0:0:1", "ff:ff:ff:ff:ff:ff", "2:0", ""});
        for (const char* field : {"lineEdit_portNum", "lineEdit_mtu", "lineEdit_bufferNum"})
            fill(node, field, numbers);
        return true;
    }
    EditLineWindow* link = walked.editor.linkDialog();
    if (!link || !link->isVisible())
        return false;
    for (const char* field : {"lineEdit_srcPort", "lineEdit_dstPort", "lineEdit_bandWidth"})
        fill(link, field, numbers);
    return true;
}

static bool letEventsThrough(WalkedStudio&)
{
    QCoreApplication::processEvents();
    return true;
}

static bool paint(WalkedStudio& walked)
{
    walked.window.grab();
    return true;
}

static bool resizeWindow(WalkedStudio& walked)
{
    walked.window.resize(1000 + walked.pick(4) * 100, 750 + walked.pick(3) * 100);
    return true;
}

WalkActions toolActions()
{
    return {{"choose font size", 2, &chooseFontSize},
            {"choose scale", 1, &chooseScale},
            {"choose background", 1, &chooseBackground},
            {"choose colour", 2, &chooseColor},
            {"toggle bold", 1, &toggleBold},
            {"select anything", 2, &selectAnything},
            {"type properties", 6, &typeProperties},
            {"let events through", 8, &letEventsThrough},
            {"paint", 1, &paint},
            {"resize window", 1, &resizeWindow}};
}
