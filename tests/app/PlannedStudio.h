#pragma once

#include "app/FlowScheduleForm.h"
#include "views/FlowListWindow.h"
#include "views/TimeSlotInfo.h"

#include "tests/driver/Studio.h"
#include "tests/support/DialogAnswers.h"
#include "tests/support/DialogClicks.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TemporaryFolder.h"

#include <QDockWidget>
#include <QListView>
#include <QListWidget>

/// A studio that plans an example, with shorthand for the dock's widgets.
struct PlannedStudio : Studio {
    TemporaryFolder folder;
    LogCapture log;

    void plan(const char* example)
    {
        DialogAnswers answers;
        answers.expectFile(QStringLiteral(ROTUNDA_SOURCE_FOLDER "/examples/%1/vek_input.xml")
                               .arg(QString::fromUtf8(example)));
        answers.expectMessageBox();
        clickToolBar(QStringLiteral(u"调度规划"));
        clickButton(probe.flowScheduleForm(), "PlanByUserInputButton");
    }

    void clickPlanInfo() { clickToolBar(QStringLiteral(u"规划结果")); }

    template <typename Widget>
    Widget* part(const char* name)
    {
        return probe.planInfoDock()->findChild<Widget*>(QString::fromUtf8(name));
    }

    QListWidget* nodes() { return part<QListWidget>("nodeInfoWidget"); }
    TimeSlotInfo* sendTable() { return part<TimeSlotInfo>("timeSlotInfo_send"); }
    TimeSlotInfo* rcvTable() { return part<TimeSlotInfo>("timeSlotInfo_rcv"); }

    QAbstractItemModel* cards(const char* list)
    {
        return part<FlowListWindow>(list)->findChild<QListView*>()->model();
    }

    void chooseTable(int index)
    {
        part<QComboBox>("comboboxFlowTableType")->setCurrentIndex(index);
    }

    void clickNode(const QString& name)
    {
        QListWidgetItem* item = nodes()->findItems(name, Qt::MatchExactly).first();
        nodes()->scrollToItem(item);
        QTest::mouseClick(nodes()->viewport(), Qt::LeftButton, Qt::NoModifier,
                          nodes()->visualItemRect(item).center());
    }

    static void clickPort(TimeSlotInfo* table, int row)
    {
        QTableWidgetItem* item = table->item(row, 0);
        table->scrollToItem(item);
        QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                          table->visualItemRect(item).center());
    }
};
