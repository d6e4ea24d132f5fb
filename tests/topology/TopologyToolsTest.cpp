#include "tests/driver/Editor.h"
#include "tests/support/GuiTestMain.h"
#include "tests/topology/SpokenItems.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QFontComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QToolBar>
#include <QToolButton>
#include <QWidgetAction>

// What the drawing tool offers: actions, menus, tool bars, tool box.

static QAction* actionNamed(Editor& editor, const QString& text)
{
    for (QAction* action : editor.window.findChildren<QAction*>()) {
        if (action->text() == text)
            return action;
    }
    return nullptr;
}

/// Texts of the actions, class names of the widgets, "-" for separators.
static QStringList contentsOf(const QWidget* holder)
{
    QStringList contents;
    for (QAction* action : holder->actions()) {
        const auto* widget = qobject_cast<QWidgetAction*>(action);
        if (widget)
            contents.append(QLatin1String(widget->defaultWidget()->metaObject()->className()));
        else
            contents.append(action->isSeparator() ? QStringLiteral("-") : action->text());
    }
    return contents;
}

static QStringList itemsOf(const QComboBox* combo)
{
    QStringList items;
    for (int i = 0; i < combo->count(); ++i)
        items.append(combo->itemText(i));
    return items;
}

static QImage iconImage(const QIcon& icon)
{
    return icon.pixmap(32, 32).toImage();
}

