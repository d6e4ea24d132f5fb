#include "tests/driver/Studio.h"
#include "tests/support/Failure.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/LogCapture.h"

#include <QComboBox>
#include <QDockWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QTableWidget>
#include <QWheelEvent>

// What a user does with mouse and keys in the tables of virtual links and flows.

static QStringList idsIn(const QTableWidget* table, int column)
{
    QStringList ids;
    for (int row = 0; row < table->rowCount(); ++row)
        ids.append(table->item(row, column)->text());
    return ids;
}

/// A studio with rows in both tables; the flows are on top.
struct FilledStudio : Studio {
    explicit FilledStudio(int rows)
    {
        clickToolBar(QStringLiteral(u"虚链路配置"));
        clickToolBar(QStringLiteral(u"流量配置"));
        for (int i = 0; i < rows; ++i) {
            FlowInfo flow;
            flow.flowId = QString::number(i);
            flow.dstNodes = {{QStringLiteral("B"), QStringLiteral("0"), QStringLiteral("1")},
                             {QStringLiteral("C"), QStringLiteral("0"), QStringLiteral("1")}};
            probe.addFlow(flow);
            probe.addVLine({QString::number(i), {}});
        }
        probe.flowDock()->raise();
        if (!QTest::qWaitFor([this] { return probe.flowTable()->isVisible(); }))
            failTest("the table of flows is not shown");
    }

    void clickCell(QTableWidget* table, int row, int column, Qt::KeyboardModifiers modifiers)
    {
        const QPoint place = table->visualRect(table->model()->index(row, column)).center();
        QTest::mouseClick(table->viewport(), Qt::LeftButton, modifiers, place);
    }
};

static void turnWheel(QWidget* widget, const QPoint& place)
{
    QWheelEvent event(place, widget->mapToGlobal(place), QPoint(), QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event); // others are not handed on to the widgets below
    qApp->notify(widget, &event);
}

class TrafficTablesTest : public QObject
{
    Q_OBJECT

private slots:
    void cellsOfOneRowNeverDeleteAnotherRow()
    {
        FilledStudio studio(4);
        QTableWidget* table = studio.probe.flowTable();
        studio.clickCell(table, 1, 1, Qt::NoModifier);
        studio.clickCell(table, 1, 4, Qt::ControlModifier);
        QTest::mouseClick(Studio::dockButton(studio.probe.flowDock(), QStringLiteral(u"删除")),
                          Qt::LeftButton);
        for (const char* kept : {"0", "2", "3"})
            QVERIFY(idsIn(table, 2).contains(QString::fromUtf8(kept)));
    }

    void clickSelectsTheWholeRow()
    {
        FilledStudio studio(3);
        QTableWidget* table = studio.probe.flowTable();
        studio.clickCell(table, 1, 3, Qt::NoModifier);
        QCOMPARE(table->selectedItems().size(), 7); // the eighth cell is a box
        QCOMPARE(table->selectedRanges().size(), 1);
        QCOMPARE(studio.probe.vLineTable()->selectionBehavior(), QAbstractItemView::SelectRows);
        QTest::mouseClick(Studio::dockButton(studio.probe.flowDock(), QStringLiteral(u"删除")),
                          Qt::LeftButton);
        QCOMPARE(idsIn(table, 2), (QStringList{QStringLiteral("0"), QStringLiteral("2")}));
    }

    void deleteKeyInATableLeavesTheDrawingAlone()
    {
        FilledStudio studio(2);
        DiagramItem* node = studio.editor.insertNode(DiagramItem::Endpoint, QPointF(400, 300));
        node->setSelected(true);
        studio.clickCell(studio.probe.flowTable(), 0, 1, Qt::NoModifier);
        QTRY_VERIFY(studio.probe.flowTable()->hasFocus());
        QTest::keyClick(studio.probe.flowTable(), Qt::Key_Delete);
        QCOMPARE(studio.editor.nodes().size(), 1);
        QCOMPARE(studio.probe.flowTable()->rowCount(), 2);
        studio.editor.view()->setFocus();
        QTest::keyClick(studio.editor.view(), Qt::Key_Delete);
        QVERIFY(studio.editor.nodes().isEmpty());
    }

    void wheelOverABoxScrollsTheTable()
    {
        FilledStudio studio(60);
        QTableWidget* table = studio.probe.flowTable();
        table->scrollToTop();
        auto* box = qobject_cast<QComboBox*>(table->cellWidget(1, 7));
        QCOMPARE(box->currentIndex(), 0);
        turnWheel(box, box->rect().center());
        QCOMPARE(box->currentIndex(), 0);
        QVERIFY(table->verticalScrollBar()->value() > 0);
    }

