#include "tests/driver/Editor.h"

#include "topology/EditItemWindow.h"
#include "topology/EditLineWindow.h"

#include "tests/support/Failure.h"

#include <QButtonGroup>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPainter>
#include <QTimer>
#include <QtTest>

const DiagramItem* PropertyDialogProbe::record(const EditItemWindow& dialog)
{
    return dialog.item;
}

const Arrow* PropertyDialogProbe::record(const EditLineWindow& dialog)
{
    return dialog.arrow;
}

Editor::Editor() : m_own(std::make_unique<TopologyWindow>()), window(*m_own)
{
    window.resize(1100, 750);
    window.show();
    activate();
    view()->centerOn(400, 300);
}

Editor::Editor(TopologyWindow& embedded) : window(embedded) {}

void Editor::send(QEvent::Type type, const QPointF& position, Qt::MouseButton button,
                  Qt::MouseButtons buttons)
{
    QWidget* viewport = view()->viewport();
    const QPoint local = view()->mapFromScene(position);
    QMouseEvent event(type, local, viewport->mapToGlobal(local), button, buttons, Qt::NoModifier);
    QApplication::sendEvent(viewport, &event);
}

void Editor::press(const QPointF& position, Qt::MouseButton button)
{
    send(QEvent::MouseButtonPress, position, button, button);
}

void Editor::moveTo(const QPointF& position)
{
    send(QEvent::MouseMove, position, Qt::NoButton, Qt::LeftButton);
}

void Editor::release(const QPointF& position, Qt::MouseButton button)
{
    send(QEvent::MouseButtonRelease, position, button, Qt::NoButton);
}

void Editor::click(const QPointF& position)
{
    press(position);
    release(position);
}

void Editor::drag(const QPointF& from, const QPointF& to)
{
    press(from);
    moveTo((from + to) / 2);
    moveTo(to);
    release(to);
}

// A window counts as active already while a dialog of its own has the focus, but keys then do not
// reach it; and a dialog shown just now takes the focus only when events are processed.
void Editor::activate()
{
    QCoreApplication::processEvents();
    window.activateWindow();
    if (!QTest::qWaitFor([this] { return QApplication::activeWindow() == window.window(); }))
        failTest("the window does not become active");
}

void Editor::key(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    activate();
    QTest::keyClick(&window, key, modifiers);
}

void Editor::clickNodeButton(DiagramItem::DiagramType type)
{
    QTest::mouseClick(TopologyWindowProbe::nodeButtons(window)->button(type), Qt::LeftButton);
}

void Editor::clickPointerButton(DiagramScene::Mode mode)
{
    QTest::mouseClick(TopologyWindowProbe::pointerButtons(window)->button(mode), Qt::LeftButton);
}

DiagramItem* Editor::insertNode(DiagramItem::DiagramType type, const QPointF& center,
                                const char* name)
{
    const QList<DiagramItem*> before = nodes();
    clickNodeButton(type);
    click(center);
    for (DiagramItem* node : nodes()) {
        if (!before.contains(node)) {
            node->nodeName = QString::fromUtf8(name);
            return node;
        }
    }
    return nullptr;
}

Arrow* Editor::drawLink(DiagramItem* from, DiagramItem* to)
{
    const QList<Arrow*> before = links();
    clickPointerButton(DiagramScene::InsertLine);
    drag(centerOf(from), centerOf(to));
    clickPointerButton(DiagramScene::MoveItem);
    for (Arrow* link : links()) {
        if (!before.contains(link))
            return link;
    }
    return nullptr;
}

void Editor::openContextMenu(const QPointF& position, const std::function<void(QMenu*)>& act)
{
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu)
            return;
        timer.stop();
        act(menu);
        menu->close();
    });
    timer.start(1);
    QWidget* viewport = view()->viewport();
    const QPoint local = view()->mapFromScene(position);
    QContextMenuEvent event(QContextMenuEvent::Mouse, local, viewport->mapToGlobal(local));
    QApplication::sendEvent(viewport, &event);
}

void Editor::chooseFromContextMenu(const QPointF& position, const QString& text)
{
    openContextMenu(position, [&text](QMenu* menu) {
        for (QAction* action : menu->actions()) {
            if (action->text() == text) {
                QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier,
                                  menu->actionGeometry(action).center());
                return;
            }
        }
    });
}

QList<DiagramItem*> Editor::nodes()
{
    QList<DiagramItem*> found;
    for (QGraphicsItem* item : scene()->items(Qt::AscendingOrder)) {
        if (auto* node = qgraphicsitem_cast<DiagramItem*>(item))
            found.append(node);
    }
    return found;
}

QList<Arrow*> Editor::links()
{
    QList<Arrow*> found;
    for (QGraphicsItem* item : scene()->items(Qt::AscendingOrder)) {
        if (auto* link = qgraphicsitem_cast<Arrow*>(item))
            found.append(link);
    }
    return found;
}

QPointF centerOf(const DiagramItem* node)
{
    return node->mapToScene(node->pixmapCenter());
}

QImage paintedScene(DiagramScene* scene)
{
    QImage image(800, 600, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::TextAntialiasing, false);
    scene->render(&painter, QRectF(0, 0, 800, 600), QRectF(0, 0, 800, 600));
    return image;
}

int countPixels(const QImage& image, const QRect& part, const QColor& color)
{
    int count = 0;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x) {
            if (image.valid(x, y) && image.pixel(x, y) == color.rgb())
                ++count;
        }
    }
    return count;
}
