#include "views/FlowColorTable.h"
#include "views/FlowListWindow.h"
#include "views/ItemDelegate.h"
#include "views/NodeList.h"
#include "views/PlanInfoWindow.h"
#include "views/TimeSlotInfo.h"

#include "tests/support/Failure.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/HeapUse.h"
#include "tests/support/ToolTips.h"

#include <QGroupBox>
#include <QHeaderView>
#include <QListView>
#include <QListWidget>
#include <QPainter>
#include <QProgressBar>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSplitter>
#include <QStandardItemModel>

#include <algorithm>

// The nodes, the grid and the cards; cards are read at the points that their geometry names.

static QMap<int, qint64> slotSet(const QList<int>& numbers)
{
    QMap<int, qint64> set;
    for (int number : numbers)
        set.insert(number, 0);
    return set;
}

static QColor barColor(const QWidget* bar)
{
    QImage image(bar->size(), QImage::Format_RGB32);
    image.fill(Qt::magenta);
    const_cast<QWidget*>(bar)->render(&image);
    return image.pixelColor(image.width() / 8, image.height() / 2);
}

static int shownBars(const QWidget& table)
{
    const auto bars = table.findChildren<QProgressBar*>();
    return int(std::count_if(bars.begin(), bars.end(),
                             [](const QProgressBar* bar) { return bar->isVisible(); }));
}

static QModelIndex card(QStandardItemModel& model, const QColor& color, const ItemData& texts)
{
    auto* item = new QStandardItem;
    item->setData(color, Qt::UserRole);
    item->setData(QVariant::fromValue(texts), Qt::UserRole + 1);
    model.appendRow(item);
    return item->index();
}

/// A card painted at (20, 30), 200 by 60, on magenta.
static QImage paintCard(const QModelIndex& index, QStyle::State state)
{
    QImage image(260, 120, QImage::Format_RGB32);
    image.fill(Qt::magenta);
    QPainter painter(&image);
    QStyleOptionViewItem option;
    option.rect = QRect(20, 30, 200, 60);
    option.state = state;
    ItemDelegate().paint(&painter, option, index);
    return image;
}

static int count(const QImage& image, const QRect& part, const QColor& color)
{
    int found = 0;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x)
            found += image.pixelColor(x, y) == color;
    }
    return found;
}

/// A grid on the screen, asked for tool tips as the mouse does.
struct ShownGrid {
    TimeSlotInfo table{nullptr};

    ShownGrid(const PortSchedule& ports, int slotCount)
    {
        table.resize(900, 200);
        table.showPorts(ports, slotCount);
        table.show();
        if (!QTest::qWaitForWindowExposed(&table))
            failTest("the grid is not shown");
    }
    ~ShownGrid() { QToolTip::hideText(); }

    QString toolTipAt(int row, int column)
    {
        askForToolTip(table, table.model()->index(row, column));
        return QToolTip::text();
    }
};

class ScheduleViewsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { fillFlowColorTable(); }

    // ---- Nodes

    void nodeListShowsNamesIconsAndIds()
    {
        const NodeInfo_Xml schedule{{3, {}}, {1, {}}, {2, {}}};
        const NodeNames names{{1, {1, QStringLiteral("\"A\"")}}, {2, {0, QStringLiteral("\"S\"")}}};
        QListWidget list;
        QSignalSpy selections(&list, &QListWidget::itemSelectionChanged);
        appendNodes(list, NodeIcons(), schedule, names);
        QCOMPARE(list.count(), 3);
        QCOMPARE(list.item(0)->text(), QStringLiteral("A"));
        QCOMPARE(list.item(1)->text(), QStringLiteral("S"));
        QCOMPARE(list.item(1)->data(Qt::UserRole).toInt(), 2);
        QCOMPARE(list.currentRow(), 0);
        QVERIFY(!selections.isEmpty());
        const QSize size(112, 84);
        QCOMPARE(list.item(0)->icon().pixmap(size).toImage(),
                 QIcon(QStringLiteral(":/images/endpoint.png")).pixmap(size).toImage());
    }

    void nodeWithoutNameRecordIsANamelessSwitch()
    {
        QListWidget list;
        appendNodes(list, NodeIcons(), {{3, {}}}, {});
        QCOMPARE(list.item(0)->text(), QString());
        const QSize size(112, 84);
        QCOMPARE(list.item(0)->icon().pixmap(size).toImage(),
                 QIcon(QStringLiteral(":/images/switch.png")).pixmap(size).toImage());
    }

    void nodeOfAnotherKindIsSkipped()
    {
        QListWidget list;
        appendNodes(list, NodeIcons(), {{3, {}}}, {{3, {2, QStringLiteral("\"X\"")}}});
        QCOMPARE(list.count(), 0);
    }

    // ---- Grid

    void gridHasARowAPortAndAColumnASlot()
    {
        TimeSlotInfo table(nullptr);
        table.setupSlotTable({{7, {}}, {2, {}}}, 3);
        QCOMPARE(table.columnCount(), 4);
        QStringList headers;
        for (int i = 0; i < 4; ++i)
            headers.append(table.horizontalHeaderItem(i)->text());
        QCOMPARE(headers, (QStringList{QStringLiteral(u"端口号"), QStringLiteral(u"时隙0"),
                                       QStringLiteral(u"时隙1"), QStringLiteral(u"时隙2")}));
        QCOMPARE(table.rowCount(), 2);
        QCOMPARE(table.item(0, 0)->text(), QStringLiteral(u"端口2"));
        QCOMPARE(table.item(1, 0)->text(), QStringLiteral(u"端口7"));
        QCOMPARE(table.item(0, 0)->textAlignment(), int(Qt::AlignCenter));
        QCOMPARE(table.selectionMode(), QAbstractItemView::SingleSelection);
        QCOMPARE(table.selectionBehavior(), QAbstractItemView::SelectItems);
        QCOMPARE(table.editTriggers(), QAbstractItemView::NoEditTriggers);
        QVERIFY(table.verticalHeader()->isHidden());
        QCOMPARE(table.horizontalHeader()->sectionResizeMode(1), QHeaderView::Fixed);
        QCOMPARE(table.styleSheet(), QStringLiteral("QTableWidget::item{padding:0px;}"));
    }

    void columnHasRoomForASlotOfFourDigits()
    {
        TimeSlotInfo table(nullptr);
        table.setupSlotTable({{0, {}}}, 10000);
        const QHeaderView* header = table.horizontalHeader();
        const int needed = header->fontMetrics().horizontalAdvance(QStringLiteral(u"时隙9999"));
        QVERIFY(header->sectionSize(9999) > needed);
        QVERIFY(header->sectionSize(9999) < 2 * needed);
        QCOMPARE(header->sectionSize(10000), header->sectionSize(1));
    }

    void nodeWithoutPortsGivesHeadersOnly()
    {
        TimeSlotInfo table(nullptr);
        table.setupSlotTable({}, 5);
        QCOMPARE(table.rowCount(), 0);
        QCOMPARE(table.columnCount(), 6);
    }

    void noSlotsGiveThePortColumnAlone()
    {
        TimeSlotInfo table(nullptr);
        table.setupSlotTable({{1, {}}}, 0);
        QCOMPARE(table.columnCount(), 1);
        table.setupSlotTable({}, -5);
        QCOMPARE(table.columnCount(), 1);
    }

    void usedCellIsABarWithTheFlowsColourOnItsFirstQuarter()
    {
        TimeSlotInfo table(nullptr);
        table.setupSlotTable({{1, {}}}, 4);
        table.setSlotCell(0, 2, 5);
        auto* bar = qobject_cast<QProgressBar*>(table.cellWidget(0, 3));
        QVERIFY(bar);
        QCOMPARE(bar->value(), 25);
        QVERIFY(!bar->isTextVisible());
        QCOMPARE(bar->styleSheet(),
                 QStringLiteral("QProgressBar{background:#ffffff;border-width:0px;"
                                "border-radius:0px;text-align:center;}"
                                "QProgressBar::chunk{border-radius:0px;}"
                                "QProgressBar{color:#0a0a0a;}QProgressBar::chunk{background:%1;}")
                     .arg(flowColor(5).name()));
        table.resize(600, 200);
        table.show();
        QVERIFY(QTest::qWaitForWindowExposed(&table));
        QCOMPARE(barColor(bar), flowColor(5));
        QImage image(bar->size(), QImage::Format_RGB32);
        bar->render(&image);
        QCOMPARE(image.pixelColor(image.width() * 3 / 4, image.height() / 2), QColor(Qt::white));
    }

    void flowSetLastIsShown()
    {
        TimeSlotInfo table(nullptr);
        table.setupSlotTable({{1, {}}}, 4);
        table.setSlotCell(0, 2, 5);
        table.setSlotCell(0, 2, 1006);
        QVERIFY(table.cellWidget(0, 3)->styleSheet().contains(flowColor(6).name()));
    }

    void slotWithoutAColumnIsPassedOver()
    {
        TimeSlotInfo table(nullptr);
        table.showPorts({{1, {{5, slotSet({-1, 0, 3, 4, 2147483647})}}}}, 4);
        QVERIFY(!table.cellWidget(0, 0));
        QVERIFY(table.cellWidget(0, 1));
        QVERIFY(table.cellWidget(0, 4));
        table.setSlotCell(9, 0, 5);
        QCOMPARE(table.columnCount(), 5);
    }

    void cycleOfMillionsOfSlotsIsCut()
    {
        TimeSlotInfo table(nullptr);
        table.setupSlotTable({}, 2147483647);
        QCOMPARE(table.columnCount(), TimeSlotInfo::mostSlots + 1);
    }

    void newPortsReplaceTheOldOnes()
    {
        TimeSlotInfo table(nullptr);
        table.show();
        table.showPorts({{1, {{5, slotSet({0})}}}, {2, {}}}, 4);
        table.showPorts({{3, {{6, slotSet({1})}}}}, 4);
        QCOMPARE(table.rowCount(), 1);
        QVERIFY(!table.cellWidget(0, 1));
        QVERIFY(table.cellWidget(0, 2));
        QVERIFY(table.isVisible());
        QVERIFY(table.updatesEnabled());
    }

    // ---- Tool tips

    void usedCellNamesItsFlowAsTheCardsDo()
    {
        ShownGrid grid({{2, {{5, slotSet({1, 3})}}}, {7, {{6, slotSet({3})}}}}, 5);
        QCOMPARE(grid.toolTipAt(0, 4), QStringLiteral(u"流id 5-1"));
        QCOMPARE(grid.toolTipAt(1, 4), QStringLiteral(u"流id 6-0"));
    }

    void sharedSlotNamesAllItsFlowsAndSaysSo()
    {
        ShownGrid grid({{2, {{25, slotSet({3})}, {10, slotSet({1, 3})}}}}, 5);
        QCOMPARE(grid.toolTipAt(0, 4), QStringLiteral(u"流id 10-1\n流id 25-0\n多个流共用此时隙"));
    }

    void unusedCellAndPortColumnHaveNoToolTip()
    {
        ShownGrid grid({{2, {{5, slotSet({1})}}}}, 5);
        for (int column : {3, 0}) {
            QVERIFY(!grid.toolTipAt(0, 2).isEmpty());
            QVERIFY(QToolTip::isVisible());
            grid.toolTipAt(0, column);
            QTRY_VERIFY(!QToolTip::isVisible());
        }
    }

    void slotBeforeTheCycleIsNoToolTipOfThePort()
    {
        ShownGrid grid({{2, {{5, slotSet({-1, 1})}}}}, 5);
        QVERIFY(!grid.toolTipAt(0, 2).isEmpty());
        grid.toolTipAt(0, 0);
        QTRY_VERIFY(!QToolTip::isVisible());
    }

    void placeWithoutAPortHasNoToolTip()
    {
        ShownGrid grid({{2, {{5, slotSet({1})}}}}, 5);
        grid.table.setRowCount(2);
        grid.toolTipAt(1, 2);
        QTRY_VERIFY(!QToolTip::isVisible());
        grid.table.showToolTip(QModelIndex());
        QTRY_VERIFY(!QToolTip::isVisible());
    }

    void toolTipOfACellIsNotTheGridsOwn()
    {
        ShownGrid grid({{2, {{5, slotSet({1})}}}}, 5);
        grid.table.setToolTip(QStringLiteral("grid"));
        QCOMPARE(grid.toolTipAt(0, 2), QStringLiteral(u"流id 5-0"));
    }

    void toolTipsFollowThePortsThatAreShown()
    {
        ShownGrid grid({{2, {{5, slotSet({1})}}}}, 5);
        grid.table.showPorts({{2, {{8, slotSet({1})}}}}, 5);
        QCOMPARE(grid.toolTipAt(0, 2), QStringLiteral(u"流id 8-0"));
    }

    void walkingByKeysShowsToolTips()
    {
        ShownGrid grid({{2, {{5, slotSet({0})}}}}, 5);
        grid.table.setCurrentCell(0, 0);
        QTest::keyClick(&grid.table, Qt::Key_Right);
        QCOMPARE(QToolTip::text(), QStringLiteral(u"流id 5-0"));
        QTest::keyClick(&grid.table, Qt::Key_Right);
        QTRY_VERIFY(!QToolTip::isVisible());
    }

    // ---- Many cells

    void onlyBarsInViewAreShownAndAllAreThere()
    {
        TimeSlotInfo table(nullptr);
        table.resize(600, 200);
        table.show();
        QList<int> all;
        for (int slot = 0; slot < 3000; ++slot)
            all.append(slot);
        table.showPorts({{1, {{5, slotSet(all)}}}, {2, {{6, slotSet(all)}}}}, 3000);
        QVERIFY(QTest::qWaitForWindowExposed(&table));
        for (const int slot : {0, 1500, 2999}) {
            auto* bar = qobject_cast<QProgressBar*>(table.cellWidget(1, slot + 1));
            QVERIFY(bar && bar->styleSheet().contains(flowColor(6).name()));
            QCOMPARE(bar->isVisible(), slot == 0);
        }
        QVERIFY(shownBars(table) < 30);
        QCOMPARE(table.findChildren<QProgressBar*>().size(), 6000);
    }

    void scrollingShowsTheCellsThatComeIntoView()
    {
        TimeSlotInfo table(nullptr);
        table.resize(600, 200);
        table.show();
        table.showPorts({{1, {{5, slotSet({0, 1500})}}}}, 3000);
        QVERIFY(QTest::qWaitForWindowExposed(&table));
        QWidget* first = table.cellWidget(0, 1);
        QWidget* later = table.cellWidget(0, 1501);
        QVERIFY(first->isVisible() && !later->isVisible());
        table.scrollTo(table.model()->index(0, 1501));
        QVERIFY(!first->isVisible() && later->isVisible());
        QCOMPARE(later->geometry(), table.visualRect(table.model()->index(0, 1501)));
        table.horizontalScrollBar()->setValue(0);
        QVERIFY(first->isVisible() && !later->isVisible());
        QCOMPARE(first->geometry(), table.visualRect(table.model()->index(0, 1)));
        QCOMPARE(barColor(first), flowColor(5));
    }

    void cellColouredInAShownGridIsSeenAtOnce()
    {
        TimeSlotInfo table(nullptr);
        table.show();
        table.showPorts({{1, {}}}, 4);
        table.setSlotCell(0, 0, 5);
        QVERIFY(table.cellWidget(0, 1)->isVisible());
    }

    void choosingBusyNodesAgainAndAgainKeepsMemoryLevel()
    {
        PortSchedule busy;
        for (int port = 0; port < 16; ++port)
            busy[port][port] = slotSet({1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23, 25, 27, 29, 31});
        const PortSchedule quiet{{0, {{1, slotSet({2, 4})}}}};
        ShownGrid grid(busy, 64);
        const auto chooseBoth = [&](int rounds) {
            for (int round = 0; round < rounds; ++round) {
                grid.table.showPorts(quiet, 64);
                grid.table.showPorts(busy, 64);
                QCoreApplication::processEvents();
            }
        };
        chooseBoth(10);
        const qint64 before = heapUse();
        chooseBoth(40);
        const qint64 grown = heapUse() - before;
        QVERIFY2(grown < 80000, qPrintable(QString::number(grown)));
    }

    void barsOfEarlierNodesDoNotWaitForTheEventLoop()
    {
        TimeSlotInfo table(nullptr);
        table.show();
        for (int round = 0; round < 20; ++round)
            table.showPorts({{1, {{5, slotSet({0, 1, 900})}}}}, 1000);
        QCOMPARE(table.findChildren<QProgressBar*>().size(), 3);
    }

    // ---- Cards

    void titleOfTheCardsIsLegibleOnADarkDesktop()
    {
        const QPalette before = QApplication::palette();
        QApplication::setPalette(QPalette(QColor(50, 50, 50), QColor(30, 30, 30)));
        const FlowListWindow window(nullptr);
        const auto* box = window.findChild<QGroupBox*>();
        QCOMPARE(box->palette().color(QPalette::WindowText), QColor(Qt::black));
        QApplication::setPalette(before);
    }

    void eachSlotOfAFlowIsACard()
    {
        FlowListWindow window(nullptr);
        const NodeInfo_Xml schedule{{1, {{2, {{6, slotSet({4})}, {5, slotSet({9, 3, 7})}}}}}};
        window.fillFlowList(schedule, 1, 2, FlowListWindow::Send);
        const QAbstractItemModel* model = window.findChild<QListView*>()->model();
        QStringList cards;
        for (int row = 0; row < model->rowCount(); ++row) {
            const auto texts = model->index(row, 0).data(Qt::UserRole + 1).value<ItemData>();
            cards.append(texts.caption + QLatin1Char('/') + texts.slotText);
        }
        QCOMPARE(cards, (QStringList{QStringLiteral(u"流id 5-0/发送时隙编号: 3"),
                                     QStringLiteral(u"流id 5-1/发送时隙编号: 7"),
                                     QStringLiteral(u"流id 5-2/发送时隙编号: 9"),
                                     QStringLiteral(u"流id 6-0/发送时隙编号: 4")}));
        QCOMPARE(model->index(3, 0).data(Qt::UserRole).value<QColor>(), flowColor(6));
        window.fillFlowList(schedule, 1, 2, FlowListWindow::Receive);
        QCOMPARE(model->index(0, 0).data(Qt::UserRole + 1).value<ItemData>().slotText,
                 QStringLiteral(u"接收时隙编号: 3"));
        window.fillFlowList(schedule, 1, 9, FlowListWindow::Send);
        QCOMPARE(model->rowCount(), 0);
        window.fillFlowList(schedule, 9, 2, FlowListWindow::Send);
        QCOMPARE(model->rowCount(), 0);
        QCOMPARE(window.findChild<QGroupBox*>(QStringLiteral("groupBox"))->title(),
                 QStringLiteral(u"端口消息列表"));
    }

    void cardIs160By60()
    {
        QCOMPARE(ItemDelegate().sizeHint(QStyleOptionViewItem(), QModelIndex()), QSize(160, 60));
    }

    void swatchLiesRightOfTheCaption()
    {
        QStandardItemModel model;
        const QModelIndex index =
            card(model, Qt::red, {QStringLiteral("caption"), QStringLiteral("slot")});
        const QImage image = paintCard(index, QStyle::State_None);
        // Reduced rectangle 199 by 59 at (20, 30): caption 169 wide from x 30, swatch from 198.
        QCOMPARE(image.pixelColor(203, 45), QColor(Qt::red));
        QCOMPARE(image.pixelColor(199, 41), QColor(Qt::red));
        QVERIFY(image.pixelColor(196, 45) != QColor(Qt::red));
        QVERIFY(image.pixelColor(203, 38) != QColor(Qt::red));
        QVERIFY(image.pixelColor(203, 52) != QColor(Qt::red));
        QVERIFY(count(image, QRect(30, 40, 169, 20), Qt::black) > 0);
        QVERIFY(count(image, QRect(30, 64, 189, 20), QColor(68, 68, 68)) > 0);
    }

    void outlineTellsTheState_data()
    {
        QTest::addColumn<int>("state");
        QTest::addColumn<QColor>("outline");
        QTest::addColumn<QColor>("fill");
        const QColor none(Qt::magenta);
        QTest::newRow("plain") << int(QStyle::State_None) << QColor(Qt::gray) << none;
        QTest::newRow("hover") << int(QStyle::State_MouseOver) << QColor(Qt::green) << none;
        QTest::newRow("selected") << int(QStyle::State_Selected) << QColor(Qt::blue)
                                  << QColor(Qt::blue);
        QTest::newRow("selected under the mouse")
            << int(QStyle::State_Selected | QStyle::State_MouseOver) << QColor(Qt::blue)
            << QColor(Qt::blue);
    }

    void outlineTellsTheState()
    {
        QFETCH(int, state);
        QFETCH(QColor, outline);
        QFETCH(QColor, fill);
        QStandardItemModel model;
        const QModelIndex index = card(model, Qt::red, {QStringLiteral("XX"), QString()});
        const QImage image = paintCard(index, QStyle::State(state));
        QVERIFY(count(image, QRect(60, 29, 100, 3), outline) >= 90);
        QVERIFY(count(image, QRect(19, 45, 3, 30), outline) >= 25);
        QCOMPARE(image.pixelColor(120, 75), fill);
        QCOMPARE(image.pixelColor(20, 30), QColor(Qt::magenta)); // the rounded corner
        QVERIFY(count(image, QRect(30, 40, 100, 20), Qt::black) > 0);
    }

    void cardUnderTheMouseIsOutlined()
    {
        FlowListWindow window(nullptr);
        window.fillFlowList({{1, {{0, {{5, slotSet({3, 9})}}}}}}, 1, 0, FlowListWindow::Send);
        window.resize(400, 300);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        auto* list = window.findChild<QListView*>();
        const QRect first = list->visualRect(list->model()->index(0, 0));
        const auto greenPixels = [&] {
            return count(list->viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32),
                         first, Qt::green);
        };
        QCOMPARE(greenPixels(), 0);
        QWidget* viewport = list->viewport();
        QTest::mouseMove(window.windowHandle(), viewport->mapTo(&window, first.center()));
        QTRY_VERIFY(greenPixels() > 100);
        QTest::mouseMove(window.windowHandle(), QPoint(1, 1));
        QTRY_COMPARE(greenPixels(), 0);
    }

    void planPanelBeginsWithANarrowListOfNodes()
    {
        const PlanInfoWindow panel(nullptr);
        const auto* across =
            panel.centralWidget()->findChild<QSplitter*>(QString(), Qt::FindDirectChildrenOnly);
        const int nodes = across->sizes().first();
        QVERIFY(nodes >= 98 && nodes <= 100); // the handle takes its share
    }

    void invalidIndexPaintsNothingAndBadDataPaintsAnEmptyCard()
    {
        QImage image = paintCard(QModelIndex(), QStyle::State_Selected);
        QCOMPARE(count(image, image.rect(), Qt::magenta), image.width() * image.height());
        QStandardItemModel model;
        auto* item = new QStandardItem(QStringLiteral("text"));
        item->setData(QStringLiteral("no texts"), Qt::UserRole + 1);
        model.appendRow(item);
        image = paintCard(item->index(), QStyle::State_None);
        QCOMPARE(count(image, QRect(30, 64, 150, 20), QColor(68, 68, 68)), 0);
    }
};

ROTUNDA_GUI_TEST_MAIN(ScheduleViewsTest)
#include "ScheduleViewsTest.moc"
