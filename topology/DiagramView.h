#pragma once

#include <QGraphicsView>

class DiagramScene;

/// The view on the drawing: smooth lines, zoom by Ctrl and wheel, a rubber band over empty canvas,
/// and keys that reach what the mouse reaches.
///
/// Tab goes from node to node and from link to link, and leaves the view after the last one.
class DiagramView : public QGraphicsView
{
    Q_OBJECT

public:
    explicit DiagramView(DiagramScene* scene);

signals:
    void escapePressed();
    /// Ctrl and the wheel: 1 for larger, -1 for smaller.
    void zoomed(int direction);

protected:
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    QList<QGraphicsItem*> stops() const;

    DiagramScene* m_scene;
};
