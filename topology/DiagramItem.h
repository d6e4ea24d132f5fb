#pragma once

#include <QColor>
#include <QFont>
#include <QGraphicsPixmapItem>
#include <QList>
#include <QPixmap>

class Arrow;
class QMenu;

/// What type() of a node returns.
constexpr int DIAGRAM_ITEM_TYPE = QGraphicsItem::UserType + 15;

/// A host or a switch of the drawing, and at once its only record.
///
/// All texts are as the user typed them and null until then; nothing checks them. The scene owns
/// the item; links are referred to and not owned. Call removeArrows() before deleting a node.
class DiagramItem : public QGraphicsPixmapItem
{
public:
    enum DiagramType : qint32 { Endpoint = 0, Switch = 1 };
    enum { Type = DIAGRAM_ITEM_TYPE };

    /// contextMenu is shared and not owned. A kind without a picture gives an empty image.
    DiagramItem(DiagramType type, QMenu* contextMenu, QGraphicsItem* parent = nullptr);
    ~DiagramItem() override;

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;
    int type() const override { return Type; }

    /// The picture of the kind, for icons.
    QPixmap image() const { return pixmap; }

    /// The links that touch this node, in the order in which they were added.
    QList<Arrow*> arrows() const { return arrowList; }

    void addArrow(Arrow* arrow);
    /// Removes the first occurrence; the link itself is left alone.
    void removeArrow(Arrow* arrow);
    /// Takes all links of this node off both ends and out of the scene, and deletes them.
    void removeArrows();

    /// Whether a link of this node has the other one at either end.
    bool isLinkedTo(const DiagramItem* other) const;

    /// Sets font and height of the name band, whose height is part of the item's bounds.
    void setNameFont(const QFont& nameFont, qint32 height);

    /// Centre of the picture, without the name band, in the item's coordinates.
    QPoint pixmapCenter() const { return pixmap.rect().center(); }

    QString nodeName;
    QString nodeId; ///< decimal; written by the scene's numbering
    QString nodeMac;
    QString portNum;
    QString mtu;
    QString bufferNum;
    DiagramType diagramType;
    QPixmap pixmap;
    QMenu* contextMenu;
    QList<Arrow*> arrowList;
    QFont font;             ///< of the name
    QColor textColor;       ///< of the name; black while invalid
    qint32 textHeight = 15; ///< pixels of the name band under the picture
    QPixmap largePixmap;    ///< the same picture in twice the size, for screens of high resolution
    QString builtName;      ///< under which nodeItemsByName holds it; null when it was drawn

protected:
    void contextMenuEvent(QGraphicsSceneContextMenuEvent* event) override;
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;

private:
    void paintPicture(QPainter* painter, const QRect& target) const;
    static void paintFrame(QPainter* painter, const QRect& image);
};
