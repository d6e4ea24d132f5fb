#include "tests/app/CheckedStudio.h"
#include "tests/support/GuiTestMain.h"

#include <QClipboard>
#include <QScreen>
#include <QScrollBar>
#include <QToolTip>

// The form of the plan check: its life, its pages, the places that its rows lead to, and copying.

/// A line with flow 10 of ten slots, whose listener gets it out of its window, and nothing else.
static void importLateFlow(CheckedStudio& studio)
{
    InputText input = lineNetwork(2, 4);
    input.flow(10, QStringLiteral("2000"), 1, QStringLiteral("A"), QStringLiteral("[0,2000]"),
               {{QStringLiteral("B"), QStringLiteral("[0,400]")}});
    studio.import(input.document(), lineSchedule({{10, 0, 4, 5, 6}}));
}

class PlanCheckFormTest : public QObject
{
    Q_OBJECT

private slots:
    // ---- Its life

    void soundPlanSaysWhatWasChecked()
    {
        CheckedStudio studio;
        studio.import(soundTransmissions());
        studio.openForm();
        QCOMPARE(studio.form()->windowTitle(), QStringLiteral(u"调度表检查"));
        QCOMPARE(studio.summary(),
                 QStringLiteral(u"未发现问题。已检查 2 次发送、2 条流、3 个端口。"));
        QCOMPARE(studio.table("findingTable")->model()->rowCount(), 0);
        QVERIFY(!studio.form()->findChild<QPushButton*>(QStringLiteral("goButton"))->isEnabled());
    }

    void exampleThatSucceedsYetIsNotSoundIsTold()
    {
        CheckedStudio studio;
        studio.plan("succeeds-not-sound");
        studio.clickPlanInfo();
        studio.openForm();
        const QTableView* findings = studio.table("findingTable");
        QCOMPARE(CheckedStudio::column(findings, 2), QStringList{QStringLiteral("RING2")});
        QCOMPARE(CheckedStudio::column(findings, 5), QStringList{QStringLiteral("10-0, 25-0")});
        CheckedStudio::doubleClickRow(findings, 0);
        QCOMPARE(studio.nodes()->currentItem()->text(), QStringLiteral("RING2"));
        QCOMPARE(studio.sendTable()->currentColumn(), 8);
        studio.plan("ring");
        QVERIFY(studio.summary().startsWith(QStringLiteral(u"未发现问题。")));
        QCOMPARE(findings->model()->rowCount(), 0);
    }

    void formIsWithinTheScreen()
    {
        CheckedStudio studio;
        studio.window.move(0, 0);
        studio.clickPlanInfo();
        const QRect form = studio.openForm()->geometry();
        const QRect screen = studio.window.screen()->availableGeometry();
        QVERIFY2(screen.contains(form), qPrintable(QString::number(form.width())));
    }

    void withoutAScheduleTheFormSaysSo()
    {
        CheckedStudio studio;
        studio.clickPlanInfo();
        studio.openForm();
        QCOMPARE(studio.summary(), QStringLiteral(u"还没有载入调度表。"));
        studio.openPage(1, "loadTable");
        clickButton(studio.form(), "copyButton");
        QCOMPARE(studio.table("loadTable")->model()->rowCount(), 0);
    }

    void formExistsOnceAndLeavesTheWindowUsable()
    {
        CheckedStudio studio;
        studio.import(clashingTransmissions());
        PlanCheckForm* form = studio.openForm();
        QVERIFY(!form->isModal());
        QCOMPARE(studio.openForm(), form);
        QCOMPARE(studio.window.findChildren<PlanCheckForm*>().size(), 1);
    }

    void escapeClosesTheFormAndItCanBeOpenedAgain()
    {
        CheckedStudio studio;
        studio.import(clashingTransmissions());
        QPointer<PlanCheckForm> form = studio.openForm();
        QTest::keyClick(studio.table("findingTable"), Qt::Key_Escape);
        QTRY_VERIFY(!form);
        QVERIFY(studio.openForm());
        form = studio.form();
        clickButton(form, "closeButton");
        QTRY_VERIFY(!form);
        QVERIFY(studio.openForm());
    }

