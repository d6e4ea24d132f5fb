#include "tests/planner/twin/RunRecord.h"

#include "planner/PreProcess.h"
#include "planner/TTPlanning.h"
#include "tests/planner/twin/FirstStage.h"
#include "tests/planner/twin/SecondStage.h"
#include "tests/planner/twin/WindowsDocument.h"
#include "tests/support/Documents.h"
#include "tests/support/LogCapture.h"

#include <QDir>

namespace
{

const QString windowsFile = QStringLiteral(u"OutputXML/vek_hs.xml");
const QString scheduleFile = QStringLiteral(u"OutputXML/vek_output.xml");
const QString finalFile = QStringLiteral(u"OutputXML/final.xml");

/// Lines of log that a run reaches for engineers only; the procedure does not know them.
bool onlyExplains(const QString& line)
{
    return line.startsWith(QStringLiteral(u"vek_input.xml: ")) ||
           line.startsWith(QStringLiteral(u"vek_hs.xml: ")) ||
           line.startsWith(QStringLiteral(u"planning: "));
}

void layOut(const RandomNetwork& network)
{
    QDir(QStringLiteral(u"ResourceXML")).removeRecursively();
    QDir(QStringLiteral(u"OutputXML")).removeRecursively();
    for (const RandomNetwork::File& file : network.files)
        writeFile(QStringLiteral(u"ResourceXML/") + file.name, file.bytes);
}

void layOut(const QByteArray& windows)
{
    QDir(QStringLiteral(u"OutputXML")).removeRecursively();
    writeFile(windowsFile, windows);
}

void collect(RunRecord& record, const LogCapture& log)
{
    record.windows = readFile(windowsFile);
    record.schedule = readFile(scheduleFile);
    for (const QString& line : log.lines()) {
        if (!onlyExplains(line))
            record.log.append(line);
    }
}

const QString comesBack = QStringLiteral(u"resolution comes back to an earlier state");

QString outcomeOfExit(const QStringList& log)
{
    const int resolve = log.lastIndexOf(QStringLiteral(u"Resolve: -3"));
    if (resolve < 1)
        return comesBack;
    static const QStringList numbers = {QStringLiteral(u"465"), QStringLiteral(u"486"),
                                        QStringLiteral(u"500"), QStringLiteral(u"512"),
                                        QStringLiteral(u"556"), QStringLiteral(u"580"),
                                        QStringLiteral(u"594"), QStringLiteral(u"607")};
    for (int i = 0; i < numbers.size(); ++i) {
        if (log.at(resolve - 1) ==
            QStringLiteral(u"line: %1 CONFLICT_RESOLVE_FAIL").arg(numbers.at(i)))
            return QStringLiteral(u"exit E%1").arg(i + 1);
    }
    return QStringLiteral(u"exit E0");
}

QString differenceOfLines(const QString& what, const QStringList& product, const QStringList& twin)
{
    int i = 0;
    while (i < product.size() && i < twin.size() && product.at(i) == twin.at(i))
        ++i;
    const QString none = QStringLiteral(u"(no line)");
    return QStringLiteral(u"%1 line %2: product '%3', twin '%4'")
        .arg(what, QString::number(i + 1), product.value(i, none), twin.value(i, none));
}

QStringList linesOf(const QByteArray& bytes)
{
    return QString::fromUtf8(bytes).split(QLatin1Char('\n'));
}

} // namespace

QString RunRecord::outcome() const
{
    if (firstCode == -3)
        return QStringLiteral(u"unreasonable window");
    if (firstCode != 0)
        return QStringLiteral(u"document refused, code %1").arg(firstCode);
    if (secondCode == -3)
        return outcomeOfExit(log);
    if (secondCode != 0)
        return QStringLiteral(u"windows refused, code %1").arg(secondCode);
    const int passes = log.count(QStringLiteral(u"Resolve: 0"));
    return passes < 3 ? QStringLiteral(u"success after %1 passes").arg(passes)
                      : QStringLiteral(u"success after 3 or more passes");
}

QStringList requiredOutcomes()
{
    QStringList outcomes = {QStringLiteral(u"success after 0 passes"),
                            QStringLiteral(u"success after 1 passes"),
                            QStringLiteral(u"success after 2 passes"),
                            QStringLiteral(u"success after 3 or more passes"),
                            QStringLiteral(u"unreasonable window"),
                            QStringLiteral(u"document refused, code -1"),
                            QStringLiteral(u"document refused, code -2"),
                            comesBack};
    for (int i = 0; i <= 8; ++i)
        outcomes.append(QStringLiteral(u"exit E%1").arg(i));
    return outcomes;
}

RunRecord runProduct(const RandomNetwork& network)
{
    layOut(network);
    RunRecord record;
    const LogCapture log;
    planner::PlanningContext context;
    record.firstCode = planner::preProcess(context);
    if (record.firstCode == 0) {
        planner::TTPlanner planner;
        record.secondCode = planner::TTPlanning(planner);
    }
    collect(record, log);
    return record;
}

RunRecord runTwin(const RandomNetwork& network)
{
    layOut(network);
    RunRecord record;
    const LogCapture log;
    twin::Context context;
    record.firstCode = twin::preProcess(context);
    twin::Planner planner;
    if (record.firstCode == 0)
        record.secondCode = twin::planSecondStage(planner);
    collect(record, log);
    twin::writeWindowsDocument(QStringLiteral(u"final.xml"), planner.schedCycle, planner.instances);
    record.finalWindows = readFile(finalFile);
    return record;
}

RunRecord planWithProduct(const QByteArray& windows)
{
    layOut(windows);
    RunRecord record;
    const LogCapture log;
    planner::TTPlanner planner;
    record.secondCode = planner::TTPlanning(planner);
    collect(record, log);
    return record;
}

RunRecord planWithTwin(const QByteArray& windows)
{
    layOut(windows);
    RunRecord record;
    const LogCapture log;
    twin::Planner planner;
    record.secondCode = twin::planSecondStage(planner);
    collect(record, log);
    return record;
}

QString firstDifference(const RunRecord& product, const RunRecord& twin)
{
    if (product.firstCode != twin.firstCode || product.secondCode != twin.secondCode)
        return QStringLiteral(u"codes: product %1 and %2, twin %3 and %4")
            .arg(product.firstCode)
            .arg(product.secondCode)
            .arg(twin.firstCode)
            .arg(twin.secondCode);
    if (product.log != twin.log)
        return differenceOfLines(QStringLiteral(u"log"), product.log, twin.log);
    if (product.windows != twin.windows)
        return differenceOfLines(windowsFile, linesOf(product.windows), linesOf(twin.windows));
    if (product.schedule != twin.schedule)
        return differenceOfLines(scheduleFile, linesOf(product.schedule), linesOf(twin.schedule));
    return {};
}
