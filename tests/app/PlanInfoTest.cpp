#include "views/FlowColorTable.h"
#include "views/ItemDelegate.h"

#include "tests/app/PlannedStudio.h"
#include "tests/support/Documents.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/HeapUse.h"

#include <QDockWidget>
#include <QLabel>
#include <QStackedWidget>

// The plan result dock: run, node, port, cards, by real clicks.

static int usedCells(const TimeSlotInfo* table)
{
    int used = 0;
    for (int row = 0; row < table->rowCount(); ++row) {
        for (int column = 1; column < table->columnCount(); ++column)
            used += table->cellWidget(row, column) != nullptr;
    }
    return used;
}

static int slotsOf(const QMap<int, QMap<int, qint64>>& flows)
{
    int count = 0;
    for (const auto& slotSet : flows)
        count += slotSet.size();
    return count;
}

class PlanInfoTest : public QObject
{
    Q_OBJECT

private slots:
    void dockOpensEmptyWithoutAnyResult()
    {
        PlannedStudio studio;
        studio.clickPlanInfo();
        QDockWidget* dock = studio.probe.planInfoDock();
        QVERIFY(dock->isVisible());
        QCOMPARE(dock->windowTitle(), QStringLiteral(u"规划结果"));
        QVERIFY(dock->objectName().isEmpty());
        QCOMPARE(studio.nodes()->count(), 0);
        QCOMPARE(studio.sendTable()->rowCount(), 0);
        QCOMPARE(studio.part<QLabel>("schedCycleLabel")->text(), QStringLiteral(u"循环周期:0us  "));
        QCOMPARE(studio.part<QLabel>("slotLenLabel")->text(), QStringLiteral(u"时隙长度:0us"));
        studio.chooseTable(1);
        studio.clickPlanInfo();
        QVERIFY(!dock->isVisible());
        dock->setFloating(true);
        studio.clickPlanInfo();
        QVERIFY(dock->isVisible() && !dock->isFloating());
    }

    void choosingAgainAndAgainKeepsMemoryLevel()
    {
        PlannedStudio studio;
        studio.clickPlanInfo();
        studio.plan("avionics-line");
        const auto chooseAll = [&] {
            for (const int table : {1, 0}) {
                studio.chooseTable(table);
                for (int row = 0; row < studio.nodes()->count(); ++row) {
                    studio.nodes()->setCurrentRow(row);
                    QCoreApplication::processEvents();
                    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
                }
            }
        };
        constexpr int rounds = 10;
        for (int round = 0; round < rounds; ++round)
            chooseAll();
        const qint64 before = heapUse();
        for (int round = 0; round < rounds; ++round)
            chooseAll();
        const qint64 grown = heapUse() - before;
        QVERIFY2(grown < rounds * qint64(10000), qPrintable(QString::number(grown)));
    }

    void runNodePortCards()
    {
        PlannedStudio studio;
        studio.clickPlanInfo();
        studio.plan("avionics-line");
        QCOMPARE(studio.part<QLabel>("schedCycleLabel")->text(),
                 QStringLiteral(u"循环周期:80000us  "));
        QCOMPARE(studio.nodes()->currentRow(), 0);
        QCOMPARE(studio.nodes()->count(), studio.probe.sendNodeInfo().size());
        studio.clickNode(QStringLiteral("SW-A1"));
        const int nodeID = studio.nodes()->currentItem()->data(Qt::UserRole).toInt();
        const auto ports = studio.probe.sendNodeInfo().value(nodeID);
        TimeSlotInfo* table = studio.sendTable();
        QCOMPARE(table->rowCount(), ports.size());
        QCOMPARE(table->columnCount(), 401);
        QCOMPARE(table->currentRow(), 0);
        const int lastRow = table->rowCount() - 1;
        PlannedStudio::clickPort(table, lastRow);
        const QAbstractItemModel* cards = studio.cards("flowListWindow_send");
        QCOMPARE(cards->rowCount(), slotsOf(ports.last()));
        const int flow = ports.last().firstKey();
        const auto texts = cards->index(0, 0).data(Qt::UserRole + 1).value<ItemData>();
        QCOMPARE(texts.caption, QStringLiteral(u"流id %1-0").arg(flow));
        auto* list = studio.part<FlowListWindow>("flowListWindow_send");
        QVERIFY(list->isVisible() && !list->isWindow());
        QVERIFY(list->width() > 200 && list->height() > 60);
        // Grid and card show the flow in the same colour.
        const int slot = ports.last().first().firstKey();
        QVERIFY(table->cellWidget(lastRow, slot + 1)
                    ->styleSheet()
                    .contains(cards->index(0, 0).data(Qt::UserRole).value<QColor>().name()));
    }

