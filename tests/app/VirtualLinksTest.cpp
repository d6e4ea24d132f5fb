#include "traffic/AddVLineForm.h"
#include "traffic/ShowVLineInfoForm.h"
#include "traffic/VLineEditorForm.h"
#include "traffic/VLineNodeSelectForm.h"

#include "tests/driver/Studio.h"
#include "tests/support/DialogAnswers.h"
#include "tests/support/DialogClicks.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Text.h"

#include <QDockWidget>
#include <QHeaderView>
#include <QMessageBox>
#include <QTableWidget>
#include <QTextBrowser>

// Docks, the virtual link editor with its dialogs, and the table of virtual links.

static QStringList columnTexts(QTableWidget* table, int column)
{
    QStringList texts;
    for (int row = 0; row < table->rowCount(); ++row)
        texts.append(table->item(row, column)->text());
    return texts;
}

static QStringList headers(const QTableWidget* table)
{
    QStringList texts;
    for (int column = 0; column < table->columnCount(); ++column)
        texts.append(table->horizontalHeaderItem(column)->text());
    return texts;
}

class VirtualLinksTest : public QObject
{
    Q_OBJECT

private slots:
    // ---- Docks

    void dockTogglesFromEitherState()
    {
        Studio studio;
        const QString action = QStringLiteral(u"虚链路配置");
        QVERIFY(!studio.probe.vLineDock());
        studio.clickToolBar(action);
        QDockWidget* dock = studio.probe.vLineDock();
        QVERIFY(dock->isVisible());
        QCOMPARE(studio.window.dockWidgetArea(dock), Qt::BottomDockWidgetArea);
        dock->setFloating(true);
        studio.clickToolBar(action);
        QVERIFY(!dock->isVisible());
        studio.clickToolBar(action);
        QVERIFY(dock->isVisible());
        QVERIFY(!dock->isFloating());
        studio.clickToolBar(action);
        QVERIFY(!dock->isVisible());
        QCOMPARE(studio.probe.vLineDock(), dock);
    }

    void secondDockIsTabifiedWithTheFirst_data()
    {
        QTest::addColumn<bool>("flowFirst");
        QTest::newRow("virtual links first") << false;
        QTest::newRow("flows first") << true;
    }

    void secondDockIsTabifiedWithTheFirst()
    {
        QFETCH(bool, flowFirst);
        Studio studio;
        const QString actions[] = {QStringLiteral(u"虚链路配置"), QStringLiteral(u"流量配置")};
        studio.clickToolBar(actions[flowFirst ? 1 : 0]);
        studio.clickToolBar(actions[flowFirst ? 0 : 1]);
        QCOMPARE(studio.window.tabifiedDockWidgets(studio.probe.vLineDock()),
                 QList<QDockWidget*>{studio.probe.flowDock()});
        // The virtual link dock is the first argument, so its tab stands first either way.
        auto* tabs = studio.window.findChild<QTabBar*>(QString(), Qt::FindDirectChildrenOnly);
        QVERIFY(tabs);
        QCOMPARE(tabs->tabText(0), actions[0]);
    }

    void tablesStandAsDesigned()
    {
        Studio studio;
        studio.clickToolBar(QStringLiteral(u"虚链路配置"));
        studio.clickToolBar(QStringLiteral(u"流量配置"));
        QCOMPARE(studio.probe.vLineDock()->objectName(), QStringLiteral("VLineEditorDock"));
        QCOMPARE(studio.probe.flowDock()->objectName(), QStringLiteral("FlowEditorDock"));
        QCOMPARE(studio.probe.vLineDock()->windowTitle(), QStringLiteral(u"虚链路配置"));
        for (QTableWidget* table : {studio.probe.vLineTable(), studio.probe.flowTable()}) {
            QCOMPARE(table->rowCount(), 0);
            QVERIFY(table->alternatingRowColors());
            QVERIFY(table->verticalHeader()->isHidden());
            QCOMPARE(table->verticalHeader()->defaultSectionSize(), 25);
            QCOMPARE(table->editTriggers(), QAbstractItemView::NoEditTriggers);
            QCOMPARE(table->horizontalHeader()->sectionResizeMode(0), QHeaderView::Stretch);
        }
        QCOMPARE(studio.probe.flowDock()->windowTitle(), QStringLiteral(u"流量配置"));
        QCOMPARE(headers(studio.probe.vLineTable()), words("序号 虚链路id 虚链路信息 交换机跳数"));
        QCOMPARE(
            headers(studio.probe.flowTable()),
            words("序号 流类型 流标识 周期(us) 消息长度(字节) 虚链路ID 发送窗口(us) 接收窗口(us)"));
    }

