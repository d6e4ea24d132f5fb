#include "traffic/FlowText.h"

static QString windowText(const QString& node, const QString& low, const QString& high)
{
    return QStringLiteral("{%1,[%2,%3]}").arg(node, low, high);
}

QString sendWindowText(const FlowInfo& flow)
{
    return windowText(flow.srcNode, flow.sendWindowLow, flow.sendWindowHigh);
}

QString receiveWindowText(const DstNodeInfo& listener)
{
    return windowText(listener.dstNodeName, listener.rcvWindowLow, listener.rcvWindowHigh);
}
