#pragma once

#include "topology/EditItemWindow.h"
#include "topology/EditLineWindow.h"

#include "tests/driver/Editor.h"

#include <QPushButton>
#include <QtTest>

#include <random>
#include <vector>

/// Who walks: picks actions and places from a seeded sequence.
class EditorWalker
{
public:
    EditorWalker(Editor& worked, quint32 seed) : editor(worked), m_random(seed) {}

    /// Does one action and returns its name.
    const char* step()
    {
        int ticket = pick(105);
        for (const Action& action : actions()) {
            ticket -= action.weight;
            if (ticket < 0) {
                (this->*action.run)();
                return action.name;
            }
        }
        return "nothing";
    }

    /// The names of all actions.
    static QStringList kinds()
    {
        QStringList names;
        for (const Action& action : actions())
            names.append(QString::fromUtf8(action.name));
        return names;
    }

    /// A number from 0 to count - 1.
    int pick(int count) { return int(m_random() % quint32(count)); }

    Editor& editor;

private:
    struct Action {
        const char* name;
        int weight;
        void (EditorWalker::*run)();
    };

    static const std::vector<Action>& actions()
    {
        static const std::vector<Action> all = {
            {"insert host", 10, &EditorWalker::insertHost},
            {"insert switch", 8, &EditorWalker::insertSwitch},
            {"draw link", 30, &EditorWalker::drawLink},
            {"drag node", 10, &EditorWalker::dragNode},
            {"drag anywhere", 4, &EditorWalker::dragAnywhere},
            {"delete node", 7, &EditorWalker::deleteNode},
            {"delete link", 5, &EditorWalker::deleteLink},
            {"delete several", 2, &EditorWalker::deleteSeveral},
            {"raise or lower", 8, &EditorWalker::restack},
            {"open node dialog", 4, &EditorWalker::openNodeDialog},
            {"open link dialog", 4, &EditorWalker::openLinkDialog},
            {"confirm dialogs", 4, &EditorWalker::confirmDialogs},
            {"cancel dialogs", 2, &EditorWalker::cancelDialogs},
            {"delete by context menu", 2, &EditorWalker::deleteByContextMenu},
            {"begin a link and delete its node", 2, &EditorWalker::deleteWhileDrawing},
            {"rebuild from records", 1, &EditorWalker::rebuild},
            {"change font and colours", 2, &EditorWalker::changeLooks},
        };
        return all;
    }

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
        // Where no node is in reach, the window offers its tool bars.
        if (QWidget* menu = QApplication::activePopupWidget())
            menu->close();
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

/// What is wrong with the drawing; empty when ids, links, names and open dialogs are whole.
QString findFault(Editor& editor);
