#pragma once

#include <QColor>
#include <QFont>
#include <QGraphicsLineItem>
#include <QSet>

class DiagramItem;
class QMenu;

/// What type() of a link returns.
constexpr int ARROW_TYPE = QGraphicsItem::UserType + 4;

/// A physical link of the drawing, and at once its only record; a plain line without a head.
///
/// All texts are as the user typed them and null until then. The scene owns the item; its two nodes
/// are referred to and not owned.
class Arrow : public QGraphicsLineItem
{
public:
    enum { Type = ARROW_TYPE };

    /// Both nodes must exist; their names are copied. contextMenu is shared and not owned.
    Arrow(DiagramItem* startItem, DiagramItem* endItem, QMenu* contextMenu, QGraphicsItem* parent);
    ~Arrow() override;

    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;
    int type() const override { return Type; }

    /// Stores the line between the centres of the two nodes as they stand now.
    void updatePosition();

    /// Where a line leaves the box of a node's picture.
    ///
    /// line is in the link's coordinates. Returns 1 top, 2 right, 3 bottom, 4 left with point
    /// written, or 0 when the line crosses no edge. A corner counts for the edge of lower number.
    qint32 intersectEdge(DiagramItem* item, const QLineF& line, QPointF* point) const;

    /// The rectangle within which the link paints now, in scene coordinates; the bounds, which
    /// follow the stored line and not the font, need not hold all of it.
    QRectF paintedArea() const;

    /// Stores the line as updatePosition() does, and repaints what the link leaves. For a node of
    /// it that is about to move.
    void followLeavingNode();

    /// Repaints what the link has come to beyond its bounds. For a node of it that has moved.
    void followArrivedNode();

    /// Enters the link into beyondTheirBounds(), or takes it out, as it stands now.
    void compareWithBounds();

    /// The links of all scenes whose paintedArea() is not within their bounds.
    static const QSet<const Arrow*>& beyondTheirBounds();

    QString lineName;
    QString srcNode;
    QString dstNode;
    QString srcPort;
    QString dstPort;
    QString bandWidth; ///< Mbps
    DiagramItem* startItem;
    DiagramItem* endItem;
    QString spareText; ///< kept empty
    QColor color = Qt::black;
    QMenu* contextMenu;
    QFont font;             ///< of the port labels
    QColor textColor;       ///< of the port labels; black while invalid
    qint32 textHeight = 15; ///< pixels of a port label

protected:
    void contextMenuEvent(QGraphicsSceneContextMenuEvent* event) override;

private:
    QPointF centerOf(const DiagramItem* item) const;
    QLineF centerLine() const;
    QSize labelSize() const;
    void paintLabels(QPainter* painter, const QLineF& centers) const;
    void paintSelection(QPainter* painter) const;
};
