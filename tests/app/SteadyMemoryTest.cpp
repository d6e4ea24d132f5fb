#include "tests/app/PlannedStudio.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/HeapUse.h"

// One studio, used all day: what a round needs is given back.

/// Opens a project, plans its network, and looks at each node with its ports and at the tables.
static void useStudio(PlannedStudio& studio)
{
    studio.openProject(QStringLiteral(ROTUNDA_SOURCE_FOLDER "/examples/ring/ring.rotpro"));
    studio.plan("ring");
    QVERIFY(studio.nodes()->count() > 3);
    for (int row = 0; row < studio.nodes()->count(); ++row) {
        studio.clickNode(studio.nodes()->item(row)->text());
        studio.chooseTable(row % 2);
        TimeSlotInfo* table = row % 2 == 0 ? studio.sendTable() : studio.rcvTable();
        if (table->rowCount() > 0)
            PlannedStudio::clickPort(table, table->rowCount() - 1);
    }
    studio.window.grab();
    studio.log.clear();
    // Widgets that were told to go, go.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

class SteadyMemoryTest : public QObject
{
    Q_OBJECT

private slots:
    // The first rounds fill caches of glyphs, pictures and styles; later on the toolkit's two file
    // dialogs leave about one kilobyte a round. What a round shows weighs more, whatever of it were
    // kept: a bar of each node's grid, the nodes of the project, a form, a picture of a list.
    void twoHundredRoundsTakeNoMore()
    {
#if defined(__SANITIZE_ADDRESS__) // five times slower, and looks for leaks itself
        constexpr int rounds = 80;
#else
        constexpr int rounds = 200;
#endif
        constexpr int warmUp = 40;
        constexpr qint64 mostPerRound = 4096;
        PlannedStudio studio;
        studio.clickPlanInfo();
        qint64 before = 0;
        for (int round = 0; round < rounds; ++round) {
            if (round == warmUp)
                before = heapUse();
            useStudio(studio);
        }
        const qint64 grown = heapUse() - before;
        QVERIFY2(grown <= mostPerRound * (rounds - warmUp),
                 qPrintable(QStringLiteral("%1 bytes more").arg(grown)));
    }
};

ROTUNDA_GUI_TEST_MAIN(SteadyMemoryTest)
#include "SteadyMemoryTest.moc"
