#pragma once

#include "app/PlanCheckForm.h"
#include "app/PlanTableModel.h"

#include "tests/app/PlanPair.h"
#include "tests/app/PlannedStudio.h"
#include "tests/support/Documents.h"
#include "tests/support/ViewMenus.h"

#include <QHeaderView>
#include <QLabel>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>

/// A studio into which plans made by hand are imported, with shorthand for the form of their check.
struct CheckedStudio : PlannedStudio {
    void import(const QByteArray& input, const QByteArray& schedule)
    {
        writeFile(QStringLiteral("elsewhere/vek_input.xml"), input);
        writeFile(QStringLiteral("elsewhere/vek_output.xml"), schedule);
        probe.importVekFile(folder.path(QStringLiteral("elsewhere/vek_input.xml")),
                            folder.path(QStringLiteral("elsewhere/vek_output.xml")));
    }

    void import(const QList<LineTransmission>& transmissions)
    {
        import(lineInput({10, 25}).document(), lineSchedule(transmissions));
    }

    QStringList checkLines() const
    {
        return log.lines().filter(QRegularExpression(QStringLiteral("^verification: ")));
    }

    static QString menuEntry() { return QStringLiteral(u"检查调度表…"); }

    /// Opens the form from the node list, or brings it to the front.
    PlanCheckForm* openForm()
    {
        if (nodes()->currentItem())
            openMenuByMouse(*nodes(), nodes()->currentIndex());
        else
            openMenuByKey(*nodes());
        chooseByMouse(openMenu(), menuEntry());
        return form();
    }

    /// The form that is open; null without one.
    PlanCheckForm* form() const
    {
        for (auto* each : window.findChildren<PlanCheckForm*>()) {
            if (each->isVisible())
                return each;
        }
        return nullptr;
    }

    QTableView* table(const char* name) const
    {
        return form()->findChild<QTableView*>(QString::fromUtf8(name));
    }

    QString summary() const
    {
        return form()->findChild<QLabel*>(QStringLiteral("summaryLabel"))->text();
    }

    /// Clicks a tab and returns the table of its page.
    QTableView* openPage(int index, const char* name) const
    {
        auto* bar = form()->findChild<QTabWidget*>(QStringLiteral("pages"))->tabBar();
        QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(index).center());
        return table(name);
    }

    static QStringList column(const QTableView* view, int column)
    {
        QStringList texts;
        for (int row = 0; row < view->model()->rowCount(); ++row)
            texts.append(view->model()->index(row, column).data().toString());
        return texts;
    }

    static void doubleClickRow(const QTableView* view, int row)
    {
        const QPoint at = view->visualRect(view->model()->index(row, 0)).center();
        QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, at);
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    }

    static void clickHeader(const QTableView* view, int column)
    {
        const QHeaderView* header = view->horizontalHeader();
        QTest::mouseClick(
            header->viewport(), Qt::LeftButton, Qt::NoModifier,
            QPoint(header->sectionViewportPosition(column) + 10, header->height() / 2));
    }

    /// Node, row and column that the send or receive table shows as current, as "S2 0 6".
    QString currentPlace()
    {
        const bool receives = part<QComboBox>("comboboxFlowTableType")->currentIndex() == 1;
        const TimeSlotInfo* grid = receives ? rcvTable() : sendTable();
        return QStringLiteral("%1 %2 %3")
            .arg(nodes()->currentItem()->text())
            .arg(grid->currentRow())
            .arg(grid->currentColumn());
    }
};