    // ---- Editing

    void emptyIdentifierIsRefusedAndTheFormCloses()
    {
        Studio studio;
        VLineEditorForm* form = studio.openVLineEditor();
        QVERIFY(!form->isModal());
        DialogAnswers answers;
        answers.expectMessageBox();
        clickButton(form, "confirmButton");
        QCOMPARE(answers.seen(),
                 QStringList{QStringLiteral(u"添加虚链路错误提示: 虚链路Id必须为非空值。")});
        QCOMPARE(answers.icons(), QList<int>{QMessageBox::Information});
        QVERIFY(!studio.probe.vLineEditorForm());
        QCOMPARE(studio.probe.vLineTable()->rowCount(), 0);
    }

    void virtualLinkWithoutPathIsRefusedAndTheFormCloses()
    {
        Studio studio;
        VLineEditorForm* form = studio.openVLineEditor();
        typeText(form, "lineEdit_VLineId", "1");
        DialogAnswers answers;
        answers.expectMessageBox();
        clickButton(form, "confirmButton");
        QCOMPARE(answers.seen(),
                 QStringList{QStringLiteral(u"添加虚链路错误提示: 虚链路信息必须为非空值。")});
        QVERIFY(!studio.probe.vLineEditorForm());
    }

    void secondAddDoesNothingWhileTheFormIsOpen()
    {
        Studio studio;
        VLineEditorForm* form = studio.openVLineEditor();
        QCOMPARE(studio.openVLineEditor(), form);
        QCOMPARE(studio.window.findChildren<VLineEditorForm*>().size(), 1);
        AddVLineForm* pathForm = studio.openPath(form);
        QCOMPARE(studio.openPath(form), pathForm);
        VLineNodeSelectForm* choice = studio.openNodeChoice(pathForm);
        QCOMPARE(studio.openNodeChoice(pathForm), choice);
    }

    void firstPathStartsAtAnyHostInStackingOrder()
    {
        Studio studio;
        studio.drawSmallNetwork();
        AddVLineForm* pathForm = studio.openPath(studio.openVLineEditor());
        QCOMPARE(lineEdit(pathForm, "lineEdit_vLineInfo")->text(), QStringLiteral("{}"));
        VLineNodeSelectForm* choice = studio.openNodeChoice(pathForm);
        QCOMPARE(entries(comboBox(choice, "comboBox_vLineNode")), words("A B C"));
    }

    void nextNodeIsANeighbourInTheOrderOfItsLinks()
    {
        Studio studio;
        studio.drawSmallNetwork();
        AddVLineForm* pathForm = studio.openPath(studio.openVLineEditor());
        pathForm->rcvItem(studio.node("A"));
        VLineNodeSelectForm* choice = studio.openNodeChoice(pathForm);
        QCOMPARE(entries(comboBox(choice, "comboBox_vLineNode")), words("S1"));
        clickButton(choice, "confirmButton");
        pathForm->rcvItem(studio.node("S2"));
        choice = studio.openNodeChoice(pathForm);
        QCOMPARE(entries(comboBox(choice, "comboBox_vLineNode")), words("B C"));
        QCOMPARE(lineEdit(pathForm, "lineEdit_vLineInfo")->text(), QStringLiteral("{A->S1->S2}"));
    }

    void nodeReachedByItsOnlyLinkOffersNothing()
    {
        Studio studio;
        studio.drawSmallNetwork();
        AddVLineForm* pathForm = studio.openPath(studio.openVLineEditor());
        for (const char* name : {"A", "S1", "S2", "B"})
            pathForm->rcvItem(studio.node(name));
        QPointer<VLineNodeSelectForm> choice = studio.openNodeChoice(pathForm);
        QCOMPARE(comboBox(choice, "comboBox_vLineNode")->count(), 0);
        int sent = 0;
        connect(choice, &VLineNodeSelectForm::sendItem, choice, [&sent] { ++sent; });
        clickButton(choice, "confirmButton");
        QCOMPARE(sent, 0);
        QTRY_VERIFY(choice.isNull());
        clickButton(pathForm, "delNodeButton");
        QCOMPARE(lineEdit(pathForm, "lineEdit_vLineInfo")->text(), QStringLiteral("{A->S1->S2}"));
    }

