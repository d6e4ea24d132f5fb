#include "tests/app/PlannedStudio.h"
#include "tests/support/GuiTestMain.h"

// How windows, docks and tables share the screen, in the letters of a real display.

/// The first column that is not seen from side to side.
static int firstColumnCutOff(const QTableWidget* table)
{
    const int last = table->columnAt(table->viewport()->width());
    return last < 0 ? table->columnCount() : last;
}

class RoomTest : public QObject
{
    Q_OBJECT

private slots:
    void drawingNamesAndADozenColumnsFitTheScreen()
    {
        PlannedStudio studio;
        studio.window.resize(1280, 800);
        studio.clickToolBar(QStringLiteral(u"虚链路配置"));
        studio.clickToolBar(QStringLiteral(u"流量配置"));
        studio.clickPlanInfo();
        studio.plan("avionics-line");
        QTRY_VERIFY(studio.nodes()->viewport()->width() >= studio.nodes()->sizeHintForColumn(0));
        QTRY_VERIFY(firstColumnCutOff(studio.sendTable()) > 12);
        QVERIFY(studio.editor.view()->height() >= 240);
        QVERIFY(studio.probe.flowTable()->width() >= 150);
    }

    void smallScreenShowsSomethingOfEverything()
    {
        PlannedStudio studio;
        studio.window.resize(800, 600);
        studio.clickToolBar(QStringLiteral(u"流量配置"));
        studio.clickPlanInfo();
        studio.plan("avionics-line");
        QTRY_VERIFY(studio.nodes()->viewport()->width() >= studio.nodes()->iconSize().width());
        QTRY_VERIFY(firstColumnCutOff(studio.sendTable()) > 3);
        QVERIFY(studio.editor.view()->height() >= 120);
        studio.clickToolBar(QStringLiteral(u"流量配置"));
        QTRY_VERIFY(firstColumnCutOff(studio.sendTable()) > 6);
    }

    void tablesAloneLeaveMostOfTheHeightToTheDrawing()
    {
        Studio studio;
        studio.window.resize(1280, 800);
        studio.clickToolBar(QStringLiteral(u"虚链路配置"));
        studio.clickToolBar(QStringLiteral(u"流量配置"));
        QTRY_VERIFY(studio.editor.view()->height() >= 350);
        QTRY_VERIFY(studio.probe.flowTable()->height() >= 100);
    }
};

ROTUNDA_GUI_TEST_MAIN(RoomTest)
#include "RoomTest.moc"
