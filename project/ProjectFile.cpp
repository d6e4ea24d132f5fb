#include "project/ProjectFile.h"

#include "project/ProjectStream.h"
#include "project/WholeFile.h"
#include "topology/Arrow.h"
#include "topology/DiagramItem.h"
#include "topology/NodeItemsByName.h"

#include <QBuffer>
#include <QGraphicsScene>

static FileArrowInfo recordOf(const Arrow& arrow)
{
    return {arrow.lineName, arrow.srcNode, arrow.dstNode,
            arrow.srcPort,  arrow.dstPort, arrow.bandWidth};
}

static FileNodeInfo recordOf(const DiagramItem& node)
{
    return {node.diagramType, node.pos(),   node.nodeName, node.nodeId,
            node.nodeMac,     node.portNum, node.mtu,      node.bufferNum};
}

static FileVLineInfo recordOf(const VLineInfo& vLine)
{
    FileVLineInfo record;
    record.vLineId = vLine.vLineId;
    for (const VLineItems& path : vLine.vLinePaths)
        record.vLinePaths.append(nodeNamesOf(path));
    return record;
}

Project projectOf(const QGraphicsScene& scene, const QList<VLineInfo>& vLines,
                  const QList<FlowInfo>& flows)
{
    Project project;
    for (QGraphicsItem* item : scene.items(Qt::DescendingOrder)) {
        if (const auto* arrow = qgraphicsitem_cast<Arrow*>(item))
            project.links.append(recordOf(*arrow));
        else if (const auto* node = qgraphicsitem_cast<DiagramItem*>(item))
            project.nodes.append(recordOf(*node));
    }
    for (const VLineInfo& vLine : vLines)
        project.vLines.append(recordOf(vLine));
    project.flows = flows;
    return project;
}

VLineInfo vLineOf(const FileVLineInfo& record)
{
    VLineInfo vLine;
    vLine.vLineId = record.vLineId;
    for (const QStringList& names : record.vLinePaths) {
        VLineItems path;
        for (const QString& name : names)
            path.append(nodeItemsByName.value(name));
        vLine.vLinePaths.append(path);
    }
    return vLine;
}

void writeProject(QIODevice& device, const Project& project)
{
    QDataStream stream(&device);
    writeList(stream, project.links);
    writeList(stream, project.nodes);
    writeList(stream, project.vLines);
    writeList(stream, project.flows);
}

bool saveProject(const QString& path, const Project& project)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    writeProject(buffer, project);
    return replaceWhole(path, buffer.data());
}

Project readProject(QIODevice& device)
{
    QDataStream stream(&device);
    Project project;
    readList(stream, project.links);
    readList(stream, project.nodes);
    readList(stream, project.vLines);
    readList(stream, project.flows);
    return project;
}
