#include "bench/planner/BenchNetwork.h"
#include "bench/planner/Report.h"
#include "bench/planner/StagePhases.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>

// What planning costs, against what its documents alone cost.
//
//   rotunda_bench_planner [--case TEXT] [--repeat N] [--twin-seconds N] [--list]
//
// Every measurement is a process of its own, so that none finds memory that another has made ready.
// The floor loads and saves the same documents with the XML library and plans nothing. Compare
// ratios of one run; times of two machines or two runs are not comparable.

static void dropMessage(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type != QtDebugMsg)
        std::fprintf(stderr, "%s\n", qPrintable(message));
}

static void silenceLog()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
}

/// The work of a child process.
static int runChild(const QString& task)
{
    qInstallMessageHandler(&dropMessage);
    if (task != QStringLiteral("logged"))
        silenceLog();
    if (task == QStringLiteral("twin"))
        printMeasurement(measureTwin());
    else if (task == QStringLiteral("floor"))
        printMeasurement(measureFloor());
    else
        printMeasurement(measureEngine());
    return 0;
}

static QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Measures the cases that were chosen, each in a fresh folder.
class Bench
{
public:
    Bench(int repeat, int twinSeconds) : m_repeat(repeat), m_twinSeconds(twinSeconds) {}

    CaseResult run(const BenchCase& benchCase) const
    {
        const QTemporaryDir folder;
        QDir(folder.path()).mkdir(QStringLiteral("ResourceXML"));
        QFile input(folder.filePath(QStringLiteral("ResourceXML/vek_input.xml")));
        if (!input.open(QIODevice::WriteOnly))
            qFatal("cannot write %s", qPrintable(input.fileName()));
        input.write(documentOf(networkOf(benchCase)));
        input.close();

        CaseResult result;
        result.benchCase = benchCase;
        result.engine = least(folder.path(), QStringLiteral("engine"), m_repeat);
        result.floor = least(folder.path(), QStringLiteral("floor"), m_repeat);
        if (benchCase.isLogged)
            result.logged = least(folder.path(), QStringLiteral("logged"), 1);
        if (m_twinSeconds > 0)
            compareWithTwin(folder, result);
        return result;
    }

private:
    static constexpr int longest_s = 600;

    /// The least of each value over the repetitions.
    static Measurement least(const QString& folder, const QString& task, int repeat)
    {
        Measurement best = measureInChild(folder, {QStringLiteral("--child"), task}, longest_s);
        for (int i = 1; i < repeat; ++i) {
            const Measurement next =
                measureInChild(folder, {QStringLiteral("--child"), task}, longest_s);
            for (auto value = next.begin(); value != next.end(); ++value)
                best[value.key()] = std::min(best.value(value.key()), value.value());
        }
        return best;
    }

    void compareWithTwin(const QTemporaryDir& folder, CaseResult& result) const
    {
        const QString output = folder.filePath(QStringLiteral("OutputXML/vek_output.xml"));
        const QByteArray planned = contentOf(output);
        result.twin = measureInChild(
            folder.path(), {QStringLiteral("--child"), QStringLiteral("twin")}, m_twinSeconds);
        if (!result.twin.isEmpty())
            result.sameAsTwin = contentOf(output) == planned;
    }

    int m_repeat;
    int m_twinSeconds;
};

static void runCases(const Bench& bench, const QString& filter)
{
    printHead();
    std::vector<CaseResult> series;
    for (const BenchCase& benchCase : benchCases()) {
        const QString seriesName = benchCase.name.section(QLatin1Char('-'), 0, 0);
        if (!series.empty() && !series.front().benchCase.name.startsWith(seriesName)) {
            printGrowth(series.front().benchCase.name.section(QLatin1Char('-'), 0, 0), series);
            series.clear();
        }
        if (!benchCase.name.contains(filter))
            continue;
        const CaseResult result = bench.run(benchCase);
        printCase(result);
        if (benchCase.isGrowth)
            series.push_back(result);
    }
    if (!series.empty())
        printGrowth(series.front().benchCase.name.section(QLatin1Char('-'), 0, 0), series);
}

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    const auto addOption = [&parser](const char* name, const char* text, const char* value,
                                     const char* preset = "") {
        parser.addOption({QString::fromLatin1(name), QString::fromLatin1(text),
                          QString::fromLatin1(value), QString::fromLatin1(preset)});
    };
    parser.addHelpOption();
    addOption("child", "what the child processes are started with", "task");
    addOption("case", "only the cases whose name holds this text", "text");
    addOption("repeat", "repetitions of each measurement", "count", "3");
    addOption("twin-seconds", "how long the literal engine may take; 0 leaves it out", "seconds",
              "60");
    addOption("list", "names the cases", "");
    parser.process(application);

    if (parser.isSet(QStringLiteral("child")))
        return runChild(parser.value(QStringLiteral("child")));
    if (parser.isSet(QStringLiteral("list"))) {
        for (const BenchCase& benchCase : benchCases())
            std::printf("%s\n", qPrintable(benchCase.name));
        return 0;
    }
    runCases(Bench(std::max(1, parser.value(QStringLiteral("repeat")).toInt()),
                   parser.value(QStringLiteral("twin-seconds")).toInt()),
             parser.value(QStringLiteral("case")));
    return 0;
}
