#include "tests/app/CheckedStudio.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/ToolTips.h"

#include <QDir>
#include <QStatusBar>

// What the check of a schedule says in the log and in the plan result dock, and how its form is
// reached from there.

static QString clashLine()
{
    return QStringLiteral("verification: fault, shared slot, node 12, port 2, slot 5, "
                          "flow 10-0, 25-0, 2 instead of 1");
}

static qint32 leaveDamagedOutput(planner::TTPlanner&)
{
    writeFile(QStringLiteral("OutputXML/vek_output.xml"), "<vek_output><flows><flow><Insta");
    return 0;
}

static qint32 leaveNoOutput(planner::TTPlanner&)
{
    return 0;
}

class PlanCheckDockTest : public QObject
{
    Q_OBJECT

private:
    /// The views that offer the check, the shown page first.
    static QAbstractItemView* viewOf(CheckedStudio& studio, const QString& name)
    {
        const bool receives = name.endsWith(QStringLiteral("rcv"));
        studio.chooseTable(receives ? 1 : 0);
        if (name == QStringLiteral("nodes"))
            return studio.nodes();
        if (name.startsWith(QStringLiteral("grid")))
            return receives ? studio.rcvTable() : studio.sendTable();
        return studio.part<FlowListWindow>(receives ? "flowListWindow_rcv" : "flowListWindow_send")
            ->findChild<QListView*>();
    }

private slots:
    // ---- Log

    void soundImportIsOneLineInTheLog()
    {
        CheckedStudio studio;
        studio.import(soundTransmissions());
        QCOMPARE(studio.checkLines(),
                 QStringList{QStringLiteral("verification: 2 transmissions, no finding")});
    }

    void findingOfAnImportIsALineInTheLog()
    {
        CheckedStudio studio;
        studio.import(clashingTransmissions());
        QCOMPARE(studio.checkLines(), QStringList{clashLine()});
    }

    void manyFindingsAreTwentyLinesAndTheNumberOfTheOthers()
    {
        CheckedStudio studio;
        QList<LineTransmission> many = soundTransmissions();
        for (int flowID = 100; flowID < 130; ++flowID)
            many.append({flowID, 0, 6, 7, 8});
        studio.import(many);
        const QStringList lines = studio.checkLines();
        QCOMPARE(lines.size(), 21);
        // 30 transmissions that nobody asks for share a slot on three ports and fill two switches.
        QCOMPARE(lines.last(), QStringLiteral("verification: 15 more"));
    }

    void runIsCheckedBehindTheStagesAndAddsNoBoxAndNoStatus()
    {
        CheckedStudio studio;
        QSignalSpy statusTexts(studio.probe.statusBar(), &QStatusBar::messageChanged);
        studio.plan("avionics-line"); // answers one box and no more
        QCOMPARE(studio.checkLines().size(), 1);
        QCOMPARE(studio.log.lines().last(), studio.checkLines().last());
        QCOMPARE(statusTexts.size(), 4);
    }

    void failedRunIsNotChecked()
    {
        CheckedStudio studio;
        studio.import(clashingTransmissions());
        studio.plan("fails-resolution");
        QCOMPARE(studio.checkLines(), QStringList{clashLine()});
        QVERIFY(studio.openForm());
        QVERIFY(studio.summary().startsWith(QStringLiteral(u"发现 1 个故障")));
    }

    void damagedOutputIsAFinding()
    {
        CheckedStudio studio;
        studio.probe.replaceSecondStage(&leaveDamagedOutput);
        studio.plan("avionics-line");
        QVERIFY(studio.checkLines().first().startsWith(
            QStringLiteral("verification: fault, damaged document, vek_output.xml: ")));
        QCOMPARE(studio.log.count(QStringLiteral("load vek_output.xml failed!")), 1);
    }

    void missingOutputIsAFinding()
    {
        CheckedStudio studio;
        studio.probe.replaceSecondStage(&leaveNoOutput);
        studio.plan("avionics-line");
        QVERIFY(studio.checkLines().first().startsWith(
            QStringLiteral("verification: fault, damaged document, vek_output.xml: ")));
        studio.clickPlanInfo();
        studio.openForm();
        QVERIFY(CheckedStudio::column(studio.table("findingTable"), 1)
                    .contains(QStringLiteral(u"文档残缺")));
    }

    void everyDocumentOfTheBaseNameCounts()
    {
        CheckedStudio studio;
        writeFile(QStringLiteral("OutputXML/vek_output.bak"),
                  lineSchedule({soundTransmissions().at(1)}));
        writeFile(QStringLiteral("OutputXML/vek_output.old.xml"), "no document");
        studio.import({soundTransmissions().at(0)});
        QCOMPARE(studio.checkLines(),
                 QStringList{QStringLiteral("verification: 2 transmissions, no finding")});
    }

    // ---- Menus

