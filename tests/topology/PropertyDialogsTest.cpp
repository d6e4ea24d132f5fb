#include "tests/support/DialogClicks.h"
#include "tests/support/GuiTestMain.h"
#include "tests/topology/LinkedPair.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>

// What the dialogs of a node and of a link show and write.

class PropertyDialogsTest : public QObject
{
    Q_OBJECT

private slots:
    void hostHasNoPortCountAndASwitchHas()
    {
        LinkedPair pair;
        EditItemWindow* dialog = pair.openNode(pair.a);
        QVERIFY(dialog);
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
        QVERIFY(dialog);
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
        QVERIFY(dialog);
        typeText(dialog, "lineEdit_nodeName", "H1");
        clickButton(dialog, "confirmButton");
        dialog = pair.openNode(pair.b);
        typeText(dialog, "lineEdit_nodeName", "SW");
        clickButton(dialog, "confirmButton");
        QCOMPARE(pair.link->srcNode, QStringLiteral("H1"));
        QCOMPARE(pair.link->dstNode, QStringLiteral("SW"));
        EditLineWindow* linkDialog = pair.openLink();
        QVERIFY(linkDialog);
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
        QVERIFY(dialog);
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
        QVERIFY(dialog);
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
            QVERIFY(dialog);
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
        QVERIFY(node);
        typeText(node, "lineEdit_nodeName", "SW");
        QTest::keyClick(lineEdit(node, "lineEdit_nodeName"), Qt::Key_Return);
        QCOMPARE(pair.b->nodeName, QStringLiteral("SW"));
        QVERIFY(!pair.editor.nodeDialog());
        EditLineWindow* link = pair.openLink();
        QVERIFY(link);
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
            if (!dialog)
                QFAIL("the dialog does not open");
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
        QVERIFY(dialog);
        dialog->close();
        dialog->close();
        QVERIFY(!pair.editor.nodeDialog());
        QVERIFY(pair.openNode(pair.b));
    }

    void shownIdsStayWhileNodesComeAndGo()
    {
        LinkedPair pair;
        EditLineWindow* link = pair.openLink();
        QVERIFY(link);
        EditItemWindow* node = pair.openNode(pair.b);
        QVERIFY(node);
        DiagramItem* c = pair.editor.insertNode(DiagramItem::Endpoint, QPointF(300, 450));
        c->setZValue(-1);
        pair.editor.scene()->renumberNodes();
        QCOMPARE(pair.b->nodeId, QStringLiteral("2"));
        QCOMPARE(lineEdit(link, "lineEdit_dstNode")->text(), QStringLiteral(u"B(节点id:1)"));
        QCOMPARE(lineEdit(node, "lineEdit_nodeId")->text(), QStringLiteral("1"));
        QCOMPARE(lineEdit(pair.openLink(), "lineEdit_dstNode")->text(),
                 QStringLiteral(u"B(节点id:2)"));
    }

    void drawingIsRefreshedAfterTheDialogClosed()
    {
        LinkedPair pair;
        EditItemWindow* node = pair.openNode(pair.a);
        QVERIFY(node);
        EditLineWindow* link = pair.openLink();
        QVERIFY(link);
        QStringList refreshed;
        connect(node, &EditItemWindow::updateGraphics, this, [&] {
            refreshed.append(node->isVisible() ? QStringLiteral("open") : QStringLiteral("node"));
        });
        connect(link, &EditLineWindow::updateGraphics, this, [&] {
            refreshed.append(link->isVisible() ? QStringLiteral("open") : QStringLiteral("link"));
        });
        clickButton(node, "confirmButton");
        clickButton(link, "confirmButton");
        QCOMPARE(refreshed, (QStringList{QStringLiteral("node"), QStringLiteral("link")}));
    }

    void discardedTextsOfALinkDoNotReachTheNextOne()
    {
        LinkedPair pair;
        EditLineWindow* dialog = pair.openLink();
        QVERIFY(dialog);
        typeText(dialog, "lineEdit_srcPort", "9");
        clickButton(dialog, "cancelButton");
        QVERIFY(pair.link->srcPort.isNull());
        QVERIFY(lineEdit(pair.openLink(), "lineEdit_srcPort")->text().isEmpty());
    }

    void nextLinkIsTypedFromItsNameOn()
    {
        LinkedPair pair;
        EditLineWindow* dialog = pair.openLink();
        QVERIFY(dialog);
        typeText(dialog, "lineEdit_vLineName", "first");
        lineEdit(dialog, "lineEdit_bandWidth")->setFocus();
        clickButton(dialog, "confirmButton");
        dialog = pair.openLink();
        QTRY_VERIFY(lineEdit(dialog, "lineEdit_vLineName")->hasFocus());
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("second"));
        QCOMPARE(lineEdit(dialog, "lineEdit_vLineName")->text(), QStringLiteral("second"));
        QVERIFY(lineEdit(dialog, "lineEdit_bandWidth")->text().isEmpty());
    }

    void formsStandAsDesigned()
    {
        LinkedPair pair;
        EditItemWindow* node = pair.openNode(pair.b);
        QVERIFY(node);
        QCOMPARE(node->objectName(), QStringLiteral("editItemWindow"));
        QCOMPARE(node->windowTitle(), QStringLiteral(u"节点编辑"));
        QCOMPARE(node->size(), QSize(363, 369));
        EditLineWindow* link = pair.openLink();
        QVERIFY(link);
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
        const EditLineWindow* dialog = pair.openLink();
        QVERIFY(dialog);
        QVERIFY(!dialog->testAttribute(Qt::WA_QuitOnClose));
    }
};

ROTUNDA_GUI_TEST_MAIN(PropertyDialogsTest)
#include "PropertyDialogsTest.moc"
