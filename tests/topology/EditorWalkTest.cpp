#include "tests/support/GuiTestMain.h"
#include "tests/topology/EditorWalker.h"

// A long random walk of user actions; after each one the drawing must be whole.

class EditorWalkTest : public QObject
{
    Q_OBJECT

private slots:
    void drawingIsWholeAfterEachOfManyActions_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed : {1U, 2U, 3U, 4U})
            QTest::addRow("seed %u", seed) << seed;
    }

    void drawingIsWholeAfterEachOfManyActions()
    {
        QFETCH(quint32, seed);
        Editor editor;
        EditorWalker walker(editor, seed);
        int mostNodes = 0;
        int mostLinks = 0;
        for (int step = 0; step < 5000; ++step) {
            const char* action = walker.step();
            const QString fault = findFault(editor);
            QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("step %1, %2: %3")
                                                     .arg(step)
                                                     .arg(QLatin1String(action))
                                                     .arg(fault)));
            mostNodes = std::max(mostNodes, editor.nodes().size());
            mostLinks = std::max(mostLinks, editor.links().size());
            if (step % 500 == 0)
                paintedScene(editor.scene());
        }
        QVERIFY2(mostNodes > 10 && mostLinks > 10, "the walk must reach a drawing worth its name");
    }
};

ROTUNDA_GUI_TEST_MAIN(EditorWalkTest)
#include "EditorWalkTest.moc"
