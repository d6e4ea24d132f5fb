#include "tests/driver/Studio.h"

#include "topology/EditItemWindow.h"
#include "topology/EditLineWindow.h"
#include "traffic/AddDstNodeForm.h"
#include "traffic/AddVLineForm.h"
#include "traffic/FlowEditorForm.h"
#include "traffic/VLineEditorForm.h"
#include "traffic/VLineNodeSelectForm.h"

#include "tests/support/DialogAnswers.h"
#include "tests/support/DialogClicks.h"
#include "tests/support/Failure.h"

#include <QDockWidget>
#include <QMenuBar>
#include <QToolBar>

Studio::Studio()
    : m_own(std::make_unique<MainWindow>(QMap<QString, QString>(), nullptr)),
      window(*m_own),
      probe(window),
      editor(*probe.topologyWindow())
{
    window.resize(1200, 900);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        failTest("the window is not shown");
    editor.view()->centerOn(400, 300);
}

Studio::Studio(MainWindow& shown) : window(shown), probe(window), editor(*probe.topologyWindow()) {}

void Studio::clickToolBar(const QString& text)
{
    auto* bar = window.findChild<QToolBar*>(QStringLiteral("Toolbar"));
    for (QAction* action : bar->actions()) {
        if (action->text() == text)
            QTest::mouseClick(bar->widgetForAction(action), Qt::LeftButton);
    }
}

void Studio::clickFileMenu(const QString& text)
{
    auto* bar = window.findChild<QMenuBar*>(QStringLiteral("Menubar"));
    QAction* file = bar->actions().first();
    QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->actionGeometry(file).center());
    QMenu* menu = file->menu();
    if (!QTest::qWaitForWindowExposed(menu)) {
        failTest("the file menu does not open");
        return;
    }
    for (QAction* action : menu->actions()) {
        if (action->text() != text)
            continue;
        QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier,
                          menu->actionGeometry(action).center());
        return;
    }
    failTest("the file menu has no such entry");
}

void Studio::openProject(const QString& path)
{
    DialogAnswers answers;
    answers.expectFile(path);
    clickFileMenu(QStringLiteral(u"打开工程"));
    if (!answers.allAnswered())
        failTest("the project was not asked for");
}

void Studio::saveProject(const QString& path)
{
    DialogAnswers answers;
    answers.expectFile(path);
    clickFileMenu(QStringLiteral(u"保存工程"));
    if (!answers.allAnswered())
        failTest("the project's name was not asked for");
}

DiagramItem* Studio::drawNode(DiagramItem::DiagramType type, const QPointF& center,
                              const char* name)
{
    DiagramItem* item = editor.insertNode(type, center);
    editor.chooseFromContextMenu(center, QStringLiteral(u"编辑节点"));
    EditItemWindow* dialog = editor.nodeDialog();
    typeText(dialog, "lineEdit_nodeName", name);
    typeText(dialog, "lineEdit_nodeMac", "2:0:0:0:0:1");
    typeText(dialog, "lineEdit_mtu", "1500");
    typeText(dialog, "lineEdit_bufferNum", "4");
    if (type == DiagramItem::Switch)
        typeText(dialog, "lineEdit_portNum", "8");
    clickButton(dialog, "confirmButton");
    return item;
}

Arrow* Studio::drawLink(DiagramItem* from, int fromPort, DiagramItem* to, int toPort)
{
    Arrow* link = editor.drawLink(from, to);
    editor.chooseFromContextMenu((centerOf(from) + centerOf(to)) / 2, QStringLiteral(u"编辑链路"));
    EditLineWindow* dialog = editor.linkDialog();
    typeText(dialog, "lineEdit_srcPort", QString::number(fromPort));
    typeText(dialog, "lineEdit_dstPort", QString::number(toPort));
    typeText(dialog, "lineEdit_bandWidth", "1000");
    clickButton(dialog, "confirmButton");
    return link;
}

void Studio::drawSmallNetwork()
{
    DiagramItem* a = drawNode(DiagramItem::Endpoint, QPointF(100, 150), "A");
    DiagramItem* b = drawNode(DiagramItem::Endpoint, QPointF(700, 150), "B");
    DiagramItem* c = drawNode(DiagramItem::Endpoint, QPointF(660, 310), "C");
    DiagramItem* s1 = drawNode(DiagramItem::Switch, QPointF(300, 150), "S1");
    DiagramItem* s2 = drawNode(DiagramItem::Switch, QPointF(500, 150), "S2");
    drawLink(a, 0, s1, 0);
    drawLink(s1, 1, s2, 0);
    drawLink(s2, 1, b, 0);
    drawLink(s2, 2, c, 0);
}

