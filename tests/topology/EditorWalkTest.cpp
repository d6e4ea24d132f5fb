#include "topology/EditItemWindow.h"
#include "topology/EditLineWindow.h"
#include "topology/NodeItemsByName.h"

#include "tests/support/GuiTestMain.h"
#include "tests/topology/Editor.h"

#include <QPushButton>

#include <random>

// A long random walk of user actions; after each one the drawing must be whole.

/// Who walks: picks actions and places from a seeded sequence.
class Walker
{
public:
    explicit Walker(quint32 seed) : m_random(seed) {}

    /// Does one action and returns its name.
    const char* step()
    {
        static const Action actions[] = {
            {"insert host", 10, &Walker::insertHost},
            {"insert switch", 8, &Walker::insertSwitch},
            {"draw link", 30, &Walker::drawLink},
            {"drag node", 10, &Walker::dragNode},
            {"drag anywhere", 4, &Walker::dragAnywhere},
            {"delete node", 7, &Walker::deleteNode},
            {"delete link", 5, &Walker::deleteLink},
            {"delete several", 2, &Walker::deleteSeveral},
            {"raise or lower", 8, &Walker::restack},
            {"open node dialog", 4, &Walker::openNodeDialog},
            {"open link dialog", 4, &Walker::openLinkDialog},
            {"confirm dialogs", 4, &Walker::confirmDialogs},
            {"cancel dialogs", 2, &Walker::cancelDialogs},
            {"delete by context menu", 2, &Walker::deleteByContextMenu},
            {"begin a link and delete its node", 2, &Walker::deleteWhileDrawing},
            {"rebuild from records", 1, &Walker::rebuild},
            {"change font and colours", 2, &Walker::changeLooks},
        };
        int ticket = pick(105);
        for (const Action& action : actions) {
            ticket -= action.weight;
            if (ticket < 0) {
                (this->*action.run)();
                return action.name;
            }
        }
        return "nothing";
    }

    Editor editor;

private:
    struct Action {
        const char* name;
        int weight;
        void (Walker::*run)();
    };

    int pick(int count) { return int(m_random() % quint32(count)); }
    QPointF place() { return QPointF(60 + pick(640), 60 + pick(430)); }

    DiagramItem* anyNode()
    {
        const QList<DiagramItem*> nodes = editor.nodes();
        return nodes.isEmpty() ? nullptr : nodes.at(pick(nodes.size()));
    }

    Arrow* anyLink()
    {
        const QList<Arrow*> links = editor.links();
        return links.isEmpty() ? nullptr : links.at(pick(links.size()));
    }

    void select(QGraphicsItem* item)
    {
        editor.scene()->clearSelection();
        if (item)
            item->setSelected(true);
    }

    void invoke(const char* slot) { QMetaObject::invokeMethod(&editor.window, slot); }

    void insert(DiagramItem::DiagramType type)
    {
        if (editor.nodes().size() < 25) {
            const QByteArray name = "N" + QByteArray::number(m_named++ % 40);
            editor.insertNode(type, place(), name.constData());
        }
    }

    void insertHost() { insert(DiagramItem::Endpoint); }
    void insertSwitch() { insert(DiagramItem::Switch); }

    void drawLink()
    {
        DiagramItem* from = anyNode();
        DiagramItem* to = anyNode();
        if (from && to)
            editor.drawLink(from, to);
    }

    void dragNode()
    {
        editor.clickPointerButton(DiagramScene::MoveItem);
        if (DiagramItem* node = anyNode())
            editor.drag(centerOf(node), place());
    }

    void dragAnywhere()
    {
        editor.clickPointerButton(pick(2) ? DiagramScene::InsertLine : DiagramScene::MoveItem);
        editor.drag(place(), place());
        editor.clickPointerButton(DiagramScene::MoveItem);
    }

    void deleteNode()
    {
        select(anyNode());
        invoke("deleteItem");
    }

    void deleteLink()
    {
        select(anyLink());
        invoke("deleteItem");
    }

    void deleteSeveral()
    {
        editor.scene()->clearSelection();
        for (QGraphicsItem* item : editor.scene()->items())
            item->setSelected(pick(5) == 0);
        invoke("deleteItem");
    }

    void restack()
    {
        select(pick(4) ? static_cast<QGraphicsItem*>(anyNode())
                       : static_cast<QGraphicsItem*>(anyLink()));
        invoke(pick(2) ? "bringToFront" : "sendToBack");
        editor.scene()->renumberNodes();
    }

    void openNodeDialog()
    {
        select(anyNode());
        invoke("editItem");
    }

    void openLinkDialog()
    {
        select(anyLink());
        invoke("editLine");
    }

