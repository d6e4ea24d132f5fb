#include "app/ImportVekForm.h"
#include "app/OutportVekForm.h"

#include "tests/driver/OpenForms.h"
#include "tests/driver/Studio.h"
#include "tests/support/DialogAnswers.h"
#include "tests/support/DialogClicks.h"
#include "tests/support/Documents.h"
#include "tests/support/Failure.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"

#include <QDir>
#include <QDockWidget>
#include <QLabel>
#include <QListWidget>
#include <QPointer>
#include <QTableWidget>

#include <sys/stat.h>

// Importing a schedule from elsewhere and exporting the studio's own, through menu and dialogs.

/// One host and one switch; the schedule of one transmission between them.
static QByteArray inputDocument(const char* hostName)
{
    return QByteArray("<vek_input><topology><hosts><host><hostname>\"") + hostName +
           "\"</hostname><nodeID>0</nodeID></host></hosts><switches><switch><switchname>\"S\""
           "</switchname><nodeID>1</nodeID></switch></switches></topology><flows/></vek_input>";
}

static QByteArray outputDocument(int cycle)
{
    return "<vek_output><schedCycle>" + QByteArray::number(cycle) +
           "</schedCycle><slotLen>200</slotLen><flows><flow><Instance><flowID>1</flowID><seq>0</"
           "seq>"
           "<path_slot><talker><nodeID>0</nodeID><outport>0</outport><txslotID>2</txslotID></"
           "talker>"
           "<bridges><bridge><nodeID>1</nodeID><inport>0</inport><rxslotID>2</rxslotID>"
           "<outport>1</outport><txslotID>3</txslotID></bridge></bridges><listeners/>"
           "</path_slot></Instance></flow></flows></vek_output>";
}

static QString ownInput()
{
    return QDir::currentPath() + u("/ResourceXML/vek_input.xml");
}

static QString ownOutput()
{
    return QDir::currentPath() + u("/OutputXML/vek_output.xml");
}

/// Texts of labels and buttons from top to bottom, in a row from left to right.
static QStringList textsOf(const QDialog* form)
{
    QMap<QPair<int, int>, QString> texts;
    for (const QWidget* widget : form->findChildren<QWidget*>()) {
        const QPoint place = widget->mapTo(form, QPoint());
        if (const auto* label = qobject_cast<const QLabel*>(widget))
            texts[{place.y(), place.x()}] = label->text();
        if (const auto* button = qobject_cast<const QPushButton*>(widget))
            texts[{place.y(), place.x()}] = button->text();
    }
    return texts.values();
}

template <typename Form>
static Form* openedForm()
{
    const QList<Form*> forms = openForms<Form>();
    Form* found = forms.isEmpty() ? nullptr : forms.last();
    if (!found || !QTest::qWaitForWindowExposed(found))
        failTest("the dialog does not open");
    return found;
}

static void deleteWhatIsToBeDeleted()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

/// A studio in a folder of its own, with documents to import in the folder "given".
struct ExchangeStudio {
    TemporaryFolder folder;
    LogCapture log;
    Studio studio;
    QString givenInput = folder.path(u("given/vek_input.xml"));
    QString givenOutput = folder.path(u("given/vek_output.xml"));

    ExchangeStudio()
    {
        writeFile(givenInput, inputDocument("given"));
        writeFile(givenOutput, outputDocument(4000));
    }

