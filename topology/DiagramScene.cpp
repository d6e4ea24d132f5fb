#include "topology/DiagramScene.h"

#include "topology/Arrow.h"
#include "topology/NodeItemsByName.h"
#include "topology/RecordNotifier.h"

#include <QFontMetrics>
#include <QGraphicsSceneMouseEvent>
#include <QTextCursor>

#include <algorithm>
#include <utility>

static constexpr qreal linkZValue = -1000.0; // hides the ends of links behind their nodes
static constexpr qreal textZValue = 1000.0;

namespace
{

/// The line that follows the mouse; when it goes, also with a cleared scene, its holder knows.
class RubberBand : public QGraphicsLineItem
{
public:
    RubberBand(const QPointF& position, QGraphicsLineItem*& holder)
        : QGraphicsLineItem(QLineF(position, position)),
          m_holder(holder)
    {
    }
    ~RubberBand() override { m_holder = nullptr; }
    RubberBand(const RubberBand&) = delete;
    RubberBand& operator=(const RubberBand&) = delete;

private:
    QGraphicsLineItem*& m_holder;
};

} // namespace

DiagramScene::DiagramScene(QMenu* nodeMenu, QMenu* linkMenu, QObject* parent)
    : QGraphicsScene(parent),
      itemMenu(nodeMenu),
      lineMenu(linkMenu)
{
}

// The items go while the scene is still whole: some of them tell it so.
DiagramScene::~DiagramScene()
{
    clearTogether();
}

void DiagramScene::clearTogether()
{
    const RecordNotifier::Together together;
    clear();
}

void DiagramScene::setMode(Mode newMode)
{
    mode = newMode;
}

void DiagramScene::setItemType(DiagramItem::DiagramType type)
{
    itemType = type;
}

// ---- Mouse

void DiagramScene::mousePressEvent(QGraphicsSceneMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    switch (mode) {
    case InsertItem:
        insertItem(event->scenePos());
        break;
    case InsertLine:
        insertLine(event->scenePos());
        break;
    case InsertText:
        insertText(event->scenePos());
        break;
    case MoveItem:
        break;
    }
    QGraphicsScene::mousePressEvent(event);
}

void DiagramScene::mouseMoveEvent(QGraphicsSceneMouseEvent* event)
{
    if (mode == InsertLine && line)
        line->setLine(QLineF(line->line().p1(), event->scenePos()));
    else if (mode == MoveItem)
        QGraphicsScene::mouseMoveEvent(event);
}

void DiagramScene::mouseReleaseEvent(QGraphicsSceneMouseEvent* event)
{
    if (line && mode == InsertLine)
        finishLink();
    removeLine();
    QGraphicsScene::mouseReleaseEvent(event);
}

void DiagramScene::insertItem(const QPointF& position)
{
    DiagramItem* item = createNode(itemType);
    addItem(item);
    item->setPos(position - item->pixmapCenter());
    emit itemInserted(item);
}

