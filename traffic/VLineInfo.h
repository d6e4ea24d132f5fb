#pragma once

#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>

class DiagramItem;

/// One data path: talker first, listener last, switches between; null where a node is gone.
///
/// Points into the topology scene and owns nothing.
using VLineItems = QList<DiagramItem*>;

/// A virtual link: its identifier as the user typed it and its data paths.
struct VLineInfo {
    QString vLineId;
    QList<VLineItems> vLinePaths;
};

/// A virtual link as the project file holds it: node names in place of nodes.
struct FileVLineInfo {
    QString vLineId;
    QList<QStringList> vLinePaths;
};

Q_DECLARE_METATYPE(VLineInfo)