    // Nobody else holds these dialogs, and an open one would block the next test's window.
    ~ExchangeStudio()
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (qobject_cast<ImportVekForm*>(widget) || qobject_cast<OutportVekForm*>(widget))
                delete widget;
        }
    }

    ImportVekForm* openImport()
    {
        studio.clickFileMenu(u("导入vek规范"));
        return openedForm<ImportVekForm>();
    }

    OutportVekForm* openExport()
    {
        studio.clickFileMenu(u("导出vek规范"));
        return openedForm<OutportVekForm>();
    }

    /// Chooses a file or folder through a button of the form; an empty path cancels.
    static void choose(QDialog* form, const char* button, const QString& path)
    {
        DialogAnswers answers;
        if (path.isEmpty())
            answers.expectCancelledFileDialog();
        else
            answers.expectFile(path);
        clickButton(form, button);
        if (!answers.allAnswered())
            failTest("no file dialog came");
    }

    /// Empty paths are not chosen at all.
    void import(const QString& input, const QString& output)
    {
        const QPointer<ImportVekForm> form = openImport();
        if (!input.isEmpty())
            choose(form, "button_selectInput", input);
        if (!output.isEmpty())
            choose(form, "button_selectOutput", output);
        clickButton(form, "button_import");
        deleteWhatIsToBeDeleted();
        if (form)
            failTest("the dialog is still there");
    }

    void exportTo(const QString& target)
    {
        const QPointer<OutportVekForm> form = openExport();
        choose(form, "button_selectOutportPath", target);
        clickButton(form, "button_outport");
        deleteWhatIsToBeDeleted();
        if (form)
            failTest("the dialog is still there");
    }

    QStringList listedNodes()
    {
        QStringList names;
        const auto* list = studio.probe.planInfoDock()->findChild<QListWidget*>();
        for (int row = 0; row < list->count(); ++row)
            names.append(list->item(row)->text());
        return names;
    }
};

class DocumentExchangeTest : public QObject
{
    Q_OBJECT

private slots:
    void importFormHasItsTextsAndReadOnlyPaths()
    {
        ExchangeStudio exchange;
        ImportVekForm* form = exchange.openImport();
        QVERIFY(form);
        QCOMPARE(form->objectName(), u("ImportForm"));
        QCOMPARE(form->windowTitle(), u("导入Vek规范"));
        QCOMPARE(form->size(), QSize(382, 259));
        QVERIFY(form->isModal());
        QVERIFY(!form->parent());
        QVERIFY(lineEdit(form, "lineEdit_inputPath")->isReadOnly());
        QVERIFY(lineEdit(form, "lineEdit_outputPath")->isReadOnly());
        QTest::keyClicks(lineEdit(form, "lineEdit_inputPath"), u("/typed"));
        QCOMPARE(lineEdit(form, "lineEdit_inputPath")->text(), QString());
        QCOMPARE(textsOf(form),
                 (QStringList{u("vek_input.xml路径："), u("选择文件"), u("vek_output.xml路径:"),
                              u("选择文件"), u("确认导入"), u("取消导入")}));
    }

    void exportFormHasItsTextsAndReadOnlyPath()
    {
        ExchangeStudio exchange;
        OutportVekForm* form = exchange.openExport();
        QVERIFY(form);
        QCOMPARE(form->objectName(), u("OutportVekForm"));
        QCOMPARE(form->windowTitle(), u("导出Vek规范"));
        QCOMPARE(form->size(), QSize(463, 153));
        QVERIFY(form->isModal());
        QVERIFY(!form->parent());
        QVERIFY(lineEdit(form, "lineEdit_outportPath")->isReadOnly());
        QVERIFY(form->findChild<QWidget*>(u("horizontalLayoutWidget"))
                    ->isAncestorOf(lineEdit(form, "lineEdit_outportPath")));
        QCOMPARE(textsOf(form), (QStringList{u("vek规范导出路径:"), u("选择导出文件夹"),
                                             u("确认导出"), u("取消导出")}));
    }

    void fileDialogsHaveTheirCaptionsAndFilters()
    {
        ExchangeStudio exchange;
        DialogAnswers answers;
        ImportVekForm* importForm = exchange.openImport();
        QVERIFY(importForm);
        answers.expectCancelledFileDialog();
        clickButton(importForm, "button_selectInput");
        answers.expectCancelledFileDialog();
        clickButton(importForm, "button_selectOutput");
        clickButton(importForm, "button_cancel");
        deleteWhatIsToBeDeleted();
        OutportVekForm* exportForm = exchange.openExport();
        QVERIFY(exportForm);
        answers.expectCancelledFileDialog();
        clickButton(exportForm, "button_selectOutportPath");
        QCOMPARE(answers.seen().mid(0, 2),
                 (QStringList{u("导入vek_input.xml [vek_input(vek_input.xml)]"),
                              u("导入vek_output.xml [vek_output(vek_output.xml)]")}));
        QVERIFY(answers.seen().last().startsWith(u("请选择导出Vek规范的文件夹路径 [")));
        QVERIFY(answers.allFileDialogsWereOwn());
        QCOMPARE(answers.parents(), (QList<QWidget*>{importForm, importForm, exportForm}));
    }

