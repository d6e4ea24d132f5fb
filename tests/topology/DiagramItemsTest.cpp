#include "tests/driver/Editor.h"
#include "tests/support/GuiTestMain.h"
#include "tests/topology/SpokenItems.h"

#include <QFontMetrics>

// Records and painting of nodes, links and texts, read from painted pixels.

static QFont labelFont()
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSize(10);
    font.setStyleStrategy(QFont::NoAntialias);
    return font;
}

/// Two hosts with a blue link whose labels are red, at the given centres.
struct LinkedHosts {
    Editor editor;
    DiagramItem* start = nullptr;
    DiagramItem* end = nullptr;
    Arrow* link = nullptr;

    LinkedHosts(const QPointF& startCenter, const QPointF& endCenter)
    {
        editor.scene()->setFont(labelFont());
        editor.scene()->setTextColor(Qt::red);
        editor.scene()->setLineColor(Qt::blue);
        start = editor.insertNode(DiagramItem::Endpoint, startCenter);
        end = editor.insertNode(DiagramItem::Endpoint, endCenter);
        link = editor.drawLink(start, end);
        link->srcPort = QStringLiteral("17");
        link->dstPort = QStringLiteral("42");
        editor.scene()->clearSelection();
    }

    QImage painted() { return paintedScene(editor.scene()); }
};

static const QRect everywhere(0, 0, 800, 600);

class DiagramItemsTest : public QObject
{
    Q_OBJECT

private slots:
    void typesTellTheItemsApart()
    {
        QCOMPARE(DIAGRAM_ITEM_TYPE, QGraphicsItem::UserType + 15);
        QCOMPARE(ARROW_TYPE, QGraphicsItem::UserType + 4);
        QCOMPARE(DIAGRAM_TEXT_ITEM_TYPE, QGraphicsItem::UserType + 3);
        const DiagramItem node(DiagramItem::Endpoint, nullptr, nullptr);
        DiagramItem other(DiagramItem::Switch, nullptr, nullptr);
        const Arrow link(&other, &other, nullptr, nullptr);
        const DiagramTextItem text(nullptr);
        QCOMPARE(node.type(), DIAGRAM_ITEM_TYPE);
        QCOMPARE(link.type(), ARROW_TYPE);
        QCOMPARE(text.type(), DIAGRAM_TEXT_ITEM_TYPE);
    }

    void nodeIsBornWithNullTexts()
    {
        const DiagramItem node(DiagramItem::Switch, nullptr, nullptr);
        for (const QString& text :
             {node.nodeName, node.nodeId, node.nodeMac, node.portNum, node.mtu, node.bufferNum})
            QVERIFY(text.isNull());
        QCOMPARE(node.textHeight, 15);
        QVERIFY(!node.textColor.isValid());
        QCOMPARE(node.pixmap.size(), QSize(112, 84));
        QCOMPARE(node.pixmapCenter(), QPoint(55, 41));
        QVERIFY(node.flags() & QGraphicsItem::ItemIsMovable);
        QVERIFY(node.flags() & QGraphicsItem::ItemIsSelectable);
        QVERIFY(node.flags() & QGraphicsItem::ItemSendsGeometryChanges);
        QCOMPARE(node.boundingRect(), QRectF(-0.5, -0.5, 113, 84 + 1 + 15));
        const DiagramItem host(DiagramItem::Endpoint, nullptr, nullptr);
        QCOMPARE(host.pixmapCenter(), QPoint(43, 38));
        const DiagramItem strange(static_cast<DiagramItem::DiagramType>(7), nullptr, nullptr);
        QVERIFY(strange.image().isNull());
    }

    void linkCopiesTheNamesAndIsBlackAndNotMovable()
    {
        DiagramItem start(DiagramItem::Endpoint, nullptr, nullptr);
        DiagramItem end(DiagramItem::Endpoint, nullptr, nullptr);
        start.nodeName = QStringLiteral("A");
        const Arrow link(&start, &end, nullptr, nullptr);
        QCOMPARE(link.srcNode, QStringLiteral("A"));
        QVERIFY(link.dstNode.isNull());
        QVERIFY(link.lineName.isNull() && link.srcPort.isNull() && link.spareText.isNull());
        QCOMPARE(link.color, QColor(Qt::black));
        QVERIFY(!(link.flags() & QGraphicsItem::ItemIsMovable));
        QVERIFY(link.flags() & QGraphicsItem::ItemIsSelectable);
    }

