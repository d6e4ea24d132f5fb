#include "app/SynthesisForm.h"
#include "tests/app/walk/WalkedStudio.h"

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

// The walk goes on while it searches.
static bool beginSearch(WalkedStudio& walked)
{
    return WalkedStudio::chooseInView(*walked.probe.flowTable(), QStringLiteral(u"在窗口内求解…"));
}

static bool awaitSearch(WalkedStudio& walked)
{
    if (!isSearching(walked))
        return false;
    if (!QTest::qWaitFor([&] { return !isSearching(walked); }, searchPatience_ms))
        walked.complain(QStringLiteral("a search does not end"));
    return true;
}

static bool cancelSearch(WalkedStudio& walked)
{
    if (!isSearching(walked))
        return false;
    clickButton(walked.probe.synthesisForm(), "cancelButton");
    return awaitSearch(walked);
}

static bool adoptWindows(WalkedStudio& walked)
{
    awaitSearch(walked);
    if (!walked.probe.synthesisForm() || !button(walked, "adoptButton")->isEnabled())
        return false;
    const int flows = walked.probe.flowInfoList().size();
    clickButton(walked.probe.synthesisForm(), "adoptButton");
    if (walked.probe.flowInfoList().size() != flows)
        walked.complain(QStringLiteral("adopting windows changed the number of flows"));
    return true;
}

static bool restoreWindows(WalkedStudio& walked)
{
    return WalkedStudio::chooseInView(*walked.probe.flowTable(), QStringLiteral(u"恢复原窗口"));
}

static bool closeSearch(WalkedStudio& walked)
{
    if (!walked.probe.synthesisForm())
        return false;
    clickButton(walked.probe.synthesisForm(), "closeButton");
    return true;
}

// What a user does most: search, take what was found.
static bool searchAndAdopt(WalkedStudio& walked)
{
    return beginSearch(walked) && adoptWindows(walked);
}

WalkActions synthesisActions()
{
    return {{"begin search", 2, &beginSearch},        {"await search", 2, &awaitSearch},
            {"cancel search", 1, &cancelSearch},      {"adopt windows", 3, &adoptWindows},
            {"search and adopt", 2, &searchAndAdopt}, {"restore windows", 2, &restoreWindows},
            {"close search", 1, &closeSearch}};
}
