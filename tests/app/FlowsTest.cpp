#include "traffic/AddDstNodeForm.h"
#include "traffic/FlowEditorForm.h"

#include "tests/driver/Studio.h"
#include "tests/support/DialogAnswers.h"
#include "tests/support/DialogClicks.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/Text.h"

#include <QDockWidget>
#include <QMessageBox>
#include <QTableWidget>

// The flow editor with its dialog for listeners, and the table of flows.

static QString caption()
{
    return QStringLiteral(u"添加流量错误提示: ");
}

/// A studio with a network, a multicast virtual link 1 and a plain one 2.
struct StudioWithLinks : Studio {
    StudioWithLinks()
    {
        drawSmallNetwork();
        defineVLine("1", {words("A S1 S2 B"), words("A S1 S2 C")});
        defineVLine("2", {words("B S2 C")});
    }
};

class FlowsTest : public QObject
{
    Q_OBJECT

private slots:
    void formShowsTalkerAndListenersOfTheVirtualLink()
    {
        StudioWithLinks studio;
        FlowEditorForm* form = studio.openFlowEditor();
        QVERIFY(form->isModal());
        QCOMPARE(form->windowTitle(), QStringLiteral(u"流量添加"));
        QCOMPARE(lineEdit(form, "lineEdit_srcNode")->text(), QStringLiteral("A"));
        QVERIFY(lineEdit(form, "lineEdit_srcNode")->isReadOnly());
        QCOMPARE(comboBox(form, "comboBox_dstNode")->count(), 2);
        comboBox(form, "comboBox_vLineId")->setCurrentText(QStringLiteral("2"));
        QCOMPARE(lineEdit(form, "lineEdit_srcNode")->text(), QStringLiteral("B"));
        QCOMPARE(comboBox(form, "comboBox_dstNode")->currentText(), QStringLiteral("C"));
    }

    void testsAreMadeInOrderAndTheFormStaysOpen()
    {
        StudioWithLinks studio;
        FlowEditorForm* form = studio.openFlowEditor();
        QCOMPARE(refusal(form), caption() + QStringLiteral(u"流标识必须为非空值。"));
        typeText(form, "lineEdit_flowId", "1");
        QCOMPARE(refusal(form), caption() + QStringLiteral(u"周期必须为非空值。"));
        typeText(form, "lineEdit_flowPeriod", "10000");
        QCOMPARE(refusal(form), caption() + QStringLiteral(u"消息长度必须为非空值。"));
        typeText(form, "lineEdit_flowSize", "64");
        QCOMPARE(refusal(form), caption() + QStringLiteral(u"源端发送窗口必须为非空值。"));
        typeText(form, "lineEdit_sendWindowLow", "0");
        QCOMPARE(refusal(form), caption() + QStringLiteral(u"源端发送窗口必须为非空值。"));
        typeText(form, "lineEdit_sendWindowHigh", "1000");
        QCOMPARE(refusal(form), caption() + QStringLiteral(u"目的端接收窗口必须为非空值。"));
        QVERIFY(form->isVisible());
        QCOMPARE(lineEdit(form, "lineEdit_flowId")->text(), QStringLiteral("1"));
        // The second listener's window may stay empty.
        studio.fillReceiveWindow(form, words("400 3000"));
        clickButton(form, "confirmButton");
        QVERIFY(!studio.probe.flowEditorForm());
        const FlowInfo flow = studio.probe.flowInfoList().first();
        QCOMPARE(flow.dstNodes.size(), 2);
        QCOMPARE(flow.dstNodes.first().rcvWindowHigh, QStringLiteral("3000"));
        QVERIFY(flow.dstNodes.last().rcvWindowLow.isEmpty());
    }

    void withoutVirtualLinksTheFlowIsRefused()
    {
        Studio studio;
        FlowEditorForm* form = studio.openFlowEditor();
        QCOMPARE(comboBox(form, "comboBox_vLineId")->count(), 0);
        QVERIFY(lineEdit(form, "lineEdit_srcNode")->text().isEmpty());
        QCOMPARE(refusal(form), caption() + QStringLiteral(u"流标识必须为非空值。"));
        typeText(form, "lineEdit_flowId", "1");
        typeText(form, "lineEdit_flowPeriod", "10000");
        typeText(form, "lineEdit_flowSize", "64");
        QCOMPARE(refusal(form), caption() + QStringLiteral(u"虚链路ID必须为非空值。"));
        clickButton(form, "addDstButton");
        QVERIFY(form->findChildren<AddDstNodeForm*>().isEmpty());
    }

    void changingTheVirtualLinkClearsTheWindows()
    {
        StudioWithLinks studio;
        FlowEditorForm* form = studio.openFlowEditor();
        studio.fillReceiveWindow(form, words("400 3000"));
        comboBox(form, "comboBox_vLineId")->setCurrentText(QStringLiteral("2"));
        comboBox(form, "comboBox_vLineId")->setCurrentText(QStringLiteral("1"));
        clickButton(form, "addDstButton");
        auto* listener = form->findChildren<AddDstNodeForm*>().last();
        QVERIFY(lineEdit(listener, "lineEdit_rcvWindowLow")->text().isEmpty());
        QCOMPARE(lineEdit(listener, "lineEdit_dstNodeName")->text(), QStringLiteral("B"));
    }

