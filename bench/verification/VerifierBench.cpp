#include "bench/planner/BenchNetwork.h"

#include "planner/PreProcess.h"
#include "planner/TTPlanner.h"
#include "planner/TTPlanning.h"
#include "verification/PlanFigures.h"
#include "verification/PlanVerifier.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>

// What verifying a plan costs against making it: CPU time of this process, ratios of one run.
//
// "records" examines a plan that has been read, "documents" reads both documents first, "figures"
// is what the pages of figures show. Growth is the exponent of the time over the transmissions.

namespace
{

double cpu_ms()
{
    return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// CPU time of the quickest of some calls.
template <typename Call>
double leastTime_ms(int repeat, Call call)
{
    double least = 0;
    for (int i = 0; i < repeat; ++i) {
        const double begin = cpu_ms();
        call();
        const double time = cpu_ms() - begin;
        least = i == 0 ? time : std::min(least, time);
    }
    return least;
}

struct Row {
    size_t transmissions = 0;
    double stages_ms = 0;
    double records_ms = 0;
    double documents_ms = 0;
    double figures_ms = 0;
    size_t findings = 0;
};

void runStages()
{
    planner::PlanningContext context;
    planner::TTPlanner planner;
    if (planner::preProcess(context) != 0 || planner::TTPlanning(planner) != 0)
        qFatal("a network of the bench is refused");
}

verification::PlanRecords readDocuments()
{
    return verification::readPlan(QStringList{QStringLiteral("ResourceXML/vek_input.xml")},
                                  QStringList{QStringLiteral("OutputXML/vek_output.xml")});
}

Row measure(const BenchCase& benchCase)
{
    const QTemporaryDir folder;
    QDir::setCurrent(folder.path());
    QDir().mkdir(QStringLiteral("ResourceXML"));
    QFile input(QStringLiteral("ResourceXML/vek_input.xml"));
    if (!input.open(QIODevice::WriteOnly))
        qFatal("cannot write the input document");
    input.write(documentOf(networkOf(benchCase)));
    input.close();

    constexpr int repeat = 3;
    Row row;
    row.stages_ms = leastTime_ms(repeat, &runStages);
    row.documents_ms = leastTime_ms(repeat, [&] {
        const verification::PlanRecords plan = readDocuments();
        row.findings = verification::verifyPlan(plan).findings.size();
    });
    const verification::PlanRecords plan = readDocuments();
    row.transmissions = plan.schedule.transmissions.size();
    row.records_ms = leastTime_ms(repeat, [&] { verification::verifyPlan(plan); });
    row.figures_ms = leastTime_ms(repeat, [&] { verification::figuresOf(plan); });
    QDir::setCurrent(QDir::rootPath());
    return row;
}

void printRow(const QString& name, const Row& row)
{
    std::printf("%-24s %9zu %10.0f %9.3f %9.3f %9.3f %9zu\n", qPrintable(name), row.transmissions,
                row.stages_ms, row.records_ms / row.stages_ms, row.documents_ms / row.stages_ms,
                row.figures_ms / row.stages_ms, row.findings);
    std::fflush(stdout);
}

double exponent(double small, double large, const Row& first, const Row& last)
{
    return std::log(large / small) /
           std::log(double(last.transmissions) / double(first.transmissions));
}

void printGrowth(const char* series, const Row& first, const Row& last)
{
    std::printf("growth of %s, %zu to %zu: stages %.2f, records %.2f, documents %.2f\n", series,
                first.transmissions, last.transmissions,
                exponent(first.stages_ms, last.stages_ms, first, last),
                exponent(first.records_ms, last.records_ms, first, last),
                exponent(first.documents_ms, last.documents_ms, first, last));
}

} // namespace

int main()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    std::printf("%-24s %9s %10s %9s %9s %9s %9s\n", "network", "transm.", "stages/ms", "records",
                "documents", "figures", "findings");
    for (const char* series : {"heavy", "free"}) {
        std::vector<Row> rows;
        for (const BenchCase& benchCase : benchCases()) {
            if (benchCase.isGrowth && benchCase.name.startsWith(QLatin1String(series))) {
                rows.push_back(measure(benchCase));
                printRow(benchCase.name, rows.back());
            }
        }
        printGrowth(series, rows.front(), rows.back());
    }
    return 0;
}
