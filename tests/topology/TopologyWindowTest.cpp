#include "topology/EditItemWindow.h"
#include "topology/EditLineWindow.h"

#include "tests/driver/Editor.h"
#include "tests/support/GuiTestMain.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QToolBar>
#include <QToolBox>
#include <QToolButton>

// Tool box, tool bars, stacking and deleting.

static void chooseColor(QToolButton* button, const QString& name)
{
    for (QAction* action : button->menu()->actions()) {
        if (action->text() == name)
            action->trigger();
    }
}

class TopologyWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void linePointerAfterANodeButtonDrawsLinks()
    {
        Editor editor;
        editor.clickNodeButton(DiagramItem::Switch);
        editor.clickPointerButton(DiagramScene::InsertLine);
        editor.click(QPointF(300, 300));
        QVERIFY(editor.nodes().isEmpty());
    }

    void nodeButtonClickedTwiceAddsOneNode()
    {
        Editor editor;
        editor.clickNodeButton(DiagramItem::Endpoint);
        editor.clickNodeButton(DiagramItem::Endpoint);
        editor.click(QPointF(300, 300));
        editor.click(QPointF(500, 300));
        QCOMPARE(editor.nodes().size(), 1);
    }

    void nodeButtonUnchecksItselfAtOnce()
    {
        Editor editor;
        editor.clickNodeButton(DiagramItem::Endpoint);
        for (const QAbstractButton* button :
             TopologyWindowProbe::nodeButtons(editor.window)->buttons())
            QVERIFY(!button->isChecked());
    }

    void insertionReturnsToThePointer()
    {
        Editor editor;
        editor.clickPointerButton(DiagramScene::InsertLine);
        editor.insertNode(DiagramItem::Endpoint, QPointF(300, 300));
        QCOMPARE(TopologyWindowProbe::pointerButtons(editor.window)->checkedId(),
                 int(DiagramScene::MoveItem));
        DiagramItem* node = editor.nodes().first();
        editor.drag(centerOf(node), QPointF(400, 350));
        QCOMPARE(centerOf(node), QPointF(400, 350));
    }

    void nodeAndItsLinkAreDeletedTogetherOnce()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(500, 200));
        Arrow* link = editor.drawLink(a, b);
        editor.scene()->clearSelection();
        a->setSelected(true);
        link->setSelected(true);
        editor.key(Qt::Key_Delete);
        QCOMPARE(editor.nodes(), QList<DiagramItem*>{b});
        QVERIFY(editor.links().isEmpty());
        QVERIFY(b->arrows().isEmpty());
        QCOMPARE(b->nodeId, QStringLiteral("0"));
    }

    void deletingAHubShortensItsNeighboursLists()
    {
        Editor editor;
        DiagramItem* hub = editor.insertNode(DiagramItem::Switch, QPointF(350, 300));
        QList<DiagramItem*> others;
        for (const QPointF& place : {QPointF(100, 100), QPointF(600, 100), QPointF(100, 480)})
            others.append(editor.insertNode(DiagramItem::Endpoint, place));
        for (DiagramItem* other : others)
            editor.drawLink(hub, other);
        editor.drawLink(others[0], others[1]);
        editor.click(centerOf(hub));
        editor.key(Qt::Key_Delete);
        QCOMPARE(others[0]->arrows().size(), 1);
        QCOMPARE(others[2]->arrows().size(), 0);
        for (int i = 0; i < 3; ++i)
            QCOMPARE(others[i]->nodeId, QString::number(i));
    }

    void selectedLinkAloneIsDeleted()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(500, 200));
        editor.drawLink(a, b);
        editor.chooseFromContextMenu(QPointF(325, 200), QStringLiteral(u"删除"));
        QVERIFY(editor.links().isEmpty());
        QVERIFY(a->arrows().isEmpty() && b->arrows().isEmpty());
        QCOMPARE(editor.nodes().size(), 2);
    }

    void raisingALoneNodePutsItAtZero()
    {
        Editor editor;
        DiagramItem* node = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        node->setZValue(0.3);
        node->setSelected(true);
        editor.key(Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(node->zValue(), 0.0);
    }

    void loweredNodeComesFirstAtTheNextNumbering()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(200, 200));
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(220, 210));
        editor.scene()->clearSelection();
        b->setSelected(true);
        editor.key(Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(b->zValue(), -0.1);
        QCOMPARE(b->nodeId, QStringLiteral("1"));
        editor.scene()->renumberNodes();
        QCOMPARE(b->nodeId, QStringLiteral("0"));
        QCOMPARE(a->nodeId, QStringLiteral("1"));
    }

    void raisedLinkComesToLieOverItsNodes()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(500, 200));
        Arrow* link = editor.drawLink(a, b);
        editor.scene()->clearSelection();
        link->setSelected(true);
        editor.key(Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(link->zValue(), 0.1);
    }

    void onlyNodesCountForStacking()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(500, 200));
        Arrow* link = editor.drawLink(a, b);
        editor.scene()->clearSelection();
        a->setSelected(true);
        QVERIFY(a->collidesWithItem(link));
        link->setZValue(5);
        editor.key(Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(a->zValue(), 0.0);
        link->setZValue(-1000);
        editor.key(Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(a->zValue(), 0.0);
    }

    void stackingWithoutSelectionDoesNothing()
    {
        Editor editor;
        DiagramItem* node = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        node->setZValue(0.3);
        editor.scene()->clearSelection();
        editor.key(Qt::Key_F, Qt::ControlModifier);
        editor.key(Qt::Key_T, Qt::ControlModifier);
        editor.key(Qt::Key_Delete);
        QCOMPARE(node->zValue(), 0.3);
        QCOMPARE(editor.nodes().size(), 1);
    }

    void editShortcutDoesNothingWithoutAContextMenu()
    {
        Editor editor;
        editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200))->setSelected(true);
        editor.key(Qt::Key_E, Qt::ControlModifier);
        QVERIFY(!editor.nodeDialog());
    }

    void sameShortcutEditsWhatTheOpenMenuStandsOn()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(500, 200));
        editor.drawLink(a, b);
        const auto pressShortcut = [](QMenu* menu) {
            QTest::keyClick(menu, Qt::Key_E, Qt::ControlModifier);
            QVERIFY(!menu->isVisible());
        };
        editor.openContextMenu(QPointF(325, 200), pressShortcut);
        QVERIFY(editor.linkDialog() && editor.linkDialog()->isVisible());
        QVERIFY(!editor.nodeDialog());
        editor.openContextMenu(centerOf(a), pressShortcut);
        QVERIFY(editor.nodeDialog() && editor.nodeDialog()->isVisible());
    }

    void deleteKeyInAnOpenMenuDeletesAndClosesIt()
    {
        Editor editor;
        editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        editor.openContextMenu(QPointF(150, 200), [](QMenu* menu) {
            QTest::keyClick(menu, Qt::Key_Delete);
            QVERIFY(!menu->isVisible());
        });
        QVERIFY(editor.nodes().isEmpty());
    }

    void deleteKeyInAnotherOpenMenuDeletesNothing()
    {
        Editor editor;
        editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200))->setSelected(true);
        editor.view()->setFocus();
        QMenu* colors = TopologyWindowProbe::lineColorButton(editor.window)->menu();
        colors->popup(editor.window.mapToGlobal(QPoint(300, 300)));
        QVERIFY(QTest::qWaitForWindowExposed(colors));
        QTest::keyClick(colors, Qt::Key_Delete);
        QCOMPARE(editor.nodes().size(), 1);
        colors->close();
        QTest::keyClick(editor.view(), Qt::Key_Delete);
        QVERIFY(editor.nodes().isEmpty());
    }

    void typedFontSizeIsTakenUpTo64()
    {
        Editor editor;
        DiagramItem* node = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        QCOMPARE(node->font.pointSize(), 10);
        QLineEdit* edit = TopologyWindowProbe::fontSizes(editor.window)->lineEdit();
        edit->selectAll();
        QTest::keyClicks(edit, QStringLiteral("64"));
        QTest::keyClick(edit, Qt::Key_Return);
        QCOMPARE(node->font.pointSize(), 64);
        edit->selectAll();
        QTest::keyClicks(edit, QStringLiteral("65"));
        QCOMPARE(edit->text(), QStringLiteral("6"));
        QCOMPARE(node->font.pointSize(), 6);
        edit->clear();
        QCOMPARE(node->font.pointSize(), 6);
    }

    void boldAndItalicReachTheScene()
    {
        Editor editor;
        DiagramItem* node = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        editor.key(Qt::Key_B, Qt::ControlModifier);
        QCOMPARE(node->font.weight(), 75);
        editor.key(Qt::Key_I, Qt::ControlModifier);
        editor.key(Qt::Key_U, Qt::ControlModifier);
        QVERIFY(node->font.italic() && node->font.underline());
        editor.key(Qt::Key_B, Qt::ControlModifier);
        QCOMPARE(node->font.weight(), 50);
    }

    void backgroundChosenTwiceStaysChecked()
    {
        Editor editor;
        QCOMPARE(editor.scene()->backgroundBrush().style(), Qt::NoBrush);
        auto* box = editor.window.findChild<QToolBox*>();
        QCOMPARE(box->itemText(0), QStringLiteral(u"网络组件"));
        QCOMPARE(box->itemText(1), QStringLiteral(u"背景"));
        box->setCurrentIndex(1);
        const QList<QAbstractButton*> buttons =
            TopologyWindowProbe::backgroundButtons(editor.window)->buttons();
        QCOMPARE(buttons.size(), 4);
        for (int i = 0; i < 4; ++i) {
            const QImage tile(QStringLiteral(":/images/background%1.png").arg(i + 1));
            QCOMPARE(tile.size(), QSize(127, 127));
            for (int times = 0; times < 2; ++times) {
                QTest::mouseClick(buttons[i], Qt::LeftButton);
                QVERIFY(buttons[i]->isChecked());
                QCOMPARE(
                    editor.scene()->backgroundBrush().textureImage().convertToFormat(tile.format()),
                    tile);
            }
        }
    }

    void zoomListScalesTheView()
    {
        Editor editor;
        QComboBox* scales = TopologyWindowProbe::scales(editor.window);
        QCOMPARE(scales->currentText(), QStringLiteral("100%"));
        scales->setCurrentText(QStringLiteral("50%"));
        QCOMPARE(editor.view()->transform().m11(), 0.5);
        scales->setCurrentText(QStringLiteral("150%"));
        QCOMPARE(editor.view()->transform().m22(), 1.5);
    }

    void colourMenusColourTheButtonAndTheScene()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(500, 200));
        QToolButton* text = TopologyWindowProbe::textColorButton(editor.window);
        QStringList names;
        for (const QAction* action : text->menu()->actions())
            names.append(action->text());
        QCOMPARE(names, (QStringList{QStringLiteral(u"黑色"), QStringLiteral(u"红色"),
                                     QStringLiteral(u"蓝色"), QStringLiteral(u"黄色")}));
        QCOMPARE(text->menu()->defaultAction()->text(), QStringLiteral(u"黑色"));
        chooseColor(text, QStringLiteral(u"红色"));
        QCOMPARE(a->textColor, QColor(Qt::red));
        const QImage icon = text->icon().pixmap(50, 80).toImage();
        QCOMPARE(icon.pixelColor(25, 70), QColor(Qt::red));
        chooseColor(TopologyWindowProbe::lineColorButton(editor.window), QStringLiteral(u"蓝色"));
        QCOMPARE(editor.drawLink(a, b)->color, QColor(Qt::blue));
    }

    void toolBarsStandInOrder()
    {
        Editor editor;
        QStringList titles;
        for (const QToolBar* bar : editor.window.findChildren<QToolBar*>())
            titles.append(bar->windowTitle());
        QCOMPARE(titles, (QStringList{QStringLiteral("Edit"), QStringLiteral("Font"),
                                      QStringLiteral("Color"), QStringLiteral("Pointer type")}));
        QCOMPARE(editor.window.windowTitle(), QStringLiteral(u"拓扑构建工具"));
        QCOMPARE(editor.scene()->sceneRect(), QRectF(0, 0, 5000, 5000));
    }

    void nodeDialogOpensOnceAndKeepsItsNode()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200), "A");
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(500, 200), "B");
        editor.chooseFromContextMenu(centerOf(a), QStringLiteral(u"编辑节点"));
        EditItemWindow* dialog = editor.nodeDialog();
        QVERIFY(dialog && !dialog->isModal());
        editor.chooseFromContextMenu(centerOf(b), QStringLiteral(u"编辑节点"));
        QCOMPARE(editor.nodeDialog(), dialog);
        QCOMPARE(dialog->findChild<QLineEdit*>(QStringLiteral("lineEdit_nodeName"))->text(),
                 QStringLiteral("A"));
    }

    void linkDialogIsReused()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200), "A");
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(600, 200), "B");
        DiagramItem* c = editor.insertNode(DiagramItem::Endpoint, QPointF(600, 450), "C");
        editor.drawLink(a, b);
        editor.drawLink(b, c);
        editor.chooseFromContextMenu(QPointF(375, 200), QStringLiteral(u"编辑链路"));
        EditLineWindow* dialog = editor.linkDialog();
        auto* source = dialog->findChild<QLineEdit*>(QStringLiteral("lineEdit_srcNode"));
        QCOMPARE(source->text(), QStringLiteral(u"A(节点id:0)"));
        editor.chooseFromContextMenu(QPointF(600, 325), QStringLiteral(u"编辑链路"));
        QCOMPARE(editor.linkDialog(), dialog);
        QVERIFY(dialog->isVisible());
        QCOMPARE(source->text(), QStringLiteral(u"B(节点id:1)"));
        QVERIFY(!dialog->parentWidget());
    }
};

ROTUNDA_GUI_TEST_MAIN(TopologyWindowTest)
#include "TopologyWindowTest.moc"
