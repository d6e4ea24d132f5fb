#include "topology/TopologyWindow.h"

#include "topology/Arrow.h"
#include "topology/DiagramScene.h"
#include "topology/EditItemWindow.h"
#include "topology/EditLineWindow.h"
#include "topology/RecordNotifier.h"

#include <QAction>
#include <QButtonGroup>
#include <QComboBox>
#include <QFontComboBox>
#include <QGraphicsView>
#include <QLineEdit>
#include <QToolButton>

// What actions, buttons and the scene's signals do.

static constexpr int textButtonId = 10; // reserved: the tool box builds no such button
static constexpr qreal zStep = 0.1;

QGraphicsItem* TopologyWindow::firstSelectedItem() const
{
    const QList<QGraphicsItem*> selected = scene->selectedItems();
    return selected.isEmpty() ? nullptr : selected.first();
}

// ---- Modes

// With two buttons in the group, a clicked one unchecks itself: it is the clicked button that is
// unchecked for each of the others.
void TopologyWindow::buttonGroupClicked(QAbstractButton* button)
{
    for (QAbstractButton* other : buttonGroup->buttons()) {
        if (other != button)
            button->setChecked(false);
    }
    const int id = buttonGroup->id(button);
    if (id == textButtonId) {
        enterMode(DiagramScene::InsertText);
    } else {
        scene->setItemType(static_cast<DiagramItem::DiagramType>(id));
        enterMode(DiagramScene::InsertItem);
    }
}

void TopologyWindow::pointerGroupClicked()
{
    enterMode(pointerTypeGroup->checkedId());
}

// The cursor tells whether the next press selects or inserts.
void TopologyWindow::enterMode(int mode)
{
    scene->setMode(static_cast<DiagramScene::Mode>(mode));
    if (mode == DiagramScene::MoveItem)
        view->viewport()->unsetCursor();
    else
        view->viewport()->setCursor(Qt::CrossCursor);
}

// The node at which a line was begun lets the mouse go, or it would be dragged from now on.
void TopologyWindow::leaveInsertMode()
{
    QGraphicsItem* held = scene->mouseGrabberItem();
    if (held && scene->currentMode() == DiagramScene::InsertLine)
        held->ungrabMouse();
    scene->removeLine();
    pointerTypeGroup->button(DiagramScene::MoveItem)->setChecked(true);
    pointerGroupClicked();
}

void TopologyWindow::itemInserted(DiagramItem* item)
{
    pointerTypeGroup->button(DiagramScene::MoveItem)->setChecked(true);
    pointerGroupClicked();
    if (QAbstractButton* button = buttonGroup->button(item->diagramType))
        button->setChecked(false);
    scene->renumberNodes();
}

void TopologyWindow::textInserted(QGraphicsTextItem*)
{
    if (QAbstractButton* button = buttonGroup->button(textButtonId))
        button->setChecked(false);
    pointerGroupClicked();
}

// ---- Editing

void TopologyWindow::editItem()
{
    auto* item = qgraphicsitem_cast<DiagramItem*>(firstSelectedItem());
    if (!item || editItemWindow)
        return;
    editItemWindow = new EditItemWindow(this, item);
    connect(editItemWindow, &EditItemWindow::windowClosed, this,
            &TopologyWindow::delEditItemWindow);
    connect(editItemWindow, &EditItemWindow::updateGraphics, this, &TopologyWindow::updateGraphics);
    editItemWindow->setModal(false);
    editItemWindow->show();
}

void TopologyWindow::delEditItemWindow()
{
    forgetDialog(editItemWindow);
}

// The link dialog lives on and is reused for the next link, unlike the node dialog.
void TopologyWindow::editLine()
{
    auto* arrow = qgraphicsitem_cast<Arrow*>(firstSelectedItem());
    if (!arrow)
        return;
    if (editLineWindow) {
        editLineWindow->close();
        editLineWindow->setArrow(arrow);
    } else {
        editLineWindow = new EditLineWindow(nullptr, arrow);
        connect(editLineWindow, &EditLineWindow::updateGraphics, this,
                &TopologyWindow::updateGraphics);
        editLineWindow->setModal(false);
    }
    editLineWindow->show();
}