    void boundingRectOfALinkLeavesRoomForItsLabels()
    {
        DiagramItem start(DiagramItem::Endpoint, nullptr, nullptr);
        DiagramItem end(DiagramItem::Endpoint, nullptr, nullptr);
        start.setPos(300, 200);
        Arrow link(&start, &end, nullptr, nullptr);
        link.updatePosition();
        QCOMPARE(link.line(), QLineF(343, 238, 43, 38));
        QCOMPARE(link.boundingRect(), QRectF(43 - 51, 38 - 51, 300 + 102, 200 + 102));
    }

    void edgesAreNumberedClockwiseFromTheTop_data()
    {
        QTest::addColumn<QPointF>("target");
        QTest::addColumn<int>("edge");
        QTest::addColumn<QPointF>("point");
        // A host at the origin: centre (43, 38), box 44 to each side, 38 up and down.
        QTest::newRow("top") << QPointF(43, -200) << 1 << QPointF(43, 0);
        QTest::newRow("right") << QPointF(300, 38) << 2 << QPointF(87, 38);
        QTest::newRow("bottom") << QPointF(43, 300) << 3 << QPointF(43, 76);
        QTest::newRow("left") << QPointF(-300, 38) << 4 << QPointF(-1, 38);
        QTest::newRow("corner counts for the earlier edge")
            << QPointF(43 + 88, 38 - 76) << 1 << QPointF(87, 0);
    }

    void edgesAreNumberedClockwiseFromTheTop()
    {
        QFETCH(QPointF, target);
        DiagramItem start(DiagramItem::Endpoint, nullptr, nullptr);
        DiagramItem end(DiagramItem::Endpoint, nullptr, nullptr);
        const Arrow link(&start, &end, nullptr, nullptr);
        QPointF point;
        QTEST(int(link.intersectEdge(&start, QLineF(QPointF(43, 38), target), &point)), "edge");
        QTEST(point, "point");
        QCOMPARE(link.intersectEdge(&start, QLineF(40, 30, 45, 40), &point), 0);
    }

    void labelsLieBesideThePointsWhereTheLineLeaves_data()
    {
        QTest::addColumn<QPointF>("start");
        QTest::addColumn<QPointF>("end");
        QTest::newRow("to the right") << QPointF(150, 300) << QPointF(600, 300);
        QTest::newRow("to the left") << QPointF(600, 300) << QPointF(150, 300);
        QTest::newRow("downwards") << QPointF(300, 100) << QPointF(300, 450);
        QTest::newRow("upwards") << QPointF(300, 450) << QPointF(300, 100);
        QTest::newRow("slanted") << QPointF(150, 100) << QPointF(600, 320);
    }

    void labelsLieBesideThePointsWhereTheLineLeaves()
    {
        QFETCH(QPointF, start);
        QFETCH(QPointF, end);
        LinkedHosts hosts(start, end);
        const QSize size(QFontMetrics(labelFont()).horizontalAdvance(hosts.link->srcPort),
                         hosts.link->textHeight);
        const QImage image = hosts.painted();
        int found = 0;
        for (DiagramItem* node : {hosts.start, hosts.end}) {
            const QRect label = expectedLabel(hosts, node, size);
            const int inside = countPixels(image, label, Qt::red);
            QVERIFY2(inside > 10, qPrintable(QString::number(inside)));
            found += inside;
        }
        QCOMPARE(countPixels(image, everywhere, Qt::red), found);
    }

