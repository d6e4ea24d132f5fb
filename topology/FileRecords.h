#pragma once

#include <QPointF>
#include <QString>

/// A node as the project file holds it; the texts are as the user typed them.
struct FileNodeInfo {
    qint32 type = 0;  ///< 0 a host, 1 a switch
    QPointF position; ///< in scene coordinates
    QString nodeName;
    QString nodeId;
    QString nodeMac;
    QString portNum;
    QString mtu;
    QString bufferNum;
};

/// A link as the project file holds it; it names its nodes, which a load finds again by name.
struct FileArrowInfo {
    QString lineName;
    QString srcNode;
    QString dstNode;
    QString srcPort;
    QString dstPort;
    QString bandWidth;
};
