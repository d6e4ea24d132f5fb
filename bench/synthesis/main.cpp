#include "bench/synthesis/Growth.h"
#include "bench/synthesis/Reach.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>

// How far a search for windows reaches, and what it costs.
//
//   rotunda_bench_synthesis [--family TEXT] [--networks N] [--repeat N]
//
// Compare ratios of one run; times of two machines or two runs are not comparable.

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    const auto addOption = [&parser](const char* name, const char* text, const char* value,
                                     const char* preset) {
        parser.addOption({QString::fromLatin1(name), QString::fromLatin1(text),
                          QString::fromLatin1(value), QString::fromLatin1(preset)});
    };
    parser.addHelpOption();
    addOption("child", "what the child processes are started with", "task", "");
    addOption("family", "only the families whose name holds this text", "text", "");
    addOption("networks", "networks of each family", "count", "20");
    addOption("repeat", "repetitions of each measurement of the growth; 0 leaves it out", "count",
              "3");
    parser.process(application);
    if (parser.isSet(QStringLiteral("child")))
        return runGrowthChild(parser.value(QStringLiteral("child")));
    printReach(parser.value(QStringLiteral("family")),
               std::max(1, parser.value(QStringLiteral("networks")).toInt()));
    const int repeat = parser.value(QStringLiteral("repeat")).toInt();
    if (repeat > 0)
        printGrowth(repeat);
    return 0;
}
