#include <verification/PlanVerifier.h>

#include <QFile>
#include <QStringList>

#include <cstdio>

// Judges a plan by its two documents.
//
//   verify-plan [--csv] vek_input.xml vek_output.xml
//
// Writes a line a finding, as text or as CSV with a head line, and ends with 0 when there is none,
// with 1 when there are some, and with 2 when it was called wrongly or a file does not exist.

using namespace verification;

static QString numberOrNothing(qint64 number, qint64 nothing)
{
    return number == nothing ? QString() : QString::number(number);
}

/// Transmissions as FLOW-SEQ, or as FLOW alone where the whole flow is meant.
static QString transmissionsOf(const Finding& finding)
{
    QStringList list;
    for (const Transmission& transmission : finding.transmissions) {
        QString text = QString::number(transmission.flowID);
        if (transmission.seq != Transmission::wholeFlow)
            text += QStringLiteral("-%1").arg(transmission.seq);
        list.append(text);
    }
    return list.join(QLatin1Char(' '));
}

/// In quotes, with those inside doubled.
static QString quoted(QString text)
{
    text.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + text + QLatin1Char('"');
}

static QString csvHead()
{
    return QStringLiteral("severity,kind,node,port,slot,transmissions,found,low,high,detail");
}

static QString csvLine(const Finding& finding)
{
    const QStringList fields = {finding.severity == Severity::Fault ? QStringLiteral("fault")
                                                                    : QStringLiteral("remark"),
                                nameOf(finding.kind),
                                numberOrNothing(finding.node, Finding::nowhere),
                                numberOrNothing(finding.port, Finding::nowhere),
                                numberOrNothing(finding.slot, Finding::noSlot),
                                transmissionsOf(finding),
                                QString::number(finding.found),
                                QString::number(finding.low),
                                QString::number(finding.high),
                                quoted(finding.detail)};
    return fields.join(QLatin1Char(','));
}

static void write(const QString& line)
{
    std::printf("%s\n", line.toUtf8().constData());
}

static int verify(const QString& input, const QString& output, bool asCsv)
{
    for (const QString& path : {input, output}) {
        if (!QFile::exists(path)) {
            std::fprintf(stderr, "verify-plan: there is no %s\n", qPrintable(path));
            return 2;
        }
    }
    const Verification result = verifyPlan(readPlan(QStringList{input}, QStringList{output}));
    if (asCsv)
        write(csvHead());
    for (const Finding& finding : result.findings)
        write(asCsv ? csvLine(finding) : describe(finding));
    std::fprintf(
        stderr,
        "transmissions: %zu, flows: %zu, ports: %zu, findings: %zu, faults among them: %zu\n",
        result.transmissions, result.flows, result.ports, result.findings.size(), result.faults());
    return result.findings.empty() ? 0 : 1;
}

int main(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    const bool asCsv = arguments.removeAll(QStringLiteral("--csv")) > 0;
    if (arguments.size() != 2) {
        std::fputs("usage: verify-plan [--csv] vek_input.xml vek_output.xml\n", stderr);
        return 2;
    }
    return verify(arguments.first(), arguments.last(), asCsv);
}