    void secondPathStartsAtTheTalkerOfTheFirst()
    {
        Studio studio;
        studio.drawSmallNetwork();
        VLineEditorForm* form = studio.openVLineEditor();
        studio.addPath(form, words("A S1 S2 B"));
        AddVLineForm* pathForm = studio.openPath(form);
        QCOMPARE(lineEdit(pathForm, "lineEdit_vLineInfo")->text(), QStringLiteral("{A}"));
        clickButton(pathForm, "delNodeButton");
        VLineNodeSelectForm* choice = studio.openNodeChoice(pathForm);
        QCOMPARE(entries(comboBox(choice, "comboBox_vLineNode")), words("S1"));
    }

    void pathsAreListedAndTheCurrentOneIsDeleted()
    {
        Studio studio;
        studio.drawSmallNetwork();
        VLineEditorForm* form = studio.openVLineEditor();
        studio.addPath(form, words("A S1 S2 B"));
        studio.addPath(form, words("A S1 S2 C"));
        QComboBox* list = comboBox(form, "comboBox_VLineInfo");
        QCOMPARE(entries(list),
                 (QStringList{QStringLiteral("{A->S1->S2->B}"), QStringLiteral("{A->S1->S2->C}")}));
        QCOMPARE(list->currentIndex(), 1);
        list->setCurrentIndex(0);
        clickButton(form, "delVLineButton");
        QCOMPARE(entries(list), QStringList{QStringLiteral("{A->S1->S2->C}")});
        clickButton(form, "delVLineButton");
        clickButton(form, "delVLineButton");
        QCOMPARE(list->count(), 0);
    }

    void closingAFormClosesItsChildrenFirst()
    {
        Studio studio;
        QPointer<VLineEditorForm> form = studio.openVLineEditor();
        QPointer<AddVLineForm> pathForm = studio.openPath(form);
        QPointer<VLineNodeSelectForm> choice = studio.openNodeChoice(pathForm);
        QStringList order;
        connect(choice, &VLineNodeSelectForm::windowClosed, choice,
                [&order] { order.append(QStringLiteral("node")); });
        connect(pathForm, &AddVLineForm::windowClosed, pathForm,
                [&order] { order.append(QStringLiteral("path")); });
        connect(form, &VLineEditorForm::windowClosed, form,
                [&order] { order.append(QStringLiteral("link")); });
        QTest::keyClick(form.data(), Qt::Key_Escape);
        QCOMPARE(order, (QStringList{QStringLiteral("node"), QStringLiteral("path"),
                                     QStringLiteral("link")}));
        QTRY_VERIFY(form.isNull() && pathForm.isNull() && choice.isNull());
        QVERIFY(studio.openVLineEditor());
    }

    // ---- The table

    void rowShowsEndsHopsAndTheLargestSwitchCount()
    {
        Studio studio;
        studio.drawSmallNetwork();
        studio.defineVLine("7", {words("A S1 S2"), words("A S1 S2 B")});
        studio.defineVLine("8", {words("A S1 S2")});
        QTableWidget* table = studio.probe.vLineTable();
        QCOMPARE(table->item(0, 0)->text(), QStringLiteral("1"));
        QCOMPARE(table->item(0, 1)->text(), QStringLiteral("7"));
        QCOMPARE(table->item(0, 3)->text(), QStringLiteral("2"));
        for (const int column : {0, 1, 3}) {
            QCOMPARE(table->item(0, column)->textAlignment(),
                     int(Qt::AlignHCenter | Qt::AlignVCenter));
        }
        QVERIFY(!(table->item(0, 0)->flags() & Qt::ItemIsEditable));
        QCOMPARE(entries(qobject_cast<QComboBox*>(table->cellWidget(0, 2))),
                 (QStringList{QStringLiteral(u"{发送端:A, 接收端:S2, 跳数:1}"),
                              QStringLiteral(u"{发送端:A, 接收端:B, 跳数:2}")}));
        QCOMPARE(studio.probe.vLineInfoList().size(), 2);
    }

