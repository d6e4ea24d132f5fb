#include "app/ImportVekForm.h"
#include "app/OutportVekForm.h"
#include "tests/app/PlanPair.h"
#include "tests/app/walk/WalkedStudio.h"

#include <QDir>
#include <QFileInfo>

static QString exportFolder(WalkedStudio& walked)
{
    return walked.folder.path(QStringLiteral("exported-%1").arg(walked.pick(3)));
}

static QString inputIn(const QString& folder)
{
    return folder + QStringLiteral("/ResourceXML/vek_input.xml");
}

static QString outputIn(const QString& folder)
{
    return folder + QStringLiteral("/OutputXML/vek_output.xml");
}

static bool openExport(WalkedStudio& walked)
{
    if (!openForm<OutportVekForm>())
        walked.chooseFromFileMenu(QStringLiteral(u"导出vek规范"));
    return openForm<OutportVekForm>();
}

static bool exportDocuments(WalkedStudio& walked)
{
    if (!openExport(walked))
        return false;
    auto* form = openForm<OutportVekForm>();
    const QString target = exportFolder(walked);
    if (walked.pick(2))
        QDir(target).removeRecursively();
    QDir().mkpath(target);
    walked.answerFileDialog(target, [&] { clickButton(form, "button_selectOutportPath"); });
    clickButton(form, "button_outport");
    if (QFile::exists(QStringLiteral("ResourceXML/vek_input.xml")) &&
        !QFile::exists(inputIn(target)))
        walked.complain(QStringLiteral("the input document was not exported"));
    return true;
}

static bool openImport(WalkedStudio& walked)
{
    if (!openForm<ImportVekForm>())
        walked.chooseFromFileMenu(QStringLiteral(u"导入vek规范"));
    return openForm<ImportVekForm>();
}

/// A document and a schedule to it, in a folder as an export leaves it; damaged now and then.
static QString writtenPair(WalkedStudio& walked)
{
    const QString folder = walked.folder.path(QStringLiteral("made"));
    const bool isSound = walked.pick(2);
    writeFile(inputIn(folder), lineInput({10, 25}).document());
    QByteArray schedule = lineSchedule(isSound ? soundTransmissions() : clashingTransmissions());
    if (walked.pick(4) == 0)
        schedule.truncate(walked.pick(schedule.size()));
    writeFile(outputIn(folder), schedule);
    return folder;
}

static bool importDocuments(WalkedStudio& walked)
{
    const QString folder = walked.pick(2) ? writtenPair(walked) : exportFolder(walked);
    if (!QFile::exists(inputIn(folder)) || !QFile::exists(outputIn(folder)) || !openImport(walked))
        return false;
    auto* form = openForm<ImportVekForm>();
    walked.answerFileDialog(inputIn(folder), [&] { clickButton(form, "button_selectInput"); });
    walked.answerFileDialog(outputIn(folder), [&] { clickButton(form, "button_selectOutput"); });
    const QByteArray schedule = readFile(outputIn(folder));
    clickButton(form, "button_import");
    if (readFile(QStringLiteral("OutputXML/vek_output.xml")) != schedule)
        walked.complain(QStringLiteral("the schedule was not imported"));
    walked.noteSchedule();
    return true;
}

static bool leaveExchange(WalkedStudio&)
{
    auto* import = openForm<ImportVekForm>();
    auto* outport = openForm<OutportVekForm>();
    if (import)
        clickButton(import, "button_cancel");
    if (outport)
        clickButton(outport, "button_cancel");
    return import || outport;
}

WalkActions exchangeActions()
{
    return {{"open export form", 1, &openExport},
            {"export documents", 1, &exportDocuments},
            {"open import form", 1, &openImport},
            {"import documents", 1, &importDocuments},
            {"leave import or export", 2, &leaveExchange}};
}
