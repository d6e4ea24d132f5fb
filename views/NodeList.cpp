#include "project/NodeList.h"

#include <QIcon>
#include <QListWidget>

static QString iconPath(int isHost)
{
    switch (isHost) {
    case 0:
        return QStringLiteral(":/images/switch.png");
    case 1:
        return QStringLiteral(":/images/endpoint.png");
    default:
        return QString();
    }
}

static QString withoutQuotes(QString name)
{
    name.chop(1);
    return name.remove(0, 1);
}

void appendNodes(QListWidget& list, const NodeInfo_Xml& nodeInfo, const NodeNames& nodeNames)
{
    for (auto node = nodeInfo.cbegin(); node != nodeInfo.cend(); ++node) {
        const NodeNameRec record = nodeNames.value(node.key());
        const QString icon = iconPath(record.isHost);
        if (icon.isNull())
            continue;
        auto* item = new QListWidgetItem(QIcon(icon), withoutQuotes(record.name));
        item->setData(Qt::UserRole, node.key());
        list.addItem(item);
    }
    list.setCurrentRow(0);
}
