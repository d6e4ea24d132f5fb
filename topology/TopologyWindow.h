#pragma once

#include <QFont>
#include <QMainWindow>

class Arrow;
class DiagramItem;
class DiagramScene;
class EditItemWindow;
class EditLineWindow;
class QAbstractButton;
class QAction;
class QButtonGroup;
class QComboBox;
class QFontComboBox;
class QGraphicsItem;
class QGraphicsTextItem;
class QGraphicsView;
class QGridLayout;
class QMenu;
class QToolBar;
class QToolBox;
class QToolButton;

/// The drawing tool: tool box, view on the scene, and the tool bars that act on it.
class TopologyWindow : public QMainWindow
{
    Q_OBJECT

public:
    TopologyWindow();
    ~TopologyWindow() override;

    /// Scrolls towards the drawing, as far as the canvas goes, when no item of it is in view.
    void bringDrawingIntoView();

    /// Keeps the Delete key from the drawing while a list or menu is open over it.
    bool eventFilter(QObject* object, QEvent* event) override;

public slots:
    /// Repaints scene and view.
    void updateGraphics();
    /// The scene, owned by the window.
    DiagramScene* getScence();

private slots:
    void backgroundButtonGroupClicked(QAbstractButton* button);
    void buttonGroupClicked(QAbstractButton* button);
    void editItem();
    void editLine();
    void deleteItem();
    void pointerGroupClicked();
    void bringToFront();
    void sendToBack();
    void itemInserted(DiagramItem* item);
    void textInserted(QGraphicsTextItem* item);
    void currentFontChanged(QFont font);
    void fontSizeChanged(QString size);
    void sceneScaleChanged(QString scale);
    void textColorChanged();
    void itemColorChanged();
    void lineColorChanged();
    void textButtonTriggered();
    void fillButtonTriggered();
    void lineButtonTriggered();
    void handleFontChange();
    void itemSelected(QGraphicsItem* item);
    void delEditItemWindow();

private:
    friend struct TopologyWindowProbe;

    using Slot = void (TopologyWindow::*)();

    QAction* createAction(const QString& icon, const QString& text, const QString& shortcut,
                          const QString& statusTip, Slot slot);
    QAction* createFontAction(const QString& icon, const QString& text, const QString& shortcut);
    void createActions();
    void createToolBox();
    QWidget* createNodePage();
    QWidget* createBackgroundPage();
    void createMenus();
    QMenu* createContextMenu(QAction* editAction);
    void createScene();
    void createToolbars();
    void createEditToolBar();
    void createFontToolBar();
    void createColorToolBar();
    void createPointerToolBar();
    QToolButton* createPointerButton(const QString& icon, int mode);
    QToolButton* createColorButton(const QString& image, Slot menuSlot, Slot clickSlot);
    QMenu* createColorMenu(Slot slot, const QColor& defaultColor);
    QWidget* createCellWidget(const QString& text, int type);
    QWidget* createBackgroundCellWidget(const QString& text, const QString& image);
    void enterMode(int mode);
    void leaveInsertMode();
    void zoom(int direction);
    void describeTools();
    void chooseColor(QAction*& chosen, QToolButton* button, const QString& image);
    QGraphicsItem* firstSelectedItem() const;
    QList<QGraphicsItem*> selectionInOrder() const;
    void deleteSelectedLinks();

    EditItemWindow* editItemWindow = nullptr; ///< null while closed
    EditLineWindow* editLineWindow = nullptr; ///< null before first use; kept and reused
    DiagramScene* scene = nullptr;
    QGraphicsView* view = nullptr;
    QAction* deleteAction = nullptr;
    QAction* toFrontAction = nullptr;
    QAction* sendBackAction = nullptr;
    QMenu* fileMenu = nullptr;
    QMenu* itemMenu = nullptr;
    QToolBar* textToolBar = nullptr;
    QToolBar* editToolBar = nullptr;
    QToolBar* colorToolBar = nullptr;
    QToolBar* pointerToolBar = nullptr;
    QComboBox* sceneScaleCombo = nullptr;
    QComboBox* fontSizeCombo = nullptr;
    QFontComboBox* fontCombo = nullptr;
    QToolBox* toolBox = nullptr;
    QButtonGroup* buttonGroup = nullptr;
    QButtonGroup* pointerTypeGroup = nullptr;
    QButtonGroup* backgroundButtonGroup = nullptr;
    QToolButton* fontColorToolButton = nullptr;
    QToolButton* fillColorToolButton = nullptr;
    QToolButton* lineColorToolButton = nullptr;
    QAction* boldAction = nullptr;
    QAction* underlineAction = nullptr;
    QAction* italicAction = nullptr;
    QAction* textAction = nullptr; ///< the colour entry last chosen, owned by its menu
    QAction* fillAction = nullptr; ///< likewise
    QAction* lineAction = nullptr; ///< likewise
    QAction* editNodeAction = nullptr;
    QAction* editLinkAction = nullptr;
    int fontSize = 10; ///< points; the last complete entry of fontSizeCombo
};
