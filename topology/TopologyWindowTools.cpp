#include "topology/TopologyWindow.h"

#include "topology/DiagramScene.h"
#include "widgets/ScreenPicture.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QFontComboBox>
#include <QGridLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QToolBar>
#include <QToolBox>
#include <QToolButton>

// The tool box at the left and the four tool bars.

// All tools fit beside each other in the smallest window.
static constexpr int fontComboWidth = 110;

namespace
{

/// Lets nothing be typed above its top; by itself the base class waits for the end of the typing.
class FontSizeValidator : public QIntValidator
{
public:
    using QIntValidator::QIntValidator;

    State validate(QString& text, int& position) const override
    {
        return text.toInt() > top() ? Invalid : QIntValidator::validate(text, position);
    }
};

struct NamedColor {
    QString name;
    QColor color;
};

QList<NamedColor> menuColors()
{
    return {{QStringLiteral(u"黑色"), Qt::black},
            {QStringLiteral(u"红色"), Qt::red},
            {QStringLiteral(u"蓝色"), Qt::blue},
            {QStringLiteral(u"黄色"), Qt::yellow}};
}

QIcon createColorIcon(const QColor& color)
{
    QPixmap pixmap(20, 20);
    QPainter painter(&pixmap);
    painter.setPen(Qt::NoPen);
    painter.fillRect(QRect(0, 0, 20, 20), color);
    return QIcon(pixmap);
}

/// The tool's image above a bar of its current colour.
QIcon createColorToolButtonIcon(const QString& imageFile, const QColor& color)
{
    const QPixmap image = screenPicture(imageFile);
    const qreal ratio = image.devicePixelRatio();
    QPixmap pixmap(QSize(50, 80) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.fillRect(QRect(0, 60, 50, 80), color);
    const QSizeF source = QSizeF(42, 43) * ratio;
    painter.drawPixmap(QRectF(4, 0, 42, 43), image, QRectF(QPointF(), source));
    return QIcon(pixmap);
}

/// A cell of the tool box: the button above its caption.
QWidget* createCell(QToolButton* button, const QString& caption)
{
    button->setIconSize(QSize(50, 50));
    button->setCheckable(true);
    auto* cell = new QWidget;
    auto* layout = new QGridLayout(cell);
    layout->addWidget(button, 0, 0, Qt::AlignHCenter);
    layout->addWidget(new QLabel(caption), 1, 0, Qt::AlignCenter);
    return cell;
}

QString textPointerImage()
{
    return QStringLiteral(":/images/textpointer.png");
}

QString floodFillImage()
{
    return QStringLiteral(":/images/floodfill.png");
}

QString lineColorImage()
{
    return QStringLiteral(":/images/linecolor.png");
}

} // namespace

// ---- Tool box

void TopologyWindow::createToolBox()
{
    QWidget* nodePage = createNodePage();
    toolBox = new QToolBox;
    toolBox->setSizePolicy(QSizePolicy(QSizePolicy::Maximum, QSizePolicy::Ignored));
    toolBox->setMinimumWidth(nodePage->sizeHint().width());
    toolBox->addItem(nodePage, QStringLiteral(u"网络组件"));
    toolBox->addItem(createBackgroundPage(), QStringLiteral(u"背景"));
}

QWidget* TopologyWindow::createNodePage()
{
    buttonGroup = new QButtonGroup(this);
    buttonGroup->setExclusive(false);
    connect(buttonGroup, qOverload<QAbstractButton*>(&QButtonGroup::buttonClicked), this,
            &TopologyWindow::buttonGroupClicked);
    auto* page = new QWidget;
    auto* layout = new QGridLayout(page);
    layout->addWidget(createCellWidget(QStringLiteral(u"终端"), DiagramItem::Endpoint), 0, 0);
    layout->addWidget(createCellWidget(QStringLiteral(u"交换机"), DiagramItem::Switch), 0, 1);
    layout->setRowStretch(3, 10);
    layout->setColumnStretch(2, 10);
    return page;
}

QWidget* TopologyWindow::createBackgroundPage()
{
    backgroundButtonGroup = new QButtonGroup(this);
    connect(backgroundButtonGroup, qOverload<QAbstractButton*>(&QButtonGroup::buttonClicked), this,
            &TopologyWindow::backgroundButtonGroupClicked);
    auto* page = new QWidget;
    auto* layout = new QGridLayout(page);
    const auto add = [&](const QString& text, int image, int row, int column) {
        const QString file = QStringLiteral(":/images/background%1.png").arg(image);
        layout->addWidget(createBackgroundCellWidget(text, file), row, column);
    };
    add(tr("蓝色网格"), 1, 0, 0);
    add(tr("白色网格"), 2, 0, 1);
    add(tr("灰色网格"), 3, 1, 0);
    add(tr("无网格"), 4, 1, 1);
    layout->setRowStretch(2, 10);
    layout->setColumnStretch(2, 10);
    return page;
}

QWidget* TopologyWindow::createCellWidget(const QString& text, int type)
{
    const DiagramItem sample(static_cast<DiagramItem::DiagramType>(type), itemMenu);
    auto* button = new QToolButton;
    button->setIcon(QIcon(sample.image()));
    buttonGroup->addButton(button, type);
    return createCell(button, text);
}

QWidget* TopologyWindow::createBackgroundCellWidget(const QString& text, const QString& image)
{
    auto* button = new QToolButton;
    button->setText(text);
    button->setIcon(QIcon(image));
    backgroundButtonGroup->addButton(button);
    return createCell(button, text);
}

void TopologyWindow::backgroundButtonGroupClicked(QAbstractButton* button)
{
    for (QAbstractButton* other : backgroundButtonGroup->buttons()) {
        if (other != button)
            button->setChecked(false); // without effect: the group keeps one button checked
    }
    const QString grids[] = {tr("蓝色网格"), tr("白色网格"), tr("灰色网格")};
    int image = 4;
    for (int i = 0; i < 3; ++i) {
        if (button->text() == grids[i])
            image = i + 1;
    }
    scene->setBackgroundBrush(
        QBrush(QPixmap(QStringLiteral(":/images/background%1.png").arg(image))));
    updateGraphics();
}

// ---- Tool bars

void TopologyWindow::createToolbars()
{
    setIconSize(QSize(22, 22));
    createEditToolBar();
    createFontToolBar();
    createColorToolBar();
    createPointerToolBar();
    fontSizeCombo->setCurrentIndex(1);
    fontCombo->lineEdit()->home(false);
    handleFontChange();
}

void TopologyWindow::createEditToolBar()
{
    editToolBar = addToolBar(QStringLiteral("Edit"));
    editToolBar->addAction(deleteAction);
    editToolBar->addAction(toFrontAction);
    editToolBar->addAction(sendBackAction);
}

void TopologyWindow::createFontToolBar()
{
    fontCombo = new QFontComboBox;
    fontCombo->setMaximumWidth(fontComboWidth);
    connect(fontCombo, &QFontComboBox::currentFontChanged, this,
            &TopologyWindow::currentFontChanged);
    fontSizeCombo = new QComboBox;
    fontSizeCombo->setEditable(true);
    for (int size = 8; size <= 28; size += 2)
        fontSizeCombo->addItem(QString::number(size));
    fontSizeCombo->setValidator(new FontSizeValidator(2, 64, this));
    connect(fontSizeCombo, &QComboBox::currentTextChanged, this, &TopologyWindow::fontSizeChanged);

    textToolBar = addToolBar(QStringLiteral("Font"));
    textToolBar->addWidget(fontCombo);
    textToolBar->addWidget(fontSizeCombo);
    textToolBar->addAction(boldAction);
    textToolBar->addAction(italicAction);
    textToolBar->addAction(underlineAction);
}

void TopologyWindow::createColorToolBar()
{
    fontColorToolButton = createColorButton(textPointerImage(), &TopologyWindow::textColorChanged,
                                            &TopologyWindow::textButtonTriggered);
    fontColorToolButton->setAutoFillBackground(true);
    fillColorToolButton = createColorButton(floodFillImage(), &TopologyWindow::itemColorChanged,
                                            &TopologyWindow::fillButtonTriggered);
    lineColorToolButton = createColorButton(lineColorImage(), &TopologyWindow::lineColorChanged,
                                            &TopologyWindow::lineButtonTriggered);
    textAction = fontColorToolButton->menu()->defaultAction();
    fillAction = fillColorToolButton->menu()->defaultAction();
    lineAction = lineColorToolButton->menu()->defaultAction();

    colorToolBar = addToolBar(QStringLiteral("Color"));
    colorToolBar->addWidget(fontColorToolButton);
    colorToolBar->addWidget(fillColorToolButton);
    colorToolBar->addWidget(lineColorToolButton);
}

void TopologyWindow::createPointerToolBar()
{
    pointerTypeGroup = new QButtonGroup(this);
    QToolButton* pointer =
        createPointerButton(QStringLiteral(":/images/pointer.png"), DiagramScene::MoveItem);
    pointer->setChecked(true);
    QToolButton* linePointer =
        createPointerButton(QStringLiteral(":/images/linepointer.png"), DiagramScene::InsertLine);
    connect(pointerTypeGroup, qOverload<QAbstractButton*>(&QButtonGroup::buttonClicked), this,
            &TopologyWindow::pointerGroupClicked);

    sceneScaleCombo = new QComboBox;
    for (int percent : {50, 75, 100, 125, 150})
        sceneScaleCombo->addItem(QStringLiteral("%1%").arg(percent));
    sceneScaleCombo->setCurrentIndex(2);
    connect(sceneScaleCombo, &QComboBox::currentTextChanged, this,
            &TopologyWindow::sceneScaleChanged);

    pointerToolBar = addToolBar(QStringLiteral("Pointer type"));
    pointerToolBar->addWidget(pointer);
    pointerToolBar->addWidget(linePointer);
    pointerToolBar->addWidget(sceneScaleCombo);
}

QToolButton* TopologyWindow::createPointerButton(const QString& icon, int mode)
{
    auto* button = new QToolButton;
    button->setCheckable(true);
    button->setIcon(QIcon(icon));
    pointerTypeGroup->addButton(button, mode);
    return button;
}

QToolButton* TopologyWindow::createColorButton(const QString& image, Slot menuSlot, Slot clickSlot)
{
    auto* button = new QToolButton;
    button->setPopupMode(QToolButton::MenuButtonPopup);
    button->setMenu(createColorMenu(menuSlot, Qt::black));
    button->setIcon(createColorToolButtonIcon(image, Qt::black));
    connect(button, &QToolButton::clicked, this, clickSlot);
    return button;
}

QMenu* TopologyWindow::createColorMenu(Slot slot, const QColor& defaultColor)
{
    auto* menu = new QMenu(this);
    for (const NamedColor& entry : menuColors()) {
        QAction* action = menu->addAction(createColorIcon(entry.color), entry.name);
        action->setData(entry.color);
        connect(action, &QAction::triggered, this, slot);
        if (entry.color == defaultColor)
            menu->setDefaultAction(action);
    }
    return menu;
}

// What carries only a picture is named for who does not know it and for who cannot see it.
void TopologyWindow::describeTools()
{
    const auto describe = [](QWidget* widget, const QString& name) {
        widget->setToolTip(name);
        widget->setAccessibleName(name);
    };
    describe(fontCombo, QStringLiteral(u"字体"));
    describe(fontSizeCombo, QStringLiteral(u"字号"));
    describe(fontColorToolButton, QStringLiteral(u"文字颜色"));
    describe(fillColorToolButton, QStringLiteral(u"填充颜色"));
    describe(lineColorToolButton, QStringLiteral(u"线条颜色"));
    describe(pointerTypeGroup->button(DiagramScene::MoveItem), QStringLiteral(u"选择和移动"));
    describe(pointerTypeGroup->button(DiagramScene::InsertLine), QStringLiteral(u"连线"));
    describe(sceneScaleCombo, QStringLiteral(u"显示比例"));
    describe(buttonGroup->button(DiagramItem::Endpoint), QStringLiteral(u"添加终端"));
    describe(buttonGroup->button(DiagramItem::Switch), QStringLiteral(u"添加交换机"));
    for (QAbstractButton* button : backgroundButtonGroup->buttons())
        describe(button, button->text());

    const QPair<QAction*, QString> actions[] = {{deleteAction, QStringLiteral(u"删除")},
                                                {toFrontAction, QStringLiteral(u"置于顶层")},
                                                {sendBackAction, QStringLiteral(u"置于底层")},
                                                {boldAction, QStringLiteral(u"加粗")},
                                                {italicAction, QStringLiteral(u"倾斜")},
                                                {underlineAction, QStringLiteral(u"下划线")}};
    for (const auto& action : actions) {
        const QString key = action.first->shortcut().toString(QKeySequence::NativeText);
        action.first->setToolTip(QStringLiteral("%1 (%2)").arg(action.second, key));
        for (QWidget* holder : action.first->associatedWidgets()) {
            auto* bar = qobject_cast<QToolBar*>(holder);
            if (QWidget* button = bar ? bar->widgetForAction(action.first) : nullptr) {
                button->setAccessibleName(action.second);
                button->setFocusPolicy(Qt::TabFocus); // in a tool bar it has none by itself
            }
        }
    }
}

void TopologyWindow::chooseColor(QAction*& chosen, QToolButton* button, const QString& image)
{
    chosen = qobject_cast<QAction*>(sender());
    button->setIcon(createColorToolButtonIcon(image, chosen->data().value<QColor>()));
}

void TopologyWindow::textColorChanged()
{
    chooseColor(textAction, fontColorToolButton, textPointerImage());
    textButtonTriggered();
}

void TopologyWindow::itemColorChanged()
{
    chooseColor(fillAction, fillColorToolButton, floodFillImage());
    fillButtonTriggered();
}

void TopologyWindow::lineColorChanged()
{
    chooseColor(lineAction, lineColorToolButton, lineColorImage());
    lineButtonTriggered();
}

void TopologyWindow::textButtonTriggered()
{
    scene->setTextColor(textAction->data().value<QColor>());
}

void TopologyWindow::fillButtonTriggered()
{
    scene->setItemColor(fillAction->data().value<QColor>());
}

void TopologyWindow::lineButtonTriggered()
{
    scene->setLineColor(lineAction->data().value<QColor>());
}
