#include "tests/app/walk/WalkedStudio.h"
#include "traffic/AddDstNodeForm.h"
#include "traffic/AddVLineForm.h"
#include "traffic/FlowEditorForm.h"
#include "traffic/ShowVLineInfoForm.h"
#include "traffic/VLineEditorForm.h"
#include "traffic/VLineNodeSelectForm.h"

#include <QTableWidget>

static void chooseAny(WalkedStudio& walked, QComboBox* list)
{
    if (list->count() > 0)
        list->setCurrentIndex(walked.pick(list->count()));
}

static bool openVLineForm(WalkedStudio& walked)
{
    return walked.openVLineEditor() != nullptr;
}

static bool openPathForm(WalkedStudio& walked)
{
    VLineEditorForm* form = walked.probe.vLineEditorForm();
    if (form)
        walked.openPath(form);
    return form;
}

static bool openChoice(WalkedStudio& walked)
{
    auto* path = openForm<AddVLineForm>();
    if (path)
        walked.openNodeChoice(path);
    return path;
}

static bool chooseNode(WalkedStudio& walked)
{
    openChoice(walked);
    auto* form = openForm<VLineNodeSelectForm>();
    if (!form)
        return false;
    chooseAny(walked, comboBox(form, "comboBox_vLineNode"));
    clickButton(form, walked.pick(8) ? "confirmButton" : "cancelButton");
    return true;
}

static bool confirmPath(WalkedStudio& walked)
{
    auto* form = openForm<AddVLineForm>();
    if (form)
        clickButton(form, walked.pick(8) ? "confirmButton" : "cancelButton");
    return form;
}

static bool deletePathNode(WalkedStudio&)
{
    auto* form = openForm<AddVLineForm>();
    if (form)
        clickButton(form, "delNodeButton");
    return form;
}

static bool deletePath(WalkedStudio& walked)
{
    VLineEditorForm* form = walked.probe.vLineEditorForm();
    if (!form || comboBox(form, "comboBox_VLineInfo")->count() == 0)
        return false;
    chooseAny(walked, comboBox(form, "comboBox_VLineInfo"));
    clickButton(form, "delVLineButton");
    return true;
}

static bool confirmVLine(WalkedStudio& walked)
{
    VLineEditorForm* form = walked.probe.vLineEditorForm();
    if (!form)
        return false;
    if (comboBox(form, "comboBox_VLineInfo")->count() == 0 && walked.pick(6))
        return false; // is refused and loses the form, so not too often
    if (walked.pick(4))
        typeText(form, "lineEdit_VLineId", QString::number(walked.pick(5)));
    clickButton(form, "confirmButton");
    return true;
}

static bool closeAForm(WalkedStudio& walked)
{
    QList<QDialog*> forms = openForms<QDialog>();
    if (forms.isEmpty() || walked.pick(3))
        return false;
    std::sort(forms.begin(), forms.end(), [](const QDialog* a, const QDialog* b) {
        return qstrcmp(a->metaObject()->className(), b->metaObject()->className()) < 0;
    });
    QDialog* form = walked.pickFrom(forms);
    if (walked.pick(2))
        QTest::keyClick(form, Qt::Key_Escape);
    else
        form->close();
    return true;
}

static bool openFlowForm(WalkedStudio& walked)
{
    return walked.openFlowEditor() != nullptr;
}

static bool changeFlowLink(WalkedStudio& walked)
{
    FlowEditorForm* form = walked.probe.flowEditorForm();
    if (form) {
        chooseAny(walked, comboBox(form, "comboBox_flowType"));
        chooseAny(walked, comboBox(form, "comboBox_vLineId"));
    }
    return form;
}