    void clickInDialogs(const char* button)
    {
        QDialog* const dialogs[] = {editor.nodeDialog(), editor.linkDialog()};
        for (QDialog* dialog : dialogs) {
            if (dialog && dialog->isVisible()) {
                QTest::mouseClick(dialog->findChild<QPushButton*>(QString::fromUtf8(button)),
                                  Qt::LeftButton);
            }
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        editor.scene()->renumberNodes(); // a confirmed dialog may have written an old id
    }

    void confirmDialogs() { clickInDialogs("confirmButton"); }
    void cancelDialogs() { clickInDialogs("cancelButton"); }

    void deleteByContextMenu()
    {
        if (DiagramItem* node = anyNode()) {
            editor.openContextMenu(centerOf(node),
                                   [](QMenu* menu) { menu->actions().last()->trigger(); });
        }
    }

    void deleteWhileDrawing()
    {
        DiagramItem* node = anyNode();
        if (!node)
            return;
        editor.clickPointerButton(DiagramScene::InsertLine);
        editor.press(centerOf(node));
        editor.moveTo(place());
        select(node);
        invoke("deleteItem");
        editor.release(place());
        editor.clickPointerButton(DiagramScene::MoveItem);
    }

    void rebuild()
    {
        QList<FileNodeInfo> nodes;
        QList<FileArrowInfo> links;
        for (const DiagramItem* node : editor.nodes()) {
            FileNodeInfo record;
            record.type = node->diagramType;
            record.position = node->pos();
            record.nodeName = node->nodeName;
            nodes.prepend(record);
        }
        for (const Arrow* link : editor.links()) {
            FileArrowInfo record;
            record.srcNode = link->srcNode;
            record.dstNode = link->dstNode;
            links.prepend(record);
        }
        editor.scene()->buildByProjectFile(nodes, links);
    }

    void changeLooks()
    {
        const QColor colors[] = {Qt::black, Qt::red, Qt::blue, Qt::yellow};
        editor.scene()->setTextColor(colors[pick(4)]);
        editor.scene()->setLineColor(colors[pick(4)]);
        QFont font;
        font.setPointSize(8 + pick(20));
        editor.scene()->setFont(font);
    }

    std::mt19937 m_random;
    int m_named = 0;
};

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
        Walker walker(seed);
        int mostNodes = 0;
        int mostLinks = 0;
        for (int step = 0; step < 5000; ++step) {
            const char* action = walker.step();
            const QString fault = findFault(walker.editor);
            QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("step %1, %2: %3")
                                                     .arg(step)
                                                     .arg(QLatin1String(action))
                                                     .arg(fault)));
            mostNodes = std::max(mostNodes, walker.editor.nodes().size());
            mostLinks = std::max(mostLinks, walker.editor.links().size());
            if (step % 500 == 0)
                paintedScene(walker.editor.scene());
        }
        QVERIFY2(mostNodes > 10 && mostLinks > 10, "the walk must reach a drawing worth its name");
    }

private:
    static QString findFault(Editor& editor)
    {
        const QList<DiagramItem*> nodes = editor.nodes();
        const QList<Arrow*> links = editor.links();
        if (editor.scene()->items().size() != nodes.size() + links.size())
            return QStringLiteral("something else is left in the scene");
        for (int i = 0; i < nodes.size(); ++i) {
            if (nodes[i]->nodeId != QString::number(i))
                return QStringLiteral("node %1 has id %2").arg(i).arg(nodes[i]->nodeId);
            for (Arrow* link : nodes[i]->arrows()) {
                if (!links.contains(link))
                    return QStringLiteral("node %1 holds a link outside the scene").arg(i);
                if (link->startItem != nodes[i] && link->endItem != nodes[i])
                    return QStringLiteral("node %1 holds a link of others").arg(i);
            }
        }
        for (Arrow* link : links) {
            if (!nodes.contains(link->startItem) || !nodes.contains(link->endItem))
                return QStringLiteral("a link refers to a node outside the scene");
            const bool toItself = link->startItem == link->endItem;
            if (link->startItem->arrows().count(link) != (toItself ? 2 : 1) ||
                link->endItem->arrows().count(link) != (toItself ? 2 : 1))
                return QStringLiteral("a link does not stand once in both its ends' lists");
        }
        for (DiagramItem* node : qAsConst(nodeItemsByName)) {
            if (node && !nodes.contains(node))
                return QStringLiteral("a name leads to a node outside the scene");
        }
        return QString();
    }
};

ROTUNDA_GUI_TEST_MAIN(EditorWalkTest)
#include "EditorWalkTest.moc"
