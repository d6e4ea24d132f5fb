#include "tests/driver/Editor.h"
#include "tests/support/GuiTestMain.h"
#include "tests/topology/SpokenItems.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QHelpEvent>
#include <QScreen>
#include <QToolButton>
#include <QToolTip>
#include <QWheelEvent>

#include <cstdlib>

// What the view shows and what keys and wheel do in it.

/// What stands on the screen where the drawing is.
static QImage screen(Editor& editor)
{
    QCoreApplication::processEvents();
    const QWidget* viewport = editor.view()->viewport();
    const QPoint corner = viewport->mapTo(&editor.window, QPoint());
    return editor.window.screen()
        ->grabWindow(editor.window.winId(), corner.x(), corner.y(), viewport->width(),
                     viewport->height())
        .toImage();
}

static QImage freshlyPainted(Editor& editor)
{
    editor.view()->viewport()->repaint();
    return screen(editor);
}

/// Counts the pixels in which two pictures of one size differ, by more than the few levels by which
/// the rounding of smoothed edges depends on what part is painted.
static int differences(const QImage& one, const QImage& other)
{
    const auto far = [](int a, int b) { return std::abs(a - b) > 12; };
    int count = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QRgb a = one.pixel(x, y);
            const QRgb b = other.pixel(x, y);
            count += far(qRed(a), qRed(b)) || far(qGreen(a), qGreen(b)) || far(qBlue(a), qBlue(b));
        }
    }
    return count;
}

/// A drawing of six nodes in a circle of links, with port numbers.
static void drawCircle(Editor& editor)
{
    const QPointF places[] = {{100, 120}, {350, 100}, {620, 140},
                              {640, 440}, {360, 470}, {90, 430}};
    QList<DiagramItem*> nodes;
    for (int i = 0; i < 6; ++i) {
        nodes.append(editor.insertNode(i % 2 ? DiagramItem::Switch : DiagramItem::Endpoint,
                                       places[i], "node"));
    }
    for (int i = 0; i < 6; ++i) {
        Arrow* link = editor.drawLink(nodes[i], nodes[(i + 1) % 6]);
        link->srcPort = link->dstPort = QStringLiteral("1024");
    }
    editor.window.updateGraphics();
}

static void dragInSteps(Editor& editor, DiagramItem* node, const QPointF& to, int steps)
{
    const QPointF from = centerOf(node);
    editor.press(from);
    for (int step = 1; step <= steps; ++step) {
        editor.moveTo(from + (to - from) * step / steps);
        QCoreApplication::processEvents();
    }
    editor.release(to);
}

class DiagramViewTest : public QObject
{
    Q_OBJECT

private slots:
    // ---- Painting

    void screenIsWhatAFreshPaintingShowsAfterAnyDrag_data()
    {
        QTest::addColumn<QString>("fontSize");
        QTest::addColumn<int>("steps");
        QTest::newRow("one quick move") << QStringLiteral("10") << 1;
        QTest::newRow("a few quick moves") << QStringLiteral("10") << 3;
        QTest::newRow("slowly") << QStringLiteral("10") << 40;
        QTest::newRow("large font, quickly") << QStringLiteral("64") << 2;
        QTest::newRow("large font, slowly") << QStringLiteral("64") << 40;
    }

    void screenIsWhatAFreshPaintingShowsAfterAnyDrag()
    {
        QFETCH(QString, fontSize);
        QFETCH(int, steps);
        Editor editor;
        drawCircle(editor);
        TopologyWindowProbe::fontSizes(editor.window)->setEditText(fontSize);
        QCoreApplication::processEvents();
        const QPointF targets[] = {{560, 300}, {150, 270}, {400, 200}, {300, 350}, {600, 60}};
        int node = 0;
        for (const QPointF& target : targets) {
            dragInSteps(editor, editor.nodes().at(node++), target, steps);
            const QImage shown = screen(editor);
            QVERIFY(countPixels(shown, shown.rect(), Qt::black) > 100);
            QCOMPARE(differences(shown, freshlyPainted(editor)), 0);
        }
    }

