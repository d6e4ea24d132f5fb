#pragma once

#include <QGraphicsTextItem>

/// What type() of a free text returns.
constexpr int DIAGRAM_TEXT_ITEM_TYPE = QGraphicsItem::UserType + 3;

/// Free text on the drawing, editable after a double click; no part of the network.
class DiagramTextItem : public QGraphicsTextItem
{
    Q_OBJECT

public:
    enum { Type = DIAGRAM_TEXT_ITEM_TYPE };

    explicit DiagramTextItem(QGraphicsItem* parent);

    int type() const override { return Type; }

signals:
    void lostFocus(DiagramTextItem* item);
    void selectedChange(QGraphicsItem* item);

protected:
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;
};
