#include "tests/topology/EditorWalker.h"

#include "topology/NodeItemsByName.h"

#include <algorithm>

static QString findFaultInDialogs(Editor& editor, const QList<DiagramItem*>& nodes,
                                  const QList<Arrow*>& links)
{
    const auto stands = [](const auto& items, const auto* record) {
        return !record || std::find(items.begin(), items.end(), record) != items.end();
    };
    if (editor.nodeDialog() && !stands(nodes, PropertyDialogProbe::record(*editor.nodeDialog())))
        return QStringLiteral("the node dialog holds a node outside the scene");
    if (editor.linkDialog() && !stands(links, PropertyDialogProbe::record(*editor.linkDialog())))
        return QStringLiteral("the link dialog holds a link outside the scene");
    return QString();
}

QString findFault(Editor& editor)
{
    const QList<DiagramItem*> nodes = editor.nodes();
    const QList<Arrow*> links = editor.links();
    if (editor.scene()->items().size() != nodes.size() + links.size())
        return QStringLiteral("something else is left in the scene");
    for (int i = 0; i < nodes.size(); ++i) {
        if (nodes[i]->nodeId != QString::number(i))
            return QStringLiteral("node %1 has id %2").arg(i).arg(nodes[i]->nodeId);
        for (Arrow* link : nodes[i]->arrows()) {
            if (!links.contains(link))
                return QStringLiteral("node %1 holds a link outside the scene").arg(i);
            if (link->startItem != nodes[i] && link->endItem != nodes[i])
                return QStringLiteral("node %1 holds a link of others").arg(i);
        }
    }
    for (Arrow* link : links) {
        if (!nodes.contains(link->startItem) || !nodes.contains(link->endItem))
            return QStringLiteral("a link refers to a node outside the scene");
        const bool toItself = link->startItem == link->endItem;
        if (link->startItem->arrows().count(link) != (toItself ? 2 : 1) ||
            link->endItem->arrows().count(link) != (toItself ? 2 : 1))
            return QStringLiteral("a link does not stand once in both its ends' lists");
    }
    for (DiagramItem* node : qAsConst(nodeItemsByName)) {
        if (node && !nodes.contains(node))
            return QStringLiteral("a name leads to a node outside the scene");
    }
    return findFaultInDialogs(editor, nodes, links);
}
