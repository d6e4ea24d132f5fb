#pragma once

#include "topology/Arrow.h"
#include "topology/DiagramItem.h"

#include <QLineF>
#include <QTransform>
#include <QtTest>

// What a comparison that fails prints of a drawing's items.
namespace QTest
{

template <>
inline char* toString(const DiagramItem::DiagramType& type)
{
    return qstrdup(type == DiagramItem::Switch ? "switch" : "host");
}

template <>
inline char* toString(const QLineF& line)
{
    return qstrdup(qPrintable(QStringLiteral("(%1,%2) to (%3,%4)")
                                  .arg(line.x1())
                                  .arg(line.y1())
                                  .arg(line.x2())
                                  .arg(line.y2())));
}

template <>
inline char* toString(const QTransform& transform)
{
    QStringList rows;
    rows += QStringLiteral("%1 %2").arg(transform.m11()).arg(transform.m12());
    rows += QStringLiteral("%1 %2").arg(transform.m21()).arg(transform.m22());
    rows += QStringLiteral("%1 %2").arg(transform.dx()).arg(transform.dy());
    return qstrdup(qPrintable(rows.join(QStringLiteral(", "))));
}

template <>
inline char* toString(QGraphicsItem* const& item)
{
    QString text = item ? QStringLiteral("another item") : QStringLiteral("no item");
    if (const auto* node = qgraphicsitem_cast<DiagramItem*>(item))
        text = QStringLiteral("node %1 \"%2\"").arg(node->nodeId, node->nodeName);
    else if (const auto* link = qgraphicsitem_cast<Arrow*>(item))
        text = QStringLiteral("link \"%1\" to \"%2\"").arg(link->srcNode, link->dstNode);
    return qstrdup(qPrintable(text));
}

template <>
inline char* toString(DiagramItem* const& node)
{
    return toString(static_cast<QGraphicsItem*>(node));
}

template <>
inline char* toString(Arrow* const& link)
{
    return toString(static_cast<QGraphicsItem*>(link));
}

} // namespace QTest
