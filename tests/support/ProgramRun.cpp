#include "tests/support/ProgramRun.h"

#include <QProcess>

ProgramRun runProgram(const QString& program, const QStringList& arguments)
{
    constexpr int patience_ms = 120000;
    QProcess process;
    process.start(program, arguments);
    ProgramRun run;
    if (!process.waitForFinished(patience_ms) || process.exitStatus() != QProcess::NormalExit)
        return run;
    run.code = process.exitCode();
    run.output = process.readAllStandardOutput();
    run.errors = QString::fromUtf8(process.readAllStandardError())
                     .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    return run;
}
