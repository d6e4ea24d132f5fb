#pragma once

#include "project/NodeInfoXml.h"

#include <QIcon>

class QListWidget;

/// The icons of hosts and switches in lists of nodes.
///
/// Keep them as long as the lists: what Qt makes of an icon to paint it, such as its selected form,
/// stays in a cache under the icon, and icons loaded anew for each list would fill that cache.
struct NodeIcons {
    NodeIcons();

    QIcon host;
    QIcon networkSwitch;
};

/// Appends an entry for each node of the schedule, by ascending id, and selects row 0.
///
/// An entry has the node's icon, its name without the quote characters, once more as its tool tip,
/// and its id at Qt::UserRole. A node without a name record counts as a nameless switch.
void appendNodes(QListWidget& list, const NodeIcons& icons, const NodeInfo_Xml& nodeInfo,
                 const NodeNames& nodeNames);
