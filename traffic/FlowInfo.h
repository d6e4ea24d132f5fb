#pragma once

#include <QList>
#include <QMetaType>
#include <QString>

/// One listener of a flow with its receive window in microseconds, all as the user typed it.
struct DstNodeInfo {
    QString dstNodeName;
    QString rcvWindowLow;
    QString rcvWindowHigh;
};

/// One flow as the user typed it; only the planning engine reads the texts as numbers.
struct FlowInfo {
    QString flowType; ///< "TT", "RC" or "BE"
    QString flowId;
    QString flowPeriod; ///< microseconds
    QString flowSize;   ///< bytes
    QString vLineId;
    QString srcNode;
    QString sendWindowLow;       ///< microseconds
    QString sendWindowHigh;      ///< microseconds
    QList<DstNodeInfo> dstNodes; ///< one per data path of the virtual link
};

Q_DECLARE_METATYPE(FlowInfo)
