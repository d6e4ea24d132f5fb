#include "topology/NodeItemsByName.h"

#include "tests/driver/Editor.h"
#include "tests/support/GuiTestMain.h"
#include "tests/topology/SpokenItems.h"

#include <QButtonGroup>

// Building the drawing from the records of a project, and the names by which it is found.

static QStringList idsOf(const QList<DiagramItem*>& nodes)
{
    QStringList ids;
    for (const DiagramItem* node : nodes)
        ids.append(node->nodeId);
    return ids;
}

static FileNodeInfo nodeRecord(const char* name, const QPointF& position, int type = 0)
{
    FileNodeInfo record;
    record.type = type;
    record.position = position;
    record.nodeName = QString::fromUtf8(name);
    record.nodeId = QStringLiteral("99");
    record.mtu = QStringLiteral("1500");
    return record;
}

static FileArrowInfo linkRecord(const char* from, const char* to)
{
    FileArrowInfo record;
    record.srcNode = QString::fromUtf8(from);
    record.dstNode = QString::fromUtf8(to);
    record.srcPort = QStringLiteral("3");
    return record;
}

/// The drawing as a project holds it: topmost first.
static QList<FileNodeInfo> recordsFromTheTop(Editor& editor)
{
    QList<FileNodeInfo> records;
    for (const DiagramItem* node : editor.nodes()) {
        records.prepend(nodeRecord(qPrintable(node->nodeName), node->pos(), node->diagramType));
        records.first().nodeId = node->nodeId;
    }
    return records;
}

static QStringList namesOf(const QList<DiagramItem*>& nodes)
{
    QStringList names;
    for (const DiagramItem* node : nodes)
        names.append(node->nodeName);
    return names;
}

class BuildFromRecordsTest : public QObject
{
    Q_OBJECT

private slots:
    void nodesHaveTheirNumbersAsSoonAsTheyAreInserted()
    {
        Editor editor;
        editor.insertNode(DiagramItem::Endpoint, QPointF(300, 300), "old");
        QStringList numbers;
        connect(editor.scene(), &DiagramScene::itemInserted, this, [&] {
            for (const DiagramItem* node : editor.nodes())
                numbers.append(node->nodeId);
        });
        FileNodeInfo record;
        record.nodeId = QStringLiteral("77");
        editor.scene()->buildByProjectFile({record, record, record}, {});
        QCOMPARE(numbers.join(QLatin1Char(' ')), QStringLiteral("0 0 1 0 1 2"));
        editor.insertNode(DiagramItem::Endpoint, QPointF(300, 300));
        QCOMPARE(editor.nodes().last()->nodeId, QStringLiteral("3"));
    }

    void recordsBuildTheDrawingAndItsNames()
    {
        Editor editor;
        editor.insertNode(DiagramItem::Endpoint, QPointF(100, 100), "old");
        editor.clickPointerButton(DiagramScene::InsertLine);
        editor.scene()->buildByProjectFile(
            {nodeRecord("A", QPointF(10, 20)), nodeRecord("S", QPointF(200, 20), 1)},
            {linkRecord("A", "S")});
        const QList<DiagramItem*> nodes = editor.nodes();
        QCOMPARE(nodes.size(), 2);
        QCOMPARE(nodes[0]->nodeName, QStringLiteral("A"));
        QCOMPARE(nodes[0]->pos(), QPointF(10, 20));
        QCOMPARE(nodes[0]->mtu, QStringLiteral("1500"));
        QVERIFY(nodes[0]->nodeMac.isNull());
        QCOMPARE(nodes[1]->diagramType, DiagramItem::Switch);
        QCOMPARE(idsOf(nodes), (QStringList{QStringLiteral("0"), QStringLiteral("1")}));
        QCOMPARE(nodeItemsByName.value(QStringLiteral("A")), nodes[0]);
        QCOMPARE(editor.links().size(), 1);
        const Arrow* link = editor.links().first();
        QCOMPARE(link->srcPort, QStringLiteral("3"));
        QCOMPARE(link->zValue(), -1000.0);
        QCOMPARE(link->line(), QLineF(centerOf(nodes[0]), centerOf(nodes[1])));
        // Building puts the pointer back.
        QCOMPARE(TopologyWindowProbe::pointerButtons(editor.window)->checkedId(),
                 int(DiagramScene::MoveItem));
    }

    void linkOfTwoNodesOfOneNameGoesToTheLast()
    {
        Editor editor;
        editor.scene()->buildByProjectFile({nodeRecord("A", QPointF(10, 20)),
                                            nodeRecord("A", QPointF(300, 20)),
                                            nodeRecord("B", QPointF(300, 300))},
                                           {linkRecord("A", "B")});
        QCOMPARE(editor.nodes().size(), 3);
        QVERIFY(editor.nodes().at(0)->arrows().isEmpty());
        QCOMPARE(editor.nodes().at(1)->arrows().size(), 1);
    }

    void linkOfAMissingNodeIsDroppedAndDuplicatesAreBuilt()
    {
        Editor editor;
        editor.scene()->buildByProjectFile(
            {nodeRecord("A", QPointF(10, 20)), nodeRecord("B", QPointF(300, 20))},
            {linkRecord("A", "nobody"), linkRecord("A", "B"), linkRecord("A", "B"),
             linkRecord("A", "A")});
        QCOMPARE(editor.links().size(), 3);
        DiagramItem* a = nodeItemsByName.value(QStringLiteral("A"));
        QCOMPARE(a->arrows().size(), 4); // the link to itself stands in its list twice
        a->setSelected(true);
        editor.key(Qt::Key_Delete);
        QVERIFY(editor.links().isEmpty());
        QCOMPARE(editor.nodes().size(), 1);
        QVERIFY(editor.nodes().first()->arrows().isEmpty());
    }