    void exportStartsInTheWorkingFolder()
    {
        ExchangeStudio exchange;
        ImportVekForm* importForm = exchange.openImport();
        QVERIFY(importForm);
        ExchangeStudio::choose(importForm, "button_selectInput", exchange.givenInput);
        clickButton(importForm, "button_cancel");
        deleteWhatIsToBeDeleted();
        DialogAnswers answers;
        answers.expectCancelledFileDialog();
        clickButton(exchange.openExport(), "button_selectOutportPath");
        QCOMPARE(answers.startFolders(), QStringList{QDir::currentPath()});
    }

    void cancelledFileDialogEmptiesThePath()
    {
        ExchangeStudio exchange;
        ImportVekForm* form = exchange.openImport();
        QVERIFY(form);
        ExchangeStudio::choose(form, "button_selectInput", exchange.givenInput);
        QCOMPARE(lineEdit(form, "lineEdit_inputPath")->text(), exchange.givenInput);
        QCOMPARE(lineEdit(form, "lineEdit_inputPath")->cursorPosition(), 0);
        ExchangeStudio::choose(form, "button_selectInput", QString());
        QCOMPARE(lineEdit(form, "lineEdit_inputPath")->text(), QString());
        clickButton(form, "button_cancel");
        deleteWhatIsToBeDeleted();
        OutportVekForm* exportForm = exchange.openExport();
        QVERIFY(exportForm);
        ExchangeStudio::choose(exportForm, "button_selectOutportPath",
                               exchange.folder.path(u("given")));
        QCOMPARE(lineEdit(exportForm, "lineEdit_outportPath")->text(),
                 exchange.folder.path(u("given")));
        QCOMPARE(lineEdit(exportForm, "lineEdit_outportPath")->cursorPosition(), 0);
        ExchangeStudio::choose(exportForm, "button_selectOutportPath", QString());
        QCOMPARE(lineEdit(exportForm, "lineEdit_outportPath")->text(), QString());
    }

    void cancellingTheImportFreesTheDialog()
    {
        ExchangeStudio exchange;
        const QPointer<ImportVekForm> form = exchange.openImport();
        QVERIFY(form);
        clickButton(form, "button_cancel");
        deleteWhatIsToBeDeleted();
        QVERIFY(form.isNull());
    }

    void cancellingTheExportOnlyClosesTheDialog()
    {
        ExchangeStudio exchange;
        const QPointer<OutportVekForm> form = exchange.openExport();
        QVERIFY(form);
        clickButton(form, "button_cancel");
        deleteWhatIsToBeDeleted();
        QVERIFY(!form.isNull());
        QVERIFY(!form->isVisible());
        OutportVekForm* next = exchange.openExport();
        QVERIFY(next);
        QVERIFY(next != form);
    }

    void importDialogLeftOtherwiseFreesItself()
    {
        ExchangeStudio exchange;
        QPointer<ImportVekForm> form = exchange.openImport();
        QVERIFY(form);
        QTest::keyClick(form, Qt::Key_Escape);
        deleteWhatIsToBeDeleted();
        QVERIFY(form.isNull());
        form = exchange.openImport();
        form->close(); // as by the title bar
        deleteWhatIsToBeDeleted();
        QVERIFY(form.isNull());
    }

    void importWithOnePathMissingDoesNothing_data()
    {
        QTest::addColumn<bool>("inputGiven");
        QTest::newRow("input missing") << false;
        QTest::newRow("output missing") << true;
    }

    void importWithOnePathMissingDoesNothing()
    {
        QFETCH(bool, inputGiven);
        ExchangeStudio exchange;
        ImportVekForm* form = exchange.openImport();
        QVERIFY(form);
        const QSignalSpy imported(form, &ImportVekForm::signal_importVekFile);
        if (inputGiven)
            ExchangeStudio::choose(form, "button_selectInput", exchange.givenInput);
        else
            ExchangeStudio::choose(form, "button_selectOutput", exchange.givenOutput);
        const QPointer<ImportVekForm> gone = form;
        clickButton(form, "button_import");
        QCOMPARE(imported.count(), 0);
        deleteWhatIsToBeDeleted();
        QVERIFY(gone.isNull());
        QVERIFY(!QDir(u("ResourceXML")).exists());
        QVERIFY(!QDir(u("OutputXML")).exists());
        QVERIFY(!exchange.studio.probe.planInfoDock());
    }

