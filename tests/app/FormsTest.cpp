#include "app/FlowScheduleForm.h"
#include "traffic/AddDstNodeForm.h"
#include "traffic/AddVLineForm.h"
#include "traffic/FlowEditorForm.h"
#include "traffic/ShowVLineInfoForm.h"
#include "traffic/VLineEditorForm.h"
#include "traffic/VLineNodeSelectForm.h"

#include "tests/driver/Studio.h"
#include "tests/support/DialogClicks.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/Text.h"

#include <QLabel>
#include <QTableWidget>
#include <QTextBrowser>

// How the forms for virtual links and flows stand: names, captions, what can be typed in, modality.

/// What a user can see or change about a widget; empty for a widget of another kind.
static QString described(const QWidget* widget)
{
    if (const auto* label = qobject_cast<const QLabel*>(widget))
        return label->text();
    if (const auto* button = qobject_cast<const QPushButton*>(widget))
        return button->text();
    if (const auto* edit = qobject_cast<const QLineEdit*>(widget))
        return edit->isReadOnly() ? u("<shown>") : u("<typed>");
    if (const auto* box = qobject_cast<const QComboBox*>(widget))
        return u("<of ") + entries(box).join(QLatin1Char('/')) + QLatin1Char('>');
    return QString();
}

/// "name text" of the labels, buttons, line edits and lists of a form, by name.
static QStringList contentsOf(const QDialog* form)
{
    QStringList contents;
    for (const QWidget* widget : form->findChildren<QWidget*>()) {
        const QString text = described(widget);
        if (!text.isEmpty())
            contents.append(widget->objectName() + QLatin1Char(' ') + text);
    }
    contents.sort();
    return contents;
}

/// The head of a form: "objectName, title", and whether it is modal.
static QString headOf(const QDialog* form)
{
    return form->objectName() + u(", ") + form->windowTitle() +
           (form->isModal() ? u("!") : QString());
}

class FormsTest : public QObject
{
    Q_OBJECT

private slots:
    void virtualLinkFormsStandAsDesigned()
    {
        Studio studio;
        studio.drawSmallNetwork();
        VLineEditorForm* link = studio.openVLineEditor();
        QCOMPARE(headOf(link), u("vLineEditorForm, 虚链路添加"));
        QCOMPARE(contentsOf(link),
                 (QStringList{u("addVLineButton 添加数据路径"), u("cancelButton 取消"),
                              u("comboBox_VLineInfo <of >"), u("confirmButton 确认"),
                              u("delVLineButton 删除当前路径"), u("label 虚链路ID："),
                              u("label_2 虚链路信息："), u("lineEdit_VLineId <typed>")}));

        AddVLineForm* path = studio.openPath(link);
        QCOMPARE(headOf(path), u("addVLineForm, 单条数据路径配置"));
        QCOMPARE(contentsOf(path),
                 (QStringList{u("addNodeButton 添加节点"), u("cancelButton 取消"),
                              u("confirmButton 确认"), u("delNodeButton 删除当前节点"),
                              u("label_2 虚链路信息："), u("lineEdit_vLineInfo <shown>")}));

        const VLineNodeSelectForm* node = studio.openNodeChoice(path);
        QCOMPARE(headOf(node), u("vLineNodeSelectForm, 虚链路节点添加"));
        QCOMPARE(contentsOf(node),
                 (QStringList{u("cancelButton 取消"), u("comboBox_vLineNode <of A/B/C>"),
                              u("confirmButton 确认"), u("label_2 虚链路节点：")}));
    }

    void pathDisplayStandsAsDesigned()
    {
        Studio studio;
        studio.drawSmallNetwork();
        studio.defineVLine("1", {{u("A"), u("S1"), u("S2"), u("B")}});
        QTableWidget* table = studio.probe.vLineTable();
        table->setCurrentCell(0, 0);
        QMetaObject::invokeMethod(&studio.window, "showVLineWindow", Q_ARG(int, 0));
        ShowVLineInfoForm* form = studio.probe.showVLineInfoForm();
        QCOMPARE(headOf(form), u("ShowVLineInfoForm, 虚链路详细信息"));
        QCOMPARE(form->size(), QSize(400, 300));
        QVERIFY(form->findChild<QTextBrowser*>(u("textBrowser"))->isReadOnly());
    }

    void flowFormsStandAsDesigned()
    {
        Studio studio;
        studio.drawSmallNetwork();
        studio.defineVLine("1", {{u("A"), u("S1"), u("S2"), u("B")}});
        FlowEditorForm* flow = studio.openFlowEditor();
        QCOMPARE(headOf(flow), u("flowEditorWindow, 流量添加!"));
        QCOMPARE(contentsOf(flow), (QStringList{u("addDstButton 编辑接收窗口"),
                                                u("cancelButton 取消"),
                                                u("comboBox_dstNode <of B>"),
                                                u("comboBox_flowType <of TT/RC/BE>"),
                                                u("comboBox_vLineId <of 1>"),
                                                u("confirmButton 确认"),
                                                u("label 流类型："),
                                                u("label_10 ]"),
                                                u("label_2 流标识："),
                                                u("label_3 周期(us)："),
                                                u("label_4 消息长度(字节)："),
                                                u("label_5 虚链路ID："),
                                                u("label_6 源端标识："),
                                                u("label_7 目的端标识："),
                                                u("label_8 发送窗口(us)：["),
                                                u("label_9 ,"),
                                                u("lineEdit_flowId <typed>"),
                                                u("lineEdit_flowPeriod <typed>"),
                                                u("lineEdit_flowSize <typed>"),
                                                u("lineEdit_sendWindowHigh <typed>"),
                                                u("lineEdit_sendWindowLow <typed>"),
                                                u("lineEdit_srcNode <shown>")}));

        clickButton(flow, "addDstButton");
        const auto* listener = flow->findChild<AddDstNodeForm*>();
        QCOMPARE(headOf(listener), u("AddDstNodeForm, 目的端添加窗口!"));
        QCOMPARE(
            contentsOf(listener),
            (QStringList{u("cancelButton 取消"), u("confirmButton 确认"), u("label_10 ]"),
                         u("label_6 目的端："), u("label_8 接收窗口(us)：["), u("label_9 ,"),
                         u("lineEdit_dstNodeName <shown>"), u("lineEdit_rcvWindowHigh <typed>"),
                         u("lineEdit_rcvWindowLow <typed>")}));
    }

    void runFormStandsAsDesigned()
    {
        Studio studio;
        studio.clickToolBar(u("调度规划"));
        const FlowScheduleForm* form = studio.probe.flowScheduleForm();
        QCOMPARE(headOf(form), u("FlowScheduleForm, 调度规划"));
        QCOMPARE(contentsOf(form),
                 (QStringList{u("PlanByUserInputButton 导入外部XML作为算法输入进行调度规划"),
                              u("RotundaButton 使用Rotunda的配置进行调度规划"),
                              u("label 调度规划方式：")}));
    }
};

ROTUNDA_GUI_TEST_MAIN(FormsTest)
#include "FormsTest.moc"
