#include "tests/app/walk/WalkedStudio.h"

#include "app/ImportVekForm.h"
#include "app/OutportVekForm.h"
#include "project/ScheduleReader.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QMenuBar>

WalkedStudio::WalkedStudio(quint32 seed) : drawing(editor, seed)
{
    clickToolBar(QStringLiteral(u"虚链路配置"));
    clickToolBar(QStringLiteral(u"流量配置"));
}

// The forms of import and export belong to nobody.
WalkedStudio::~WalkedStudio()
{
    window.close();
    qDeleteAll(openForms<ImportVekForm>());
    qDeleteAll(openForms<OutportVekForm>());
}

void WalkedStudio::complain(const QString& text)
{
    if (complaint.isEmpty())
        complaint = text;
}

void WalkedStudio::chooseFromFileMenu(const QString& text)
{
    const auto* bar = window.findChild<QMenuBar*>(QStringLiteral("Menubar"));
    for (QAction* action : bar->actions().first()->menu()->actions()) {
        if (action->text() == text)
            action->trigger();
    }
}

void WalkedStudio::openProjectFile(const QString& path)
{
    answerFileDialog(path, [this] { chooseFromFileMenu(QStringLiteral(u"打开工程")); });
}

void WalkedStudio::noteSchedule()
{
    int cycle = 0;
    int slotLength = 0;
    int slotCount = 0;
    readSchedule({sent, received, cycle, slotLength, slotCount});
    if (probe.sendNodeInfo() != sent || probe.rcvNodeInfo() != received)
        complain(QStringLiteral("the schedule is not that of the documents"));
    sent = probe.sendNodeInfo(); // shared, so that comparing them again costs nothing
    received = probe.rcvNodeInfo();
}

QString WalkedStudio::exampleFile(const QString& example, const QString& name)
{
    return QStringLiteral(ROTUNDA_SOURCE_FOLDER "/examples/%1/%2").arg(example, name);
}

bool WalkedStudio::chooseInView(QAbstractItemView& view, const QString& entry)
{
    if (!view.isVisible())
        return false;
    const QPoint at = view.viewport()->rect().center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, view.viewport()->mapToGlobal(at));
    QApplication::sendEvent(view.viewport(), &event);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (!menu)
        return false;
    for (QAction* action : menu->actions()) {
        if (action->text() == entry && action->isEnabled()) {
            chooseByMouse(menu, entry);
            return true;
        }
    }
    menu->close();
    return false;
}
