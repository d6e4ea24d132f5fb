#pragma once

#include "topology/DiagramItem.h"
#include "topology/DiagramTextItem.h"
#include "topology/FileRecords.h"

#include <QGraphicsScene>

class Arrow;

/// The drawing: turns presses into nodes and drags into links, and numbers the nodes.
///
/// Its items are the topology; there is no other record of it. The stacking order of items() is the
/// order that numbering and documents follow.
class DiagramScene : public QGraphicsScene
{
    Q_OBJECT

public:
    enum Mode { InsertItem = 0, InsertLine = 1, InsertText = 2, MoveItem = 3 };
    Q_ENUM(Mode)

    /// The menus are given to each node and each link; they are not owned.
    DiagramScene(QMenu* itemMenu, QMenu* lineMenu, QObject* parent);
    ~DiagramScene() override;

    /// Numbers the nodes 0 to N-1 by ascending stacking order.
    void renumberNodes();

    /// For future links, and for the first selected item if that is a link.
    void setLineColor(const QColor& color);
    /// For all names and port labels, and for the first selected item if that is a text.
    void setTextColor(const QColor& color);
    /// Stored only: nodes have no fill.
    void setItemColor(const QColor& color);
    /// For all names and port labels, and for the first selected item if that is a text.
    void setFont(const QFont& font);

    Mode currentMode() const { return mode; }

    /// Takes away the line that is being drawn to a second node, if there is one.
    void removeLine();

    /// Whether any selected item has this type().
    bool isItemChange(int type) const;

signals:
    void itemInserted(DiagramItem* item);
    void textInserted(QGraphicsTextItem* item);
    void itemSelected(QGraphicsItem* item);

public slots:
    void setMode(Mode mode);
    void setItemType(DiagramItem::DiagramType type);
    void editorLostFocus(DiagramTextItem* item);
    /// Replaces the drawing: nodes, then links, in list order.
    ///
    /// Fills nodeItemsByName. A link whose node is missing is dropped; nothing else is refused.
    void buildByProjectFile(QList<FileNodeInfo> nodes, QList<FileArrowInfo> arrows);

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;

private:
    void insertItem(const QPointF& position);
    void insertLine(const QPointF& position);
    void insertText(const QPointF& position);
    void finishLink();
    void addLink(Arrow* arrow);
    DiagramItem* createNode(DiagramItem::DiagramType type) const;
    Arrow* createArrow(DiagramItem* start, DiagramItem* end) const;
    void clearTogether();
    void buildNode(const FileNodeInfo& info);
    void buildArrow(const FileArrowInfo& info);
    DiagramTextItem* firstSelectedText() const;

    DiagramItem::DiagramType itemType = DiagramItem::Endpoint; ///< kind of the next node
    QMenu* itemMenu;
    QMenu* lineMenu;
    Mode mode = MoveItem;
    QGraphicsLineItem* line = nullptr;     ///< shown while a link is drawn
    DiagramItem* nodeBeingBuilt = nullptr; ///< while its insertion is told
    int nodesBuilt = 0;                    ///< before it, in this build
    QFont font;
    DiagramTextItem* textItem = nullptr; ///< the text made last; never followed
    QColor textColor = Qt::black;
    QColor itemColor = Qt::white;
    QColor lineColor = Qt::black;
};