    void importOfTheOwnInputDoesNothing()
    {
        ExchangeStudio exchange;
        writeFile(ownInput(), inputDocument("own"));
        writeFile(ownOutput(), outputDocument(1000));
        exchange.import(ownInput(), exchange.givenOutput);
        QCOMPARE(readFile(ownInput()), inputDocument("own"));
        QCOMPARE(readFile(ownOutput()), outputDocument(1000));
        QVERIFY(!exchange.studio.probe.planInfoDock());
        QCOMPARE(exchange.studio.probe.schedCycle(), 0); // not even loaded
    }

    void importOfTheOwnOutputDoesNothing()
    {
        ExchangeStudio exchange;
        writeFile(ownInput(), inputDocument("own"));
        writeFile(ownOutput(), outputDocument(1000));
        exchange.import(exchange.givenInput, ownOutput());
        QCOMPARE(readFile(ownInput()), inputDocument("own"));
        QCOMPARE(readFile(ownOutput()), outputDocument(1000));
        QCOMPARE(exchange.studio.probe.schedCycle(), 0);
        QVERIFY(!exchange.studio.probe.planInfoDock());
    }

    void importBeforeAnyRunMakesBothFoldersAndOpensTheDock()
    {
        ExchangeStudio exchange;
        QVERIFY(!QDir(u("ResourceXML")).exists());
        exchange.import(exchange.givenInput, exchange.givenOutput);
        QCOMPARE(readFile(ownInput()), inputDocument("given"));
        QCOMPARE(readFile(ownOutput()), outputDocument(4000));
        QVERIFY(exchange.studio.probe.planInfoDock());
        QVERIFY(!exchange.studio.probe.planInfoDock()->isHidden());
        QCOMPARE(exchange.listedNodes(), (QStringList{u("given"), u("S")}));
        QCOMPARE(exchange.studio.probe.schedCycle(), 4000);
        QVERIFY(!QFile::exists(QDir::currentPath() + u("/OutputXML/vek_hs.xml")));
    }

    void importMakesTheFoldersEvenWhenItStopsThere()
    {
        ExchangeStudio exchange;
        exchange.studio.probe.importVekFile(QString(), exchange.givenOutput);
        QVERIFY(QDir(u("ResourceXML")).exists());
        QVERIFY(QDir(u("OutputXML")).exists());
    }

    void importWithoutAnOutputKeepsTheOwnDocuments()
    {
        ExchangeStudio exchange;
        writeFile(ownInput(), inputDocument("own"));
        writeFile(ownOutput(), outputDocument(1000));
        exchange.studio.probe.importVekFile(exchange.givenInput, QString());
        QCOMPARE(readFile(ownInput()), inputDocument("own"));
        QCOMPARE(readFile(ownOutput()), outputDocument(1000));
    }

    void dialogThatOutlivesTheMainWindowEndsTheProcess_data()
    {
        QTest::addColumn<bool>("isImport");
        QTest::addColumn<QByteArray>("button");
        QTest::newRow("import") << true << QByteArray("button_import");
        QTest::newRow("cancelled import") << true << QByteArray("button_cancel");
        QTest::newRow("export") << false << QByteArray("button_outport");
        QTest::newRow("cancelled export") << false << QByteArray("button_cancel");
    }

    // As after a run during which the window was told to close and the dialog was opened.
    void dialogThatOutlivesTheMainWindowEndsTheProcess()
    {
        QFETCH(bool, isImport);
        QFETCH(QByteArray, button);
        ExchangeStudio exchange;
        const QPointer<QDialog> form =
            isImport ? static_cast<QDialog*>(exchange.openImport()) : exchange.openExport();
        const QSignalSpy ended(qApp, &QGuiApplication::lastWindowClosed);
        bool endedEarly = false;
        QTimer::singleShot(0, qApp, [&] {
            exchange.studio.window.close();
            endedEarly = !ended.isEmpty();
            clickButton(form, button.constData());
            // Without an end of its own the process would go on for ever.
            QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        });
        QApplication::exec();
        QVERIFY(!endedEarly);
        QCOMPARE(ended.count(), 1);
    }

