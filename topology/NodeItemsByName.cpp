#include "topology/NodeItemsByName.h"

QMap<QString, DiagramItem*> nodeItemsByName;

void forgetNodeByName(const DiagramItem* node)
{
    for (DiagramItem*& entry : nodeItemsByName) {
        if (entry == node)
            entry = nullptr;
    }
}
