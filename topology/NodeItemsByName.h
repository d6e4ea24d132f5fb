#pragma once

#include <QMap>
#include <QString>

class DiagramItem;

/// Nodes by the names under which the last project was built; null where a node is gone.
///
/// Only building from a project adds entries; drawing, renaming and deleting leave the keys alone.
extern QMap<QString, DiagramItem*> nodeItemsByName;

/// Turns every entry of the node into null.
void forgetNodeByName(const DiagramItem* node);
