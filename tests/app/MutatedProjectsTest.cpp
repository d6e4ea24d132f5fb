#include "tests/app/RobustStudio.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/SeedRange.h"

// Thousands of damaged projects, in shards.

class MutatedProjectsTest : public QObject
{
    Q_OBJECT

private slots:
    void damagedProjectsOpen()
    {
        const SeedRange seeds = SeedRange::fromEnvironment(2500);
        const QByteArray examples[] = {exampleProject("fails-window-check"),
                                       exampleProject("fails-resolution"), bytesOf(smallProject())};
        RobustStudio robust;
        quint64 drawn = 0;
        for (quint64 seed = seeds.first; seed < seeds.end(); ++seed) {
            RandomSource random(seed);
            const int kind = random.below(6);
            robust.open(
                mutated(kind < 3 ? examples[kind] : bytesOf(randomProject(random)), random));
            drawn += robust.studio.editor.nodes().isEmpty() ? 0 : 1;
            if (seed % 100 == 0)
                robust.use();
        }
        QVERIFY(drawn > seeds.count / 5);
    }
};

ROTUNDA_GUI_TEST_MAIN(MutatedProjectsTest)
#include "MutatedProjectsTest.moc"
