#include "topology/NodeItemsByName.h"

#include "topology/DiagramItem.h"

QMap<QString, DiagramItem*> nodeItemsByName;

static int entriesOfBuilds = 0;

void enterNodeByName(const QString& name, DiagramItem* node)
{
    entriesOfBuilds += nodeItemsByName.contains(name) ? 0 : 1;
    nodeItemsByName[name] = node;
    node->builtName = name;
}

static void forgetEntry(DiagramItem*& entry, const DiagramItem* node)
{
    if (entry == node)
        entry = nullptr;
}

// A node stands under no other name than that of its build, unless others entered it.
void forgetNodeByName(const DiagramItem* node)
{
    if (nodeItemsByName.size() == entriesOfBuilds) {
        const auto own = nodeItemsByName.find(node->builtName);
        if (own != nodeItemsByName.end())
            forgetEntry(*own, node);
        return;
    }
    for (DiagramItem*& entry : nodeItemsByName)
        forgetEntry(entry, node);
}
