#include "topology/EditItemWindow.h"
#include "topology/EditLineWindow.h"

#include "tests/support/DialogClicks.h"
#include "tests/support/GuiTestMain.h"
#include "tests/topology/Editor.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>

// The two dialogs, and that nothing follows a record that is gone.

/// Two linked hosts, with helpers that open their dialogs from the context menus.
struct LinkedPair {
    Editor editor;
    DiagramItem* a = nullptr;
    DiagramItem* b = nullptr;
    Arrow* link = nullptr;

    LinkedPair()
    {
        a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200), "A");
        b = editor.insertNode(DiagramItem::Switch, QPointF(500, 200), "B");
        link = editor.drawLink(a, b);
    }

    // A dialog becomes active some time after it is shown; keys go astray until then.
    template <typename Dialog>
    static Dialog* shown(Dialog* dialog)
    {
        if (!dialog || !QTest::qWaitForWindowActive(dialog))
            qFatal("the dialog does not become active");
        return dialog;
    }

    EditItemWindow* openNode(DiagramItem* node)
    {
        editor.chooseFromContextMenu(centerOf(node), QStringLiteral(u"编辑节点"));
        return shown(editor.nodeDialog());
    }

    EditLineWindow* openLink()
    {
        editor.chooseFromContextMenu((centerOf(a) + centerOf(b)) / 2, QStringLiteral(u"编辑链路"));
        return shown(editor.linkDialog());
    }

    void remove(QGraphicsItem* item)
    {
        editor.scene()->clearSelection();
        item->setSelected(true);
        editor.key(Qt::Key_Delete);
    }
};

class PropertyDialogsTest : public QObject
{
    Q_OBJECT

private slots:
    void hostHasNoPortCountAndASwitchHas()
    {
        LinkedPair pair;
        EditItemWindow* dialog = pair.openNode(pair.a);
        QVERIFY(!dialog->findChild<QWidget*>(QStringLiteral("widget_portNum"))->isVisible());
        dialog->close();
        dialog = pair.openNode(pair.b);
        QVERIFY(dialog->findChild<QWidget*>(QStringLiteral("widget_portNum"))->isVisible());
        QVERIFY(lineEdit(dialog, "lineEdit_nodeId")->isReadOnly());
    }

    void confirmedNodeKeepsWhatWasTyped()
    {
        LinkedPair pair;
        EditItemWindow* dialog = pair.openNode(pair.b);
        typeText(dialog, "lineEdit_nodeName", "SW, 1");
        typeText(dialog, "lineEdit_nodeMac", "no address");
        typeText(dialog, "lineEdit_portNum", "-5");
        typeText(dialog, "lineEdit_mtu", "many");
        typeText(dialog, "lineEdit_bufferNum", "8");
        clickButton(dialog, "confirmButton");
        QCOMPARE(pair.b->nodeName, QStringLiteral("SW, 1"));
        QCOMPARE(pair.b->nodeMac, QStringLiteral("no address"));
        QCOMPARE(pair.b->portNum, QStringLiteral("-5"));
        QCOMPARE(pair.b->mtu, QStringLiteral("many"));
        QCOMPARE(pair.b->bufferNum, QStringLiteral("8"));
        QCOMPARE(pair.b->nodeId, QStringLiteral("1"));
        QVERIFY(!pair.editor.nodeDialog());
    }

    void renameReachesTheLinksAndTheirDialog()
    {
        LinkedPair pair;
        EditItemWindow* dialog = pair.openNode(pair.a);
        typeText(dialog, "lineEdit_nodeName", "H1");
        clickButton(dialog, "confirmButton");
        dialog = pair.openNode(pair.b);
        typeText(dialog, "lineEdit_nodeName", "SW");
        clickButton(dialog, "confirmButton");
        QCOMPARE(pair.link->srcNode, QStringLiteral("H1"));
        QCOMPARE(pair.link->dstNode, QStringLiteral("SW"));
        EditLineWindow* linkDialog = pair.openLink();
        QCOMPARE(lineEdit(linkDialog, "lineEdit_srcNode")->text(), QStringLiteral(u"H1(节点id:0)"));
        QCOMPARE(lineEdit(linkDialog, "lineEdit_dstNode")->text(), QStringLiteral(u"SW(节点id:1)"));
    }

