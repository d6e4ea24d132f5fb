#include "bench/planner/Report.h"

#include <QStringList>

#include <cmath>
#include <cstdio>

static const QStringList& phases()
{
    static const QStringList names =
        QStringLiteral("1.read 1.windows 1.expand 1.log 1.write 1.free 2.read 2.group 2.degrees "
                       "2.resolve 2.revise 2.watch 2.back 2.finalise 2.write 2.free")
            .split(QLatin1Char(' '));
    return names;
}

static double sumOf(const Measurement& engine, const QStringList& names)
{
    double sum = 0;
    for (const QString& name : names)
        sum += engine.value(name);
    return sum;
}

static double planningOf(const Measurement& engine)
{
    QStringList names = phases();
    for (const char* other : {"1.read", "1.log", "1.write", "2.read", "2.write"})
        names.removeAll(QString::fromLatin1(other));
    return sumOf(engine, names);
}

void printHead()
{
    std::printf(
        "Times in ms, the least of the repetitions; memory in MB. plan: all phases but documents "
        "and log.\n");
    std::printf("%-21s%6s%8s%8s%6s", "case", "flows", "inst", "entries", "pass");
    std::printf(" |%6s%6s%6s%7s%6s", "read", "wind", "expd", "write", "free");
    std::printf(" |%7s%6s%6s%6s%6s%6s%6s%6s%7s%6s", "read", "group", "degr", "resv", "revs",
                "watch", "back", "fin", "write", "free");
    std::printf(" |%8s%6s%7s%7s%7s%5s%6s\n", "floor", "t/fl", "plan/fl", "log", "twin x", "MB",
                "m/fl");
}

static void printTwin(const CaseResult& result, double total)
{
    if (result.twin.isEmpty())
        std::printf("%7s", "-");
    else if (!result.sameAsTwin)
        std::printf("%7s", "DIFFERS");
    else
        std::printf("%7.0f", result.twin.value(QStringLiteral("total")) / total);
}

void printCase(const CaseResult& result)
{
    const Measurement& engine = result.engine;
    const auto value = [&engine](const char* name) {
        return engine.value(QString::fromLatin1(name));
    };
    std::printf("%-21s%6.0f%8.0f%8.0f%6.0f", qPrintable(result.benchCase.name), value("flows"),
                value("instances"), value("entries"), value("passes"));
    std::printf(" |%6.1f%6.1f%6.1f%7.1f%6.1f", value("1.read"), value("1.windows"),
                value("1.expand"), value("1.write"), value("1.free"));
    std::printf(" |%7.1f%6.1f%6.1f%6.1f%6.1f%6.1f%6.1f%6.1f%7.1f%6.1f", value("2.read"),
                value("2.group"), value("2.degrees"), value("2.resolve"), value("2.revise"),
                value("2.watch"), value("2.back"), value("2.finalise"), value("2.write"),
                value("2.free"));
    const double total = sumOf(engine, phases());
    const double floor = result.floor.value(QStringLiteral("floor"));
    std::printf(" |%8.1f%6.2f%7.3f%7.1f", floor, total / floor, planningOf(engine) / floor,
                result.logged.isEmpty() ? 0 : sumOf(result.logged, phases()) - total);
    printTwin(result, total);
    const QString peak = QStringLiteral("peak");
    std::printf("%5.0f%6.2f", engine.value(peak) / 1024,
                engine.value(peak) / result.floor.value(peak));
    std::printf("%s\n", value("code1") == 0 && value("code2") == 0 ? "" : "  NO PLAN");
    std::fflush(stdout);
}

/// Least squares over the sizes at which the phase takes a millisecond or more; below it tells more
/// of caches and the clock than of the phase. 0 with fewer than two such sizes.
static double slope(const std::vector<CaseResult>& series, const QString& phase)
{
    double n = 0, sumX = 0, sumY = 0, sumXX = 0, sumXY = 0;
    for (const CaseResult& result : series) {
        if (result.engine.value(phase) < 1)
            continue;
        const double x = std::log(result.engine.value(QStringLiteral("instances")));
        const double y = std::log(result.engine.value(phase));
        n += 1;
        sumX += x;
        sumY += y;
        sumXX += x * x;
        sumXY += x * y;
    }
    return n < 2 ? 0 : (n * sumXY - sumX * sumY) / (n * sumXX - sumX * sumX);
}

void printGrowth(const QString& name, const std::vector<CaseResult>& series)
{
    if (series.size() < 2)
        return;
    std::printf("growth %s:", qPrintable(name));
    for (const QString& phase : phases()) {
        const double exponent = slope(series, phase);
        if (exponent > 0)
            std::printf("  %s %.2f", qPrintable(phase), exponent);
    }
    std::printf("\n");
    std::fflush(stdout);
}
