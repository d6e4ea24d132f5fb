#include "traffic/FlowEditorForm.h"
#include "traffic/VLineEditorForm.h"

#include "tests/app/PlannedStudio.h"
#include "tests/driver/Studio.h"
#include "tests/support/Text.h"
#include "tests/support/ViewMenus.h"

#include <QApplication>
#include <QFileDialog>
#include <QStatusBar>

#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <thread>

// Opens one form of the studio, or comes to one moment of a run, and closes the main window there:
// close-studio WHERE. The process then has to end by itself. In the current directory, with the
// settings that the environment names.

namespace
{

/// Node A, a link and a virtual link for the forms to work on.
void draw(Studio& studio)
{
    studio.drawSmallNetwork();
    studio.defineVLine("1", {words("A S1 S2 B")});
}

void openNodeForm(Studio& studio)
{
    studio.editor.chooseFromContextMenu(QPointF(100, 150), u("编辑节点"));
}

void openLinkForm(Studio& studio)
{
    studio.editor.chooseFromContextMenu(QPointF(200, 150), u("编辑链路"));
}

void openPathList(Studio& studio)
{
    studio.probe.vLineTable()->setCurrentCell(0, 0);
    QMetaObject::invokeMethod(&studio.window, "showVLineWindow", Q_ARG(int, 0));
}

void openCheck(Studio& studio)
{
    studio.clickToolBar(u("规划结果"));
    auto* nodes = studio.probe.planInfoDock()->findChild<QListWidget*>(u("nodeInfoWidget"));
    openMenuByKey(*nodes);
    chooseByMouse(openMenu(), u("检查调度表…"));
}

/// Goes on until it is stopped.
synthesis::Outcome endlessSearch(const planner::PlanningContext&, const synthesis::Options& options)
{
    while (options.progress({1, 2, 1}))
        std::this_thread::yield();
    return synthesis::Stopped();
}

void openSearch(Studio& studio)
{
    studio.defineFlow("TT", "1", "5000", "1", {u("0"), u("2000")}, {{u("400"), u("4000")}});
    studio.probe.replaceWindowSearch(&endlessSearch);
    studio.probe.flowDock()->raise();
    studio.probe.flowTable()->setCurrentCell(0, 0);
    openMenuByKey(*studio.probe.flowTable());
    chooseByMouse(openMenu(), u("在窗口内求解…"));
}

using Opening = std::function<void(Studio&)>;

const std::map<QString, Opening>& openings()
{
    static const std::map<QString, Opening> all = {
        {u("nothing"), [](Studio&) {}},
        {u("node"), openNodeForm},
        {u("link"), openLinkForm},
        {u("virtual-link"), [](Studio& studio) { studio.openVLineEditor(); }},
        {u("path"), [](Studio& studio) { studio.openPath(studio.openVLineEditor()); }},
        {u("path-node"),
         [](Studio& studio) { studio.openNodeChoice(studio.openPath(studio.openVLineEditor())); }},
        {u("path-list"), openPathList},
        {u("flow"), [](Studio& studio) { studio.openFlowEditor(); }},
        {u("listener"),
         [](Studio& studio) {
             FlowEditorForm* form = studio.openFlowEditor();
             comboBox(form, "comboBox_vLineId")->setCurrentIndex(0);
             clickButton(form, "addDstButton");
         }},
        {u("run"), [](Studio& studio) { studio.clickToolBar(u("调度规划")); }},
        {u("check"), openCheck},
        {u("search"), openSearch},
        {u("box"), [](Studio& studio) { QMetaObject::invokeMethod(&studio.window, "Rotunda"); }},
        {u("import"), [](Studio& studio) { studio.clickFileMenu(u("导入vek规范")); }},
        {u("export"), [](Studio& studio) { studio.clickFileMenu(u("导出vek规范")); }},
        {u("open-project"), [](Studio& studio) { studio.clickFileMenu(u("打开工程")); }},
        {u("save-project"), [](Studio& studio) { studio.clickFileMenu(u("保存工程")); }},
    };
    return all;
}

/// Tells the dialogs that are open by their classes, for the test to know that there was one.
void tellDialogs()
{
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        if (qobject_cast<const QDialog*>(widget) && widget->isVisible())
            std::puts(widget->metaObject()->className());
    }
}

/// Whether a dialog stands by itself and not over the main window, which it outlives.
bool standsByItself(const QWidget* dialog)
{
    return !dialog->parentWidget() || qobject_cast<const QFileDialog*>(dialog);
}

/// Leaves dialogs that keep a process alive, as a user has to; closes the main window before, if it
/// is to do so.
class ModalLeaver
{
public:
    ModalLeaver(QWidget& window, bool closes) : m_window(window), m_closes(closes)
    {
        QObject::connect(&m_timer, &QTimer::timeout, &window, [this] { look(); });
        m_timer.start(5);
    }

private:
    void look()
    {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog || !standsByItself(dialog))
            return;
        if (m_closes && m_window.isVisible()) {
            tellDialogs();
            m_window.close();
        }
        dialog->reject();
    }

    QWidget& m_window;
    bool m_closes;
    QTimer m_timer;
};

/// Closes the window after the text of the run with this number, from 0 on.
void closeDuringRun(Studio& studio, int moment)
{
    const auto texts = std::make_shared<int>(0);
    QObject::connect(studio.probe.statusBar(), &QStatusBar::messageChanged, qApp,
                     [&studio, texts, moment] {
                         if ((*texts)++ == moment)
                             QTimer::singleShot(0, qApp, [&studio] { studio.window.close(); });
                     });
    QMetaObject::invokeMethod(&studio.window, "Rotunda");
}

/// Whether there is such a place.
bool goTo(Studio& studio, const QString& where)
{
    if (where.startsWith(u("text-"))) {
        closeDuringRun(studio, where.mid(5).toInt());
        return true;
    }
    const auto opening = openings().find(where);
    if (opening == openings().end())
        return false;
    opening->second(studio);
    tellDialogs();
    studio.window.close();
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication::setApplicationName(QStringLiteral("Rotunda"));
    QCoreApplication::setOrganizationName(QStringLiteral("Corvane"));
    const QApplication application(argc, argv);
    const LogCapture log;
    const QString where = QString::fromLocal8Bit(argv[1]);
    Studio studio;
    const ModalLeaver leaver(studio.window, !where.startsWith(u("text-")));
    draw(studio);
    bool isKnown = false;
    QTimer::singleShot(0, qApp, [&] { isKnown = goTo(studio, where); });
    const int result = QApplication::exec();
    if (!isKnown || studio.window.isVisible())
        return std::fputs("the window is still there\n", stderr), 2;
    return result;
}
