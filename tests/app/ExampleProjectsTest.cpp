#include "topology/Arrow.h"
#include "topology/DiagramScene.h"

#include "app/FlowScheduleForm.h"

#include "tests/driver/Studio.h"
#include "tests/project/ProjectBytes.h"
#include "tests/support/DialogAnswers.h"
#include "tests/support/DialogClicks.h"
#include "tests/support/Documents.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/LoggedFolder.h"

#include <QDir>
#include <QFile>
#include <QFontMetrics>

#include <algorithm>

// The projects that a newcomer opens first: each is the network of the document beside it, and can
// be read without moving anything.

static QDir examplesFolder()
{
    return QDir(QStringLiteral(ROTUNDA_SOURCE_FOLDER "/examples"));
}

static QString projectPathOf(const QString& example)
{
    return examplesFolder().filePath(example + QLatin1Char('/') + example +
                                     QStringLiteral(".rotpro"));
}

static QString documentPathOf(const QString& example)
{
    return examplesFolder().filePath(example + QStringLiteral("/vek_input.xml"));
}

// ---- What can be seen

/// The picture of a node with the name under it.
static QRectF boxOf(const DiagramItem* node)
{
    return node->sceneBoundingRect();
}

static QRectF drawnArea(const QList<DiagramItem*>& nodes)
{
    QRectF area;
    for (const DiagramItem* node : nodes)
        area |= boxOf(node);
    return area;
}

static QLineF lineOf(const Arrow* link)
{
    return QLineF(centerOf(link->startItem), centerOf(link->endItem));
}

static QString nameOf(const Arrow* link)
{
    return link->srcNode + QStringLiteral(" - ") + link->dstNode;
}

static bool crosses(const QLineF& line, const QRectF& box)
{
    if (box.contains(line.p1()) || box.contains(line.p2()))
        return true;
    const QLineF sides[] = {{box.topLeft(), box.topRight()},
                            {box.topRight(), box.bottomRight()},
                            {box.bottomRight(), box.bottomLeft()},
                            {box.bottomLeft(), box.topLeft()}};
    return std::any_of(std::begin(sides), std::end(sides), [&line](const QLineF& side) {
        return side.intersects(line, nullptr) == QLineF::BoundedIntersection;
    });
}

/// A line each for two nodes that cover each other.
static QStringList coveredNodes(const QList<DiagramItem*>& nodes)
{
    QStringList found;
    for (int i = 0; i < nodes.size(); ++i) {
        for (int k = i + 1; k < nodes.size(); ++k) {
            if (boxOf(nodes[i]).intersects(boxOf(nodes[k])))
                found.append(nodes[i]->nodeName + QStringLiteral(" covers ") + nodes[k]->nodeName);
        }
    }
    return found;
}

/// A line each for a link that runs through a node that is not one of its ends.
static QStringList hiddenLinks(const QList<Arrow*>& links, const QList<DiagramItem*>& nodes)
{
    QStringList found;
    for (const Arrow* link : links) {
        for (const DiagramItem* node : nodes) {
            const bool isEnd = node == link->startItem || node == link->endItem;
            if (!isEnd && crosses(lineOf(link), boxOf(node)))
                found.append(nameOf(link) + QStringLiteral(" runs through ") + node->nodeName);
        }
    }
    return found;
}

static bool shareANode(const Arrow* one, const Arrow* other)
{
    return one->startItem == other->startItem || one->startItem == other->endItem ||
           one->endItem == other->startItem || one->endItem == other->endItem;
}

/// A line each for two links that cross.
static QStringList crossedLinks(const QList<Arrow*>& links)
{
    QStringList found;
    for (int i = 0; i < links.size(); ++i) {
        for (int k = i + 1; k < links.size(); ++k) {
            if (!shareANode(links[i], links[k]) &&
                lineOf(links[i]).intersects(lineOf(links[k]), nullptr) ==
                    QLineF::BoundedIntersection)
                found.append(nameOf(links[i]) + QStringLiteral(" crosses ") + nameOf(links[k]));
        }
    }
    return found;
}

/// A line each for a name that is wider than the band under the picture, which cuts it off.
static QStringList cutNames(const QList<DiagramItem*>& nodes)
{
    QStringList found;
    for (const DiagramItem* node : nodes) {
        if (QFontMetrics(node->font).horizontalAdvance(node->nodeName) > node->pixmap.width())
            found.append(node->nodeName + QStringLiteral(" is cut off"));
    }
    return found;
}

class ExampleProjectsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_place = std::make_unique<LoggedFolder>(); }

    void cleanup() { m_place.reset(); }

    void everyExampleHasDocumentAndProject()
    {
        const QStringList examples = names();
        QVERIFY(!examples.isEmpty());
        for (const QString& example : examples) {
            QVERIFY2(QFile::exists(documentPathOf(example)), qPrintable(example));
            QVERIFY2(QFile::exists(projectPathOf(example)), qPrintable(example));
        }
    }

    void projectIsTheNetworkOfItsDocument_data() { listExamples(); }
    void projectIsTheNetworkOfItsDocument()
    {
        QFETCH(QString, example);
        Studio studio;
        studio.openProject(projectPathOf(example));
        studio.probe.generateInput();
        QCOMPARE(readFile(QStringLiteral("ResourceXML/vek_input.xml")),
                 readFile(documentPathOf(example)));
    }

    void examplesPlanOrFailAsTheyAreMeantTo_data()
    {
        QTest::addColumn<QString>("example");
        QTest::addColumn<QString>("box");
        for (const QString& example : names()) {
            QString text = QStringLiteral(u"rotunda 流量规划: 规划成功");
            if (example == QStringLiteral("fails-window-check"))
                text = QStringLiteral(u"rotunda 预处理: 输入的时间窗口不合理");
            if (example == QStringLiteral("fails-resolution") ||
                example == QStringLiteral("busy-plant"))
                text = QStringLiteral(u"rotunda 流量规划: 冲突消解失败，规划终止");
            QTest::newRow(qPrintable(example)) << example << text;
        }
    }
    void examplesPlanOrFailAsTheyAreMeantTo()
    {
        QFETCH(QString, example);
        QFETCH(QString, box);
        Studio studio;
        studio.openProject(projectPathOf(example));
        DialogAnswers answers;
        answers.expectMessageBox();
        studio.clickToolBar(QStringLiteral(u"调度规划"));
        clickButton(studio.probe.flowScheduleForm(), "RotundaButton");
        QCOMPARE(answers.seen(), QStringList{box});
        const bool planned = box.endsWith(QStringLiteral(u"规划成功"));
        QCOMPARE(QFile::exists(QStringLiteral("OutputXML/vek_output.xml")), planned);
        QCOMPARE(studio.probe.sendNodeInfo().isEmpty(), !planned);
    }

    void examplesShowWhatTheyAreMeantTo()
    {
        const auto project = [](const char* example) {
            return projectFrom(readFile(projectPathOf(QString::fromUtf8(example))));
        };
        const QList<FileVLineInfo> vLines = project("avionics-line").vLines;
        QVERIFY(std::any_of(vLines.begin(), vLines.end(), [](const FileVLineInfo& vLine) {
            return vLine.vLinePaths.size() > 1;
        }));
        const QList<FileNodeInfo> nodes = project("ring").nodes;
        QCOMPARE(std::count_if(nodes.begin(), nodes.end(),
                               [](const FileNodeInfo& node) { return node.type == 1; }),
                 6);
        QVERIFY(project("industrial-tree").flows.size() > 200);
    }

    void savingAndOpeningTwiceRestoresTheFile_data() { listExamples(); }
    void savingAndOpeningTwiceRestoresTheFile()
    {
        QFETCH(QString, example);
        const QByteArray original = readFile(projectPathOf(example));
        const QString first = m_place->folder.path(QStringLiteral("first.rotpro"));
        const QString second = m_place->folder.path(QStringLiteral("second.rotpro"));
        Studio studio;
        studio.openProject(projectPathOf(example));
        studio.saveProject(first);
        QVERIFY(readFile(first) != original); // stacked the other way round
        studio.openProject(first);
        studio.saveProject(second);
        QCOMPARE(readFile(second), original);
    }

    void drawingCanBeRead_data() { listExamples(); }
    void drawingCanBeRead()
    {
        QFETCH(QString, example);
        Studio studio;
        studio.openProject(projectPathOf(example));
        const QList<DiagramItem*> nodes = studio.editor.nodes();
        const QList<Arrow*> links = studio.editor.links();
        QVERIFY(!nodes.isEmpty());
        QCOMPARE(coveredNodes(nodes).join(QStringLiteral("; ")), QString());
        QCOMPARE(hiddenLinks(links, nodes).join(QStringLiteral("; ")), QString());
        QCOMPARE(crossedLinks(links).join(QStringLiteral("; ")), QString());
        QCOMPARE(cutNames(nodes).join(QStringLiteral("; ")), QString());
        QVERIFY(studio.editor.scene()->sceneRect().contains(drawnArea(nodes)));
    }

    void drawingIsInViewWhenItIsOpened_data() { listExamples(); }
    void drawingIsInViewWhenItIsOpened()
    {
        QFETCH(QString, example);
        MainWindow window(QMap<QString, QString>(), nullptr);
        window.resize(1280, 800);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        Studio studio(window);
        studio.openProject(projectPathOf(example));
        QCoreApplication::processEvents();
        const QGraphicsView* view = studio.editor.view();
        const QRectF visible = view->mapToScene(view->viewport()->rect()).boundingRect();
        const QRectF drawn = drawnArea(studio.editor.nodes());
        QVERIFY(visible.contains(drawn.center()));
        // What fits beside the tool box and above the tables is seen whole.
        if (drawn.width() < 800 && drawn.height() < 300)
            QVERIFY(visible.contains(drawn));
    }

private:
    static QStringList names()
    {
        QStringList examples =
            examplesFolder().entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
        // The others are programs in source.
        examples.erase(std::remove_if(examples.begin(), examples.end(),
                                      [](const QString& name) {
                                          return examplesFolder().exists(
                                              name + QStringLiteral("/CMakeLists.txt"));
                                      }),
                       examples.end());
        return examples;
    }

    static void listExamples()
    {
        QTest::addColumn<QString>("example");
        for (const QString& example : names())
            QTest::newRow(qPrintable(example)) << example;
    }

    std::unique_ptr<LoggedFolder> m_place;
};

ROTUNDA_GUI_TEST_MAIN(ExampleProjectsTest)
#include "ExampleProjectsTest.moc"
