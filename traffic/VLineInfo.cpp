#include "traffic/VLineInfo.h"

QString nodeNameOf(const DiagramItem* node)
{
    return node ? node->nodeName : QString();
}

QStringList nodeNamesOf(const VLineItems& path)
{
    QStringList names;
    for (const DiagramItem* node : path)
        names.append(nodeNameOf(node));
    return names;
}

QString pathText(const VLineItems& path)
{
    return QLatin1Char('{') + nodeNamesOf(path).join(QStringLiteral("->")) + QLatin1Char('}');
}

QString pathSummary(const VLineItems& path)
{
    return QStringLiteral(u"{发送端:%1, 接收端:%2, 跳数:%3}")
        .arg(nodeNameOf(path.value(0)), nodeNameOf(path.value(path.size() - 1)),
             QString::number(switchCount(path)));
}

int switchCount(const VLineItems& path)
{
    return path.size() - 2;
}

DiagramItem* talkerOf(const VLineInfo& vLine)
{
    return vLine.vLinePaths.value(0).value(0);
}

bool forgetNode(VLineItems& path, const DiagramItem* node)
{
    bool held = false;
    for (DiagramItem*& entry : path) {
        if (entry != node)
            continue;
        entry = nullptr;
        held = true;
    }
    return held;
}

bool forgetNode(QList<VLineItems>& paths, const DiagramItem* node)
{
    bool held = false;
    for (VLineItems& path : paths)
        held = forgetNode(path, node) || held;
    return held;
}

void forgetNode(QList<VLineInfo>& vLines, const DiagramItem* node)
{
    for (VLineInfo& vLine : vLines)
        forgetNode(vLine.vLinePaths, node);
}