    void eachLabelShowsThePortOfItsEnd()
    {
        LinkedHosts hosts(QPointF(150, 300), QPointF(600, 300));
        const QRect startHalf(0, 0, 375, 600);
        const QRect endHalf(375, 0, 425, 600);
        const QImage both = hosts.painted();
        hosts.link->dstPort.clear();
        const QImage startOnly = hosts.painted();
        QCOMPARE(startOnly.copy(startHalf), both.copy(startHalf));
        QCOMPARE(countPixels(startOnly, endHalf, Qt::red), 0);
        hosts.link->dstPort = hosts.link->srcPort;
        QVERIFY(hosts.painted().copy(endHalf) != both.copy(endHalf));
    }

    void textsArePaintedInTheirFont()
    {
        LinkedHosts hosts(QPointF(150, 300), QPointF(600, 300));
        hosts.start->nodeName = QStringLiteral("N");
        const QRect name(100, 338, 100, 100);
        const QRect label(192, 300, 100, 38);
        QImage image = hosts.painted();
        const int nameBefore = countPixels(image, name, Qt::red);
        const int labelBefore = countPixels(image, label, Qt::red);
        QFont larger = labelFont();
        larger.setPointSize(20);
        hosts.editor.scene()->setFont(larger);
        image = hosts.painted();
        QVERIFY(countPixels(image, name, Qt::red) > 2 * nameBefore);
        QVERIFY(countPixels(image, label, Qt::red) > 2 * labelBefore);
    }

    void destinationLabelIsOnlyAsWideAsTheSourceLabel()
    {
        LinkedHosts hosts(QPointF(150, 300), QPointF(600, 300));
        hosts.link->srcPort = QStringLiteral("1");
        hosts.link->dstPort = QStringLiteral("1234567");
        const QSize size(QFontMetrics(labelFont()).horizontalAdvance(QStringLiteral("1")),
                         hosts.link->textHeight);
        const QRect label = expectedLabel(hosts, hosts.end, size);
        const QImage image = hosts.painted();
        QVERIFY(countPixels(image, label, Qt::red) > 0);
        QCOMPARE(countPixels(image, QRect(400, 200, 400, 200), Qt::red),
                 countPixels(image, label, Qt::red));
    }

    void emptySourcePortLeavesNoWidthForTheOther()
    {
        LinkedHosts hosts(QPointF(150, 300), QPointF(600, 300));
        hosts.link->srcPort.clear();
        QCOMPARE(countPixels(hosts.painted(), everywhere, Qt::red), 0);
    }

    void linkOfOverlappingNodesPaintsNothing()
    {
        LinkedHosts hosts(QPointF(150, 300), QPointF(600, 300));
        hosts.link->setZValue(10); // above the nodes, so that they cannot hide it
        QVERIFY(countPixels(hosts.painted(), everywhere, Qt::blue) > 0);
        hosts.end->setPos(hosts.start->pos() + QPointF(30, 10));
        QImage image = hosts.painted();
        QCOMPARE(countPixels(image, everywhere, Qt::blue), 0);
        QCOMPARE(countPixels(image, everywhere, Qt::red), 0);
        hosts.end->setPos(500, 300);
        QVERIFY(countPixels(hosts.painted(), everywhere, Qt::blue) > 0);
    }

    void linkOfCoincidingCentresPaintsNothing()
    {
        LinkedHosts hosts(QPointF(150, 300), QPointF(600, 300));
        hosts.link->setZValue(10);
        hosts.end->setPos(hosts.start->pos());
        QCOMPARE(countPixels(hosts.painted(), everywhere, Qt::blue), 0);
    }

    void linkRunsFromCentreToCentreBehindTheNodes()
    {
        LinkedHosts hosts(QPointF(150, 300), QPointF(600, 300));
        const QImage image = hosts.painted();
        QVERIFY(countPixels(image, QRect(300, 298, 100, 4), Qt::blue) >= 200);
        QCOMPARE(countPixels(image, QRect(150, 298, 20, 4), Qt::blue), 0);
        QCOMPARE(hosts.link->zValue(), -1000.0);
    }

