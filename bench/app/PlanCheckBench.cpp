#include "app/PlanCheckForm.h"
#include "project/ScheduleReader.h"

#include "tests/app/PlanPair.h"
#include "tests/support/Documents.h"
#include "tests/support/TemporaryFolder.h"

#include <QApplication>
#include <QClipboard>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>

// What the check of a loaded schedule and its form cost, against loading that schedule.
//
// 100,000 transmissions of 1,000 flows over one line of switches: ten in each slot of each port, so
// that there are tens of thousands of findings to list, sort and copy. Compare rows of one run.

static constexpr int flowCount = 1000;
static constexpr int transmissionsOfAFlow = 100;
static constexpr int slotsOfAPeriod = 100;

static QList<int> flowIDs()
{
    QList<int> numbers;
    for (int flowID = 1; flowID <= flowCount; ++flowID)
        numbers.append(flowID);
    return numbers;
}

static QByteArray crowdedSchedule()
{
    QList<LineTransmission> sent;
    for (int flowID = 1; flowID <= flowCount; ++flowID) {
        for (int seq = 0; seq < transmissionsOfAFlow; ++seq) {
            const int first = seq * slotsOfAPeriod + flowID % slotsOfAPeriod;
            sent.append({flowID, seq, first, first + 1, first + 2});
        }
    }
    return lineSchedule(sent).replace("<schedCycle>2000<", "<schedCycle>2000000<");
}

/// Milliseconds of processor time that the work takes with all it leaves to the event loop.
static double measure(const std::function<void()>& work)
{
    const std::clock_t start = std::clock();
    work();
    QCoreApplication::processEvents();
    return 1000.0 * double(std::clock() - start) / CLOCKS_PER_SEC;
}

static void report(const char* what, double time, double floor)
{
    std::printf("%-52s %9.0f ms %8.3f\n", what, time, time / floor);
}

static void loadAsTheStudioDoes()
{
    NodeInfo_Xml send;
    NodeInfo_Xml receive;
    int cycle = 0;
    int slotLength = 0;
    int slotCount = 0;
    readSchedule({send, receive, cycle, slotLength, slotCount});
}

static double sortEachColumn(QTableView& view)
{
    double slowest = 0;
    for (int column = 0; column < view.model()->columnCount(); ++column)
        slowest =
            std::max(slowest, measure([&] { view.sortByColumn(column, Qt::DescendingOrder); }));
    return slowest;
}

static void measureForm(const SharedPlanCheck& check, double floor)
{
    PlanCheckForm form(nullptr);
    report("form opened on its findings", measure([&] {
               form.showCheck(check);
               form.show();
           }),
           floor);
    auto* pages = form.findChild<QTabWidget*>();
    report("first page of figures opened", measure([&] { pages->setCurrentIndex(1); }), floor);
    report("second page of figures opened", measure([&] { pages->setCurrentIndex(2); }), floor);
    report("third page of figures opened", measure([&] { pages->setCurrentIndex(3); }), floor);
    pages->setCurrentIndex(0);
    auto* findings = form.findChild<QTableView*>(QStringLiteral("findingTable"));
    report("findings sorted by their slowest column", sortEachColumn(*findings), floor);
    auto* copy = form.findChild<QPushButton*>(QStringLiteral("copyButton"));
    report("findings copied", measure([&] { copy->click(); }), floor);
}

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    const TemporaryFolder folder;
    InputText input = lineInput({});
    for (const int flowID : flowIDs())
        input.flow(flowID, QStringLiteral("20000"), 1, QStringLiteral("A"),
                   QStringLiteral("[0,20000]"),
                   {{QStringLiteral("B"), QStringLiteral("[0,30000]")}});
    // One slow flow makes the cycle; it is missing in the schedule.
    input.flow(flowCount + 1, QStringLiteral("2000000"), 1, QStringLiteral("A"),
               QStringLiteral("[0,20000]"), {{QStringLiteral("B"), QStringLiteral("[0,30000]")}});
    input.save();
    writeFile(QStringLiteral("OutputXML/vek_output.xml"), crowdedSchedule());

    const double floor = std::min(measure(&loadAsTheStudioDoes), measure(&loadAsTheStudioDoes));
    SharedPlanCheck check;
    const double examined = measure([&] {
        check = std::make_shared<const PlanCheck>(
            QStringList{QStringLiteral("ResourceXML/vek_input.xml")},
            QStringList{QStringLiteral("OutputXML/vek_output.xml")});
    });
    std::printf("%zu transmissions, %zu findings\n", check->result().transmissions,
                check->result().findings.size());
    report("schedule loaded into the tables", floor, floor);
    report("documents read again and examined", examined, floor);
    measureForm(check, floor);
    return 0;
}