    void choosingTheOtherTableShowsItsFirstNode()
    {
        PlannedStudio studio;
        studio.plan("avionics-line");
        studio.clickPlanInfo();
        studio.clickNode(QStringLiteral("SW-B2"));
        studio.chooseTable(1);
        QCOMPARE(studio.part<QStackedWidget>("stackedWidget")->currentIndex(), 1);
        QCOMPARE(studio.nodes()->currentRow(), 0);
        QCOMPARE(studio.nodes()->count(), studio.probe.rcvNodeInfo().size());
        const int nodeID = studio.nodes()->currentItem()->data(Qt::UserRole).toInt();
        QCOMPARE(nodeID, studio.probe.rcvNodeInfo().firstKey());
        QCOMPARE(studio.rcvTable()->rowCount(), studio.probe.rcvNodeInfo().first().size());
        const QAbstractItemModel* cards = studio.cards("flowListWindow_rcv");
        QCOMPARE(cards->rowCount(), slotsOf(studio.probe.rcvNodeInfo().first().first()));
        QVERIFY(cards->index(0, 0)
                    .data(Qt::UserRole + 1)
                    .value<ItemData>()
                    .slotText.startsWith(QStringLiteral(u"接收时隙编号: ")));
    }

    void receiverStandsInTheReceiveListOnly()
    {
        PlannedStudio studio;
        studio.plan("industrial-tree");
        studio.clickPlanInfo();
        const QString panel = QStringLiteral("HMI");
        QVERIFY(studio.nodes()->findItems(panel, Qt::MatchExactly).isEmpty());
        studio.chooseTable(1);
        studio.clickNode(panel);
        QCOMPARE(studio.rcvTable()->rowCount(), 1);
        QCOMPARE(usedCells(studio.rcvTable()), 48);
    }

    void newRunNeverMixesWithTheOldOne()
    {
        PlannedStudio studio;
        studio.plan("avionics-line");
        studio.clickPlanInfo();
        studio.clickNode(QStringLiteral("SW-B2"));
        studio.plan("ring");
        QCOMPARE(studio.nodes()->count(), studio.probe.sendNodeInfo().size());
        QVERIFY(studio.nodes()->findItems(QStringLiteral("SW-B2"), Qt::MatchExactly).isEmpty());
        QCOMPARE(studio.sendTable()->columnCount(), 101);
        QCOMPARE(studio.sendTable()->rowCount(), studio.probe.sendNodeInfo().first().size());
        studio.plan("fails-resolution"); // the old result stays as it is
        QCOMPARE(studio.sendTable()->columnCount(), 101);
    }

    void emptyScheduleAfterAFullOneShowsNothingOfIt()
    {
        PlannedStudio studio;
        studio.plan("avionics-line");
        studio.clickPlanInfo();
        QVERIFY(studio.sendTable()->horizontalHeaderItem(1));
        writeFile(QStringLiteral("OutputXML/vek_output.xml"), "<vek_output><flows/></vek_output>");
        QMetaObject::invokeMethod(&studio.window, "parse_vek_output");
        QMetaObject::invokeMethod(&studio.window, "updateNodeInfo");
        QCOMPARE(studio.nodes()->count(), 0);
        QCOMPARE(studio.sendTable()->rowCount(), 0);
        QVERIFY(!studio.sendTable()->horizontalHeaderItem(1));
        QCOMPARE(studio.cards("flowListWindow_send")->rowCount(), 0);
    }

    void statusBarTellsWhatImportAndExportDo()
    {
        PlannedStudio studio;
        studio.clickPlanInfo();
        QStringList tips;
        for (const QAction* action : studio.probe.planInfoDock()->findChildren<QAction*>()) {
            if (!action->statusTip().isEmpty())
                tips.append(action->text() + QStringLiteral(": ") + action->statusTip());
        }
        QCOMPARE(tips,
                 (QStringList{QStringLiteral(u"导入: 导入xml"), QStringLiteral(u"导出: 导出xml")}));
    }

    void slotsBeyondTheCycleHaveCardsButNoCells()
    {
        PlannedStudio studio;
        studio.plan("industrial-tree");
        QMetaObject::invokeMethod(&studio.window, "parse_vek_output");
        QByteArray document = readFile(QStringLiteral("OutputXML/vek_output.xml"));
        document.replace("<schedCycle>128000<", "<schedCycle>2000<");
        writeFile(QStringLiteral("OutputXML/vek_output.xml"), document);
        QMetaObject::invokeMethod(&studio.window, "parse_vek_output");
        studio.clickPlanInfo();
        studio.clickNode(QStringLiteral("PLC1"));
        QCOMPARE(studio.sendTable()->columnCount(), 11);
        QVERIFY(studio.cards("flowListWindow_send")->rowCount() > 10);
    }

    void everySlotOfEveryPortHasItsCell()
    {
        PlannedStudio studio;
        studio.plan("ring");
        studio.clickPlanInfo();
        for (int row = 0; row < studio.nodes()->count(); ++row) {
            studio.nodes()->setCurrentRow(row);
            const int nodeID = studio.nodes()->item(row)->data(Qt::UserRole).toInt();
            int expected = 0;
            for (const auto& flows : studio.probe.sendNodeInfo().value(nodeID)) {
                QSet<int> used;
                for (const auto& slotSet : flows) {
                    for (int slot : slotSet.keys()) {
                        if (slot < studio.probe.slotCount())
                            used.insert(slot);
                    }
                }
                expected += used.size();
            }
            QCOMPARE(usedCells(studio.sendTable()), expected);
        }
    }
};

ROTUNDA_GUI_TEST_MAIN(PlanInfoTest)
#include "PlanInfoTest.moc"