    void everyViewOffersTheCheckByMouseAndByKey_data()
    {
        QTest::addColumn<QString>("view");
        QTest::addColumn<bool>("byKey");
        for (const char* view : {"nodes", "grid send", "grid rcv", "cards send", "cards rcv"}) {
            QTest::addRow("%s by mouse", view) << QString::fromUtf8(view) << false;
            QTest::addRow("%s by key", view) << QString::fromUtf8(view) << true;
        }
    }

    void everyViewOffersTheCheckByMouseAndByKey()
    {
        QFETCH(QString, view);
        QFETCH(bool, byKey);
        CheckedStudio studio;
        studio.import(clashingTransmissions());
        QTRY_VERIFY(studio.probe.planInfoDock()->isVisible());
        QAbstractItemView* offering = viewOf(studio, view);
        if (byKey)
            openMenuByKey(*offering);
        else
            openMenuByMouse(*offering, offering->model()->index(0, 0));
        QCOMPARE(entriesOf(openMenu()), QStringList{CheckedStudio::menuEntry()});
        if (byKey)
            chooseByKeys(openMenu(), CheckedStudio::menuEntry());
        else
            chooseByMouse(openMenu(), CheckedStudio::menuEntry());
        QVERIFY(studio.form());
    }

    void usedCellOffersTheCheckThroughItsBar()
    {
        CheckedStudio studio;
        studio.import(clashingTransmissions());
        TimeSlotInfo* grid = studio.sendTable();
        QVERIFY(grid->cellWidget(0, 1));
        openMenuByMouse(*grid, grid->model()->index(0, 1));
        closeMenu();
    }

    void menuKeyOpensWithinTheViewWhenTheCellIsScrolledAway()
    {
        CheckedStudio studio;
        studio.window.resize(studio.window.minimumSize()); // all of it on the screen
        studio.plan("avionics-line");
        studio.clickPlanInfo();
        TimeSlotInfo* grid = studio.sendTable();
        grid->setCurrentCell(0, grid->columnCount() - 1);
        grid->scrollTo(grid->model()->index(0, 0));
        QVERIFY(!grid->viewport()->rect().intersects(grid->visualRect(grid->currentIndex())));
        openMenuByKey(*grid);
        const QRect inside(grid->viewport()->mapToGlobal(QPoint(0, 0)), grid->viewport()->size());
        QVERIFY(openMenu());
        QVERIFY(inside.contains(openMenu()->pos()));
        closeMenu();
    }

    // ---- Tool tips

    void nodesWithFindingsAreMarkedByAToolTip()
    {
        CheckedStudio studio;
        studio.import(clashingTransmissions());
        QListWidgetItem* marked = studio.nodes()->item(2);
        QCOMPARE(marked->text(), QStringLiteral("S2"));
        QCOMPARE(marked->data(Qt::UserRole).toInt(), 12);
        askForToolTip(*studio.nodes(), studio.nodes()->model()->index(2, 0));
        QCOMPARE(
            QToolTip::text(),
            QStringLiteral(u"S2\n1 个故障、0 个提示\n故障 端口2 时隙5 时隙冲突 流 10-0, 25-0"));
        QToolTip::hideText();
        QCOMPARE(studio.nodes()->item(0)->toolTip(), studio.nodes()->item(0)->text());
        studio.chooseTable(1);
        QCOMPARE(
            studio.nodes()->findItems(QStringLiteral("S2"), Qt::MatchExactly).first()->toolTip(),
            marked ? QStringLiteral(u"S2\n1 个故障、0 个提示\n故障 端口2 时隙5 时隙冲突 "
                                    u"流 10-0, 25-0")
                   : QStringLiteral("S2"));
    }

    void marksGoWithTheScheduleThatHadThem()
    {
        CheckedStudio studio;
        studio.import(clashingTransmissions());
        QVERIFY(studio.nodes()->item(2)->toolTip() != studio.nodes()->item(2)->text());
        studio.import(soundTransmissions());
        QCOMPARE(studio.nodes()->item(2)->toolTip(), studio.nodes()->item(2)->text());
    }

    void marksOfManyFindingsAreCut()
    {
        CheckedStudio studio;
        QList<LineTransmission> many;
        for (int slot = 0; slot < 8; ++slot) {
            many.append({10, slot, slot, slot + 1, slot + 2});
            many.append({25, slot, slot, slot + 1, slot + 2});
        }
        studio.import(many);
        const QStringList lines = studio.nodes()->item(0)->toolTip().split(QLatin1Char('\n'));
        QCOMPARE(lines.size(), 9);
        QCOMPARE(lines.last(), QStringLiteral(u"……"));
    }

    void sharedCellOfALoadedScheduleSaysSo()
    {
        CheckedStudio studio;
        studio.import(clashingTransmissions());
        studio.clickNode(QStringLiteral("S2"));
        askForToolTip(*studio.sendTable(), studio.sendTable()->model()->index(0, 6));
        QCOMPARE(QToolTip::text(), QStringLiteral(u"流id 10-0\n流id 25-0\n多个流共用此时隙"));
        QToolTip::hideText();
    }
};

ROTUNDA_GUI_TEST_MAIN(PlanCheckDockTest)
#include "PlanCheckDockTest.moc"
