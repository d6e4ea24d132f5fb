#include "app/SynthesisForm.h"
#include "tests/app/walk/WalkedStudio.h"

#include <QDockWidget>
#include <QTableWidget>

static constexpr int searchPatience_ms = 60000;

static QPushButton* button(const WalkedStudio& walked, const char* name)
{
    return walked.probe.synthesisForm()->findChild<QPushButton*>(QString::fromUtf8(name));
}

static bool isSearching(const WalkedStudio& walked)
{
    return walked.probe.synthesisForm() && !button(walked, "cancelButton")->isHidden();
}

static bool chooseAtFlows(WalkedStudio& walked, const QString& entry)
{
    walked.probe.flowDock()->show();
    walked.probe.flowDock()->raise();
    return WalkedStudio::chooseInView(*walked.probe.flowTable(), entry);
}

// The walk goes on while it searches.
static bool beginSearch(WalkedStudio& walked)
{
    return chooseAtFlows(walked, QStringLiteral(u"在窗口内求解…"));
}

static bool awaitSearch(WalkedStudio& walked)
{
    if ((!isSearching(walked) && !beginSearch(walked)) || !isSearching(walked))
        return false;
    if (!QTest::qWaitFor([&] { return !isSearching(walked); }, searchPatience_ms))
        walked.complain(QStringLiteral("a search does not end"));
    return true;
}

static bool cancelSearch(WalkedStudio& walked)
{
    if ((!isSearching(walked) && !beginSearch(walked)) || !isSearching(walked))
        return false;
    clickButton(walked.probe.synthesisForm(), "cancelButton");
    return awaitSearch(walked);
}

// The button may be disabled.
static bool pressAdopt(WalkedStudio& walked)
{
    if (isSearching(walked))
        awaitSearch(walked);
    if (!walked.probe.synthesisForm())
        return false;
    const int flows = walked.probe.flowInfoList().size();
    clickButton(walked.probe.synthesisForm(), "adoptButton");
    if (walked.probe.flowInfoList().size() != flows)
        walked.complain(QStringLiteral("adopting windows changed the number of flows"));
    return true;
}

// An example that plans only when its windows are narrowed.
static bool solveExample(WalkedStudio& walked)
{
    const QString name = QStringLiteral("busy-plant");
    walked.openProjectFile(WalkedStudio::exampleFile(name, name + QStringLiteral(".rotpro")));
    return beginSearch(walked) && pressAdopt(walked) && !walked.probe.synthesisForm();
}

static bool restoreWindows(WalkedStudio& walked)
{
    return chooseAtFlows(walked, QStringLiteral(u"恢复原窗口"));
}

static bool solveAndRestoreExample(WalkedStudio& walked)
{
    return solveExample(walked) && restoreWindows(walked);
}

static bool closeSearch(WalkedStudio& walked)
{
    if (!walked.probe.synthesisForm())
        return false;
    clickButton(walked.probe.synthesisForm(), "closeButton");
    return true;
}

WalkActions synthesisActions()
{
    return {{"begin search", 2, &beginSearch},
            {"await search", 1, &awaitSearch},
            {"cancel search", 1, &cancelSearch},
            {"press adopt", 3, &pressAdopt},
            {"solve example", 1, &solveExample},
            {"restore windows", 3, &restoreWindows},
            {"solve and restore example", 1, &solveAndRestoreExample},
            {"close search", 1, &closeSearch}};
}
