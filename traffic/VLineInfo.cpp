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

bool forgetNodes(VLineItems& path, const GoneNodes& nodes)
{
    bool held = false;
    for (DiagramItem*& entry : path) {
        if (!entry || !nodes.contains(entry))
            continue;
        entry = nullptr;
        held = true;
    }
    return held;
}

bool forgetNodes(QList<VLineItems>& paths, const GoneNodes& nodes)
{
    bool held = false;
    for (VLineItems& path : paths)
        held = forgetNodes(path, nodes) || held;
    return held;
}

void forgetNodes(QList<VLineInfo>& vLines, const GoneNodes& nodes)
{
    for (VLineInfo& vLine : vLines)
        forgetNodes(vLine.vLinePaths, nodes);
}