    void unnamedNodeShowsOnlyTheBracket()
    {
        LinkedPair pair;
        pair.link->srcNode.clear();
        QCOMPARE(lineEdit(pair.openLink(), "lineEdit_srcNode")->text(),
                 QStringLiteral(u"(节点id:0)"));
    }

    void confirmedLinkKeepsWhatWasTypedAndItsNodes()
    {
        LinkedPair pair;
        EditLineWindow* dialog = pair.openLink();
        QVERIFY(lineEdit(dialog, "lineEdit_srcNode")->isReadOnly());
        QVERIFY(lineEdit(dialog, "lineEdit_dstNode")->isReadOnly());
        typeText(dialog, "lineEdit_vLineName", "L1");
        typeText(dialog, "lineEdit_srcPort", "1");
        typeText(dialog, "lineEdit_dstPort", "seven");
        typeText(dialog, "lineEdit_bandWidth", "1000");
        clickButton(dialog, "confirmButton");
        QCOMPARE(pair.link->lineName, QStringLiteral("L1"));
        QCOMPARE(pair.link->srcPort, QStringLiteral("1"));
        QCOMPARE(pair.link->dstPort, QStringLiteral("seven"));
        QCOMPARE(pair.link->bandWidth, QStringLiteral("1000"));
        QCOMPARE(pair.link->srcNode, QStringLiteral("A"));
        QVERIFY(!dialog->isVisible());
        QCOMPARE(pair.editor.linkDialog(), dialog);
    }

    void staleIdIsWrittenBackUntilTheNextNumbering()
    {
        LinkedPair pair;
        EditItemWindow* dialog = pair.openNode(pair.b);
        pair.remove(pair.a);
        QCOMPARE(pair.b->nodeId, QStringLiteral("0"));
        QCOMPARE(lineEdit(dialog, "lineEdit_nodeId")->text(), QStringLiteral("1"));
        clickButton(dialog, "confirmButton");
        QCOMPARE(pair.b->nodeId, QStringLiteral("1"));
        pair.editor.scene()->renumberNodes();
        QCOMPARE(pair.b->nodeId, QStringLiteral("0"));
    }

    void cancelTitleBarAndEscapeWriteNothingAndForgetTheDialog()
    {
        LinkedPair pair;
        const std::function<void(EditItemWindow*)> ways[] = {
            [](EditItemWindow* dialog) { clickButton(dialog, "cancelButton"); },
            [](EditItemWindow* dialog) { dialog->close(); },
            [](EditItemWindow* dialog) { QTest::keyClick(dialog, Qt::Key_Escape); }};
        for (const auto& leave : ways) {
            QPointer<EditItemWindow> dialog = pair.openNode(pair.a);
            QSignalSpy closed(dialog.data(), &EditItemWindow::windowClosed);
            typeText(dialog, "lineEdit_nodeName", "other");
            leave(dialog);
            QCOMPARE(closed.size(), 1);
            QVERIFY(!pair.editor.nodeDialog());
            QCOMPARE(pair.a->nodeName, QStringLiteral("A"));
            QTRY_VERIFY(dialog.isNull());
        }
    }

    void enterConfirms()
    {
        LinkedPair pair;
        EditItemWindow* node = pair.openNode(pair.b);
        typeText(node, "lineEdit_nodeName", "SW");
        QTest::keyClick(lineEdit(node, "lineEdit_nodeName"), Qt::Key_Return);
        QCOMPARE(pair.b->nodeName, QStringLiteral("SW"));
        QVERIFY(!pair.editor.nodeDialog());
        EditLineWindow* link = pair.openLink();
        typeText(link, "lineEdit_dstPort", "7");
        QTest::keyClick(lineEdit(link, "lineEdit_dstPort"), Qt::Key_Return);
        QCOMPARE(pair.link->dstPort, QStringLiteral("7"));
        QVERIFY(!link->isVisible());
    }