    void newScheduleRenewsTheOpenForm()
    {
        CheckedStudio studio;
        studio.import(soundTransmissions());
        studio.openForm();
        QTableView* loads = studio.openPage(1, "loadTable");
        QCOMPARE(CheckedStudio::column(loads, 2).last(), QStringLiteral("2"));
        studio.import(clashingTransmissions());
        QVERIFY(studio.summary().startsWith(QStringLiteral(u"发现 1 个故障、0 个提示。")));
        QCOMPARE(CheckedStudio::column(loads, 2).last(), QStringLiteral("1"));
        QCOMPARE(studio.openPage(0, "findingTable")->model()->rowCount(), 1);
    }

    void anotherProjectLeavesTheFormAsItIs()
    {
        CheckedStudio studio;
        studio.import(clashingTransmissions());
        studio.openForm();
        studio.openProject(QStringLiteral(ROTUNDA_SOURCE_FOLDER "/examples/ring/ring.rotpro"));
        QVERIFY(studio.summary().startsWith(QStringLiteral(u"发现 1 个故障")));
        CheckedStudio::doubleClickRow(studio.table("findingTable"), 0);
        QCOMPARE(studio.currentPlace(), QStringLiteral("S2 0 6"));
    }

    void closingTheWindowWithTheFormOpenIsSafe()
    {
        auto studio = std::make_unique<CheckedStudio>();
        studio->import(clashingTransmissions());
        const QPointer<PlanCheckForm> form = studio->openForm();
        studio->window.close();
        studio.reset();
        QVERIFY(!form);
    }

    // ---- Pages

    void findingsStandInTheirColumns()
    {
        CheckedStudio studio;
        studio.import(clashingTransmissions());
        studio.openForm();
        const QAbstractItemModel* model = studio.table("findingTable")->model();
        QStringList headers;
        QStringList row;
        for (int column = 0; column < model->columnCount(); ++column) {
            headers.append(model->headerData(column, Qt::Horizontal).toString());
            row.append(model->index(0, column).data().toString());
        }
        QCOMPARE(headers, (QStringList{QStringLiteral(u"级别"), QStringLiteral(u"问题"),
                                       QStringLiteral(u"节点"), QStringLiteral(u"端口"),
                                       QStringLiteral(u"时隙"), QStringLiteral(u"流"),
                                       QStringLiteral(u"说明")}));
        QCOMPARE(row, (QStringList{QStringLiteral(u"故障"), QStringLiteral(u"时隙冲突"),
                                   QStringLiteral("S2"), QStringLiteral("2"), QStringLiteral("5"),
                                   QStringLiteral("10-0, 25-0"),
                                   QStringLiteral(u"2 次发送占用同一时隙")}));
        QVERIFY(!model->index(0, 0).data(Qt::DecorationRole).value<QIcon>().isNull());
    }

    void figuresArePutTogetherWhenTheirPageIsOpened()
    {
        CheckedStudio studio;
        studio.import(soundTransmissions());
        studio.openForm();
        QCOMPARE(studio.table("loadTable")->model()->rowCount(), 0);
        QCOMPARE(studio.openPage(1, "loadTable")->model()->rowCount(), 3);
        QCOMPARE(studio.table("latencyTable")->model()->rowCount(), 0);
        QCOMPARE(studio.openPage(2, "latencyTable")->model()->rowCount(), 2);
        QCOMPARE(studio.openPage(3, "occupancyTable")->model()->rowCount(), 2);
    }

    void loadsOfAnExampleAgreeWithItsGrid()
    {
        CheckedStudio studio;
        studio.plan("avionics-line");
        studio.clickPlanInfo();
        studio.openForm();
        const QTableView* loads = studio.openPage(1, "loadTable");
        int ports = 0;
        for (const auto& node : studio.probe.sendNodeInfo())
            ports += node.size();
        QCOMPARE(loads->model()->rowCount(), ports);
        CheckedStudio::doubleClickRow(loads, 0);
        const QString used = loads->model()->index(0, 2).data().toString();
        int cells = 0;
        const TimeSlotInfo* grid = studio.sendTable();
        for (int column = 1; column < grid->columnCount(); ++column)
            cells += grid->cellWidget(grid->currentRow(), column) != nullptr;
        QCOMPARE(QString::number(cells), used);
    }

