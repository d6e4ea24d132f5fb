#include "Assumptions.h"
#include "CommandLine.h"
#include "FigureTables.h"

#include <verification/PlanVerifier.h>

#include <QCoreApplication>
#include <QDir>
#include <QSaveFile>

#include <cstdio>

// Turns a plan into gate control lists.
//
//   gate-lists [--class N] [--limit N] [--with-remarks] vek_input.xml vek_output.xml FOLDER
//
// Writes gates.csv, gates.json, taprio.txt, latency.csv, load.csv and assumptions.txt to FOLDER,
// and the assumptions to the output. A plan that the verifier has findings about is refused: the
// error output says which. --with-remarks takes one that has remarks only, as long as it has no
// fault.

namespace
{

enum ExitCode {
    Written = 0,
    PlanRefused = 1,
    WrongUse = 2,    ///< also when a file cannot be read or written
    ListsTooLong = 3 ///< all files are written
};

bool save(const QDir& folder, const char* name, const QByteArray& bytes)
{
    QSaveFile file(folder.filePath(QString::fromLatin1(name)));
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return true;
    std::fprintf(stderr, "gate-lists: cannot write %s\n", qPrintable(file.fileName()));
    return false;
}

/// Says what the verifier found; whether the plan will do all the same.
bool isAccepted(const verification::PlanRecords& plan, bool takesRemarks)
{
    const verification::Verification verification = verifyPlan(plan);
    for (const verification::Finding& finding : verification.findings)
        std::fprintf(stderr, "%s\n", qPrintable(describe(finding)));
    if (verification.findings.empty() || (takesRemarks && verification.sound()))
        return true;
    std::fprintf(stderr,
                 "gate-lists: refused, nothing written; findings: %zu, faults among them: %zu\n",
                 verification.findings.size(), verification.faults());
    return false;
}

ExitCode write(const verification::PlanRecords& plan, const CommandLine& line)
{
    const std::vector<GateList> lists = gateListsOf(plan.schedule);
    const NodeNames names(plan.network);
    const verification::PlanFigures figures = figuresOf(plan);
    GateSetting setting;
    setting.trafficClass = line.trafficClass;
    setting.cycle_us = plan.schedule.cycle_us;
    setting.assumptions = assumptionsOf(lists, names, plan.schedule, line.trafficClass, line.limit);
    const QByteArray assumptions =
        (setting.assumptions.join(QLatin1Char('\n')) + QLatin1Char('\n')).toUtf8();

    const QDir folder(line.folder);
    if (!folder.mkpath(QStringLiteral(".")) ||
        !save(folder, "gates.csv", gatesAsCsv(lists, names, setting)) ||
        !save(folder, "gates.json", gatesAsJson(lists, names, setting)) ||
        !save(folder, "taprio.txt", gatesAsTaprio(lists, names, setting)) ||
        !save(folder, "latency.csv", latenciesAsCsv(figures, names)) ||
        !save(folder, "load.csv", loadsAsCsv(figures, names)) ||
        !save(folder, "assumptions.txt", assumptions))
        return WrongUse;
    std::fputs(assumptions.constData(), stdout);
    return listsBeyond(lists, line.limit) > 0 ? ListsTooLong : Written;
}

ExitCode run(const CommandLine& line)
{
    for (const QString& path : {line.input, line.output}) {
        if (!QFile::exists(path)) {
            std::fprintf(stderr, "gate-lists: there is no %s\n", qPrintable(path));
            return WrongUse;
        }
    }
    const verification::PlanRecords plan =
        verification::readPlan(QStringList{line.input}, QStringList{line.output});
    return isAccepted(plan, line.takesRemarks) ? write(plan, line) : PlanRefused;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    if (const auto line = commandLineOf(QCoreApplication::arguments()))
        return run(*line);
    std::fputs("usage: gate-lists [--class N] [--limit N] [--with-remarks] "
               "vek_input.xml vek_output.xml FOLDER\n",
               stderr);
    return WrongUse;
}