    void threeSwitchesShowThreeHopsAndPercentSignsStay()
    {
        Studio studio;
        DiagramItem node(DiagramItem::Switch, nullptr, nullptr);
        node.nodeName = QStringLiteral("%1%2");
        studio.clickToolBar(QStringLiteral(u"虚链路配置"));
        const VLineItems two{&node, &node, &node, &node};
        studio.probe.addVLine({QStringLiteral("1"), {two, two + VLineItems{&node}}});
        QCOMPARE(studio.probe.vLineTable()->item(0, 3)->text(), QStringLiteral("3"));
        auto* list = qobject_cast<QComboBox*>(studio.probe.vLineTable()->cellWidget(0, 2));
        QCOMPARE(list->itemText(0), QStringLiteral(u"{发送端:%1%2, 接收端:%1%2, 跳数:2}"));
        studio.probe.vLineInfoList().clear();
    }

    void deletingARowRenumbersTheRest()
    {
        Studio studio;
        addPlainLinks(studio, 3);
        QTableWidget* table = studio.probe.vLineTable();
        table->selectRow(0);
        clickDelete(studio);
        QCOMPARE(columnTexts(table, 0), words("1 2"));
        QCOMPARE(columnTexts(table, 1), words("id1 id2"));
        QCOMPARE(studio.probe.vLineInfoList().first().vLineId, QStringLiteral("id1"));
    }

    void deletingSeveralRangesKeepsTheirOldIndices()
    {
        Studio studio;
        addPlainLinks(studio, 6);
        QTableWidget* table = studio.probe.vLineTable();
        table->setRangeSelected(QTableWidgetSelectionRange(0, 0, 0, 3), true);
        table->setRangeSelected(QTableWidgetSelectionRange(3, 0, 3, 3), true);
        QCOMPARE(table->selectedRanges().size(), 2);
        clickDelete(studio);
        // Row 3 is taken out after row 0 is gone, so id4 goes in place of id3.
        QCOMPARE(columnTexts(table, 1), words("id1 id2 id3 id5"));
        QCOMPARE(columnTexts(table, 0), words("1 2 3 4"));
        QStringList kept;
        for (const VLineInfo& vLine : studio.probe.vLineInfoList())
            kept.append(vLine.vLineId);
        QCOMPARE(kept, columnTexts(table, 1));
    }

    void laterRangeBeyondTheRestIsHarmless()
    {
        Studio studio;
        addPlainLinks(studio, 3);
        QTableWidget* table = studio.probe.vLineTable();
        table->setRangeSelected(QTableWidgetSelectionRange(0, 0, 0, 3), true);
        table->setRangeSelected(QTableWidgetSelectionRange(2, 0, 2, 3), true);
        clickDelete(studio);
        QCOMPARE(table->rowCount(), studio.probe.vLineInfoList().size());
    }

    void deletingWithoutSelectionOnlyLogs()
    {
        Studio studio;
        addPlainLinks(studio, 1);
        studio.probe.vLineTable()->clearSelection();
        const LogCapture log;
        clickDelete(studio);
        QVERIFY(log.contains(QStringLiteral(u"请选择一行")));
        QCOMPARE(studio.probe.vLineTable()->rowCount(), 1);
    }

    void shownPathIsThatOfTheCurrentRow()
    {
        Studio studio;
        studio.drawSmallNetwork();
        studio.defineVLine("1", {words("A S1 S2 B"), words("A S1 S2 C")});
        studio.defineVLine("2", {words("B S2 C"), words("B S2 S1")});
        QTableWidget* table = studio.probe.vLineTable();
        auto* secondRow = qobject_cast<QComboBox*>(table->cellWidget(1, 2));
        emit secondRow->activated(1);
        QVERIFY(!studio.probe.showVLineInfoForm()); // no row is current yet
        table->setCurrentCell(0, 0);
        emit secondRow->activated(1);
        QPointer<ShowVLineInfoForm> shown = studio.probe.showVLineInfoForm();
        QVERIFY(shown && shown->isVisible());
        QCOMPARE(shown->windowTitle(), QStringLiteral(u"虚链路详细信息"));
        QCOMPARE(shown->findChild<QTextBrowser*>()->toPlainText(),
                 QStringLiteral("{A->S1->S2->C}"));
        table->setCurrentCell(1, 0);
        emit secondRow->activated(0);
        QTRY_VERIFY(shown.isNull());
        shown = studio.probe.showVLineInfoForm();
        QCOMPARE(shown->findChild<QTextBrowser*>()->toPlainText(), QStringLiteral("{B->S2->C}"));
        emit secondRow->activated(9);
        QCOMPARE(studio.probe.showVLineInfoForm(), shown.data());
        shown->close();
        QVERIFY(!studio.probe.showVLineInfoForm());
    }