    void linkIsRepaintedWhereItsBoundsHaveNotFollowed()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(100, 100));
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(300, 100));
        editor.drawLink(a, b);
        DiagramItem* c = editor.insertNode(DiagramItem::Endpoint, QPointF(600, 450));
        dragInSteps(editor, b, QPointF(300, 450), 1);
        dragInSteps(editor, c, QPointF(250, 360), 5);
        dragInSteps(editor, c, QPointF(600, 450), 5);
        const QImage shown = screen(editor);
        QCOMPARE(differences(shown, freshlyPainted(editor)), 0);
    }

    void paperIsWhiteOnADarkDesktop()
    {
        const QPalette before = QApplication::palette();
        QApplication::setPalette(QPalette(QColor(50, 50, 50), QColor(30, 30, 30)));
        {
            Editor editor;
            QCOMPARE(screen(editor).pixelColor(100, 100), QColor(Qt::white));
        }
        QApplication::setPalette(before);
    }

    // ---- Mouse

    void nodeTellsItsNameInFull()
    {
        Editor editor;
        const QPointF place(300, 200);
        editor.insertNode(DiagramItem::Switch, place, "SWITCH-OF-THE-FORWARD-EQUIPMENT-BAY");
        const auto toolTipAt = [&](const QPointF& position) {
            const QPoint local = editor.view()->mapFromScene(position);
            QWidget* viewport = editor.view()->viewport();
            QHelpEvent event(QEvent::ToolTip, local, viewport->mapToGlobal(local));
            QCoreApplication::sendEvent(viewport, &event);
            return QToolTip::text();
        };
        QCOMPARE(toolTipAt(place), QStringLiteral("SWITCH-OF-THE-FORWARD-EQUIPMENT-BAY"));
        QToolTip::hideText();
        QTRY_VERIFY(!QToolTip::isVisible());
        QVERIFY(toolTipAt(QPointF(100, 400)).isEmpty());
    }

    void rubberBandSelectsWhatItMeets()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(200, 200));
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(350, 200));
        DiagramItem* c = editor.insertNode(DiagramItem::Endpoint, QPointF(600, 400));
        editor.drag(QPointF(100, 100), QPointF(430, 300));
        QVERIFY(a->isSelected() && b->isSelected() && !c->isSelected());
        editor.press(QPointF(100, 450), Qt::RightButton);
        editor.moveTo(QPointF(650, 480));
        editor.release(QPointF(650, 480), Qt::RightButton);
        QVERIFY(a->isSelected() && b->isSelected() && !c->isSelected());
    }

    void secondButtonDoesNotLeaveTheRubberBandBehind()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(500, 200));
        QWidget* viewport = editor.view()->viewport();
        editor.press(QPointF(60, 100));
        editor.moveTo(QPointF(250, 300));
        const QPoint corner = editor.view()->mapFromScene(QPointF(250, 300));
        QTest::mousePress(viewport, Qt::RightButton, Qt::NoModifier, corner);
        QTest::mouseRelease(viewport, Qt::RightButton, Qt::NoModifier, corner);
        editor.release(QPointF(250, 300));
        QVERIFY(editor.view()->rubberBandRect().isNull());
        editor.press(centerOf(b));
        editor.moveTo(QPointF(500, 320));
        editor.release(QPointF(500, 320));
        QVERIFY(!a->isSelected());
        QVERIFY(b->isSelected());
    }

    void selectedLinkShowsItsDashesInItsOwnColour()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(500, 200));
        Arrow* link = editor.drawLink(a, b);
        editor.scene()->clearSelection();
        link->setSelected(true);
        QCoreApplication::processEvents();
        const QImage image = editor.view()->viewport()->grab().toImage();
        const int row = editor.view()->mapFromScene(centerOf(a)).y() - 4;
        int black = 0;
        for (int x = 250; x < 400; ++x) {
            const int column = editor.view()->mapFromScene(QPointF(x, 0)).x();
            for (int y = row - 1; y <= row + 1; ++y)
                black += image.pixelColor(column, y) == QColor(Qt::black) ? 1 : 0;
        }
        QVERIFY(black > 50);
    }

    void lineDrawnOverEmptyCanvasSelectsNothing()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(300, 250));
        editor.clickPointerButton(DiagramScene::InsertLine);
        editor.drag(QPointF(100, 100), QPointF(500, 400));
        QVERIFY(!a->isSelected());
        QVERIFY(editor.links().isEmpty());
    }

    void wheelWithCtrlZooms()
    {
        Editor editor;
        QComboBox* scales = TopologyWindowProbe::scales(editor.window);
        turnWheel(editor, 120);
        QCOMPARE(scales->currentText(), QStringLiteral("125%"));
        QCOMPARE(editor.view()->transform().m11(), 1.25);
        for (int i = 0; i < 9; ++i)
            turnWheel(editor, -120);
        QCOMPARE(scales->currentText(), QStringLiteral("50%"));
    }

    // ---- Keys

    void viewHasTheFocusAtTheStart()
    {
        Editor editor;
        QTRY_COMPARE(QApplication::focusWidget(), editor.view());
    }

    void escapeLeavesTheInsertModes()
    {
        Editor editor;
        editor.clickNodeButton(DiagramItem::Switch);
        QCOMPARE(editor.view()->viewport()->cursor().shape(), Qt::CrossCursor);
        QTest::keyClick(editor.view(), Qt::Key_Escape);
        QCOMPARE(editor.view()->viewport()->cursor().shape(), Qt::ArrowCursor);
        editor.click(QPointF(300, 300));
        QVERIFY(editor.nodes().isEmpty());

        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(500, 200));
        editor.clickPointerButton(DiagramScene::InsertLine);
        QCOMPARE(editor.view()->viewport()->cursor().shape(), Qt::CrossCursor);
        editor.press(centerOf(a));
        editor.moveTo(QPointF(300, 200));
        QTest::keyClick(editor.view(), Qt::Key_Escape);
        QCOMPARE(editor.scene()->items().size(), 2);
        const QPointF place = a->pos();
        editor.moveTo(QPointF(400, 260));
        QCOMPARE(a->pos(), place);
        editor.release(centerOf(b));
        QVERIFY(editor.links().isEmpty());
        QCOMPARE(TopologyWindowProbe::pointerButtons(editor.window)->checkedId(),
                 int(DiagramScene::MoveItem));
    }

    void tabGoesFromItemToItemAndThenOn()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(500, 200));
        Arrow* link = editor.drawLink(a, b);
        editor.scene()->clearSelection();
        editor.view()->setFocus();
        for (QGraphicsItem* item : QList<QGraphicsItem*>{a, b, link}) {
            QTest::keyClick(editor.view(), Qt::Key_Tab);
            QCOMPARE(editor.scene()->selectedItems(), QList<QGraphicsItem*>{item});
        }
        QTest::keyClick(editor.view(), Qt::Key_Tab);
        QVERIFY(QApplication::focusWidget() != editor.view());
    }

    void menuKeyOpensTheMenuOfWhatIsSelected()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        editor.insertNode(DiagramItem::Endpoint, QPointF(500, 200));
        editor.scene()->clearSelection();
        a->setSelected(true);
        QTimer::singleShot(0, &editor.window, [] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            QVERIFY(menu);
            QTest::keyClick(menu, Qt::Key_Delete);
        });
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(400, 300));
        QApplication::sendEvent(editor.view()->viewport(), &event);
        QCOMPARE(editor.nodes().size(), 1);
        QVERIFY(!editor.nodes().contains(a));
    }

    void toolsWithOnlyAPictureAreNamed()
    {
        Editor editor;
        int tools = 0;
        for (const auto* button : editor.window.findChildren<QToolButton*>()) {
            if (button->icon().isNull() || button->objectName().startsWith(QLatin1String("qt_")))
                continue; // parts of other widgets
            ++tools;
            QVERIFY2(!button->toolTip().isEmpty(), qPrintable(button->objectName()));
            QVERIFY2(!button->accessibleName().isEmpty(), qPrintable(button->text()));
        }
        QCOMPARE(tools, 17);
        for (const auto* box : editor.window.findChildren<QComboBox*>())
            QVERIFY(!box->toolTip().isEmpty() && !box->accessibleName().isEmpty());
    }

private:
    static void turnWheel(Editor& editor, int angle)
    {
        QWidget* viewport = editor.view()->viewport();
        const QPoint place(200, 200);
        QWheelEvent event(place, viewport->mapToGlobal(place), QPoint(), QPoint(0, angle),
                          Qt::NoButton, Qt::ControlModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(viewport, &event);
    }
};

ROTUNDA_GUI_TEST_MAIN(DiagramViewTest)
#include "DiagramViewTest.moc"
