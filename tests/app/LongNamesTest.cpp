#include "tests/driver/Studio.h"
#include "tests/project/ProjectBytes.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/LogCapture.h"
#include "tests/support/PeakMemory.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>

// A project in which one name is endless is shown and painted like any other.
class LongNamesTest : public QObject
{
    Q_OBJECT

private slots:
    void nameOfFiftyMillionCharactersIsShown()
    {
        constexpr int length = 50000000;
        const TemporaryFolder folder;
        const QString path = folder.path(QStringLiteral("long.rotpro"));
        Project project = smallProject();
        const QByteArray bytes = bytesOf(project);
        // The first node's name, behind its type and position, is the text that grows.
        const QByteArray name = ProjectBytes().text(project.nodes.first().nodeName).bytes();
        const QByteArray head = ProjectBytes().links(project.links).bytes();
        const int place = bytes.indexOf(name, head.size());
        writeRepeated(path, bytes.left(place) + ProjectBytes().number(length * 2).bytes(),
                      QByteArray("\0A", 2), length, bytes.mid(place + name.size()));
        const Measured run = measured([&path] {
            const LogCapture log;
            QFile file(path);
            file.open(QIODevice::ReadOnly);
            Studio studio;
            studio.probe.showProject(readProject(file));
            studio.window.grab();
            const auto nodes = studio.editor.nodes();
            return std::any_of(nodes.begin(), nodes.end(),
                               [](const auto* node) { return node->nodeName.size() == length; })
                       ? 0
                       : 1;
        });
        QCOMPARE(run.result, 0);
        QVERIFY(staysWithin(run, 25, path));
    }
};

ROTUNDA_GUI_TEST_MAIN(LongNamesTest)
#include "LongNamesTest.moc"