class TopologyToolsTest : public QObject
{
    Q_OBJECT

private slots:
    void actionsCarryTextShortcutIconAndTip_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shortcut");
        QTest::addColumn<QString>("icon");
        QTest::addColumn<QString>("tip");
        QTest::addColumn<bool>("checkable");
        const auto row = [](const char* text, const char* shortcut, const char* icon,
                            const char* tip, bool checkable) {
            QTest::newRow(icon) << QString::fromUtf8(text) << QString::fromUtf8(shortcut)
                                << QString::fromUtf8(icon) << QString::fromUtf8(tip) << checkable;
        };
        row("置于顶层", "Ctrl+F", ":/images/bringtofront.png", "将拓扑节点置于顶层", false);
        row("置于底层", "Ctrl+T", ":/images/sendtoback.png", "将拓扑节点置于底层", false);
        row("删除", "Del", ":/images/delete.png", "删除拓扑节点", false);
        row("Bold", "Ctrl+B", ":/images/bold.png", "", true);
        row("Italic", "Ctrl+I", ":/images/italic.png", "", true);
        row("Underline", "Ctrl+U", ":/images/underline.png", "", true);
        row("编辑节点", "Ctrl+E", ":/icons/fugue/edit-signiture.png", "", false);
        row("编辑链路", "Ctrl+E", ":/icons/fugue/edit-signiture.png", "", false);
    }

    void actionsCarryTextShortcutIconAndTip()
    {
        QFETCH(QString, text);
        QFETCH(QString, icon);
        Editor editor;
        const QAction* action = actionNamed(editor, text);
        QVERIFY(action);
        QCOMPARE(action->parent(), &editor.window);
        QTEST(action->shortcut().toString(), "shortcut");
        QTEST(action->statusTip(), "tip");
        QTEST(action->isCheckable(), "checkable");
        QVERIFY(QFile::exists(icon));
        QCOMPARE(iconImage(action->icon()), iconImage(QIcon(icon)));
    }

    void toolBarsHoldTheirToolsInOrder()
    {
        Editor editor;
        const QList<QToolBar*> bars = editor.window.findChildren<QToolBar*>();
        QCOMPARE(bars.size(), 4);
        QCOMPARE(contentsOf(bars[0]),
                 (QStringList{QStringLiteral(u"删除"), QStringLiteral(u"置于顶层"),
                              QStringLiteral(u"置于底层")}));
        QCOMPARE(contentsOf(bars[1]),
                 (QStringList{QStringLiteral("QFontComboBox"), QStringLiteral("QComboBox"),
                              QStringLiteral("Bold"), QStringLiteral("Italic"),
                              QStringLiteral("Underline")}));
        const QString button = QStringLiteral("QToolButton");
        QCOMPARE(contentsOf(bars[2]), (QStringList{button, button, button}));
        QCOMPARE(contentsOf(bars[3]), (QStringList{button, button, QStringLiteral("QComboBox")}));
    }

    void everyToolFitsBesideTheOthers()
    {
        Editor editor;
        for (const QToolBar* bar : editor.window.findChildren<QToolBar*>()) {
            for (QAction* action : bar->actions())
                QVERIFY2(bar->widgetForAction(action)->isVisible(), qPrintable(action->text()));
        }
    }

    void fontIsNamedFromItsFirstLetter()
    {
        Editor editor;
        auto* fonts = editor.window.findChild<QFontComboBox*>();
        QCOMPARE(fonts->lineEdit()->cursorPosition(), 0);
        fonts->setCurrentIndex((fonts->currentIndex() + 1) % fonts->count());
        QCOMPARE(fonts->lineEdit()->cursorPosition(), 0);
    }

    void menusHoldTheirEntries()
    {
        Editor editor;
        QStringList titled;
        for (const QMenu* menu : editor.window.findChildren<QMenu*>()) {
            if (menu->title() == QStringLiteral(u"选项"))
                QCOMPARE(contentsOf(menu),
                         (QStringList{QStringLiteral(u"删除"), QStringLiteral("-"),
                                      QStringLiteral(u"置于顶层"), QStringLiteral(u"置于底层")}));
            if (!menu->title().isEmpty())
                titled.append(menu->title());
        }
        QCOMPARE(titled, (QStringList{QStringLiteral(u"文件"), QStringLiteral(u"选项")}));
    }

    void linkMenuEditsAndDeletes()
    {
        Editor editor;
        DiagramItem* a = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        DiagramItem* b = editor.insertNode(DiagramItem::Endpoint, QPointF(500, 200));
        Arrow* link = editor.drawLink(a, b);
        a->setSelected(true);
        QStringList entries;
        editor.openContextMenu(QPointF(325, 200),
                               [&entries](QMenu* menu) { entries = contentsOf(menu); });
        QCOMPARE(entries, (QStringList{QStringLiteral(u"编辑链路"), QStringLiteral(u"删除")}));
        QCOMPARE(editor.scene()->selectedItems(), QList<QGraphicsItem*>{link});
    }

    void listsOfSizesAndScales()
    {
        Editor editor;
        QStringList sizes;
        for (int size = 8; size <= 28; size += 2)
            sizes.append(QString::number(size));
        const QComboBox* fontSizes = TopologyWindowProbe::fontSizes(editor.window);
        QCOMPARE(itemsOf(fontSizes), sizes);
        QVERIFY(fontSizes->isEditable());
        QCOMPARE(fontSizes->currentText(), QStringLiteral("10"));
        const QComboBox* scales = TopologyWindowProbe::scales(editor.window);
        QCOMPARE(itemsOf(scales),
                 (QStringList{QStringLiteral("50%"), QStringLiteral("75%"), QStringLiteral("100%"),
                              QStringLiteral("125%"), QStringLiteral("150%")}));
        QCOMPARE(scales->currentIndex(), 2);
    }

    void pointersAndNodeButtonsStartAtRest()
    {
        Editor editor;
        QButtonGroup* pointers = TopologyWindowProbe::pointerButtons(editor.window);
        QVERIFY(pointers->exclusive());
        QCOMPARE(pointers->checkedId(), int(DiagramScene::MoveItem));
        QButtonGroup* nodes = TopologyWindowProbe::nodeButtons(editor.window);
        QVERIFY(!nodes->exclusive());
        QCOMPARE(nodes->checkedId(), -1);
        QCOMPARE(nodes->button(0)->iconSize(), QSize(50, 50));
        QStringList captions;
        for (QAbstractButton* button : nodes->buttons())
            captions.append(button->parentWidget()->findChild<QLabel*>()->text());
        QCOMPARE(captions, (QStringList{QStringLiteral(u"终端"), QStringLiteral(u"交换机")}));
        QCOMPARE(TopologyWindowProbe::backgroundButtons(editor.window)->checkedId(), -1);
    }

    void colourButtonAppliesTheColourChosenLast()
    {
        Editor editor;
        const DiagramItem* node = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        QToolButton* button = TopologyWindowProbe::textColorButton(editor.window);
        QCOMPARE(button->popupMode(), QToolButton::MenuButtonPopup);
        QVERIFY(button->autoFillBackground());
        button->menu()->actions().at(3)->trigger();
        QCOMPARE(node->textColor, QColor(Qt::yellow));
        editor.scene()->setTextColor(Qt::green);
        QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
        QCOMPARE(node->textColor, QColor(Qt::yellow));
    }

    void fillColourColoursTheButtonAndNoNode()
    {
        Editor editor;
        DiagramItem* node = editor.insertNode(DiagramItem::Endpoint, QPointF(150, 200));
        node->setSelected(true);
        const QImage before = paintedScene(editor.scene());
        QToolButton* button = TopologyWindowProbe::fillColorButton(editor.window);
        button->menu()->actions().at(1)->trigger();
        QCOMPARE(button->icon().pixmap(50, 80).toImage().pixelColor(25, 70), QColor(Qt::red));
        QCOMPARE(paintedScene(editor.scene()), before);
    }

    void zoomKeepsTheViewsShift()
    {
        Editor editor;
        editor.view()->setTransform(QTransform::fromTranslate(30, 20));
        TopologyWindowProbe::scales(editor.window)->setCurrentText(QStringLiteral("75%"));
        QCOMPARE(editor.view()->transform(), QTransform(0.75, 0, 0, 0.75, 30, 20));
    }
};

ROTUNDA_GUI_TEST_MAIN(TopologyToolsTest)
#include "TopologyToolsTest.moc"
