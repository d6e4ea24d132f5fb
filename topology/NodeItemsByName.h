#pragma once

#include <QMap>
#include <QString>

class DiagramItem;

/// Nodes by the names under which the last project was built; null where a node is gone.
///
/// Only building from a project adds entries; drawing, renaming and deleting leave the keys alone.
extern QMap<QString, DiagramItem*> nodeItemsByName;

/// Enters a node that is being built; an earlier node of that name is replaced.
void enterNodeByName(const QString& name, DiagramItem* node);

/// Turns every entry of the node into null.
void forgetNodeByName(const DiagramItem* node);
