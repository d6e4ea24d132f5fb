#pragma once

#include "project/NodeInfoXml.h"

class QListWidget;

/// Appends an entry for each node of the schedule, by ascending id, and selects row 0.
///
/// An entry has the node's icon, its name without the quote characters, and its id at Qt::UserRole.
/// A node without a name record counts as a nameless switch.
void appendNodes(QListWidget& list, const NodeInfo_Xml& nodeInfo, const NodeNames& nodeNames);