    void onlyBoxesInViewAreShownAndAllAreThere()
    {
        FilledStudio studio(0);
        QTableWidget* table = studio.probe.flowTable();
        FlowInfo flow;
        flow.dstNodes = {{QStringLiteral("B"), QStringLiteral("0"), QStringLiteral("1")}};
        QList<FlowInfo> flows;
        for (int i = 0; i < 300; ++i)
            flows.append(flow);
        studio.probe.addFlowsOfProject(flows);
        QCoreApplication::processEvents();
        QVERIFY(table->isVisible());
        int shown = 0;
        for (int row = 0; row < 300; ++row) {
            QVERIFY(qobject_cast<QComboBox*>(table->cellWidget(row, 7)));
            shown += table->cellWidget(row, 7)->isVisible();
        }
        QVERIFY(shown > 0 && shown < 40);
        table->scrollToBottom();
        QVERIFY(table->cellWidget(299, 7)->isVisible());
        QVERIFY(!table->cellWidget(0, 7)->isVisible());
    }

    void deletingManyRowsLeavesTheOthersWithTheirBoxes()
    {
        FilledStudio studio(120);
        QTableWidget* table = studio.probe.flowTable();
        table->setRangeSelected(QTableWidgetSelectionRange(10, 0, 109, 7), true);
        QMetaObject::invokeMethod(&studio.window, "delFlowEditorTableItem");
        QCOMPARE(table->rowCount(), 20);
        QCOMPARE(table->item(19, 0)->text(), QStringLiteral("20"));
        QCOMPARE(table->item(10, 2)->text(), QStringLiteral("110"));
        QCOMPARE(studio.probe.flowInfoList().at(10).flowId, QStringLiteral("110"));
        for (int row = 0; row < 20; ++row)
            QVERIFY(table->cellWidget(row, 7));
        QVERIFY(table->isVisible());
    }

    void newRowIsScrolledTo()
    {
        FilledStudio studio(60);
        QTableWidget* table = studio.probe.flowTable();
        const QRect last = table->visualItemRect(table->item(59, 0));
        QVERIFY(table->viewport()->rect().contains(last));
    }

    void openedTablesShowTheirBeginning()
    {
        FilledStudio studio(60);
        const QList<FlowInfo> flows = studio.probe.flowInfoList();
        studio.probe.addFlowsOfProject(flows);
        QCOMPARE(studio.probe.flowTable()->rowAt(0), 0);
    }

    void textsThatMayBeCutAreShownInFullByToolTips()
    {
        FilledStudio studio(1);
        QTableWidget* table = studio.probe.flowTable();
        QVERIFY(!table->wordWrap());
        for (int column = 0; column < table->columnCount(); ++column) {
            const QTableWidgetItem* header = table->horizontalHeaderItem(column);
            QCOMPARE(header->toolTip(), header->text());
        }
        for (int column = 0; column < 7; ++column)
            QCOMPARE(table->item(0, column)->toolTip(), table->item(0, column)->text());
        auto* box = qobject_cast<QComboBox*>(table->cellWidget(0, 7));
        box->setCurrentIndex(1);
        QCOMPARE(box->toolTip(), QStringLiteral("{C,[0,1]}"));
        QCOMPARE(box->itemData(0, Qt::ToolTipRole).toString(), QStringLiteral("{B,[0,1]}"));
    }

    void dockThatIsShownIsRaised()
    {
        FilledStudio studio(1);
        studio.clickToolBar(QStringLiteral(u"虚链路配置"));
        QVERIFY(!studio.probe.vLineDock()->isVisible());
        studio.clickToolBar(QStringLiteral(u"虚链路配置"));
        const auto inFront = [](QDockWidget* dock) { return !dock->visibleRegion().isEmpty(); };
        QTRY_VERIFY(inFront(studio.probe.vLineDock()));
        QVERIFY(!inFront(studio.probe.flowDock()));
    }

    void callsBeforeTheDocksExistDoNothing()
    {
        Studio studio;
        const LogCapture log;
        for (const char* slot :
             {"updateInfoBarText", "delVLineEditorTableItem", "delFlowEditorTableItem",
              "updateNodeInfo", "updatePlanInfo", "updateFlowList"})
            QVERIFY(QMetaObject::invokeMethod(&studio.window, slot));
        QVERIFY(QMetaObject::invokeMethod(&studio.window, "showVLineWindow", Q_ARG(int, 0)));
        QVERIFY(
            QMetaObject::invokeMethod(&studio.window, "changeStackedWidgetPage", Q_ARG(int, 1)));
        QVERIFY(log.lines().isEmpty());
        QVERIFY(!studio.probe.vLineDock() && !studio.probe.flowDock());
        QVERIFY(!studio.probe.planInfoDock() && !studio.probe.showVLineInfoForm());
    }
};

ROTUNDA_GUI_TEST_MAIN(TrafficTablesTest)
#include "TrafficTablesTest.moc"
