#pragma once

#include "tests/driver/MainWindowProbe.h"
#include "tests/support/DialogAnswers.h"
#include "tests/support/Documents.h"
#include "tests/support/LogCapture.h"

#include <QDebug>
#include <QDir>
#include <QDockWidget>
#include <QListWidget>
#include <QMetaObject>

/// A document of examples/.
inline QString exampleDocument(const QString& name)
{
    return QStringLiteral(ROTUNDA_SOURCE_FOLDER "/examples/%1/vek_input.xml").arg(name);
}

/// What the user gets to see of a run: boxes and the schedule.
struct Seen {
    QStringList boxes;
    QString schedule; ///< cycle, nodes by name, and all slots

    bool operator==(const Seen& other) const
    {
        return boxes == other.boxes && schedule == other.schedule;
    }
};

inline QString successBox()
{
    return QStringLiteral(u"rotunda 流量规划: 规划成功");
}

/// Whether the user reads one of the boxes that a failed run has.
inline bool isToldFailure(const QStringList& boxes)
{
    static const QStringList told = {
        QStringLiteral(u"rotunda 预处理: 找不到vek_input.xml文件"),
        QStringLiteral(u"rotunda 预处理: vek_input.xml文件解析错误，请检查文件格式"),
        QStringLiteral(u"rotunda 流量规划: 找不到vek_hs.xml文件"),
        QStringLiteral(u"rotunda 流量规划: vek_hs.xml文件解析错误，请检查文件格式")};
    return boxes.size() == 1 && told.contains(boxes.first());
}

/// A studio that works in the current directory, without its window being shown; lines of the log
/// are collected.
class FaultStudio
{
public:
    FaultStudio() { QMetaObject::invokeMethod(&window, "planInfo"); }

    /// Plans what is drawn.
    Seen planDrawing()
    {
        return seen([this] { QMetaObject::invokeMethod(&window, "Rotunda"); });
    }

    /// Plans a document from elsewhere, chosen in the file dialog.
    Seen planDocument(const QString& path)
    {
        return seen([this] { probe.planByUserInput(); }, path);
    }

    /// What is shown now.
    QString shown() const
    {
        QString text = QString::number(probe.schedCycle());
        const auto* nodes =
            probe.planInfoDock()->findChild<QListWidget*>(QStringLiteral("nodeInfoWidget"));
        for (int row = 0; row < nodes->count(); ++row)
            text += QLatin1Char(' ') + nodes->item(row)->text();
        for (const NodeInfo_Xml& slotsOfNodes : {probe.sendNodeInfo(), probe.rcvNodeInfo()})
            QDebug(&text) << slotsOfNodes;
        return text;
    }

    LogCapture log;
    MainWindow window{QMap<QString, QString>(), nullptr};
    MainWindowProbe probe{window};

private:
    template <typename Run>
    Seen seen(const Run& run, const QString& file = QString())
    {
        DialogAnswers answers;
        if (!file.isNull())
            answers.expectFile(file);
        answers.expectMessageBox();
        run();
        return {answers.seen().mid(file.isNull() ? 0 : 1) + answers.unexpected(), shown()};
    }
};
