#include "tests/app/walk/WalkedStudio.h"

#include <QTableWidget>

static const char* const pageTables[] = {"findingTable", "loadTable", "latencyTable",
                                         "occupancyTable"};

static QTableView* shownTable(WalkedStudio& walked)
{
    for (const char* name : pageTables) {
        if (walked.form() && walked.table(name)->isVisible())
            return walked.table(name);
    }
    return nullptr;
}

static bool openCheck(WalkedStudio& walked)
{
    if (!walked.probe.planInfoDock())
        return false;
    QAbstractItemView* const views[] = {walked.nodes(), walked.sendTable(), walked.rcvTable()};
    return WalkedStudio::chooseInView(*views[walked.pick(3)], CheckedStudio::menuEntry());
}

static bool choosePage(WalkedStudio& walked)
{
    if (!walked.form())
        return false;
    const int page = walked.pick(4);
    walked.openPage(page, pageTables[page]);
    return true;
}

static bool sortPage(WalkedStudio& walked)
{
    QTableView* table = shownTable(walked);
    if (table)
        CheckedStudio::clickHeader(table, walked.pick(3));
    return table;
}

static bool goToRow(WalkedStudio& walked)
{
    QTableView* table = shownTable(walked);
    if (!table || table->model()->rowCount() == 0)
        return false;
    const int row = walked.pick(table->model()->rowCount());
    if (walked.pick(2)) {
        CheckedStudio::doubleClickRow(table, row);
    } else {
        table->setCurrentIndex(table->model()->index(row, 0));
        if (walked.pick(2))
            QTest::keyClick(table, Qt::Key_Return);
        else
            clickButton(walked.form(), "goButton");
    }
    return true;
}

static bool copyPage(WalkedStudio& walked)
{
    if (walked.form())
        clickButton(walked.form(), "copyButton");
    return walked.form();
}

static bool closeCheck(WalkedStudio& walked)
{
    if (!walked.form())
        return false;
    clickButton(walked.form(), "closeButton");
    return true;
}

WalkActions checkActions()
{
    return {{"open check form", 3, &openCheck},   {"choose page of check", 4, &choosePage},
            {"sort page of check", 2, &sortPage}, {"go to row of check", 4, &goToRow},
            {"copy page of check", 1, &copyPage}, {"close check form", 1, &closeCheck}};
}
