#include "tests/driver/Editor.h"
#include "tests/support/GuiTestMain.h"
#include "tests/topology/SpokenItems.h"

#include <QComboBox>
#include <QTextCursor>

// Drawing by mouse, numbering, fonts and colours.

static QStringList idsOf(const QList<DiagramItem*>& nodes)
{
    QStringList ids;
    for (const DiagramItem* node : nodes)
        ids.append(node->nodeId);
    return ids;
}

class DiagramSceneTest : public QObject
{
    Q_OBJECT

private slots:
    void pressPutsANodeUnderTheCursor()
    {
        Editor editor;
        editor.scene()->setTextColor(Qt::red);
        const DiagramItem* node = editor.insertNode(DiagramItem::Switch, QPointF(300, 200));
        QCOMPARE(centerOf(node), QPointF(300, 200));
        QCOMPARE(node->diagramType, DiagramItem::Switch);
        QVERIFY(node->nodeMac.isNull() && node->mtu.isNull() && node->bufferNum.isNull());
        QCOMPARE(node->nodeId, QStringLiteral("0"));
        QCOMPARE(node->textColor, QColor(Qt::red));
        QCOMPARE(node->textHeight, QFontMetrics(node->font).height());
    }

    void dragLinksTwoNodes()
    {
        Editor editor;
        editor.scene()->setLineColor(Qt::blue);
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200), "A");
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(500, 200), "B");
        Arrow* link = editor.drawLink(a, b);
        QVERIFY(link);
        QCOMPARE(link->srcNode, QStringLiteral("A"));
        QCOMPARE(link->dstNode, QStringLiteral("B"));
        QVERIFY(link->srcPort.isNull() && link->bandWidth.isNull() && link->lineName.isNull());
        QCOMPARE(link->color, QColor(Qt::blue));
        QCOMPARE(link->line(), QLineF(centerOf(a), centerOf(b)));
        QCOMPARE(a->arrows(), QList<Arrow*>{link});
        QCOMPARE(b->arrows(), QList<Arrow*>{link});
    }

    void rubberBandFollowsTheMouse()
    {
        Editor editor;
        editor.clickPointerButton(DiagramScene::InsertLine);
        editor.press(QPointF(100, 100));
        editor.moveTo(QPointF(300, 250));
        const QList<QGraphicsItem*> items = editor.scene()->items();
        QCOMPARE(items.size(), 1);
        const auto* band = qgraphicsitem_cast<QGraphicsLineItem*>(items.first());
        QVERIFY(band);
        QCOMPARE(band->line(), QLineF(100, 100, 300, 250));
        editor.release(QPointF(300, 250));
        QVERIFY(editor.scene()->items().isEmpty());
    }

    void dragFromANodeToItselfDrawsNothing()
    {
        Editor editor;
        DiagramItem* node = editor.insertNode(DiagramItem::Endpoint, QPointF(300, 300));
        editor.clickPointerButton(DiagramScene::InsertLine);
        editor.drag(QPointF(290, 300), QPointF(310, 310));
        QVERIFY(node->arrows().isEmpty());
        QVERIFY(editor.links().isEmpty());
    }

    void secondLinkBetweenTwoNodesIsRefusedEitherWayRound()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(500, 200));
        QVERIFY(editor.drawLink(a, b));
        QVERIFY(!editor.drawLink(b, a));
        QVERIFY(!editor.drawLink(a, b));
        QCOMPARE(a->arrows().size(), 1);
        QCOMPARE(b->arrows().size(), 1);
    }

    void dragOverEmptySpaceIsRefused()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        editor.clickPointerButton(DiagramScene::InsertLine);
        editor.drag(centerOf(a), QPointF(500, 400));
        editor.drag(QPointF(500, 400), centerOf(a));
        QVERIFY(editor.links().isEmpty());
    }

    void dragOntoALinkIsRefusedAndOntoANodeAboveOneSucceeds()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(600, 200));
        DiagramItem* c = editor.insertNode(DiagramItem::Switch, QPointF(300, 450));
        editor.drawLink(a, b);
        editor.clickPointerButton(DiagramScene::InsertLine);
        editor.drag(centerOf(c), QPointF(375, 200));
        QCOMPARE(editor.links().size(), 1);
        // The link from a to b runs under the centre of b.
        QVERIFY(editor.drawLink(c, b));
    }

    void modeStaysWhileLinksAreDrawn()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(600, 200));
        DiagramItem* c = editor.insertNode(DiagramItem::Switch, QPointF(300, 450));
        editor.clickPointerButton(DiagramScene::InsertLine);
        editor.drag(centerOf(a), centerOf(b));
        editor.drag(centerOf(b), centerOf(c));
        editor.drag(centerOf(c), centerOf(a));
        QCOMPARE(editor.links().size(), 3);
    }

    void hostsMayBeLinkedAndMayTakeManyLinks()
    {
        Editor editor;
        DiagramItem* hub = editor.insertNode(DiagramItem::Endpoint, QPointF(350, 300));
        hub->portNum = QStringLiteral("1");
        for (const QPointF& place : {QPointF(100, 100), QPointF(600, 100), QPointF(100, 480)})
            QVERIFY(editor.drawLink(editor.insertNode(DiagramItem::Endpoint, place), hub));
        QCOMPARE(hub->arrows().size(), 3);
    }

    void deletingTheFirstNodeClosesTheGap()
    {
        Editor editor;
        for (int i = 0; i < 3; ++i)
            editor.insertNode(DiagramItem::Endpoint, QPointF(120 + 200 * i, 200));
        const QList<DiagramItem*> nodes = editor.nodes();
        QCOMPARE(idsOf(nodes),
                 (QStringList{QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("2")}));
        editor.click(centerOf(nodes.first()));
        editor.key(Qt::Key_Delete);
        QCOMPARE(idsOf({nodes[1], nodes[2]}),
                 (QStringList{QStringLiteral("0"), QStringLiteral("1")}));
    }

    void raisedNodeIsNumberedLastAtTheNextInsertion()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(200, 200));
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(230, 220));
        DiagramItem* c = editor.insertNode(DiagramItem::Endpoint, QPointF(500, 200));
        editor.scene()->clearSelection();
        a->setSelected(true);
        editor.key(Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(a->zValue(), 0.1);
        QCOMPARE(a->nodeId, QStringLiteral("0"));
        DiagramItem* d = editor.insertNode(DiagramItem::Endpoint, QPointF(500, 400));
        QCOMPARE(idsOf({b, c, d, a}), (QStringList{QStringLiteral("0"), QStringLiteral("1"),
                                                   QStringLiteral("2"), QStringLiteral("3")}));
    }

    void raisingANodeThatOverlapsNoneKeepsTheOrder()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(500, 200));
        editor.click(centerOf(a));
        editor.key(Qt::Key_F, Qt::ControlModifier);
        DiagramItem* c = editor.insertNode(DiagramItem::Endpoint, QPointF(500, 400));
        QCOMPARE(a->zValue(), 0.0);
        QCOMPARE(idsOf({a, b, c}),
                 (QStringList{QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("2")}));
    }

    void rightPressLeavesTheSceneAndOpensTheContextMenu()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(500, 200));
        b->setSelected(true);
        for (const DiagramScene::Mode mode : {DiagramScene::InsertItem, DiagramScene::InsertLine,
                                              DiagramScene::InsertText, DiagramScene::MoveItem}) {
            editor.scene()->setMode(mode);
            const int before = editor.scene()->items().size();
            editor.press(centerOf(a), Qt::RightButton);
            editor.release(centerOf(a), Qt::RightButton);
            QCOMPARE(editor.scene()->items().size(), before);
        }
        QStringList entries;
        editor.openContextMenu(centerOf(a), [&entries](QMenu* menu) {
            for (const QAction* action : menu->actions())
                entries.append(action->text());
        });
        QCOMPARE(entries, (QStringList{QStringLiteral(u"编辑节点"), QStringLiteral(u"删除")}));
        QCOMPARE(editor.scene()->selectedItems(), QList<QGraphicsItem*>{a});
    }

    void textAndFontReachAllNodesAndLinksButLineColourOnlyTheFirstSelected()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(500, 200));
        DiagramItem* c = editor.insertNode(DiagramItem::Endpoint, QPointF(300, 450));
        Arrow* first = editor.drawLink(a, b);
        Arrow* second = editor.drawLink(b, c);
        QFont font = a->font;
        font.setPointSize(20);
        editor.scene()->setFont(font);
        editor.scene()->setTextColor(Qt::red);
        for (const DiagramItem* node : {a, b, c}) {
            QCOMPARE(node->textColor, QColor(Qt::red));
            QCOMPARE(node->textHeight, QFontMetrics(font).height());
        }
        QCOMPARE(second->textColor, QColor(Qt::red));
        QCOMPARE(second->font.pointSize(), 20);
        QCOMPARE(second->textHeight, QFontMetrics(font).height());
        editor.scene()->clearSelection();
        first->setSelected(true);
        editor.scene()->setLineColor(Qt::yellow);
        editor.scene()->setItemColor(Qt::green);
        QCOMPARE(first->color, QColor(Qt::yellow));
        QCOMPARE(second->color, QColor(Qt::black));
        QCOMPARE(editor.drawLink(a, c)->color, QColor(Qt::yellow));
    }

    void mixedSelectionNeverColoursAWrongItem()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(500, 200));
        Arrow* link = editor.drawLink(a, b);
        for (QGraphicsItem* item : editor.scene()->items())
            item->setSelected(true);
        QVERIFY(editor.scene()->isItemChange(ARROW_TYPE));
        QVERIFY(!editor.scene()->isItemChange(DIAGRAM_TEXT_ITEM_TYPE));
        editor.scene()->setLineColor(Qt::yellow);
        editor.scene()->setTextColor(Qt::blue);
        const bool linkIsFirst = editor.scene()->selectedItems().first() == link;
        QCOMPARE(link->color == QColor(Qt::yellow), linkIsFirst);
    }

    void mouseMovesNothingWhileAnInsertionWaits()
    {
        Editor editor;
        DiagramItem* node = editor.insertNode(DiagramItem::Endpoint, QPointF(300, 300));
        for (const DiagramScene::Mode mode :
             {DiagramScene::InsertItem, DiagramScene::InsertText, DiagramScene::InsertLine}) {
            editor.scene()->setMode(DiagramScene::MoveItem);
            editor.press(centerOf(node));
            editor.scene()->setMode(mode);
            editor.moveTo(QPointF(400, 400));
            QCOMPARE(centerOf(node), QPointF(300, 300));
            editor.release(QPointF(400, 400));
        }
    }

    void textItemIsEditedAgainAfterADoubleClick()
    {
        Editor editor;
        editor.scene()->setMode(DiagramScene::InsertText);
        editor.click(QPointF(300, 300));
        auto* text = qgraphicsitem_cast<DiagramTextItem*>(editor.scene()->items().first());
        text->setFocus();
        text->setPlainText(QStringLiteral("note"));
        QTextCursor cursor = text->textCursor();
        cursor.select(QTextCursor::Document);
        text->setTextCursor(cursor);
        text->clearFocus();
        QVERIFY(!text->textCursor().hasSelection());
        QCOMPARE(text->textInteractionFlags(), Qt::TextInteractionFlags(Qt::NoTextInteraction));
        const QPointF middle = text->mapToScene(text->boundingRect().center());
        QTest::mouseDClick(editor.view()->viewport(), Qt::LeftButton, Qt::NoModifier,
                           editor.view()->mapFromScene(middle));
        QCOMPARE(text->textInteractionFlags(), Qt::TextInteractionFlags(Qt::TextEditorInteraction));
    }

    void textItemIsTypedAndVanishesWhenLeftEmpty()
    {
        Editor editor;
        editor.scene()->setMode(DiagramScene::InsertText);
        editor.click(QPointF(300, 300));
        QCOMPARE(editor.scene()->items().size(), 1);
        auto* text = qgraphicsitem_cast<DiagramTextItem*>(editor.scene()->items().first());
        QVERIFY(text);
        QCOMPARE(text->zValue(), 1000.0);
        text->setFocus();
        for (const Qt::Key key : {Qt::Key_H, Qt::Key_I})
            QTest::keyClick(editor.view()->viewport(), key);
        QCOMPARE(text->toPlainText(), QStringLiteral("hi"));
        text->clearFocus();
        QCOMPARE(text->textInteractionFlags(), Qt::TextInteractionFlags(Qt::NoTextInteraction));
        QCOMPARE(editor.scene()->items().size(), 1);

        text->setTextInteractionFlags(Qt::TextEditorInteraction);
        text->setFocus();
        text->setPlainText(QString());
        const QPointer<DiagramTextItem> watched = text;
        text->clearFocus();
        QVERIFY(editor.scene()->items().isEmpty());
        QTRY_VERIFY(watched.isNull());
    }

    void selectedTextShowsItsFontInTheToolBar()
    {
        Editor editor;
        editor.scene()->setMode(DiagramScene::InsertText);
        editor.click(QPointF(300, 300));
        auto* text = qgraphicsitem_cast<DiagramTextItem*>(editor.scene()->items().first());
        QFont font = text->font();
        font.setPointSize(22);
        font.setWeight(QFont::Bold);
        font.setItalic(true);
        text->setFont(font);
        text->setPlainText(QStringLiteral("note"));
        editor.scene()->clearSelection();
        text->setSelected(true);
        QVERIFY(TopologyWindowProbe::boldAction(editor.window)->isChecked());
        QCOMPARE(TopologyWindowProbe::fontSizes(editor.window)->currentText(),
                 QStringLiteral("22"));
        editor.scene()->setTextColor(Qt::red);
        QCOMPARE(text->defaultTextColor(), QColor(Qt::red));
        editor.key(Qt::Key_I, Qt::ControlModifier);
        QVERIFY(!text->font().italic());
        QVERIFY(text->font().bold());
        editor.scene()->renumberNodes();
    }
};

ROTUNDA_GUI_TEST_MAIN(DiagramSceneTest)
#include "DiagramSceneTest.moc"