void DiagramScene::insertLine(const QPointF& position)
{
    removeLine();
    line = new RubberBand(position, line);
    line->setPen(QPen(QBrush(lineColor), 2.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    addItem(line);
}

void DiagramScene::insertText(const QPointF& position)
{
    textItem = new DiagramTextItem(nullptr);
    textItem->setFont(font);
    textItem->setTextInteractionFlags(Qt::TextEditorInteraction);
    textItem->setZValue(textZValue);
    connect(textItem, &DiagramTextItem::lostFocus, this, &DiagramScene::editorLostFocus);
    connect(textItem, &DiagramTextItem::selectedChange, this, &DiagramScene::itemSelected);
    addItem(textItem);
    textItem->setDefaultTextColor(textColor);
    textItem->setPos(position);
    emit textInserted(textItem);
}

// Links nodes only, and two nodes at most once; everything else is refused in silence.
void DiagramScene::finishLink()
{
    const auto topmostNodeAt = [this](const QPointF& point) {
        QList<QGraphicsItem*> found =
            items(point, Qt::IntersectsItemShape, Qt::DescendingOrder, QTransform());
        if (!found.isEmpty() && found.first() == line)
            found.removeFirst();
        return found.isEmpty() ? nullptr : qgraphicsitem_cast<DiagramItem*>(found.first());
    };
    DiagramItem* start = topmostNodeAt(line->line().p1());
    DiagramItem* end = topmostNodeAt(line->line().p2());
    removeLine();
    if (start && end && start != end && !start->isLinkedTo(end))
        addLink(createArrow(start, end));
}

void DiagramScene::removeLine()
{
    if (QGraphicsLineItem* band = std::exchange(line, nullptr)) {
        removeItem(band);
        delete band;
    }
}

// ---- Items

DiagramItem* DiagramScene::createNode(DiagramItem::DiagramType type) const
{
    auto* item = new DiagramItem(type, itemMenu, nullptr);
    item->font = font;
    item->textHeight = QFontMetrics(font).height();
    item->textColor = textColor;
    return item;
}

Arrow* DiagramScene::createArrow(DiagramItem* start, DiagramItem* end) const
{
    auto* arrow = new Arrow(start, end, lineMenu, nullptr);
    arrow->color = lineColor;
    arrow->font = font;
    arrow->textHeight = QFontMetrics(font).height();
    arrow->textColor = textColor;
    return arrow;
}

void DiagramScene::addLink(Arrow* arrow)
{
    arrow->startItem->addArrow(arrow);
    arrow->endItem->addArrow(arrow);
    arrow->setZValue(linkZValue);
    addItem(arrow);
    arrow->updatePosition();
    arrow->compareWithBounds();
}

// While a project is built, all nodes lie at one height in the order in which they came: those
// before the newest have their numbers, and counting them again for each one would take the square
// of a large drawing.
void DiagramScene::renumberNodes()
{
    if (nodeBeingBuilt) {
        nodeBeingBuilt->nodeId = QString::number(nodesBuilt, 10);
        return;
    }
    int next = 0;
    for (QGraphicsItem* item : items(Qt::AscendingOrder)) {
        if (auto* node = qgraphicsitem_cast<DiagramItem*>(item))
            node->nodeId = QString::number(next++, 10);
    }
}

void DiagramScene::buildByProjectFile(QList<FileNodeInfo> nodes, QList<FileArrowInfo> arrows)
{
    clearTogether();
    nodesBuilt = 0;
    for (const FileNodeInfo& info : qAsConst(nodes))
        buildNode(info);
    for (const FileArrowInfo& info : qAsConst(arrows))
        buildArrow(info);
}

void DiagramScene::buildNode(const FileNodeInfo& info)
{
    DiagramItem* item = createNode(static_cast<DiagramItem::DiagramType>(info.type));
    item->nodeName = info.nodeName;
    item->nodeId = info.nodeId;
    item->nodeMac = info.nodeMac;
    item->portNum = info.portNum;
    item->mtu = info.mtu;
    item->bufferNum = info.bufferNum;
    addItem(item);
    enterNodeByName(info.nodeName, item);
    item->setPos(info.position);
    nodeBeingBuilt = item;
    emit itemInserted(item);
    nodeBeingBuilt = nullptr;
    ++nodesBuilt;
}

void DiagramScene::buildArrow(const FileArrowInfo& info)
{
    DiagramItem* start = nodeItemsByName.value(info.srcNode);
    DiagramItem* end = nodeItemsByName.value(info.dstNode);
    if (!start || !end)
        return;
    Arrow* arrow = createArrow(start, end);
    arrow->lineName = info.lineName;
    arrow->srcNode = info.srcNode;
    arrow->dstNode = info.dstNode;
    arrow->srcPort = info.srcPort;
    arrow->dstPort = info.dstPort;
    arrow->bandWidth = info.bandWidth;
    addLink(arrow);
}

// ---- Fonts and colours

bool DiagramScene::isItemChange(int type) const
{
    const QList<QGraphicsItem*> selected = selectedItems();
    return std::any_of(selected.begin(), selected.end(),
                       [type](const QGraphicsItem* item) { return item->type() == type; });
}

DiagramTextItem* DiagramScene::firstSelectedText() const
{
    const QList<QGraphicsItem*> selected = selectedItems();
    return selected.isEmpty() ? nullptr : qgraphicsitem_cast<DiagramTextItem*>(selected.first());
}

void DiagramScene::setLineColor(const QColor& color)
{
    lineColor = color;
    const QList<QGraphicsItem*> selected = selectedItems();
    if (selected.isEmpty())
        return;
    if (auto* arrow = qgraphicsitem_cast<Arrow*>(selected.first())) {
        arrow->color = color;
        update();
    }
}

void DiagramScene::setTextColor(const QColor& color)
{
    textColor = color;
    if (DiagramTextItem* text = firstSelectedText())
        text->setDefaultTextColor(color);
    for (QGraphicsItem* item : items()) {
        if (auto* node = qgraphicsitem_cast<DiagramItem*>(item))
            node->textColor = color;
        else if (auto* arrow = qgraphicsitem_cast<Arrow*>(item))
            arrow->textColor = color;
    }
    update();
}

void DiagramScene::setItemColor(const QColor& color)
{
    itemColor = color;
}

void DiagramScene::setFont(const QFont& newFont)
{
    font = newFont;
    const int height = QFontMetrics(font).height();
    if (DiagramTextItem* text = firstSelectedText())
        text->setFont(font);
    for (QGraphicsItem* item : items()) {
        if (auto* node = qgraphicsitem_cast<DiagramItem*>(item)) {
            node->setNameFont(font, height);
        } else if (auto* arrow = qgraphicsitem_cast<Arrow*>(item)) {
            arrow->font = font;
            arrow->textHeight = height;
            arrow->compareWithBounds();
        }
    }
    update();
}

void DiagramScene::editorLostFocus(DiagramTextItem* item)
{
    QTextCursor cursor = item->textCursor();
    cursor.clearSelection();
    item->setTextCursor(cursor);
    if (item->toPlainText().isEmpty()) {
        removeItem(item);
        item->deleteLater();
    }
}