    // ---- Nodes that are gone

    void deletedNodeBecomesAnEmptyNameInItsPaths()
    {
        Studio studio;
        studio.drawSmallNetwork();
        studio.defineVLine("1", {words("A S1 S2 B")});
        VLineEditorForm* form = studio.openVLineEditor();
        studio.addPath(form, words("A S1 S2 C"));
        AddVLineForm* pathForm = studio.openPath(form);
        pathForm->rcvItem(studio.node("S1"));
        VLineNodeSelectForm* choice = studio.openNodeChoice(pathForm);
        QCOMPARE(entries(comboBox(choice, "comboBox_vLineNode")), words("S2"));
        DiagramItem* gone = studio.node("S2");
        studio.editor.scene()->clearSelection();
        gone->setSelected(true);
        QMetaObject::invokeMethod(&studio.editor.window, "deleteItem");
        QCOMPARE(studio.probe.vLineInfoList().first().vLinePaths.first().size(), 4);
        QCOMPARE(studio.probe.vLineInfoList().first().vLinePaths.first().at(2), nullptr);
        auto* shown = qobject_cast<QComboBox*>(studio.probe.vLineTable()->cellWidget(0, 2));
        QCOMPARE(shown->itemText(0), QStringLiteral(u"{发送端:A, 接收端:B, 跳数:2}"));
        QCOMPARE(entries(comboBox(choice, "comboBox_vLineNode")), QStringList{QString()});
        clickButton(choice, "confirmButton");
        QCOMPARE(lineEdit(pathForm, "lineEdit_vLineInfo")->text(), QStringLiteral("{A->S1}"));
        clickButton(pathForm, "confirmButton");
        QCOMPARE(entries(comboBox(form, "comboBox_VLineInfo")).first(),
                 QStringLiteral("{A->S1->->C}"));
        studio.editor.scene()->clear();
        QCOMPARE(shown->itemText(0), QStringLiteral(u"{发送端:, 接收端:, 跳数:2}"));
        AddVLineForm* blind = studio.openPath(form);
        studio.openNodeChoice(blind);
        clickButton(blind, "confirmButton");
        typeText(form, "lineEdit_VLineId", "2");
        clickButton(form, "confirmButton");
        QCOMPARE(studio.probe.vLineTable()->rowCount(), 2);
    }

    void rowThatComesBeforeTheDockMakesIt()
    {
        Studio studio;
        studio.probe.addVLine({QStringLiteral("1"), {}});
        studio.probe.addFlow(FlowInfo());
        QCOMPARE(studio.probe.vLineTable()->rowCount(), 1);
        QCOMPARE(studio.probe.flowTable()->rowCount(), 1);
    }

    void projectRecordsRebuildTheTableByName()
    {
        Studio studio;
        FileNodeInfo record;
        record.nodeName = QStringLiteral("A");
        studio.editor.scene()->buildByProjectFile({record}, {});
        studio.probe.addVLinesOfProject({{QStringLiteral("9"), {words("A nobody")}}});
        QVERIFY(studio.probe.vLineDock()->isVisible());
        QCOMPARE(studio.probe.vLineTable()->rowCount(), 1);
        const VLineItems items = studio.probe.vLineInfoList().first().vLinePaths.first();
        QCOMPARE(items, (VLineItems{studio.editor.nodes().first(), nullptr}));
        studio.probe.addVLinesOfProject({});
        QCOMPARE(studio.probe.vLineTable()->rowCount(), 0);
        QVERIFY(studio.probe.vLineInfoList().isEmpty());
    }

private:
    static void addPlainLinks(Studio& studio, int count)
    {
        studio.clickToolBar(QStringLiteral(u"虚链路配置"));
        for (int i = 0; i < count; ++i)
            studio.probe.addVLine({QStringLiteral("id%1").arg(i), {}});
    }

    static void clickDelete(Studio& studio)
    {
        QTest::mouseClick(Studio::dockButton(studio.probe.vLineDock(), QStringLiteral(u"删除")),
                          Qt::LeftButton);
    }
};

ROTUNDA_GUI_TEST_MAIN(VirtualLinksTest)
#include "VirtualLinksTest.moc"
