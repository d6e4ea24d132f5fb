#include "app/ImportVekForm.h"
#include "app/OutportVekForm.h"
#include "traffic/AddVLineForm.h"
#include "traffic/VLineEditorForm.h"
#include "traffic/VLineNodeSelectForm.h"

#include "tests/driver/Studio.h"
#include "tests/support/DialogAnswers.h"
#include "tests/support/DialogClicks.h"
#include "tests/support/Documents.h"
#include "tests/support/Failure.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"

#include <QTableWidget>

// Enter in a form does what the moment asks for, and never loses what was typed.

template <typename Form>
static Form* activeForm(Form* form)
{
    if (form)
        form->activateWindow();
    if (!form || !QTest::qWaitForWindowActive(form))
        failTest("the form does not become active");
    return form;
}

/// Presses Enter where the form has its focus.
static void pressEnter(QDialog* form)
{
    if (!activeForm(form))
        return;
    QWidget* focus = form->focusWidget();
    QTest::keyClick(focus ? focus : form, Qt::Key_Return);
}

static QString defaultButton(const QDialog* form)
{
    for (const auto* button : form->findChildren<QPushButton*>()) {
        if (button->isDefault())
            return button->text();
    }
    return QString();
}

class EnterKeyTest : public QObject
{
    Q_OBJECT

private slots:
    void virtualLinkIsDefinedByEnterAlone()
    {
        Studio studio;
        studio.drawSmallNetwork();
        VLineEditorForm* form = activeForm(studio.openVLineEditor());
        QVERIFY(form);
        typeText(form, "lineEdit_VLineId", "7");
        pressEnter(form);
        auto* path = activeForm(form->findChild<AddVLineForm*>());
        QVERIFY(path);
        for (int node = 0; node < 4; ++node) {
            QCOMPARE(defaultButton(path), u("添加节点"));
            pressEnter(path);
            const auto choices = path->findChildren<VLineNodeSelectForm*>();
            QVERIFY(!choices.isEmpty());
            pressEnter(choices.last());
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        QCOMPARE(lineEdit(path, "lineEdit_vLineInfo")->text(), u("{A->S1->S2->B}"));
        QCOMPARE(defaultButton(path), u("确认"));
        pressEnter(path);
        QCOMPARE(comboBox(form, "comboBox_VLineInfo")->count(), 1);
        QCOMPARE(defaultButton(form), u("确认"));
        pressEnter(form);
        QVERIFY(!studio.probe.vLineEditorForm());
        QCOMPARE(studio.probe.vLineTable()->rowCount(), 1);
        QCOMPARE(studio.probe.vLineInfoList().first().vLineId, u("7"));
    }

    void enterBeforeThereIsAnIdentifierRefusesNothing()
    {
        Studio studio;
        studio.drawSmallNetwork();
        VLineEditorForm* form = activeForm(studio.openVLineEditor());
        QVERIFY(form);
        studio.addPath(form, {u("A"), u("S1"), u("S2"), u("B")});
        QCOMPARE(defaultButton(form), u("添加数据路径"));
        typeText(form, "lineEdit_VLineId", "7");
        QCOMPARE(defaultButton(form), u("确认"));
        clickButton(form, "delVLineButton");
        QCOMPARE(defaultButton(form), u("添加数据路径"));
    }

    void enterAfterAClickedStepGoesOnToTheNext()
    {
        Studio studio;
        studio.drawSmallNetwork();
        AddVLineForm* path = activeForm(studio.openPath(studio.openVLineEditor()));
        QVERIFY(path);
        path->findChild<QPushButton*>(u("addNodeButton"))->setFocus();
        for (const char* name : {"A", "S1", "S2"})
            path->rcvItem(studio.node(name));
        QCOMPARE(defaultButton(path), u("添加节点"));
        path->rcvItem(studio.node("B"));
        QCOMPARE(path->focusWidget()->objectName(), u("confirmButton"));
        clickButton(path, "delNodeButton");
        QCOMPARE(defaultButton(path), u("添加节点"));
    }

    void importAsksForThePathsFirst()
    {
        const TemporaryFolder folder;
        for (const char* name : {"vek_input.xml", "vek_output.xml"})
            writeFile(folder.path(u(name)), "<x/>");
        ImportVekForm* form = new ImportVekForm;
        const QSignalSpy imported(form, &ImportVekForm::signal_importVekFile);
        form->show();
        DialogAnswers answers;
        answers.expectFile(folder.path(u("vek_input.xml")));
        pressEnter(form);
        answers.expectFile(folder.path(u("vek_output.xml")));
        pressEnter(form);
        QVERIFY(answers.allAnswered());
        QCOMPARE(lineEdit(form, "lineEdit_inputPath")->text(), folder.path(u("vek_input.xml")));
        QCOMPARE(lineEdit(form, "lineEdit_outputPath")->text(), folder.path(u("vek_output.xml")));
        QCOMPARE(defaultButton(form), u("确认导入"));
        pressEnter(form);
        QCOMPARE(imported.count(), 1);
    }

    void exportAsksForTheFolderFirst()
    {
        const TemporaryFolder folder;
        OutportVekForm form;
        const QSignalSpy exported(&form, &OutportVekForm::signal_outportVekFile);
        form.show();
        DialogAnswers answers;
        answers.expectCancelledFileDialog();
        pressEnter(&form);
        QCOMPARE(defaultButton(&form), u("选择导出文件夹"));
        answers.expectFile(folder.path(QString()));
        pressEnter(&form);
        QVERIFY(answers.allAnswered());
        QCOMPARE(defaultButton(&form), u("确认导出"));
        clickButton(&form, "button_cancel");
        QCOMPARE(exported.count(), 0);
    }
};

ROTUNDA_GUI_TEST_MAIN(EnterKeyTest)
#include "EnterKeyTest.moc"
