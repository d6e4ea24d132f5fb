#include "tests/app/walk/WalkedStudio.h"
#include "tests/project/ProjectBytes.h"

#include <QTableWidget>

static QString anyProjectName(WalkedStudio& walked)
{
    return walked.folder.path(QStringLiteral("walk-%1.rotpro").arg(walked.pick(4)));
}

static QByteArray bytesOfStudio(WalkedStudio& walked)
{
    return written(projectOf(*walked.editor.scene(), walked.probe.vLineInfoList(),
                             walked.probe.flowInfoList()));
}

static bool saveProject(WalkedStudio& walked)
{
    const QString path = anyProjectName(walked);
    const QByteArray expected = bytesOfStudio(walked);
    walked.answerFileDialog(path, [&] { walked.chooseFromFileMenu(QStringLiteral(u"保存工程")); });
    const QByteArray bytes = readFile(path);
    if (bytes != expected)
        walked.complain(QStringLiteral("the project file is not what was drawn"));
    if (written(projectFrom(bytes)) != bytes)
        walked.complain(QStringLiteral("what was saved loads as something else"));
    return true;
}

// Nodes, virtual links and flows come back one by one; a link goes when its node was renamed.
static bool openSavedProject(WalkedStudio& walked)
{
    const QString path = anyProjectName(walked);
    const QByteArray bytes = readFile(path);
    if (bytes.isEmpty())
        return false;
    walked.openProjectFile(path);
    const Project saved = projectFrom(bytes);
    if (walked.editor.nodes().size() != saved.nodes.size() ||
        walked.editor.links().size() > saved.links.size() ||
        walked.probe.vLineInfoList().size() != saved.vLines.size() ||
        walked.probe.flowInfoList().size() != saved.flows.size())
        walked.complain(QStringLiteral("the project was opened in parts"));
    // Each load turns the order of the nodes round, so the second one is that of the file.
    const QByteArray once = bytesOfStudio(walked);
    walked.probe.showProject(projectFrom(once));
    const QByteArray twice = bytesOfStudio(walked);
    walked.probe.showProject(projectFrom(twice));
    walked.probe.showProject(projectFrom(bytesOfStudio(walked)));
    if (bytesOfStudio(walked) != twice)
        walked.complain(QStringLiteral("loading and saving twice changes the project"));
    return true;
}

static bool openExample(WalkedStudio& walked)
{
    const QVector<QString> examples{
        QStringLiteral("avionics-line"),      QStringLiteral("ring"),
        QStringLiteral("succeeds-not-sound"), QStringLiteral("fails-window-check"),
        QStringLiteral("fails-resolution"),   QStringLiteral("fails-resolution")};
    const QString name = walked.pickFrom(examples);
    walked.openProjectFile(WalkedStudio::exampleFile(name, name + QStringLiteral(".rotpro")));
    return true;
}

static bool openRandomProject(WalkedStudio& walked)
{
    RandomSource random(quint64(walked.pick(1 << 30)));
    QByteArray bytes = bytesOf(randomProject(random));
    if (walked.pick(2))
        bytes = mutated(bytes, random);
    const QString path = walked.folder.path(QStringLiteral("random.rotpro"));
    writeFile(path, bytes);
    walked.openProjectFile(path);
    return true;
}

static bool cancelFileDialog(WalkedStudio& walked)
{
    const QByteArray before = bytesOfStudio(walked);
    walked.dialogs.expectCancelledFileDialog();
    walked.chooseFromFileMenu(walked.pick(2) ? QStringLiteral(u"打开工程")
                                             : QStringLiteral(u"保存工程"));
    if (bytesOfStudio(walked) != before)
        walked.complain(QStringLiteral("a cancelled file dialog changed the project"));
    return true;
}

WalkActions projectActions()
{
    return {{"save project", 2, &saveProject},
            {"open saved project", 2, &openSavedProject},
            {"open example", 2, &openExample},
            {"open random project", 1, &openRandomProject},
            {"cancel file dialog", 1, &cancelFileDialog}};
}