    void ownDocumentUnderAnotherNameIsNotLost()
    {
        ExchangeStudio exchange;
        writeFile(ownInput(), inputDocument("own"));
        writeFile(ownOutput(), outputDocument(1000));
        const QString detour = QDir::currentPath() + u("/ResourceXML/../ResourceXML/vek_input.xml");
        exchange.studio.probe.importVekFile(detour, exchange.givenOutput);
        QCOMPARE(readFile(ownInput()), inputDocument("own"));
        QCOMPARE(readFile(ownOutput()), outputDocument(4000)); // only the very same text stops it
        QCOMPARE(exchange.studio.probe.schedCycle(), 4000);
    }

    void linkToTheGivenDocumentIsReplacedByACopy()
    {
        ExchangeStudio exchange;
        QVERIFY(QDir().mkpath(u("ResourceXML")));
        QVERIFY(QFile::link(exchange.givenInput, ownInput()));
        exchange.studio.probe.importVekFile(exchange.givenInput, exchange.givenOutput);
        QVERIFY(!QFileInfo(ownInput()).isSymLink());
        QCOMPARE(readFile(ownInput()), inputDocument("given"));
        exchange.studio.probe.generateInput();
        QCOMPARE(readFile(exchange.givenInput), inputDocument("given"));
    }

    void pipeGivesNoDocumentAndNobodyWaitsForIt()
    {
        ExchangeStudio exchange;
        const QString pipe = exchange.folder.path(u("given/pipe/vek_input.xml"));
        QVERIFY(QDir().mkpath(exchange.folder.path(u("given/pipe"))));
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        exchange.import(pipe, exchange.givenOutput);
        QVERIFY(!QFile::exists(exchange.folder.path(u("ResourceXML/vek_input.xml"))));
        QCOMPARE(readFile(exchange.folder.path(u("OutputXML/vek_output.xml"))),
                 readFile(exchange.givenOutput));
    }

    void linkThatLeadsNowhereIsReplacedByACopy()
    {
        ExchangeStudio exchange;
        QVERIFY(QDir().mkpath(u("ResourceXML")));
        QVERIFY(QFile::link(exchange.folder.path(u("nowhere.xml")), ownInput()));
        exchange.studio.probe.importVekFile(exchange.givenInput, exchange.givenOutput);
        QCOMPARE(readFile(ownInput()), inputDocument("given"));
        QVERIFY(!QFile::exists(exchange.folder.path(u("nowhere.xml"))));
    }

