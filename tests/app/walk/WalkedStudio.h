#pragma once

#include "tests/app/CheckedStudio.h"
#include "tests/driver/OpenForms.h"
#include "tests/topology/EditorWalker.h"

#include <QMap>
#include <QVector>

/// A studio through which a random walk goes: its forms, its files, and what was noted on the way.
///
/// Every blocking box is answered, a file dialog with the path that an action expects.
struct WalkedStudio : CheckedStudio {
    explicit WalkedStudio(quint32 seed);
    ~WalkedStudio();

    /// A number from 0 to count - 1.
    int pick(int count) { return drawing.pick(count); }
    template <typename Item>
    const Item& pickFrom(const QVector<Item>& items)
    {
        return items.at(pick(items.size()));
    }
    template <typename Item>
    const Item& pickFrom(const QList<Item>& items)
    {
        return items.at(pick(items.size()));
    }

    /// Notes what an action found wrong, unless something was noted before.
    void complain(const QString& text);

    /// Does what the entry of the file menu does, even while a modal form keeps users from it.
    void chooseFromFileMenu(const QString& text);

    /// Does what opens a file dialog, and answers it; complains when none comes.
    template <typename Act>
    void answerFileDialog(const QString& path, Act act)
    {
        const int before = dialogs.seen().size();
        dialogs.expectFile(path);
        act();
        if (dialogs.seen().size() == before)
            complain(QStringLiteral("no file dialog came"));
    }

    /// Opens a project through the file dialog.
    void openProjectFile(const QString& path);

    /// Keeps the schedule that the documents hold now; complains when the studio shows another.
    void noteSchedule();

    /// The path of one of the example's files.
    static QString exampleFile(const QString& example, const QString& name);

    /// Opens the context menu in the middle of a view and clicks an entry; false without it.
    static bool chooseInView(QAbstractItemView& view, const QString& entry);

    DialogAnswers dialogs;
    EditorWalker drawing;
    QString complaint; ///< empty while nothing is wrong

    // The schedule that the last run or import that succeeded left.
    NodeInfo_Xml sent;
    NodeInfo_Xml received;
};

/// One kind of action.
struct WalkAction {
    const char* name;
    int weight;
    /// Does it; false when what it needs is not there.
    bool (*act)(WalkedStudio& walked);
};

using WalkActions = QVector<WalkAction>;

WalkActions toolActions();      ///< the drawing tool's bars, its property dialogs
WalkActions trafficActions();   ///< virtual links and flows
WalkActions projectActions();   ///< project files
WalkActions exchangeActions();  ///< documents from and to other folders
WalkActions planActions();      ///< runs, and the views of the schedule
WalkActions checkActions();     ///< the form of the check
WalkActions synthesisActions(); ///< the search for windows
