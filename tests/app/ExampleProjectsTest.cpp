#include "topology/Arrow.h"
#include "topology/DiagramScene.h"

#include "tests/app/Studio.h"
#include "tests/support/Documents.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/TemporaryFolder.h"

#include <QDataStream>
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

static QString projectOf(const QString& example)
{
    return examplesFolder().filePath(example + QLatin1Char('/') + example +
                                     QStringLiteral(".rotpro"));
}

static QString documentOf(const QString& example)
{
    return examplesFolder().filePath(example + QStringLiteral("/vek_input.xml"));
}

// ---- Opening

template <typename Record>
static Record readRecord(QDataStream& stream);

template <typename Record>
static QList<Record> readList(QDataStream& stream)
{
    qint32 count = 0;
    stream >> count;
    QList<Record> records;
    while (count-- > 0 && stream.status() == QDataStream::Ok)
        records.append(readRecord<Record>(stream));
    return records;
}

template <>
QStringList readRecord(QDataStream& stream)
{
    QStringList names;
    stream >> names;
    return names;
}

template <>
FileArrowInfo readRecord(QDataStream& stream)
{
    FileArrowInfo link;
    stream >> link.lineName >> link.srcNode >> link.dstNode >> link.srcPort >> link.dstPort >>
        link.bandWidth;
    return link;
}

template <>
FileNodeInfo readRecord(QDataStream& stream)
{
    FileNodeInfo node;
    stream >> node.type >> node.position >> node.nodeName >> node.nodeId >> node.nodeMac >>
        node.portNum >> node.mtu >> node.bufferNum;
    return node;
}

template <>
FileVLineInfo readRecord(QDataStream& stream)
{
    FileVLineInfo vLine;
    stream >> vLine.vLineId;
    vLine.vLinePaths = readList<QStringList>(stream);
    return vLine;
}

template <>
DstNodeInfo readRecord(QDataStream& stream)
{
    DstNodeInfo listener;
    stream >> listener.dstNodeName >> listener.rcvWindowLow >> listener.rcvWindowHigh;
    return listener;
}

template <>
FlowInfo readRecord(QDataStream& stream)
{
    FlowInfo flow;
    stream >> flow.flowType >> flow.flowId >> flow.flowPeriod >> flow.flowSize >> flow.vLineId >>
        flow.srcNode >> flow.sendWindowLow >> flow.sendWindowHigh;
    flow.dstNodes = readList<DstNodeInfo>(stream);
    return flow;
}

/// Puts the project's records where opening it puts them.
static void openProject(Studio& studio, const QString& path)
{
    QFile file(path);
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(path));
    QDataStream stream(&file);
    const QList<FileArrowInfo> links = readList<FileArrowInfo>(stream);
    const QList<FileNodeInfo> nodes = readList<FileNodeInfo>(stream);
    const QList<FileVLineInfo> vLines = readList<FileVLineInfo>(stream);
    const QList<FlowInfo> flows = readList<FlowInfo>(stream);
    QCOMPARE(stream.status(), QDataStream::Ok);
    QVERIFY(stream.atEnd());
    studio.editor.scene()->buildByProjectFile(nodes, links);
    studio.probe.addVLinesOfProject(vLines);
    studio.probe.addFlowsOfProject(flows);
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
    void init() { m_folder = std::make_unique<TemporaryFolder>(); }
    void cleanup() { m_folder.reset(); }

    void everyExampleHasDocumentAndProject()
    {
        const QStringList examples = names();
        QVERIFY(!examples.isEmpty());
        for (const QString& example : examples) {
            QVERIFY2(QFile::exists(documentOf(example)), qPrintable(example));
            QVERIFY2(QFile::exists(projectOf(example)), qPrintable(example));
        }
    }

    void projectIsTheNetworkOfItsDocument_data() { listExamples(); }
    void projectIsTheNetworkOfItsDocument()
    {
        QFETCH(QString, example);
        Studio studio;
        openProject(studio, projectOf(example));
        studio.probe.generateInput();
        QCOMPARE(readFile(QStringLiteral("ResourceXML/vek_input.xml")),
                 readFile(documentOf(example)));
    }

    void drawingCanBeRead_data() { listExamples(); }
    void drawingCanBeRead()
    {
        QFETCH(QString, example);
        Studio studio;
        openProject(studio, projectOf(example));
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
        openProject(studio, projectOf(example));
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
        return examplesFolder().entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    }

    static void listExamples()
    {
        QTest::addColumn<QString>("example");
        for (const QString& example : names())
            QTest::newRow(qPrintable(example)) << example;
    }

    std::unique_ptr<TemporaryFolder> m_folder;
};

ROTUNDA_GUI_TEST_MAIN(ExampleProjectsTest)
#include "ExampleProjectsTest.moc"
