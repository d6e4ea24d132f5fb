#pragma once

#include <QMap>
#include <QString>

/// The schedule of one direction: node id, port, flow id, then the slots that the flow occupies
/// there.
///
/// The innermost map is a sorted set of slot numbers: its values are always 0.
using NodeInfo_Xml = QMap<int, QMap<int, QMap<int, QMap<int, qint64>>>>;

/// Kind and name of a node as the input document has them.
struct NodeNameRec {
    int isHost = 0; ///< 1 for a host, 0 for a switch
    QString name;   ///< with the quote characters of the document
};

/// Node id to kind and name.
using NodeNames = QMap<int, NodeNameRec>;
