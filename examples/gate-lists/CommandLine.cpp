#include "CommandLine.h"

#include <QCommandLineParser>

/// Whether the option is a number from low to high; then it is in value.
static bool readNumber(const QCommandLineParser& parser, const char* option, int low, int high,
                       int& value)
{
    const QString name = QString::fromLatin1(option);
    if (!parser.isSet(name))
        return true;
    bool isNumber = false;
    value = parser.value(name).toInt(&isNumber);
    return isNumber && low <= value && value <= high;
}

std::optional<CommandLine> commandLineOf(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.addOption({QStringLiteral("class"), {}, QStringLiteral("N")});
    parser.addOption({QStringLiteral("limit"), {}, QStringLiteral("N")});
    parser.addOption(QCommandLineOption(QStringLiteral("with-remarks")));
    CommandLine line;
    if (!parser.parse(arguments) || parser.positionalArguments().size() != 3 ||
        !readNumber(parser, "class", 0, 7, line.trafficClass) ||
        !readNumber(parser, "limit", 1, 1000000, line.limit))
        return {};
    const QStringList paths = parser.positionalArguments();
    line.input = paths[0];
    line.output = paths[1];
    line.folder = paths[2];
    line.takesRemarks = parser.isSet(QStringLiteral("with-remarks"));
    return line;
}