    void editsStandInOneColumn()
    {
        LinkedPair pair;
        QDialog* const dialogs[] = {pair.openNode(pair.b), pair.openLink()};
        for (QDialog* dialog : dialogs) {
            QSet<int> lefts;
            for (const QLineEdit* edit : dialog->findChildren<QLineEdit*>())
                lefts.insert(edit->mapTo(dialog, QPoint()).x());
            QCOMPARE(lefts.size(), 1);
        }
    }

    void dialogClosedTwiceIsForgottenOnce()
    {
        LinkedPair pair;
        EditItemWindow* dialog = pair.openNode(pair.a);
        dialog->close();
        dialog->close();
        QVERIFY(!pair.editor.nodeDialog());
        QVERIFY(pair.openNode(pair.b));
    }

    void shownIdsStayWhileNodesComeAndGo()
    {
        LinkedPair pair;
        EditLineWindow* link = pair.openLink();
        EditItemWindow* node = pair.openNode(pair.b);
        DiagramItem* c = pair.editor.insertNode(DiagramItem::Endpoint, QPointF(300, 450));
        c->setZValue(-1);
        pair.editor.scene()->renumberNodes();
        QCOMPARE(pair.b->nodeId, QStringLiteral("2"));
        QCOMPARE(lineEdit(link, "lineEdit_dstNode")->text(), QStringLiteral(u"B(节点id:1)"));
        QCOMPARE(lineEdit(node, "lineEdit_nodeId")->text(), QStringLiteral("1"));
        QCOMPARE(lineEdit(pair.openLink(), "lineEdit_dstNode")->text(),
                 QStringLiteral(u"B(节点id:2)"));
    }

    void discardedTextsOfALinkDoNotReachTheNextOne()
    {
        LinkedPair pair;
        EditLineWindow* dialog = pair.openLink();
        typeText(dialog, "lineEdit_srcPort", "9");
        clickButton(dialog, "cancelButton");
        QVERIFY(pair.link->srcPort.isNull());
        QVERIFY(lineEdit(pair.openLink(), "lineEdit_srcPort")->text().isEmpty());
    }

    void formsStandAsDesigned()
    {
        LinkedPair pair;
        EditItemWindow* node = pair.openNode(pair.b);
        QCOMPARE(node->objectName(), QStringLiteral("editItemWindow"));
        QCOMPARE(node->windowTitle(), QStringLiteral(u"节点编辑"));
        QCOMPARE(node->size(), QSize(363, 369));
        EditLineWindow* link = pair.openLink();
        QCOMPARE(link->windowTitle(), QStringLiteral(u"链路编辑"));
        QCOMPARE(link->size(), QSize(323, 288));
        for (const QDialog* dialog : {static_cast<QDialog*>(node), static_cast<QDialog*>(link)}) {
            for (const QLabel* label : dialog->findChildren<QLabel*>()) {
                if (label->isVisible())
                    QVERIFY2(label->width() >= label->sizeHint().width(),
                             qPrintable(label->text()));
            }
        }
        QCOMPARE(link->findChild<QPushButton*>(QStringLiteral("confirmButton"))->geometry(),
                 QRect(110, 250, 89, 25));
    }

    void openLinkDialogDoesNotKeepTheApplicationAlive()
    {
        LinkedPair pair;
        QVERIFY(!pair.openLink()->testAttribute(Qt::WA_QuitOnClose));
    }

    // ---- Records that are gone

    void nodeDialogOfADeletedNodeWritesNothing()
    {
        LinkedPair pair;
        EditItemWindow* dialog = pair.openNode(pair.a);
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
        EditLineWindow* linkDialog = pair.openLink();
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
        EditLineWindow* link = pair.openLink();
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
        const QPointer<EditLineWindow> linkDialog = pair->openLink();
        pair.reset();
        QVERIFY(nodeDialog.isNull());
        QVERIFY(linkDialog.isNull());
    }
};

ROTUNDA_GUI_TEST_MAIN(PropertyDialogsTest)
#include "PropertyDialogsTest.moc"
