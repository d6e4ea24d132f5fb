#pragma once

#include "topology/FileRecords.h"
#include "traffic/FlowInfo.h"
#include "traffic/VLineInfo.h"

class QGraphicsScene;
class QIODevice;

/// What a project file holds, in its order; the schedule is not part of it.
struct Project {
    QList<FileArrowInfo> links;
    QList<FileNodeInfo> nodes;
    QList<FileVLineInfo> vLines;
    QList<FlowInfo> flows;
};

/// The records of a drawing and of the two tables.
///
/// Links and nodes come topmost item first, so that each save and load turns their order round;
/// free texts are left out. A path entry without a node gets a null name.
Project projectOf(const QGraphicsScene& scene, const QList<VLineInfo>& vLines,
                  const QList<FlowInfo>& flows);

/// The virtual link of a record: its node names looked up in nodeItemsByName, null where unknown.
VLineInfo vLineOf(const FileVLineInfo& record);

/// Writes the four lists and nothing else; the device is open for writing and stays open.
///
/// Errors of the device are not reported.
void writeProject(QIODevice& device, const Project& project);

/// Saves a project to a file, which is replaced whole or, when that fails, not at all.
///
/// Returns false after a failure.
bool saveProject(const QString& path, const Project& project);

/// Reads the four lists from a device that can seek; it is open for reading and stays open.
///
/// Nothing is verified and nothing thrown: the list in which the device runs dry comes out empty,
/// and so do all lists behind it. A count that is negative, or larger than the rest of the device
/// could hold, counts as running dry. Other damage empties the list in hand, and the next one is
/// read from where the damage was met.
Project readProject(QIODevice& device);
