#include "topology/TopologyWindow.h"

#include "topology/DiagramScene.h"
#include "topology/DiagramView.h"
#include "topology/EditLineWindow.h"
#include "widgets/ContextMenu.h"

#include <QAction>
#include <QApplication>
#include <QHBoxLayout>
#include <QToolBox>

// The window's frame: actions, menus, scene and view. Tool bars and tool box are built in
// TopologyWindowTools.cpp, what the actions do stands in TopologyWindowEdit.cpp.

static constexpr QRectF sceneBounds(0, 0, 5000, 5000);

TopologyWindow::TopologyWindow()
{
    createActions();
    createToolBox();
    createMenus();
    createScene();
    createToolbars();

    auto* central = new QWidget;
    auto* layout = new QHBoxLayout(central);
    auto* diagram = new DiagramView(scene);
    connect(diagram, &DiagramView::escapePressed, this, &TopologyWindow::leaveInsertMode);
    connect(diagram, &DiagramView::zoomed, this, &TopologyWindow::zoom);
    view = diagram;
    layout->addWidget(toolBox);
    layout->addWidget(view);
    setCentralWidget(central);
    setWindowTitle(QStringLiteral(u"拓扑构建工具"));
    setUnifiedTitleAndToolBarOnMac(true);
    describeTools();
    view->setFocus();
}

// The link dialog has no parent, so nobody else deletes it. The scene goes first: its items tell
// the dialogs that they go.
TopologyWindow::~TopologyWindow()
{
    delete scene;
    delete editLineWindow;
}

DiagramScene* TopologyWindow::getScence()
{
    return scene;
}

void TopologyWindow::bringDrawingIntoView()
{
    if (!scene->items().isEmpty() && view->items(view->viewport()->rect()).isEmpty())
        view->centerOn(scene->itemsBoundingRect().center());
}

void TopologyWindow::updateGraphics()
{
    scene->update();
    view->update();
}

bool TopologyWindow::eventFilter(QObject* object, QEvent* event)
{
    const bool isDeleteKey = object == deleteAction && event->type() == QEvent::Shortcut;
    if (isDeleteKey && QApplication::activePopupWidget())
        return true;
    return QMainWindow::eventFilter(object, event);
}

QAction* TopologyWindow::createAction(const QString& icon, const QString& text,
                                      const QString& shortcut, const QString& statusTip, Slot slot)
{
    auto* action = new QAction(QIcon(icon), text, this);
    action->setShortcut(shortcut);
    action->setStatusTip(statusTip);
    connect(action, &QAction::triggered, this, slot);
    return action;
}

QAction* TopologyWindow::createFontAction(const QString& icon, const QString& text,
                                          const QString& shortcut)
{
    QAction* action =
        createAction(icon, text, shortcut, QString(), &TopologyWindow::handleFontChange);
    action->setCheckable(true);
    return action;
}

void TopologyWindow::createActions()
{
    toFrontAction =
        createAction(QStringLiteral(":/images/bringtofront.png"), QStringLiteral(u"置于顶层"),
                     QStringLiteral("Ctrl+F"), QStringLiteral(u"将拓扑节点置于顶层"),
                     &TopologyWindow::bringToFront);
    sendBackAction =
        createAction(QStringLiteral(":/images/sendtoback.png"), QStringLiteral(u"置于底层"),
                     QStringLiteral("Ctrl+T"), QStringLiteral(u"将拓扑节点置于底层"),
                     &TopologyWindow::sendToBack);
    deleteAction = createAction(QStringLiteral(":/images/delete.png"), QStringLiteral(u"删除"),
                                QStringLiteral("Delete"), QStringLiteral(u"删除拓扑节点"),
                                &TopologyWindow::deleteItem);
    // With the focus in a table of the studio the key would delete nodes out of sight.
    deleteAction->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    addAction(deleteAction);
    deleteAction->installEventFilter(this);
    boldAction = createFontAction(QStringLiteral(":/images/bold.png"), QStringLiteral("Bold"),
                                  QStringLiteral("Ctrl+B"));
    italicAction = createFontAction(QStringLiteral(":/images/italic.png"), QStringLiteral("Italic"),
                                    QStringLiteral("Ctrl+I"));
    underlineAction = createFontAction(QStringLiteral(":/images/underline.png"),
                                       QStringLiteral("Underline"), QStringLiteral("Ctrl+U"));
    const QString editIcon = QStringLiteral(":/icons/fugue/edit-signiture.png");
    editNodeAction = createAction(editIcon, QStringLiteral(u"编辑节点"), QStringLiteral("Ctrl+E"),
                                  QString(), &TopologyWindow::editItem);
    editLinkAction = createAction(editIcon, QStringLiteral(u"编辑链路"), QStringLiteral("Ctrl+E"),
                                  QString(), &TopologyWindow::editLine);
}

void TopologyWindow::createMenus()
{
    fileMenu = new QMenu(QStringLiteral(u"文件"), this);
    itemMenu = new QMenu(QStringLiteral(u"选项"), this);
    itemMenu->addAction(deleteAction);
    itemMenu->addSeparator();
    itemMenu->addAction(toFrontAction);
    itemMenu->addAction(sendBackAction);
}

QMenu* TopologyWindow::createContextMenu(QAction* editAction)
{
    auto* menu = new ContextMenu(this);
    menu->addAction(editAction);
    menu->addAction(deleteAction);
    return menu;
}

void TopologyWindow::createScene()
{
    QMenu* nodeMenu = createContextMenu(editNodeAction);
    QMenu* linkMenu = createContextMenu(editLinkAction);
    scene = new DiagramScene(nodeMenu, linkMenu, this);
    scene->setSceneRect(sceneBounds);
    connect(scene, &DiagramScene::itemInserted, this, &TopologyWindow::itemInserted);
    connect(scene, &DiagramScene::textInserted, this, &TopologyWindow::textInserted);
    connect(scene, &DiagramScene::itemSelected, this, &TopologyWindow::itemSelected);
}
