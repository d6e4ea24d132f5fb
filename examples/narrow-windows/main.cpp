#include "Report.h"

#include "verification/PlanVerifier.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QLoggingCategory>
#include <QSaveFile>

#include <tinyxml2.h>

#include <cstdio>

// Narrows the windows of an input document to a plan without conflicts.
//
//   narrow-windows IN.xml OUT.xml [--steps N]
//
// Writes OUT.xml, which is IN.xml with other window texts, and exits with one of the codes below.
// One line each on the error output says what was left out and how it ended.

namespace
{

enum ExitCode {
    FoundPlan = 0,
    ProvenImpossible = 1,
    StepsSpent = 2,
    InputRefused = 3 ///< also when a file cannot be read or written
};

void say(const QStringList& lines)
{
    for (const QString& line : lines)
        std::fprintf(stderr, "%s\n", qPrintable(line));
}

ExitCode refuse(const QString& line)
{
    say({QStringLiteral("refused: ") + line});
    return InputRefused;
}

/// Parses with the options of the planning.
bool parse(tinyxml2::XMLDocument& document, const QByteArray& bytes)
{
    return document.Parse(bytes.constData(), static_cast<size_t>(bytes.size())) ==
           tinyxml2::XML_SUCCESS;
}

/// Whether a plan whose windows overlap has no fault, by its documents.
bool isFaultless(const QByteArray& input, const QByteArray& output)
{
    tinyxml2::XMLDocument inputDocument(true, tinyxml2::PRESERVE_WHITESPACE);
    tinyxml2::XMLDocument outputDocument(true, tinyxml2::PRESERVE_WHITESPACE);
    return parse(inputDocument, input) && parse(outputDocument, output) &&
           verifyPlan(verification::readPlan(inputDocument, outputDocument)).sound();
}

/// The file is replaced whole or not at all.
bool save(const QString& path, const QByteArray& bytes)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}

ExitCode codeOf(const synthesis::Outcome& outcome)
{
    if (std::holds_alternative<synthesis::Found>(outcome))
        return FoundPlan;
    if (std::holds_alternative<synthesis::NoSlot>(outcome) ||
        std::holds_alternative<synthesis::Overfull>(outcome))
        return ProvenImpossible;
    return std::holds_alternative<synthesis::Refused>(outcome) ? InputRefused : StepsSpent;
}

ExitCode narrow(const QString& inPath, const QString& outPath, quint64 steps)
{
    QFile in(inPath);
    if (!in.open(QIODevice::ReadOnly))
        return refuse(QStringLiteral("%1: %2").arg(inPath, in.errorString()));
    tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
    if (!parse(document, in.readAll()))
        return refuse(QString::fromUtf8(document.ErrorStr()));
    const synthesis::InputNetwork network = synthesis::readNetwork(document);
    say(linesOf(network));
    if (!network.isSearchable())
        return InputRefused;

    synthesis::Options options;
    options.steps = steps;
    options.isFaultless = [&](const synthesis::Found& plan, const QByteArray& output) {
        return isFaultless(narrowedDocument(document, network, plan), output);
    };
    const synthesis::Outcome outcome = synthesizeWindows(network.context, options);
    say(linesOf(network, outcome));
    const auto* plan = std::get_if<synthesis::Found>(&outcome);
    if (plan && !save(outPath, narrowedDocument(document, network, *plan)))
        return refuse(QStringLiteral("cannot write %1").arg(outPath));
    return codeOf(outcome);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    // What the engine logs is of no use here.
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("IN.xml"), QStringLiteral("the input document"));
    parser.addPositionalArgument(QStringLiteral("OUT.xml"), QStringLiteral("where it is written"));
    parser.addOption({QStringLiteral("steps"), QStringLiteral("how much may be searched"),
                      QStringLiteral("N"), QString::number(synthesis::Options::defaultSteps)});
    if (!parser.parse(QCoreApplication::arguments()))
        return refuse(parser.errorText());
    if (parser.isSet(QStringLiteral("help")))
        parser.showHelp();
    bool isNumber = false;
    const quint64 steps = parser.value(QStringLiteral("steps")).toULongLong(&isNumber);
    const QStringList paths = parser.positionalArguments();
    if (!isNumber || paths.size() != 2)
        return refuse(QStringLiteral("usage: narrow-windows IN.xml OUT.xml [--steps N]"));
    return narrow(paths.first(), paths.last(), steps);
}