    void renamedNodeStaysUnderItsOldName()
    {
        Editor editor;
        editor.scene()->buildByProjectFile({nodeRecord("A", QPointF(10, 20))}, {});
        DiagramItem* node = editor.nodes().first();
        node->nodeName = QStringLiteral("Z");
        QCOMPARE(nodeItemsByName.value(QStringLiteral("A")), node);
        QVERIFY(!nodeItemsByName.contains(QStringLiteral("Z")));
    }

    void nodeOfAnUnknownKindIsBuiltWithoutImage()
    {
        Editor editor;
        editor.scene()->buildByProjectFile({nodeRecord("A", QPointF(10, 20), 7)}, {});
        QCOMPARE(editor.nodes().size(), 1);
        paintedScene(editor.scene());
    }

    void labelsNeedAnEdgeAtBothEnds()
    {
        Editor editor;
        editor.scene()->setTextColor(Qt::red);
        editor.scene()->setLineColor(Qt::blue);
        // A node without an image has no box that the line could leave.
        editor.scene()->buildByProjectFile(
            {nodeRecord("", QPointF(100, 200)), nodeRecord("B", QPointF(400, 200), 7)},
            {linkRecord("", "B")});
        editor.nodes().last()->nodeName.clear();
        QCOMPARE(editor.links().size(), 1);
        const QRect everywhere(0, 0, 800, 600);
        const QImage image = paintedScene(editor.scene());
        QVERIFY(countPixels(image, everywhere, Qt::blue) > 100);
        QCOMPARE(countPixels(image, everywhere, Qt::red), 0);
    }

    void linkWithoutLengthPaintsNothing()
    {
        Editor editor;
        editor.scene()->setLineColor(Qt::blue);
        // Nodes without an image have no shape that could overlap.
        editor.scene()->buildByProjectFile(
            {nodeRecord("A", QPointF(100, 200), 7), nodeRecord("B", QPointF(100, 200), 7)},
            {linkRecord("A", "B")});
        const QRect everywhere(0, 0, 800, 600);
        QCOMPARE(countPixels(paintedScene(editor.scene()), everywhere, Qt::blue), 0);
        editor.nodes().first()->setPos(130, 200);
        QVERIFY(countPixels(paintedScene(editor.scene()), everywhere, Qt::blue) > 30);
    }

    void buildingFromTheTopReversesTheIdsAndTwiceRestoresThem()
    {
        Editor editor;
        const QStringList drawn{QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")};
        for (int i = 0; i < drawn.size(); ++i)
            editor.insertNode(DiagramItem::Endpoint, QPointF(100 + 200 * i, 200),
                              qPrintable(drawn[i]));
        const QStringList reversed{drawn[2], drawn[1], drawn[0]};
        for (const QStringList& expected : {reversed, drawn}) {
            editor.scene()->buildByProjectFile(recordsFromTheTop(editor), {});
            QCOMPARE(namesOf(editor.nodes()), expected);
            QCOMPARE(idsOf(editor.nodes()),
                     (QStringList{QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("2")}));
        }
    }

    void looksAndStackingAreNotPartOfARecord()
    {
        Editor editor;
        DiagramItem* node = editor.insertNode(DiagramItem::Endpoint, QPointF(100, 200), "A");
        node->setZValue(0.7);
        editor.scene()->setTextColor(Qt::blue);
        editor.scene()->setLineColor(Qt::red);
        editor.scene()->buildByProjectFile(
            {nodeRecord("A", QPointF(10, 20)), nodeRecord("B", QPointF(300, 20))},
            {linkRecord("A", "B")});
        for (const DiagramItem* built : editor.nodes()) {
            QCOMPARE(built->zValue(), 0.0);
            QCOMPARE(built->textColor, QColor(Qt::blue));
            QCOMPARE(built->textHeight, QFontMetrics(built->font).height());
        }
        QCOMPARE(editor.links().first()->color, QColor(Qt::red));
        QCOMPARE(editor.links().first()->textColor, QColor(Qt::blue));
    }

    void namesOfNodesThatAreGoneStayAndLeadNowhere()
    {
        Editor editor;
        editor.scene()->buildByProjectFile(
            {nodeRecord("X", QPointF(10, 20)), nodeRecord("Y", QPointF(300, 20))}, {});
        editor.nodes().first()->setSelected(true);
        editor.key(Qt::Key_Delete);
        QVERIFY(nodeItemsByName.contains(QStringLiteral("X")));
        QVERIFY(!nodeItemsByName.value(QStringLiteral("X")));
        QCOMPARE(nodeItemsByName.value(QStringLiteral("Y")), editor.nodes().first());
        editor.scene()->clear();
        QVERIFY(nodeItemsByName.contains(QStringLiteral("Y")));
        QVERIFY(!nodeItemsByName.value(QStringLiteral("Y")));
    }

    void onlyRecordsAddNames()
    {
        Editor editor;
        editor.insertNode(DiagramItem::Endpoint, QPointF(100, 200), "drawn");
        QVERIFY(!nodeItemsByName.contains(QStringLiteral("drawn")));
    }
};

ROTUNDA_GUI_TEST_MAIN(BuildFromRecordsTest)
#include "BuildFromRecordsTest.moc"