    void loadIsDrawnAsABar()
    {
        CheckedStudio studio;
        studio.import(clashingTransmissions());
        studio.openForm();
        QTableView* loads = studio.openPage(1, "loadTable");
        loads->selectionModel()->clear();
        const auto filledShare = [loads](int row) {
            const QRect cell = loads->visualRect(loads->model()->index(row, 4));
            const QImage image = loads->viewport()->grab(cell).toImage();
            int x = 5;
            while (x < image.width() - 6 && image.pixel(x + 1, 5) == image.pixel(5, 5))
                ++x;
            return double(x - 2) / (image.width() - 6);
        };
        QVERIFY(qAbs(filledShare(0) - 0.2) < 0.03);
        QVERIFY(qAbs(filledShare(2) - 0.1) < 0.03);
        QCOMPARE(loads->horizontalHeader()->length(), loads->viewport()->width());
    }

    void clickOnAHeaderSortsByNumber()
    {
        CheckedStudio studio;
        QList<LineTransmission> sent;
        for (const int flowID : {9, 100, 25})
            sent.append({flowID, 0, flowID % 8, flowID % 8 + 1, flowID % 8 + 2});
        studio.import(lineInput({9, 100, 25}).document(), lineSchedule(sent));
        studio.openForm();
        const QTableView* latencies = studio.openPage(2, "latencyTable");
        const QStringList asPlanned{QStringLiteral("9"), QStringLiteral("100"),
                                    QStringLiteral("25")};
        QCOMPARE(CheckedStudio::column(latencies, 0), asPlanned);
        CheckedStudio::clickHeader(latencies, 0);
        QStringList sorted = CheckedStudio::column(latencies, 0);
        if (sorted.first() != QStringLiteral("9")) {
            CheckedStudio::clickHeader(latencies, 0);
            sorted = CheckedStudio::column(latencies, 0);
        }
        QCOMPARE(sorted,
                 (QStringList{QStringLiteral("9"), QStringLiteral("25"), QStringLiteral("100")}));
    }

    // ---- Places

    void doubleClickOnAFindingGoesToItsCell()
    {
        CheckedStudio studio;
        studio.import(clashingTransmissions());
        studio.chooseTable(1);
        studio.openForm();
        CheckedStudio::doubleClickRow(studio.table("findingTable"), 0);
        QCOMPARE(studio.part<QComboBox>("comboboxFlowTableType")->currentIndex(), 0);
        QCOMPARE(studio.currentPlace(), QStringLiteral("S2 0 6"));
        const TimeSlotInfo* grid = studio.sendTable();
        QVERIFY(grid->viewport()->rect().intersects(grid->visualRect(grid->currentIndex())));
        QVERIFY(grid->horizontalScrollBar()->value() > 0);
        QCOMPARE(studio.cards("flowListWindow_send")->rowCount(), 2);
        QVERIFY(studio.form());
    }

    void enterAndTheButtonGoThereToo()
    {
        CheckedStudio studio;
        studio.import(clashingTransmissions());
        studio.openForm();
        QTest::keyClick(studio.table("findingTable"), Qt::Key_Return);
        QCOMPARE(studio.currentPlace(), QStringLiteral("S2 0 6"));
        QCOMPARE(QToolTip::text(), QStringLiteral(u"流id 10-0\n流id 25-0\n多个流共用此时隙"));
        QVERIFY(studio.form());
        studio.clickNode(QStringLiteral("A"));
        clickButton(studio.form(), "goButton");
        QCOMPARE(studio.currentPlace(), QStringLiteral("S2 0 6"));
    }

    void findingAtAListenerGoesToTheReceiveTable()
    {
        CheckedStudio studio;
        importLateFlow(studio);
        studio.openForm();
        QTableView* findings = studio.table("findingTable");
        QCOMPARE(CheckedStudio::column(findings, 1), QStringList{QStringLiteral(u"超出接收窗口")});
        CheckedStudio::doubleClickRow(findings, 0);
        QCOMPARE(studio.part<QComboBox>("comboboxFlowTableType")->currentIndex(), 1);
        QCOMPARE(studio.currentPlace(), QStringLiteral("B 0 7"));
    }