DiagramItem* Studio::node(const char* name)
{
    for (DiagramItem* item : editor.nodes()) {
        if (item->nodeName == QString::fromUtf8(name))
            return item;
    }
    return nullptr;
}

QPushButton* Studio::dockButton(QDockWidget* dock, const QString& text)
{
    for (auto* button : dock->findChildren<QPushButton*>()) {
        if (button->text() == text)
            return button;
    }
    return nullptr;
}

VLineEditorForm* Studio::openVLineEditor()
{
    if (!probe.vLineDock())
        clickToolBar(QStringLiteral(u"虚链路配置"));
    QTest::mouseClick(dockButton(probe.vLineDock(), QStringLiteral(u"添加")), Qt::LeftButton);
    return probe.vLineEditorForm();
}

FlowEditorForm* Studio::openFlowEditor()
{
    if (!probe.flowDock())
        clickToolBar(QStringLiteral(u"流量配置"));
    QTest::mouseClick(dockButton(probe.flowDock(), QStringLiteral(u"添加")), Qt::LeftButton);
    return probe.flowEditorForm();
}

/// The form that another one has opened last; null, and the test fails, without one.
template <typename Form>
static Form* newestPart(const QDialog* opener)
{
    const QList<Form*> forms = opener ? opener->findChildren<Form*>() : QList<Form*>();
    if (forms.isEmpty())
        failTest("the form does not open");
    return forms.isEmpty() ? nullptr : forms.last();
}

AddVLineForm* Studio::openPath(VLineEditorForm* form)
{
    clickButton(form, "addVLineButton");
    return newestPart<AddVLineForm>(form);
}

VLineNodeSelectForm* Studio::openNodeChoice(AddVLineForm* form)
{
    clickButton(form, "addNodeButton");
    return newestPart<VLineNodeSelectForm>(form);
}

void Studio::addPath(VLineEditorForm* form, const QStringList& names)
{
    AddVLineForm* path = openPath(form);
    if (!path)
        return;
    const QString start = lineEdit(path, "lineEdit_vLineInfo")->text();
    for (int i = start == QStringLiteral("{}") ? 0 : 1; i < names.size(); ++i) {
        VLineNodeSelectForm* choice = openNodeChoice(path);
        if (!choice)
            return;
        comboBox(choice, "comboBox_vLineNode")->setCurrentText(names.at(i));
        clickButton(choice, "confirmButton");
    }
    clickButton(path, "confirmButton");
}

void Studio::defineVLine(const char* id, const QList<QStringList>& paths)
{
    VLineEditorForm* form = openVLineEditor();
    typeText(form, "lineEdit_VLineId", id);
    for (const QStringList& names : paths)
        addPath(form, names);
    clickButton(form, "confirmButton");
}

void Studio::fillReceiveWindow(FlowEditorForm* form, const QStringList& rcvWindow)
{
    clickButton(form, "addDstButton");
    auto* listener = newestPart<AddDstNodeForm>(form);
    typeText(listener, "lineEdit_rcvWindowLow", rcvWindow.at(0));
    typeText(listener, "lineEdit_rcvWindowHigh", rcvWindow.at(1));
    clickButton(listener, "confirmButton");
}

void Studio::defineFlow(const char* type, const char* id, const char* period, const char* vLineId,
                        const QStringList& sendWindow, const QList<QStringList>& rcvWindows)
{
    FlowEditorForm* form = openFlowEditor();
    if (!form) {
        failTest("the form of a flow does not open");
        return;
    }
    comboBox(form, "comboBox_flowType")->setCurrentText(QString::fromUtf8(type));
    comboBox(form, "comboBox_vLineId")->setCurrentText(QString::fromUtf8(vLineId));
    typeText(form, "lineEdit_flowId", id);
    typeText(form, "lineEdit_flowPeriod", period);
    typeText(form, "lineEdit_flowSize", "64");
    typeText(form, "lineEdit_sendWindowLow", sendWindow.at(0));
    typeText(form, "lineEdit_sendWindowHigh", sendWindow.at(1));
    for (int i = 0; i < rcvWindows.size(); ++i) {
        comboBox(form, "comboBox_dstNode")->setCurrentIndex(i);
        fillReceiveWindow(form, rcvWindows.at(i));
    }
    clickButton(form, "confirmButton");
}