static bool editListener(WalkedStudio& walked)
{
    FlowEditorForm* form = walked.probe.flowEditorForm();
    if (!form)
        return false;
    chooseAny(walked, comboBox(form, "comboBox_dstNode"));
    clickButton(form, "addDstButton");
    auto* listener = openForm<AddDstNodeForm>();
    if (!listener)
        return false;
    typeText(listener, "lineEdit_rcvWindowLow", QString::number(walked.pick(4) * 200));
    typeText(listener, "lineEdit_rcvWindowHigh", QString::number(walked.pick(5) * 1000));
    if (walked.pick(6))
        clickButton(listener, walked.pick(4) ? "confirmButton" : "cancelButton");
    return true;
}

// Periods that are multiples of each other: the cycle stays short.
static bool confirmFlow(WalkedStudio& walked)
{
    FlowEditorForm* form = walked.probe.flowEditorForm();
    if (!form)
        return false;
    const auto fill = [&](const char* field, const QVector<const char*>& texts) {
        if (walked.pick(20))
            lineEdit(form, field)->setText(QString::fromUtf8(walked.pickFrom(texts)));
    };
    fill("lineEdit_flowId", {"0", "1", "2", "3", "7", "70000"});
    fill("lineEdit_flowPeriod", {"1000", "2000", "4000", "5000", "10000", "10000", "0", "x", "-5"});
    fill("lineEdit_flowSize", {"64", "1500", "0"});
    fill("lineEdit_sendWindowLow", {"0", "0", "200", "1000", "-200"});
    fill("lineEdit_sendWindowHigh", {"1000", "2000", "4000", "0", "<&>"});
    clickButton(form, walked.pick(12) ? "confirmButton" : "cancelButton");
    return true;
}

static bool deleteRows(WalkedStudio& walked, QTableWidget* table, QDockWidget* dock)
{
    if (!table || table->rowCount() == 0)
        return false;
    table->clearSelection();
    for (int row = 0; row < table->rowCount(); ++row) {
        if (walked.pick(12) == 0) {
            table->setRangeSelected(
                QTableWidgetSelectionRange(row, 0, row, table->columnCount() - 1), true);
        }
    }
    QTest::mouseClick(Studio::dockButton(dock, QStringLiteral(u"删除")), Qt::LeftButton);
    return true;
}

static bool deleteVLines(WalkedStudio& walked)
{
    return deleteRows(walked, walked.probe.vLineTable(), walked.probe.vLineDock());
}

static bool deleteFlows(WalkedStudio& walked)
{
    return deleteRows(walked, walked.probe.flowTable(), walked.probe.flowDock());
}

static bool showPath(WalkedStudio& walked)
{
    QTableWidget* table = walked.probe.vLineTable();
    if (table->rowCount() == 0)
        return false;
    table->setCurrentCell(walked.pick(table->rowCount()), 0);
    const int row = walked.pick(table->rowCount());
    emit qobject_cast<QComboBox*>(table->cellWidget(row, 2))->activated(walked.pick(3));
    return openForm<ShowVLineInfoForm>();
}

static bool toggleADock(WalkedStudio& walked)
{
    walked.clickToolBar(walked.pick(2) ? QStringLiteral(u"虚链路配置")
                                       : QStringLiteral(u"流量配置"));
    return true;
}

WalkActions trafficActions()
{
    return {{"open virtual link form", 5, &openVLineForm},
            {"open path form", 5, &openPathForm},
            {"open node choice", 4, &openChoice},
            {"choose node", 14, &chooseNode},
            {"confirm path", 9, &confirmPath},
            {"delete node of path", 3, &deletePathNode},
            {"delete path", 2, &deletePath},
            {"confirm virtual link", 6, &confirmVLine},
            {"close a form", 9, &closeAForm},
            {"open flow form", 5, &openFlowForm},
            {"change flow's link", 4, &changeFlowLink},
            {"edit listener", 8, &editListener},
            {"confirm flow", 5, &confirmFlow},
            {"delete virtual links", 2, &deleteVLines},
            {"delete flows", 3, &deleteFlows},
            {"show path", 5, &showPath},
            {"toggle traffic dock", 5, &toggleADock}};
}
