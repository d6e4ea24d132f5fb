#include "views/NodeList.h"

#include <QListWidget>

NodeIcons::NodeIcons()
    : host(QStringLiteral(":/images/endpoint.png")),
      networkSwitch(QStringLiteral(":/images/switch.png"))
{
}

/// Null for a kind of node that is neither.
static const QIcon* iconOf(int isHost, const NodeIcons& icons)
{
    switch (isHost) {
    case 0:
        return &icons.networkSwitch;
    case 1:
        return &icons.host;
    default:
        return nullptr;
    }
}

static QString withoutQuotes(QString name)
{
    name.chop(1);
    return name.remove(0, 1);
}

void appendNodes(QListWidget& list, const NodeIcons& icons, const NodeInfo_Xml& nodeInfo,
                 const NodeNames& nodeNames)
{
    for (auto node = nodeInfo.cbegin(); node != nodeInfo.cend(); ++node) {
        const NodeNameRec record = nodeNames.value(node.key());
        const QIcon* icon = iconOf(record.isHost, icons);
        if (!icon)
            continue;
        auto* item = new QListWidgetItem(*icon, withoutQuotes(record.name));
        item->setData(Qt::UserRole, node.key());
        item->setToolTip(item->text()); // the list may be too narrow for it
        list.addItem(item);
    }
    list.setCurrentRow(0);
}
