#include "tests/app/Studio.h"
#include "tests/project/ProjectBytes.h"
#include "tests/support/Documents.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TemporaryFolder.h"

#include <QTableWidget>

#include <limits>

// Whatever a file holds, the studio shows what there is and lives on.

static QByteArray example(const char* name)
{
    return readFile(QStringLiteral(ROTUNDA_SOURCE_FOLDER "/examples/%1/%1.rotpro")
                        .arg(QString::fromUtf8(name)));
}

/// A studio that takes projects as if they had been opened, without the file dialog.
struct RobustStudio {
    TemporaryFolder folder;
    LogCapture log;
    Studio studio;

    void open(const QByteArray& bytes) { studio.probe.showProject(projectFrom(bytes)); }

    QByteArray save()
    {
        return written(projectOf(*studio.editor.scene(), studio.probe.vLineInfoList(),
                                 studio.probe.flowInfoList()));
    }

    /// Uses what is shown: painted, written as an input document, saved.
    void use()
    {
        studio.window.grab();
        studio.probe.generateInput();
        QVERIFY(readFile(QStringLiteral("ResourceXML/vek_input.xml")).endsWith("</vek_input>\n"));
        QVERIFY(save().size() >= 16);
        QCOMPARE(studio.probe.vLineTable()->rowCount(), studio.probe.vLineInfoList().size());
        QCOMPARE(studio.probe.flowTable()->rowCount(), studio.probe.flowInfoList().size());
        for (const DiagramItem* node : studio.editor.nodes())
            QVERIFY(!node->nodeId.isEmpty());
    }
};

class DamagedProjectsTest : public QObject
{
    Q_OBJECT

private slots:
    void everyCutOfAnExampleOpens()
    {
        const QByteArray bytes = example("fails-window-check");
        QVERIFY(bytes.size() > 500);
        RobustStudio robust;
        for (int length = 0; length <= bytes.size(); ++length) {
            robust.open(bytes.left(length));
            if (length % 100 == 0)
                robust.use();
        }
        QCOMPARE(robust.studio.editor.nodes().size(), projectFrom(bytes).nodes.size());
    }

    void nodesAtImpossiblePlacesAreBorne()
    {
        RobustStudio robust;
        for (const double place :
             {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
              -std::numeric_limits<double>::infinity(), 1e300, -1e15}) {
            Project project = smallProject();
            project.nodes.first().position = QPointF(place, -place);
            robust.open(bytesOf(project));
            robust.use();
            QTest::keyClick(robust.studio.editor.view(), Qt::Key_A, Qt::ControlModifier);
            robust.use();
        }
    }

    void tenThousandDamagedProjectsOpen()
    {
        RandomSource random(5);
        const QByteArray examples[] = {example("fails-window-check"), example("fails-resolution"),
                                       bytesOf(smallProject())};
        RobustStudio robust;
        int drawn = 0;
        for (int i = 0; i < 10000; ++i) {
            const int kind = random.below(6);
            robust.open(
                mutated(kind < 3 ? examples[kind] : bytesOf(randomProject(random)), random));
            drawn += !robust.studio.editor.nodes().isEmpty();
            if (i % 100 == 0)
                robust.use();
        }
        QVERIFY(drawn > 2000);
    }
};

ROTUNDA_GUI_TEST_MAIN(DamagedProjectsTest)
#include "DamagedProjectsTest.moc"