    void selectedLinkShowsParallelsFourPixelsAway_data()
    {
        QTest::addColumn<QPointF>("end");
        QTest::addColumn<bool>("beside");
        QTest::newRow("horizontal: above and below") << QPointF(600, 100) << false;
        QTest::newRow("vertical: left and right") << QPointF(100, 500) << true;
        QTest::newRow("flat: above and below") << QPointF(600, 180) << false;
        QTest::newRow("steep: left and right") << QPointF(180, 500) << true;
        QTest::newRow("diagonal: above and below") << QPointF(450, 450) << false;
    }

    void selectedLinkShowsParallelsFourPixelsAway()
    {
        QFETCH(QPointF, end);
        QFETCH(bool, beside);
        LinkedHosts hosts(QPointF(100, 100), end);
        hosts.link->srcPort.clear();
        hosts.link->setZValue(10);
        const QImage plain = hosts.painted();
        hosts.link->setSelected(true);
        const QImage selected = hosts.painted();
        const QLineF line = hosts.link->line();
        const QPointF offset = beside ? QPointF(4, 0) : QPointF(0, 4);
        for (const QPointF& shift : {offset, -offset}) {
            int changed = 0;
            for (qreal t = 0.02; t < 0.98; t += 0.01)
                changed += differs(plain, selected, line.translated(shift).pointAt(t));
            QVERIFY2(changed > 30 && changed < 95, qPrintable(QString::number(changed)));
        }
        // The parallels begin where the line begins, shifted in one direction only.
        const QPointF wrong = beside ? QPointF(0, 4) : QPointF(-4, 0);
        const QPointF begin = line.p1() + wrong + (line.pointAt(0.005) - line.p1());
        const bool diagonalOrStraight = beside || qFuzzyCompare(line.dx(), line.dy());
        if (diagonalOrStraight)
            QVERIFY(!differs(plain, selected, begin));
    }

    void storedLineLagsOneMoveBehind()
    {
        LinkedHosts hosts(QPointF(150, 100), QPointF(600, 100));
        const QLineF before = hosts.link->line();
        hosts.end->setPos(hosts.end->pos() + QPointF(0, 100));
        QCOMPARE(hosts.link->line(), before);
        hosts.end->setPos(hosts.end->pos() + QPointF(0, 50));
        QCOMPARE(hosts.link->line().p2(), before.p2() + QPointF(0, 100));
        hosts.link->srcPort.clear();
        hosts.link->setSelected(true);
        const QImage image = hosts.painted();
        const QPointF onDashes = QLineF(before.p1(), before.p2() + QPointF(0, 104)).pointAt(0.5);
        const QRect around(int(onDashes.x()) - 10, int(onDashes.y()) - 3, 20, 6);
        QVERIFY(countPixels(image, around, Qt::blue) > 0);
    }

    void dashesLagWhileANodeIsDragged()
    {
        LinkedHosts hosts(QPointF(150, 100), QPointF(500, 100));
        hosts.link->srcPort.clear();
        hosts.link->setSelected(true);
        const QPointF grip = centerOf(hosts.end);
        hosts.editor.press(grip);
        hosts.link->setSelected(true); // the press selects the node alone
        hosts.editor.moveTo(grip + QPointF(0, 60));
        hosts.editor.moveTo(grip + QPointF(0, 160));
        QCOMPARE(centerOf(hosts.end), grip + QPointF(0, 160));
        QCOMPARE(hosts.link->line(), QLineF(centerOf(hosts.start), grip + QPointF(0, 60)));
        const QImage image = hosts.painted();
        const QLineF solid(centerOf(hosts.start), centerOf(hosts.end));
        const QLineF dashed = hosts.link->line().translated(0, 4);
        for (const QLineF& line : {solid, dashed}) {
            const QPoint middle = line.pointAt(0.5).toPoint();
            QVERIFY(countPixels(image, QRect(middle - QPoint(8, 2), QSize(16, 4)), Qt::blue) > 0);
        }
        hosts.editor.release(grip + QPointF(0, 160));
        QCOMPARE(hosts.link->line(), QLineF(centerOf(hosts.start), grip + QPointF(0, 60)));
    }

