#include <planner/Planning.h>

#include <QLoggingCategory>

#include <cstdio>

// Plans one folder: plan-folder FOLDER. Ends with 0 when the schedule is there, else with 1.
int main(int argc, char** argv)
{
    if (argc != 2)
        return std::fputs("usage: plan-folder FOLDER\n", stderr), 2;
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    const planner::PlanResult result = planner::planFolder(QString::fromLocal8Bit(argv[1]));
    if (!result.ok())
        std::fprintf(stderr, "%s: %s\n", argv[1], qPrintable(describe(result)));
    return result.ok() ? 0 : 1;
}