    void importedReadOnlyDocumentsCanBeReplacedByTheNextRun()
    {
        ExchangeStudio exchange;
        for (const QString& path : {exchange.givenInput, exchange.givenOutput})
            QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadUser));
        exchange.studio.probe.importVekFile(exchange.givenInput, exchange.givenOutput);
        for (const QString& path : {ownInput(), ownOutput()})
            QVERIFY(QFile::permissions(path) & QFile::WriteOwner);
        QVERIFY(!(QFile::permissions(exchange.givenInput) & QFile::WriteOwner));
    }

    void importDuringARunIsPutAside()
    {
        ExchangeStudio exchange;
        writeFile(ownInput(), inputDocument("own"));
        static ExchangeStudio* running = nullptr;
        running = &exchange;
        exchange.studio.probe.replaceFirstStage([](planner::PlanningContext&) {
            running->studio.probe.importVekFile(running->givenInput, running->givenOutput);
            return qint32(-1);
        });
        DialogAnswers answers;
        answers.expectMessageBox();
        QCOMPARE(exchange.studio.probe.callAlgorithm(), -1);
        QCOMPARE(readFile(ownInput()), inputDocument("own"));
        QVERIFY(!QFile::exists(ownOutput()));
    }

    void importReplacesTheDocumentsAndTheShownSchedule()
    {
        ExchangeStudio exchange;
        exchange.import(exchange.givenInput, exchange.givenOutput);
        writeFile(QDir::currentPath() + u("/OutputXML/vek_hs.xml"), "kept");
        writeFile(exchange.folder.path(u("second/vek_input.xml")), inputDocument("second"));
        writeFile(exchange.folder.path(u("second/vek_output.xml")), outputDocument(8000));
        exchange.import(exchange.folder.path(u("second/vek_input.xml")),
                        exchange.folder.path(u("second/vek_output.xml")));
        QCOMPARE(readFile(ownInput()), inputDocument("second"));
        QCOMPARE(exchange.listedNodes(), (QStringList{u("second"), u("S")}));
        QCOMPARE(exchange.studio.probe.schedCycle(), 8000);
        QCOMPARE(readFile(u("OutputXML/vek_hs.xml")), QByteArray("kept"));
    }

    void hiddenDockStaysHiddenOnImport()
    {
        ExchangeStudio exchange;
        exchange.import(exchange.givenInput, exchange.givenOutput);
        exchange.studio.clickToolBar(u("规划结果"));
        QVERIFY(exchange.studio.probe.planInfoDock()->isHidden());
        writeFile(exchange.givenOutput, outputDocument(8000));
        exchange.import(exchange.givenInput, exchange.givenOutput);
        QVERIFY(exchange.studio.probe.planInfoDock()->isHidden());
        QCOMPARE(exchange.studio.probe.schedCycle(), 8000);
    }

    void importLeavesDrawingAndTablesAlone()
    {
        ExchangeStudio exchange;
        exchange.studio.drawSmallNetwork();
        exchange.studio.defineVLine("1", {{u("A"), u("S1"), u("S2"), u("B")}});
        exchange.studio.defineFlow("TT", "1", "5000", "1", {u("0"), u("2000")},
                                   {{u("400"), u("4000")}});
        exchange.import(exchange.givenInput, exchange.givenOutput);
        QCOMPARE(exchange.studio.editor.nodes().size(), 5);
        QCOMPARE(exchange.studio.probe.vLineInfoList().size(), 1);
        QCOMPARE(exchange.studio.probe.vLineTable()->rowCount(), 1);
        QCOMPARE(exchange.studio.probe.flowInfoList().size(), 1);
        QCOMPARE(exchange.studio.probe.flowTable()->rowCount(), 1);
    }

    void sourceThatIsGoneStillRemovesTheOwnDocument_data()
    {
        QTest::addColumn<bool>("inputIsGone");
        QTest::newRow("input") << true;
        QTest::newRow("output") << false;
    }

    void sourceThatIsGoneStillRemovesTheOwnDocument()
    {
        QFETCH(bool, inputIsGone);
        ExchangeStudio exchange;
        writeFile(ownInput(), inputDocument("own"));
        writeFile(ownOutput(), outputDocument(1000));
        const QPointer<ImportVekForm> form = exchange.openImport();
        QVERIFY(form);
        ExchangeStudio::choose(form, "button_selectInput", exchange.givenInput);
        ExchangeStudio::choose(form, "button_selectOutput", exchange.givenOutput);
        QVERIFY(QFile::remove(inputIsGone ? exchange.givenInput : exchange.givenOutput));
        clickButton(form, "button_import");
        QCOMPARE(readFile(ownInput()), inputIsGone ? QByteArray() : inputDocument("given"));
        QCOMPARE(readFile(ownOutput()), inputIsGone ? outputDocument(4000) : QByteArray());
        QCOMPARE(QFile::exists(ownInput()), !inputIsGone);
        QCOMPARE(QFile::exists(ownOutput()), inputIsGone);
        QVERIFY(exchange.studio.probe.planInfoDock()); // shown all the same, if empty
    }

    void exportBeforeAnyRunMakesTwoEmptyFolders()
    {
        ExchangeStudio exchange;
        const QString target = exchange.folder.path(u("target"));
        QVERIFY(QDir().mkpath(target));
        exchange.exportTo(target);
        QCOMPARE(QDir(target).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
                 (QStringList{u("OutputXML"), u("ResourceXML")}));
        QVERIFY(QDir(target + u("/ResourceXML")).isEmpty());
        QVERIFY(QDir(target + u("/OutputXML")).isEmpty());
    }

    void secondExportKeepsTheFilesOfTheFirst()
    {
        ExchangeStudio exchange;
        const QString target = exchange.folder.path(u("target"));
        QVERIFY(QDir().mkpath(target));
        writeFile(ownInput(), inputDocument("first"));
        writeFile(ownOutput(), outputDocument(1000));
        writeFile(QDir::currentPath() + u("/OutputXML/vek_hs.xml"), "not exported");
        exchange.exportTo(target);
        QCOMPARE(readFile(target + u("/ResourceXML/vek_input.xml")), inputDocument("first"));
        QCOMPARE(readFile(target + u("/OutputXML/vek_output.xml")), outputDocument(1000));
        QVERIFY(!QFile::exists(target + u("/OutputXML/vek_hs.xml")));
        writeFile(ownInput(), inputDocument("second"));
        writeFile(ownOutput(), outputDocument(2000));
        exchange.exportTo(target);
        QCOMPARE(readFile(target + u("/ResourceXML/vek_input.xml")), inputDocument("first"));
        QCOMPARE(readFile(target + u("/OutputXML/vek_output.xml")), outputDocument(1000));
    }

    void exportCopiesEachDocumentByItself()
    {
        ExchangeStudio exchange;
        const QString inputOnly = exchange.folder.path(u("inputOnly"));
        const QString outputOnly = exchange.folder.path(u("outputOnly"));
        QVERIFY(QDir().mkpath(inputOnly) && QDir().mkpath(outputOnly));
        writeFile(ownInput(), inputDocument("own"));
        exchange.exportTo(inputOnly);
        QVERIFY(QFile::exists(inputOnly + u("/ResourceXML/vek_input.xml")));
        QVERIFY(QDir(inputOnly + u("/OutputXML")).isEmpty());
        QVERIFY(QFile::remove(ownInput()));
        writeFile(ownOutput(), outputDocument(1000));
        exchange.exportTo(outputOnly);
        QVERIFY(QDir(outputOnly + u("/ResourceXML")).isEmpty());
        QVERIFY(QFile::exists(outputOnly + u("/OutputXML/vek_output.xml")));
    }

    void exportToNoFolderMakesNone()
    {
        ExchangeStudio exchange;
        exchange.studio.probe.outportVekFile(QString());
        QVERIFY(!QDir(u("ResourceXML")).exists());
        QVERIFY(!QDir(u("OutputXML")).exists());
    }

    void exportWithoutAFolderDoesNothing()
    {
        ExchangeStudio exchange;
        writeFile(ownInput(), inputDocument("own"));
        const QPointer<OutportVekForm> form = exchange.openExport();
        QVERIFY(form);
        const QSignalSpy exported(form.data(), &OutportVekForm::signal_outportVekFile);
        clickButton(form, "button_outport");
        QCOMPARE(exported.count(), 0);
        deleteWhatIsToBeDeleted();
        QVERIFY(form.isNull());
        QCOMPARE(QDir().entryList(QDir::Dirs | QDir::NoDotAndDotDot),
                 (QStringList{u("given"), u("ResourceXML")}));
    }

    void toolBarOfTheDockOpensTheSameDialogs()
    {
        ExchangeStudio exchange;
        exchange.studio.clickToolBar(u("规划结果"));
        const auto trigger = [&](const QString& text) {
            for (QAction* action : exchange.studio.probe.planInfoDock()->findChildren<QAction*>()) {
                if (action->text().contains(text))
                    action->trigger();
            }
        };
        trigger(u("导入"));
        clickButton(openedForm<ImportVekForm>(), "button_cancel");
        deleteWhatIsToBeDeleted();
        trigger(u("导出"));
        openedForm<OutportVekForm>();
    }

    void exportedScheduleComesBackByImport()
    {
        ExchangeStudio exchange;
        exchange.import(exchange.givenInput, exchange.givenOutput);
        const QString target = exchange.folder.path(u("target"));
        QVERIFY(QDir().mkpath(target));
        exchange.exportTo(target);
        QVERIFY(QFile::remove(ownInput()));
        QVERIFY(QFile::remove(ownOutput()));
        exchange.import(target + u("/ResourceXML/vek_input.xml"),
                        target + u("/OutputXML/vek_output.xml"));
        QCOMPARE(readFile(ownInput()), inputDocument("given"));
        QCOMPARE(exchange.listedNodes(), (QStringList{u("given"), u("S")}));
    }
};

ROTUNDA_GUI_TEST_MAIN(DocumentExchangeTest)
#include "DocumentExchangeTest.moc"