    void missingFlowGoesToItsTalkersPort()
    {
        CheckedStudio studio;
        studio.import({soundTransmissions().first()});
        studio.clickNode(QStringLiteral("S2"));
        studio.openForm();
        CheckedStudio::doubleClickRow(studio.table("findingTable"), 0);
        QCOMPARE(studio.currentPlace(), QStringLiteral("A 0 0"));
    }

    void latencyGoesToTheFlowsFirstSlotAtItsTalker()
    {
        CheckedStudio studio;
        studio.import(clashingTransmissions());
        studio.clickNode(QStringLiteral("S2"));
        studio.openForm();
        CheckedStudio::doubleClickRow(studio.openPage(2, "latencyTable"), 1);
        QCOMPARE(studio.currentPlace(), QStringLiteral("A 0 4"));
    }

    void occupancyGoesToItsSwitch()
    {
        CheckedStudio studio;
        studio.import(clashingTransmissions());
        studio.openForm();
        CheckedStudio::doubleClickRow(studio.openPage(3, "occupancyTable"), 1);
        QCOMPARE(studio.nodes()->currentItem()->text(), QStringLiteral("S2"));
    }

    void sortedRowsLeadToTheirOwnPlaces()
    {
        CheckedStudio studio;
        studio.plan("avionics-line");
        studio.clickPlanInfo();
        studio.openForm();
        const QTableView* loads = studio.openPage(1, "loadTable");
        CheckedStudio::clickHeader(loads, 2);
        CheckedStudio::clickHeader(loads, 2);
        CheckedStudio::doubleClickRow(loads, 2);
        QCOMPARE(studio.nodes()->currentItem()->text(),
                 loads->model()->index(2, 0).data().toString());
        QCOMPARE(studio.sendTable()->item(studio.sendTable()->currentRow(), 0)->text(),
                 QStringLiteral(u"端口") + loads->model()->index(2, 1).data().toString());
    }

    void placeShowsTheDockAgainWhenItIsHidden()
    {
        CheckedStudio studio;
        studio.import(clashingTransmissions());
        studio.openForm();
        studio.clickPlanInfo();
        QVERIFY(!studio.probe.planInfoDock()->isVisible());
        CheckedStudio::doubleClickRow(studio.table("findingTable"), 0);
        QVERIFY(studio.probe.planInfoDock()->isVisible());
        QCOMPARE(studio.currentPlace(), QStringLiteral("S2 0 6"));
    }

    // ---- Copying

    void copyPutsTheShownPageOnTheClipboard()
    {
        CheckedStudio studio;
        studio.import(clashingTransmissions());
        studio.openForm();
        clickButton(studio.form(), "copyButton");
        QCOMPARE(QApplication::clipboard()->text(),
                 QStringLiteral(u"级别\t问题\t节点\t端口\t时隙\t流\t说明\n"
                                u"故障\t时隙冲突\tS2\t2\t5\t10-0, 25-0\t2 次发送占用同一时隙\n"));
        studio.openPage(1, "loadTable");
        clickButton(studio.form(), "copyButton");
        QCOMPARE(QApplication::clipboard()->text(),
                 QStringLiteral(u"节点\t端口\t占用时隙\t周期时隙\t负载(%)\n"
                                u"A\t1\t2\t10\t20.0\nS1\t2\t2\t10\t20.0\nS2\t2\t1\t10\t10.0\n"));
    }

    void copyKeyCopiesTheWholePageInTheOrderShown()
    {
        CheckedStudio studio;
        studio.import(clashingTransmissions());
        studio.openForm();
        QTableView* loads = studio.openPage(1, "loadTable");
        CheckedStudio::clickHeader(loads, 2);
        const QStringList order = CheckedStudio::column(loads, 0);
        loads->setFocus();
        QApplication::clipboard()->clear();
        QTest::keySequence(studio.form()->windowHandle(), QKeySequence::Copy);
        QTRY_COMPARE(QApplication::clipboard()->text().count(QLatin1Char('\n')), 4);
        const QStringList lines = QApplication::clipboard()->text().split(QLatin1Char('\n'));
        for (int row = 0; row < 3; ++row)
            QCOMPARE(lines.at(row + 1).section(QLatin1Char('\t'), 0, 0), order.at(row));
    }
};

ROTUNDA_GUI_TEST_MAIN(PlanCheckFormTest)
#include "PlanCheckFormTest.moc"
