#include "tests/app/walk/StudioWalk.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/SeedRange.h"
#include "tests/support/Tally.h"

// Random walks through all windows at once: nodes go while forms hold them, projects are loaded
// while windows are searched.

class StudioWalkTest : public QObject
{
    Q_OBJECT

private slots:
    void studioIsWholeAfterEachOfManyActions_data() { m_seeds.addBlocks(1); }

    void studioIsWholeAfterEachOfManyActions()
    {
        constexpr int actions = 2500;
        QFETCH(quint64, first);
        StudioWalk walk(static_cast<quint32>(first));
        for (int step = 0; step < actions; ++step) {
            const QString fault = walk.step();
            QVERIFY2(fault.isEmpty(), qPrintable(fault));
        }
        m_tally.add(QStringLiteral("actions"), actions);
        const QMap<QString, int> counts = walk.counts();
        for (auto count = counts.cbegin(); count != counts.cend(); ++count)
            m_tally.add(QStringLiteral("done: ") + count.key(), count.value());
    }

    void cleanupTestCase() { m_tally.save(); }

private:
    const SeedRange m_seeds = SeedRange::fromEnvironment(4);
    Tally m_tally;
};

ROTUNDA_GUI_TEST_MAIN(StudioWalkTest)
#include "StudioWalkTest.moc"
