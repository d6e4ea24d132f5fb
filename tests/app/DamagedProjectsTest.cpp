#include "tests/app/RobustStudio.h"
#include "tests/support/GuiTestMain.h"

#include <limits>

// Whatever a file holds, the studio shows what there is and lives on.

class DamagedProjectsTest : public QObject
{
    Q_OBJECT

private slots:
    void everyCutOfAnExampleOpens()
    {
        const QByteArray bytes = exampleProject("fails-window-check");
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
};

ROTUNDA_GUI_TEST_MAIN(DamagedProjectsTest)
#include "DamagedProjectsTest.moc"
