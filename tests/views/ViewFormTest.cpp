#include "views/FlowColorTable.h"
#include "views/FlowListWindow.h"
#include "views/ItemDelegate.h"
#include "views/NodeList.h"
#include "views/PlanInfoWindow.h"
#include "views/TimeSlotInfo.h"

#include "tests/support/GuiTestMain.h"
#include "tests/support/HeapUse.h"
#include "tests/views/DrawnLines.h"

#include <QAction>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QListView>
#include <QListWidget>
#include <QPainter>
#include <QProgressBar>
#include <QProxyStyle>
#include <QSplitter>
#include <QStackedWidget>
#include <QStandardItemModel>
#include <QToolBar>

// What the views are made of: each name, text, picture and measure.

namespace
{

template <typename Widget>
QStringList namesOf(const QList<Widget*>& widgets)
{
    QStringList names;
    for (const Widget* widget : widgets)
        names.append(widget->objectName());
    return names;
}

QImage picture(const QIcon& icon)
{
    return icon.pixmap(QSize(112, 84)).toImage();
}

QImage pictureOf(const char* resource)
{
    return picture(QIcon(QString::fromLatin1(resource)));
}

/// A style whose layouts are wider than usual.
class WideStyle : public QProxyStyle
{
public:
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override
    {
        const bool isSpacing =
            metric == PM_LayoutHorizontalSpacing || metric == PM_LayoutVerticalSpacing;
        return isSpacing ? 23 : QProxyStyle::pixelMetric(metric, option, widget);
    }
};

/// What the delegate draws of a card into 200 by 60 at (20, 30).
QStringList cardLines(QStyle::State state)
{
    QStandardItemModel model;
    auto* item = new QStandardItem;
    item->setData(QColor(Qt::red), Qt::UserRole);
    item->setData(
        QVariant::fromValue(ItemData{QStringLiteral("a caption longer than its card is wide"),
                                     QStringLiteral("slot")}),
        Qt::UserRole + 1);
    model.appendRow(item);
    QStyleOptionViewItem option;
    option.rect = QRect(20, 30, 200, 60);
    option.state = state;
    return drawnLines([&](QPainter& painter) {
        painter.setPen(Qt::magenta);
        painter.setBrush(Qt::yellow);
        ItemDelegate().paint(&painter, option, item->index());
        painter.drawRect(1, 2, 3, 4); // with the pen and the brush that were set before
    });
}

} // namespace

class ViewFormTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { fillFlowColorTable(); }

    // ---- Plan panel

    void planPanelHasItsToolBars()
    {
        const PlanInfoWindow panel(nullptr);
        QStringList bars;
        for (const QToolBar* bar : panel.findChildren<QToolBar*>())
            bars.append(bar->windowTitle());
        QCOMPARE(bars, (QStringList{QStringLiteral(u"导入导出xml"), QStringLiteral(u"调度表切换"),
                                    QStringLiteral(u"信息展示")}));
        QCOMPARE(panel.importAction->text(), QStringLiteral(u"导入"));
        QCOMPARE(panel.importAction->statusTip(), QStringLiteral(u"导入xml"));
        QCOMPARE(picture(panel.importAction->icon()), pictureOf(":/images/inport.webp"));
        QCOMPARE(panel.exportAction->text(), QStringLiteral(u"导出"));
        QCOMPARE(panel.exportAction->statusTip(), QStringLiteral(u"导出xml"));
        QCOMPARE(picture(panel.exportAction->icon()), pictureOf(":/images/outport.webp"));
        QVERIFY(!picture(panel.exportAction->icon()).isNull());
        QVERIFY(picture(panel.exportAction->icon()) != picture(panel.importAction->icon()));
        QCOMPARE(panel.tableType->parentWidget(), panel.findChildren<QToolBar*>()[1]);
        QCOMPARE(panel.tableType->objectName(), QStringLiteral("comboboxFlowTableType"));
        QCOMPARE(panel.tableType->itemText(0), QStringLiteral(u"发送控制表"));
        QCOMPARE(panel.tableType->itemText(1), QStringLiteral(u"接收控制表"));
        QCOMPARE(panel.tableType->count(), 2);
        QStringList labels;
        for (const QLabel* label : panel.findChildren<QLabel*>())
            labels.append(label->objectName() + QLatin1Char(' ') + label->text());
        QCOMPARE(labels, (QStringList{QStringLiteral(u"schedCycleLabel 循环周期:"),
                                      QStringLiteral(u"slotLenLabel 时隙长度:")}));
    }

    void planPanelHasNodesBesideTwoPages()
    {
        const PlanInfoWindow panel(nullptr);
        const auto* layout = qobject_cast<QGridLayout*>(panel.centralWidget()->layout());
        const auto* across = qobject_cast<QSplitter*>(layout->itemAtPosition(0, 0)->widget());
        QCOMPARE(across->orientation(), Qt::Horizontal);
        QCOMPARE(across->widget(0), panel.nodeList);
        QCOMPARE(panel.nodeList->objectName(), QStringLiteral("nodeInfoWidget"));
        QCOMPARE(panel.nodeList->iconSize(), QSize(50, 50));
        const auto* pages = qobject_cast<QStackedWidget*>(across->widget(1));
        QCOMPARE(pages->objectName(), QStringLiteral("stackedWidget"));
        QCOMPARE(pages->count(), 2);
        const TimeSlotInfo* const tables[] = {panel.sendTable, panel.receiveTable};
        const char* const variants[] = {"send", "rcv"};
        for (int i = 0; i < 2; ++i) {
            const auto* page = qobject_cast<QSplitter*>(pages->widget(i));
            const QString variant = QString::fromLatin1(variants[i]);
            QCOMPARE(page->orientation(), Qt::Vertical);
            QCOMPARE(page->widget(0), tables[i]);
            QCOMPARE(tables[i]->objectName(), QStringLiteral("timeSlotInfo_") + variant);
            const auto* flows = qobject_cast<FlowListWindow*>(page->widget(1));
            QCOMPARE(flows->objectName(), QStringLiteral("flowListWindow_") + variant);
        }
    }

    // As far as the handle between leaves them.
    void nodesHaveAHundredPixelsOfThePanel()
    {
        const PlanInfoWindow panel(nullptr);
        const auto* across =
            panel.centralWidget()->findChild<QSplitter*>(QString(), Qt::FindDirectChildrenOnly);
        QSplitter plain;
        plain.addWidget(new QListWidget);
        plain.addWidget(new QStackedWidget);
        plain.setSizes({100, plain.width() - 100});
        QCOMPARE(across->sizes(), plain.sizes());
    }

    // ---- Nodes

    void nodeHasItsIconNameAndToolTip()
    {
        QListWidget list;
        const NodeNames names{{1, {1, QStringLiteral("\"A \" B\"")}},
                              {2, {0, QStringLiteral("\"S\"")}}};
        appendNodes(list, NodeIcons(), {{1, {}}, {2, {}}}, names);
        QCOMPARE(list.item(0)->text(), QStringLiteral("A \" B"));
        QCOMPARE(list.item(0)->toolTip(), QStringLiteral("A \" B"));
        QCOMPARE(list.item(0)->data(Qt::UserRole).toInt(), 1);
        QCOMPARE(picture(list.item(0)->icon()), pictureOf(":/images/endpoint.png"));
        QCOMPARE(picture(list.item(1)->icon()), pictureOf(":/images/switch.png"));
        QVERIFY(picture(list.item(0)->icon()) != picture(list.item(1)->icon()));
        QCOMPARE(list.currentRow(), 0);
    }

    // ---- Cards

    void cardsStandInATitledBoxOnWhite()
    {
        QApplication::setStyle(new WideStyle);
        const FlowListWindow window(nullptr);
        const QWidget* central = window.centralWidget();
        QCOMPARE(central->objectName(), QStringLiteral("centralWidget"));
        QCOMPARE(central->styleSheet(),
                 QStringLiteral("QWidget#centralWidget{\nbackground-color: white;\n}"));
        const auto* layout = qobject_cast<QGridLayout*>(central->layout());
        QCOMPARE(layout->spacing(), 6);
        const auto* box = qobject_cast<QGroupBox*>(layout->itemAtPosition(0, 0)->widget());
        QCOMPARE(box->objectName(), QStringLiteral("groupBox"));
        QCOMPARE(box->title(), QStringLiteral(u"端口消息列表"));
        const auto* inside = qobject_cast<QGridLayout*>(box->layout());
        QCOMPARE(inside->spacing(), 6);
        const auto* list = qobject_cast<QListView*>(inside->itemAtPosition(0, 0)->widget());
        QCOMPARE(list->objectName(), QStringLiteral("listView"));
        QCOMPARE(list->styleSheet(),
                 QStringLiteral("QListView {\n   background-color: transparent;\n"
                                "\tborder:1px solid #EFEFEF;\n}"));
        QCOMPARE(list->editTriggers(), QAbstractItemView::NoEditTriggers);
        QVERIFY(list->viewport()->testAttribute(Qt::WA_Hover));
        QVERIFY(qobject_cast<ItemDelegate*>(list->itemDelegate()));
        QVERIFY(QMetaType::type("ItemData") != QMetaType::UnknownType);
    }

    void cardIsDrawnLineByLine_data()
    {
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("outline");
        QTest::newRow("plain") << int(QStyle::State_None) << QStringLiteral("#a0a0a4 none");
        QTest::newRow("hover") << int(QStyle::State_MouseOver) << QStringLiteral("#00ff00 none");
        QTest::newRow("selected") << int(QStyle::State_Selected)
                                  << QStringLiteral("#0000ff #0000ff");
    }

    void cardIsDrawnLineByLine()
    {
        QFETCH(int, state);
        QFETCH(QString, outline);
        const QString shape =
            QStringLiteral(" M(212.0,30.0) L(27.0,30.0) C(22.3,30.0) c(20.0,32.3) c(20.0,37.0)"
                           " L(20.0,82.0) C(20.0,86.7) c(22.3,89.0) c(27.0,89.0)"
                           " L(212.0,89.0) C(216.7,89.0) c(219.0,86.7) c(219.0,82.0)"
                           " L(219.0,37.0) C(219.0,32.3) c(216.7,30.0) c(212.0,30.0)");
        QCOMPARE(cardLines(QStyle::State(state)),
                 (QStringList{QStringLiteral("path ") + outline + shape,
                              QStringLiteral("rect #ff0000 #ff0000 (198,40) 10x10"),
                              QStringLiteral("text #000000 #ff0000 (30,40) Times 12 75: "
                                             "a caption longer than its card is wide"),
                              QStringLiteral("text #444444 #ff0000 (30,64) Times 10 50: slot"),
                              QStringLiteral("rect #ff00ff #ffff00 (1,2) 3x4")}));
    }

    // ---- Grid

    void barFillsAQuarterOfAHundred()
    {
        TimeSlotInfo table(nullptr);
        table.setupSlotTable({{1, {}}}, 1);
        table.setSlotCell(0, 0, 5);
        const auto* bar = qobject_cast<QProgressBar*>(table.cellWidget(0, 1));
        QCOMPARE(bar->minimum(), 0);
        QCOMPARE(bar->maximum(), 100);
        QCOMPARE(bar->value(), 25);
    }

    void columnIsAsWideAsItsLabelAndOneMargin()
    {
        TimeSlotInfo table(nullptr);
        table.setupSlotTable({}, 1);
        const QHeaderView* header = table.horizontalHeader();
        const int margin = header->style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, header);
        QCOMPARE(header->sectionSize(0),
                 header->fontMetrics().horizontalAdvance(QStringLiteral(u"时隙9999")) + margin);
    }

    void columnsThatComeAndGoKeepTheirLabels()
    {
        TimeSlotInfo table(nullptr);
        const auto labels = [&table] {
            QStringList texts;
            for (int column = 0; column < table.columnCount(); ++column)
                texts.append(table.horizontalHeaderItem(column)->text());
            return texts;
        };
        table.setupSlotTable({}, 2);
        table.horizontalHeaderItem(1)->setText(QStringLiteral("given"));
        table.horizontalHeaderItem(1)->setToolTip(QStringLiteral("told"));
        QVERIFY(!table.horizontalHeaderItem(2)->data(Qt::ToolTipRole).isValid());
        table.setupSlotTable({}, 3);
        QCOMPARE(labels(), (QStringList{QStringLiteral(u"端口号"), QStringLiteral("given"),
                                        QStringLiteral(u"时隙1"), QStringLiteral(u"时隙2")}));
        QCOMPARE(table.horizontalHeaderItem(1)->toolTip(), QStringLiteral("told"));
        table.setupSlotTable({}, 1);
        table.setupSlotTable({}, 2000);
        QCOMPARE(labels().last(), QStringLiteral(u"时隙1999"));
        QCOMPARE(labels().mid(1, 2),
                 (QStringList{QStringLiteral("given"), QStringLiteral(u"时隙1")}));
    }

    void labelsThatComeAndGoKeepMemoryLevel()
    {
        TimeSlotInfo table(nullptr);
        const auto comeAndGo = [&table](int rounds) {
            for (int round = 0; round < rounds; ++round) {
                table.setupSlotTable({}, 2000);
                table.setupSlotTable({}, 0);
            }
        };
        comeAndGo(3);
        const qint64 before = heapUse();
        comeAndGo(20);
        const qint64 grown = heapUse() - before;
        QVERIFY2(grown < 200000, qPrintable(QString::number(grown)));
    }

    void settingUpAnewGivesTheGridItsHabitsBack()
    {
        TimeSlotInfo table(nullptr);
        table.setSelectionBehavior(QAbstractItemView::SelectRows);
        table.setSelectionMode(QAbstractItemView::NoSelection);
        table.setEditTriggers(QAbstractItemView::AllEditTriggers);
        table.setupSlotTable({{1, {}}}, 4);
        QCOMPARE(table.selectionBehavior(), QAbstractItemView::SelectItems);
        QCOMPARE(table.selectionMode(), QAbstractItemView::SingleSelection);
        QCOMPARE(table.editTriggers(), QAbstractItemView::NoEditTriggers);
    }

    void gridIsPaintedAndItsBarsAreSeenAtOnce()
    {
        TimeSlotInfo table(nullptr);
        table.resize(600, 200);
        table.show();
        QVERIFY(QTest::qWaitForWindowExposed(&table));
        table.showPorts({{1, {{5, {{0, 0}}}}}}, 4);
        QVERIFY(table.cellWidget(0, 1)->isVisible());
        const QRect cell = table.visualRect(table.model()->index(0, 1));
        QCOMPARE(table.cellWidget(0, 1)->geometry(), cell);
        const QRect label = table.visualRect(table.model()->index(0, 0));
        const QImage image = table.viewport()->grab(label).toImage();
        QSet<QRgb> colors;
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 0; y < image.height(); ++y)
                colors.insert(image.pixel(x, y));
        }
        QVERIFY(colors.size() > 3); // the name of the port
    }

    void portsOfASecondNodeStandBehindTheFirstOnes()
    {
        TimeSlotInfo table(nullptr);
        table.setupSlotTable({{7, {{5, {{1, 0}}}}}}, 3);
        table.setupSlotTable({{2, {{6, {{1, 0}}}}}, {3, {}}}, 3);
        QStringList ports;
        for (int row = 0; row < table.rowCount(); ++row)
            ports.append(table.item(row, 0)->text());
        QCOMPARE(ports, (QStringList{QStringLiteral(u"端口7"), QStringLiteral(u"端口2"),
                                     QStringLiteral(u"端口3")}));
        table.setSlotCell(2, 2, 5);
        table.setSlotCell(3, 0, 5);
        table.setSlotCell(-1, 0, 5);
        table.setSlotCell(0, 3, 5);
        QCOMPARE(table.findChildren<QProgressBar*>().size(), 1);
        QVERIFY(table.cellWidget(2, 3));
    }
};

ROTUNDA_GUI_TEST_MAIN(ViewFormTest)
#include "ViewFormTest.moc"