    void selectedNodeHasADashedFrameAroundItsImage()
    {
        Editor editor;
        DiagramItem* node = editor.insertNode(DiagramItem::Endpoint, QPointF(300, 300));
        const QPoint origin = node->pos().toPoint();
        const int right = 89;  // one more than the picture: the painted rectangle is rounded up
        const int bottom = 78; // likewise
        const QRect frame[] = {
            QRect(origin, QSize(right, 1)), QRect(origin + QPoint(right, 0), QSize(1, bottom)),
            QRect(origin + QPoint(0, bottom), QSize(right, 1)), QRect(origin, QSize(1, bottom))};
        editor.scene()->clearSelection();
        QImage image = paintedScene(editor.scene());
        for (const QRect& side : frame)
            QCOMPARE(countPixels(image, side, Qt::black), 0);
        node->setSelected(true);
        image = paintedScene(editor.scene());
        for (const QRect& side : frame) {
            const int dark = countPixels(image, side, Qt::black);
            const int length = std::max(side.width(), side.height());
            QVERIFY2(dark > length / 3 && dark < length, qPrintable(QString::number(dark)));
        }
        const QRect below(origin + QPoint(0, bottom + 1), QSize(right, node->textHeight));
        QCOMPARE(countPixels(image, below, Qt::black), 0);
    }

    void nameStandsInTheBandUnderTheImage()
    {
        Editor editor;
        editor.scene()->setFont(labelFont());
        editor.scene()->setTextColor(Qt::red);
        DiagramItem* node = editor.insertNode(DiagramItem::Switch, QPointF(300, 300));
        QCOMPARE(countPixels(paintedScene(editor.scene()), everywhere, Qt::red), 0);
        const qreal emptyHeight = node->boundingRect().height();
        node->nodeName = QStringLiteral("SW1");
        QCOMPARE(node->boundingRect().height(), emptyHeight);
        const QImage image = paintedScene(editor.scene());
        const QRect band(node->pos().toPoint() + QPoint(0, 85), QSize(113, node->textHeight));
        QVERIFY(countPixels(image, band, Qt::red) > 20);
        QCOMPARE(countPixels(image, everywhere, Qt::red), countPixels(image, band, Qt::red));
        const QRect middle(band.adjusted(36, 0, -36, 0));
        QCOMPARE(countPixels(image, middle, Qt::red), countPixels(image, band, Qt::red));
    }

    void removingLinksShortensTheListsOfBothEnds()
    {
        Editor editor;
        DiagramItem* hub = editor.insertNode(DiagramItem::Switch, QPointF(400, 300));
        QList<DiagramItem*> others;
        for (const QPointF& place : {QPointF(100, 100), QPointF(650, 100), QPointF(100, 500)})
            others.append(editor.insertNode(DiagramItem::Endpoint, place));
        for (DiagramItem* other : others)
            editor.drawLink(other, hub);
        QCOMPARE(hub->arrows().size(), 3);
        QVERIFY(hub->isLinkedTo(others.first()));
        QVERIFY(!others.first()->isLinkedTo(others.last()));
        hub->removeArrows();
        QVERIFY(hub->arrows().isEmpty());
        for (DiagramItem* other : others)
            QVERIFY(other->arrows().isEmpty());
        QVERIFY(editor.links().isEmpty());
    }

private:
    static QRect expectedLabel(const LinkedHosts& hosts, DiagramItem* node, const QSize& size)
    {
        const QLineF centers(centerOf(hosts.start), centerOf(hosts.end));
        QPointF point;
        switch (hosts.link->intersectEdge(node, centers, &point)) {
        case 4:
            return QRect(QPoint(int(point.x() - size.width()), int(point.y())), size);
        case 1:
            return QRect(QPoint(int(point.x()), int(point.y() - size.height())), size);
        default:
            return QRect(QPoint(int(point.x()), int(point.y())), size);
        }
    }

    static bool differs(const QImage& a, const QImage& b, const QPointF& at)
    {
        const QPoint pixel(int(std::floor(at.x())), int(std::floor(at.y())));
        return a.valid(pixel) && a.pixel(pixel) != b.pixel(pixel);
    }
};

ROTUNDA_GUI_TEST_MAIN(DiagramItemsTest)
#include "DiagramItemsTest.moc"