// Latest first: the scene finds an item at the end of its list at once when that is to be removed.
QList<QGraphicsItem*> TopologyWindow::selectionInOrder() const
{
    QList<QGraphicsItem*> selected;
    if (scene->selectedItems().isEmpty())
        return selected;
    for (QGraphicsItem* item : scene->items(Qt::DescendingOrder)) {
        if (item->isSelected())
            selected.append(item);
    }
    return selected;
}

// Links go first, so that deleting nodes cannot meet one twice. Nobody sees the numbers before the
// last node is gone.
void TopologyWindow::deleteItem()
{
    deleteSelectedLinks();
    const QList<QGraphicsItem*> selected = selectionInOrder();
    const RecordNotifier::Together together;
    for (QGraphicsItem* item : selected) {
        if (auto* node = qgraphicsitem_cast<DiagramItem*>(item))
            node->removeArrows();
        scene->removeItem(item);
        delete item;
    }
    scene->renumberNodes();
}

void TopologyWindow::deleteSelectedLinks()
{
    const QList<QGraphicsItem*> selected = selectionInOrder();
    for (QGraphicsItem* item : selected) {
        if (auto* arrow = qgraphicsitem_cast<Arrow*>(item)) {
            scene->removeItem(arrow);
            arrow->startItem->removeArrow(arrow);
            arrow->endItem->removeArrow(arrow);
            delete arrow;
        }
    }
}

// ---- Stacking. Only nodes that the selected item collides with count.

void TopologyWindow::bringToFront()
{
    QGraphicsItem* selected = firstSelectedItem();
    if (!selected)
        return;
    qreal zValue = 0;
    for (const QGraphicsItem* item : selected->collidingItems(Qt::IntersectsItemShape)) {
        if (item->zValue() >= zValue && item->type() == DIAGRAM_ITEM_TYPE)
            zValue = item->zValue() + zStep;
    }
    selected->setZValue(zValue);
}

void TopologyWindow::sendToBack()
{
    QGraphicsItem* selected = firstSelectedItem();
    if (!selected)
        return;
    qreal zValue = 0;
    for (const QGraphicsItem* item : selected->collidingItems(Qt::IntersectsItemShape)) {
        if (item->zValue() <= zValue && item->type() == DIAGRAM_ITEM_TYPE)
            zValue = item->zValue() - zStep;
    }
    selected->setZValue(zValue);
}

// ---- Font and zoom

void TopologyWindow::handleFontChange()
{
    QFont font = fontCombo->currentFont();
    if (fontSizeCombo->lineEdit()->hasAcceptableInput()) // not yet while a size is being typed
        fontSize = fontSizeCombo->currentText().toInt();
    font.setPointSize(fontSize);
    font.setWeight(boldAction->isChecked() ? QFont::Bold : QFont::Normal);
    font.setItalic(italicAction->isChecked());
    font.setUnderline(underlineAction->isChecked());
    scene->setFont(font);
}

void TopologyWindow::currentFontChanged(QFont)
{
    fontCombo->lineEdit()->home(false); // a name is read from its beginning
    handleFontChange();
}

void TopologyWindow::fontSizeChanged(QString)
{
    handleFontChange();
}

void TopologyWindow::itemSelected(QGraphicsItem* item)
{
    const auto* text = qgraphicsitem_cast<DiagramTextItem*>(item);
    if (!text)
        return;
    const QFont font = text->font();
    fontCombo->setCurrentFont(font);
    fontSizeCombo->setEditText(QString::number(font.pointSize()));
    boldAction->setChecked(font.weight() == QFont::Bold);
    italicAction->setChecked(font.italic());
    underlineAction->setChecked(font.underline());
}

void TopologyWindow::sceneScaleChanged(QString scale)
{
    const qreal newScale = scale.left(scale.indexOf(tr("%"))).toDouble() / 100.0;
    const QTransform old = view->transform();
    view->resetTransform();
    view->translate(old.dx(), old.dy());
    view->scale(newScale, newScale);
}

void TopologyWindow::zoom(int direction)
{
    const int index = sceneScaleCombo->currentIndex() + direction;
    sceneScaleCombo->setCurrentIndex(qBound(0, index, sceneScaleCombo->count() - 1));
}
