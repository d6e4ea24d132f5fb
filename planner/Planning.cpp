#include "planner/Planning.h"

#include "planner/FolderHold.h"
#include "planner/PlanningLog.h"
#include "planner/PreProcess.h"
#include "planner/TTPlanning.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

namespace planner
{

static const auto intermediatePath = QStringLiteral("OutputXML/vek_hs.xml");
static const auto outputPath = QStringLiteral("OutputXML/vek_output.xml");

/// The current directory is another one for as long as it lives.
///
/// The earlier one is kept open: its path may not lead back to it.
class CurrentFolder
{
public:
    explicit CurrentFolder(const QString& folder)
        : m_previous(open(".", O_PATH | O_DIRECTORY | O_CLOEXEC)),
          m_entered(QDir::setCurrent(folder))
    {
    }
    ~CurrentFolder()
    {
        if (m_entered && fchdir(m_previous) != 0)
            qCWarning(planningLog) << "planning: the current directory stays another one";
        close(m_previous);
    }
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;

    bool entered() const { return m_entered; }

private:
    int m_previous;
    bool m_entered;
};

/// Whether no document of an earlier plan is left that could be taken for one of this plan, and no
/// link through which this one would be written elsewhere.
static bool removeEarlierPlan()
{
    for (const QString& path : {intermediatePath, outputPath}) {
        const QFileInfo file(path);
        if ((file.exists() || file.isSymLink()) && !QFile::remove(path))
            return false;
    }
    return true;
}

/// What the last step returned; a document that was not written is no error to the stages.
static PlanResult savedAs(const QString& path)
{
    return {PlanStep::Saving, QFile::exists(path) ? code::ok : code::unreadable};
}

PlanResult planFolder(const QString& folder)
{
    const CurrentFolder current(folder);
    if (!current.entered())
        return {PlanStep::Folder, code::folderMissing};
    const FolderHold hold;
    if (!hold.isHeld() || !removeEarlierPlan())
        return {PlanStep::Saving, code::unreadable};
    {
        PlanningContext context;
        const qint32 prepared = preProcess(context);
        if (prepared != code::ok)
            return {PlanStep::PreProcess, prepared};
        if (context.isCut)
            return {PlanStep::Saving, code::unreadable};
    }
    // Without its document the second stage would make an empty schedule.
    if (const PlanResult saved = savedAs(intermediatePath); !saved.ok())
        return saved;
    TTPlanner planner;
    const qint32 planned = TTPlanning(planner);
    if (planned != code::ok)
        return {PlanStep::TTPlanning, planned};
    return savedAs(outputPath); // one that was cut is not there
}

static QString describePreProcess(qint32 result)
{
    if (result == code::folderMissing)
        return QStringLiteral("there is no folder ResourceXML");
    if (result == code::refused)
        return QStringLiteral("the windows of a flow leave it no slot");
    return QStringLiteral("the input document cannot be read");
}

static QString describePlanning(qint32 result)
{
    if (result == code::folderMissing)
        return QStringLiteral("there is no folder OutputXML");
    if (result == code::refused)
        return QStringLiteral("a conflict cannot be resolved");
    return QStringLiteral("the windows cannot be read back");
}

QString describe(const PlanResult& result)
{
    if (result.ok())
        return {};
    switch (result.step) {
    case PlanStep::Folder:
        return QStringLiteral("the folder cannot be entered");
    case PlanStep::PreProcess:
        return describePreProcess(result.code);
    case PlanStep::TTPlanning:
        return describePlanning(result.code);
    case PlanStep::Saving:
        break;
    }
    return QStringLiteral("the documents in OutputXML cannot be written");
}

} // namespace planner