    void firstOfTwoVirtualLinksWithOneIdentifierCounts()
    {
        StudioWithLinks studio;
        studio.defineVLine("2", {words("A S1 S2 C")});
        FlowEditorForm* form = studio.openFlowEditor();
        comboBox(form, "comboBox_vLineId")->setCurrentIndex(2);
        QCOMPARE(lineEdit(form, "lineEdit_srcNode")->text(), QStringLiteral("B"));
    }

    void listenerDialogOpensOnceAndCancelKeepsTheWindow()
    {
        StudioWithLinks studio;
        FlowEditorForm* form = studio.openFlowEditor();
        studio.fillReceiveWindow(form, words("400 3000"));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        clickButton(form, "addDstButton");
        QPointer<AddDstNodeForm> listener = form->findChildren<AddDstNodeForm*>().last();
        QVERIFY(listener->isModal());
        QCOMPARE(lineEdit(listener, "lineEdit_rcvWindowHigh")->text(), QStringLiteral("3000"));
        form->addDstButtonClicked();
        QCOMPARE(form->findChildren<AddDstNodeForm*>().size(), 1);
        typeText(listener, "lineEdit_rcvWindowHigh", "9");
        QTest::keyClick(listener.data(), Qt::Key_Escape);
        QTRY_VERIFY(listener.isNull());
        clickButton(form, "addDstButton");
        listener = form->findChildren<AddDstNodeForm*>().last();
        QCOMPARE(lineEdit(listener, "lineEdit_rcvWindowHigh")->text(), QStringLiteral("3000"));
    }

    void rowShowsTheTextsOfTheFlow()
    {
        StudioWithLinks studio;
        studio.defineFlow("RC", "7", "10000", "1", words("0 1000"),
                          {words("400 3000"), words("600 3000")});
        QTableWidget* table = studio.probe.flowTable();
        QStringList texts;
        for (int column = 0; column < 7; ++column) {
            texts.append(table->item(0, column)->text());
            QCOMPARE(table->item(0, column)->textAlignment(),
                     int(Qt::AlignHCenter | Qt::AlignVCenter));
        }
        QCOMPARE(texts, words("1 RC 7 10000 64 1 {A,[0,1000]}"));
        auto* listeners = qobject_cast<QComboBox*>(table->cellWidget(0, 7));
        QCOMPARE(listeners->itemText(0), QStringLiteral("{B,[400,3000]}"));
        QCOMPARE(listeners->itemText(1), QStringLiteral("{C,[600,3000]}"));
    }

    void duplicateNumbersAreAcceptedAndRowsDeleted()
    {
        StudioWithLinks studio;
        for (int i = 0; i < 3; ++i)
            studio.defineFlow("TT", "7", "10000", "2", words("0 1000"), {words("400 3000")});
        QTableWidget* table = studio.probe.flowTable();
        QCOMPARE(table->rowCount(), 3);
        table->setRangeSelected(QTableWidgetSelectionRange(0, 0, 1, 7), true);
        QTest::mouseClick(Studio::dockButton(studio.probe.flowDock(), QStringLiteral(u"删除")),
                          Qt::LeftButton);
        QCOMPARE(table->rowCount(), 1);
        QCOMPARE(table->item(0, 0)->text(), QStringLiteral("1"));
        QCOMPARE(studio.probe.flowInfoList().size(), 1);
    }

    void cancelledFormLeavesNoFlow()
    {
        StudioWithLinks studio;
        QPointer<FlowEditorForm> form = studio.openFlowEditor();
        QCOMPARE(studio.openFlowEditor(), form.data());
        clickButton(form, "cancelButton");
        QVERIFY(!studio.probe.flowEditorForm());
        QTRY_VERIFY(form.isNull());
        form = studio.openFlowEditor();
        QTest::keyClick(form.data(), Qt::Key_Escape);
        QVERIFY(!studio.probe.flowEditorForm());
        QCOMPARE(studio.probe.flowTable()->rowCount(), 0);
    }

    void nodesGoneWhileTheFormIsOpenHaveEmptyNames()
    {
        StudioWithLinks studio;
        FlowEditorForm* form = studio.openFlowEditor();
        studio.editor.scene()->clear();
        comboBox(form, "comboBox_vLineId")->setCurrentText(QStringLiteral("2"));
        QVERIFY(lineEdit(form, "lineEdit_srcNode")->text().isEmpty());
        QCOMPARE(comboBox(form, "comboBox_dstNode")->count(), 1);
    }

    void projectRecordsRebuildTheTable()
    {
        Studio studio;
        FlowInfo flow;
        flow.flowId = QStringLiteral("3");
        studio.probe.addFlowsOfProject({flow, flow});
        QVERIFY(studio.probe.flowDock()->isVisible());
        QCOMPARE(studio.probe.flowTable()->rowCount(), 2);
        studio.probe.addFlowsOfProject({flow});
        QCOMPARE(studio.probe.flowTable()->rowCount(), 1);
        QCOMPARE(studio.probe.flowInfoList().size(), 1);
    }

private:
    static QString refusal(FlowEditorForm* form)
    {
        DialogAnswers answers;
        answers.expectMessageBox();
        clickButton(form, "confirmButton");
        if (answers.icons() != QList<int>{QMessageBox::Information})
            return QStringLiteral("no information box");
        return answers.seen().join(QLatin1Char(';'));
    }
};

ROTUNDA_GUI_TEST_MAIN(FlowsTest)
#include "FlowsTest.moc"
