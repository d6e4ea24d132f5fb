#pragma once

#include "topology/EditItemWindow.h"
#include "topology/EditLineWindow.h"

#include "tests/driver/Editor.h"
#include "tests/support/Failure.h"

#include <QtTest>

/// A host and a switch with a link, with helpers that open their dialogs from the context menus.
struct LinkedPair {
    Editor editor;
    DiagramItem* a = nullptr;
    DiagramItem* b = nullptr;
    Arrow* link = nullptr;

    LinkedPair()
    {
        a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200), "A");
        b = editor.insertNode(DiagramItem::Switch, QPointF(500, 200), "B");
        link = editor.drawLink(a, b);
    }

    // A dialog becomes active some time after it is shown; keys go astray until then.
    template <typename Dialog>
    static Dialog* shown(Dialog* dialog)
    {
        if (!dialog || !QTest::qWaitForWindowActive(dialog))
            failTest("the dialog does not become active");
        return dialog;
    }

    EditItemWindow* openNode(DiagramItem* node)
    {
        editor.chooseFromContextMenu(centerOf(node), QStringLiteral(u"编辑节点"));
        return shown(editor.nodeDialog());
    }

    EditLineWindow* openLink()
    {
        editor.chooseFromContextMenu((centerOf(a) + centerOf(b)) / 2, QStringLiteral(u"编辑链路"));
        return shown(editor.linkDialog());
    }

    void remove(QGraphicsItem* item)
    {
        editor.scene()->clearSelection();
        item->setSelected(true);
        editor.key(Qt::Key_Delete);
    }
};
