#pragma once

#include "topology/DiagramItem.h"
#include "topology/RecordNotifier.h"

#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>

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

/// The node's name; empty for a node that is gone.
QString nodeNameOf(const DiagramItem* node);

/// The names of a path's nodes in path order; empty where a node is gone.
QStringList nodeNamesOf(const VLineItems& path);

/// "{A->S1->B}"; "{}" for an empty path.
QString pathText(const VLineItems& path);

/// "{发送端:A, 接收端:B, 跳数:1}": the ends of a path and its count of switches.
QString pathSummary(const VLineItems& path);

/// Count of nodes between the two ends; negative for fewer than two nodes.
int switchCount(const VLineItems& path);

/// The node from which all paths of the virtual link start; null without a path.
DiagramItem* talkerOf(const VLineInfo& vLine);

/// Turns every entry of these nodes into null; lengths stay. Returns whether there was one.
bool forgetNodes(VLineItems& path, const GoneNodes& nodes);
bool forgetNodes(QList<VLineItems>& paths, const GoneNodes& nodes);
void forgetNodes(QList<VLineInfo>& vLines, const GoneNodes& nodes);
