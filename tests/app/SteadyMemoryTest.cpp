#include "tests/app/PlannedStudio.h"
#include "tests/support/GuiTestMain.h"

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/allocator_interface.h>
#else
#include <malloc.h>
#endif

// One studio, used all day: what a round needs is given back.

/// Bytes that the program has asked for and not given back.
static qint64 memoryInUse()
{
#ifdef __SANITIZE_ADDRESS__
    return static_cast<qint64>(__sanitizer_get_current_allocated_bytes());
#else
    const struct mallinfo2 info = mallinfo2();
    return static_cast<qint64>(info.uordblks) + static_cast<qint64>(info.hblkhd);
#endif
}

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
        constexpr int rounds = 200;
        constexpr int warmUp = 40;
        constexpr qint64 mostPerRound = 4096;
        PlannedStudio studio;
        studio.clickPlanInfo();
        qint64 before = 0;
        for (int round = 0; round < rounds; ++round) {
            if (round == warmUp)
                before = memoryInUse();
            useStudio(studio);
        }
        const qint64 grown = memoryInUse() - before;
        QVERIFY2(grown <= mostPerRound * (rounds - warmUp),
                 qPrintable(QStringLiteral("%1 bytes more").arg(grown)));
    }
};

ROTUNDA_GUI_TEST_MAIN(SteadyMemoryTest)
#include "SteadyMemoryTest.moc"
