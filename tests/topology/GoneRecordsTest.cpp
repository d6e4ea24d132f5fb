#include "tests/support/DialogClicks.h"
#include "tests/support/GuiTestMain.h"
#include "tests/topology/LinkedPair.h"
#include "tests/topology/SpokenItems.h"

#include <QLineEdit>
#include <QPushButton>

// Nothing follows a node or a link that is gone, whatever held it at the time.

class GoneRecordsTest : public QObject
{
    Q_OBJECT

private slots:
    void nodeDialogOfADeletedNodeWritesNothing()
    {
        LinkedPair pair;
        EditItemWindow* dialog = pair.openNode(pair.a);
        QVERIFY(dialog);
        typeText(dialog, "lineEdit_nodeName", "ghost");
        pair.remove(pair.a);
        clickButton(dialog, "confirmButton");
        QVERIFY(!pair.editor.nodeDialog());
        QCOMPARE(pair.b->nodeName, QStringLiteral("B"));
    }

    void linkDialogOfADeletedLinkWritesNothing()
    {
        LinkedPair pair;
        EditLineWindow* dialog = pair.openLink();
        QVERIFY(dialog);
        typeText(dialog, "lineEdit_srcPort", "5");
        pair.remove(pair.b); // which takes the link along
        QVERIFY(pair.editor.links().isEmpty());
        clickButton(dialog, "confirmButton");
        QVERIFY(!dialog->isVisible());
        pair.b = pair.editor.insertNode(DiagramItem::Switch, QPointF(500, 200), "B");
        pair.link = pair.editor.drawLink(pair.a, pair.b);
        pair.openLink();
        QVERIFY(lineEdit(dialog, "lineEdit_srcPort")->text().isEmpty());
    }

    void clearedSceneLeavesDialogsWithoutRecords()
    {
        LinkedPair pair;
        EditItemWindow* nodeDialog = pair.openNode(pair.a);
        QVERIFY(nodeDialog);
        EditLineWindow* linkDialog = pair.openLink();
        QVERIFY(linkDialog);
        pair.editor.scene()->clear();
        clickButton(nodeDialog, "confirmButton");
        clickButton(linkDialog, "confirmButton");
        QVERIFY(pair.editor.scene()->items().isEmpty());
    }

    void nodeDeletedWhileALinkIsDrawnFromIt()
    {
        LinkedPair pair;
        DiagramItem* c = pair.editor.insertNode(DiagramItem::Endpoint, QPointF(300, 450));
        pair.editor.clickPointerButton(DiagramScene::InsertLine);
        pair.editor.press(centerOf(c));
        pair.editor.moveTo(QPointF(320, 400));
        pair.remove(c);
        pair.editor.moveTo(centerOf(pair.a));
        pair.editor.release(centerOf(pair.a));
        QCOMPARE(pair.editor.links().size(), 1);
        QCOMPARE(pair.editor.scene()->items().size(), 3);
    }

    void nodeDeletedWhileItIsDragged()
    {
        LinkedPair pair;
        pair.editor.press(centerOf(pair.a));
        pair.editor.moveTo(QPointF(180, 230));
        pair.editor.key(Qt::Key_Delete);
        pair.editor.moveTo(QPointF(200, 250));
        pair.editor.release(QPointF(200, 250));
        QCOMPARE(pair.editor.nodes(), QList<DiagramItem*>{pair.b});
        QVERIFY(pair.b->arrows().isEmpty());
    }

    void recordsThatAreGoneAreForgottenAtOnce()
    {
        LinkedPair pair;
        EditItemWindow* node = pair.openNode(pair.a);
        QVERIFY(node);
        EditLineWindow* link = pair.openLink();
        QVERIFY(link);
        QCOMPARE(PropertyDialogProbe::record(*node), pair.a);
        QCOMPARE(PropertyDialogProbe::record(*link), pair.link);
        pair.remove(pair.a);
        QCOMPARE(pair.editor.nodes(), QList<DiagramItem*>{pair.b});
        QVERIFY(!PropertyDialogProbe::record(*node));
        QVERIFY(!PropertyDialogProbe::record(*link));
    }

    void sceneClearedWhileALinkIsDrawn()
    {
        LinkedPair pair;
        pair.editor.clickPointerButton(DiagramScene::InsertLine);
        pair.editor.press(centerOf(pair.a));
        pair.editor.moveTo(QPointF(320, 400));
        pair.editor.scene()->clear();
        pair.editor.moveTo(QPointF(330, 400));
        pair.editor.release(QPointF(330, 400));
        QVERIFY(pair.editor.scene()->items().isEmpty());
        pair.editor.press(QPointF(100, 100));
        pair.editor.moveTo(QPointF(200, 200));
        pair.editor.scene()->buildByProjectFile({}, {});
        pair.editor.release(QPointF(200, 200));
        QVERIFY(pair.editor.scene()->items().isEmpty());
    }

    void modeChangedWhileALinkIsDrawnLeavesNoLineBehind()
    {
        LinkedPair pair;
        pair.editor.clickPointerButton(DiagramScene::InsertLine);
        pair.editor.press(centerOf(pair.a));
        pair.editor.moveTo(centerOf(pair.b));
        pair.editor.scene()->setMode(DiagramScene::MoveItem);
        pair.editor.release(centerOf(pair.b));
        QCOMPARE(pair.editor.scene()->items().size(), 3);
    }

    void nodeDeletedFromItsOwnContextMenu()
    {
        LinkedPair pair;
        pair.editor.chooseFromContextMenu(centerOf(pair.a), QStringLiteral(u"删除"));
        QCOMPARE(pair.editor.nodes(), QList<DiagramItem*>{pair.b});
        QVERIFY(pair.b->arrows().isEmpty());
    }

    void sceneClearedWhileAContextMenuIsOpen()
    {
        LinkedPair pair;
        pair.editor.openContextMenu(centerOf(pair.a), [&pair](QMenu* menu) {
            pair.editor.scene()->clear();
            for (QAction* action : menu->actions())
                action->trigger();
        });
        QVERIFY(!pair.editor.nodeDialog());
        QVERIFY(pair.editor.scene()->items().isEmpty());
    }

    void windowDestroyedWithDialogsOpen()
    {
        auto pair = std::make_unique<LinkedPair>();
        const QPointer<EditItemWindow> nodeDialog = pair->openNode(pair->a);
        QVERIFY(nodeDialog);
        const QPointer<EditLineWindow> linkDialog = pair->openLink();
        QVERIFY(linkDialog);
        pair.reset();
        QVERIFY(nodeDialog.isNull());
        QVERIFY(linkDialog.isNull());
    }

    void windowDestroyedWhileALinkIsDrawn()
    {
        auto pair = std::make_unique<LinkedPair>();
        pair->editor.clickPointerButton(DiagramScene::InsertLine);
        pair->editor.press(centerOf(pair->a));
        pair->editor.moveTo(centerOf(pair->b));
        pair.reset();
        LinkedPair next; // and the next drawing starts afresh
        QCOMPARE(next.editor.scene()->items().size(), 3);
    }
};

ROTUNDA_GUI_TEST_MAIN(GoneRecordsTest)
#include "GoneRecordsTest.moc"
