#pragma once

#include "topology/Arrow.h"
#include "topology/DiagramScene.h"
#include "topology/TopologyWindow.h"

#include <QAbstractButton>
#include <QEvent>
#include <QGraphicsView>
#include <QImage>
#include <QMenu>

#include <functional>
#include <memory>

class EditItemWindow;
class EditLineWindow;
class QComboBox;

/// Opens what the topology window keeps to itself, for tests.
struct TopologyWindowProbe {
    static QGraphicsView* view(TopologyWindow& window) { return window.view; }
    static QButtonGroup* nodeButtons(TopologyWindow& window) { return window.buttonGroup; }
    static QButtonGroup* pointerButtons(TopologyWindow& window) { return window.pointerTypeGroup; }
    static QButtonGroup* backgroundButtons(TopologyWindow& window)
    {
        return window.backgroundButtonGroup;
    }
    static EditItemWindow* nodeDialog(TopologyWindow& window) { return window.editItemWindow; }
    static EditLineWindow* linkDialog(TopologyWindow& window) { return window.editLineWindow; }
    static QComboBox* fontSizes(TopologyWindow& window) { return window.fontSizeCombo; }
    static QComboBox* scales(TopologyWindow& window) { return window.sceneScaleCombo; }
    static QToolButton* textColorButton(TopologyWindow& window)
    {
        return window.fontColorToolButton;
    }
    static QToolButton* fillColorButton(TopologyWindow& window)
    {
        return window.fillColorToolButton;
    }
    static QToolButton* lineColorButton(TopologyWindow& window)
    {
        return window.lineColorToolButton;
    }
    static QAction* boldAction(TopologyWindow& window) { return window.boldAction; }
};

/// Opens which record a property dialog holds, for tests; null once the record is gone.
struct PropertyDialogProbe {
    static const DiagramItem* record(const EditItemWindow& dialog);
    static const Arrow* record(const EditLineWindow& dialog);
};

/// The drawing tool in a window of its own, worked with mouse and keys as a user does.
///
/// Positions are scene coordinates between (50, 50) and (700, 500), which are in view.
class Editor
{
public:
    /// In a window of its own, shown and active.
    Editor();
    /// In a window that stands in another one, which the caller shows.
    explicit Editor(TopologyWindow& embedded);

private:
    std::unique_ptr<TopologyWindow> m_own;

public:
    TopologyWindow& window;

    DiagramScene* scene() { return window.getScence(); }
    QGraphicsView* view() { return TopologyWindowProbe::view(window); }
    EditItemWindow* nodeDialog() { return TopologyWindowProbe::nodeDialog(window); }
    EditLineWindow* linkDialog() { return TopologyWindowProbe::linkDialog(window); }

    void press(const QPointF& position, Qt::MouseButton button = Qt::LeftButton);
    void moveTo(const QPointF& position);
    void release(const QPointF& position, Qt::MouseButton button = Qt::LeftButton);
    void click(const QPointF& position);
    void drag(const QPointF& from, const QPointF& to);
    /// Presses the key in the drawing tool's window, whatever dialog has the focus.
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

    void clickNodeButton(DiagramItem::DiagramType type);
    void clickPointerButton(DiagramScene::Mode mode);

    /// Presses the node button, then the canvas; the new node, named.
    DiagramItem* insertNode(DiagramItem::DiagramType type, const QPointF& center,
                            const char* name = "");
    /// Draws from centre to centre with the line pointer; null when it was refused.
    Arrow* drawLink(DiagramItem* from, DiagramItem* to);
    /// Opens the context menu at the position; act runs while it is open and gets the menu.
    void openContextMenu(const QPointF& position, const std::function<void(QMenu*)>& act);
    /// Chooses the entry of the context menu with this text.
    void chooseFromContextMenu(const QPointF& position, const QString& text);

    QList<DiagramItem*> nodes(); ///< in ascending stacking order
    QList<Arrow*> links();       ///< in ascending stacking order

private:
    void activate();
    void send(QEvent::Type type, const QPointF& position, Qt::MouseButton button,
              Qt::MouseButtons buttons);
};

/// Centre of a node's picture in scene coordinates.
QPointF centerOf(const DiagramItem* node);

/// The scene between (0, 0) and (800, 600), painted without smoothing on white.
QImage paintedScene(DiagramScene* scene);

/// Number of pixels of exactly this colour in a part of an image.
int countPixels(const QImage& image, const QRect& part, const QColor& color);
