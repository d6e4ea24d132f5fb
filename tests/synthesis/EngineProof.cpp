#include "tests/synthesis/EngineProof.h"

#include "planner/PreProcess.h"
#include "planner/TTPlanning.h"

#include "verification/PlanVerifier.h"

#include "tests/support/Documents.h"
#include "tests/support/Failure.h"
#include "tests/support/LogCapture.h"

static std::unique_ptr<tinyxml2::XMLDocument> parse(const QByteArray& bytes)
{
    auto document = std::make_unique<tinyxml2::XMLDocument>(true, tinyxml2::PRESERVE_WHITESPACE);
    if (document->Parse(bytes.constData(), static_cast<size_t>(bytes.size())) !=
        tinyxml2::XML_SUCCESS)
        failTest(QByteArray("document does not parse: ") + document->ErrorStr());
    return document;
}

ParsedNetwork parsed(const QByteArray& bytes)
{
    ParsedNetwork result;
    result.bytes = bytes;
    result.document = parse(bytes);
    const LogCapture log;
    result.network = synthesis::readNetwork(*result.document);
    return result;
}

/// The first fault of a plan, or an empty text.
static QString firstFault(const QByteArray& input, const QByteArray& output)
{
    const verification::Verification verification =
        verification::verifyPlan(verification::readPlan(*parse(input), *parse(output)));
    return verification.sound() ? QString() : describe(verification.findings.front());
}

std::function<bool(const synthesis::Found&, const QByteArray&)>
judgeFor(const ParsedNetwork& network)
{
    return [&network](const synthesis::Found& plan, const QByteArray& output) {
        return firstFault(narrowedDocument(*network.document, network.network, plan), output)
            .isEmpty();
    };
}

QString faultOf(const ParsedNetwork& network, const synthesis::Found& plan)
{
    const QByteArray narrowed = narrowedDocument(*network.document, network.network, plan);
    writeFile(QStringLiteral("ResourceXML/vek_input.xml"), narrowed);
    const LogCapture log;
    planner::PlanningContext context;
    const qint32 firstCode = planner::preProcess(context);
    if (firstCode != 0)
        return QStringLiteral("first stage: %1").arg(firstCode);
    planner::TTPlanner planner;
    const qint32 secondCode = planner::TTPlanning(planner);
    if (secondCode != 0)
        return QStringLiteral("second stage: %1").arg(secondCode);
    const QStringList resolved = log.lines().filter(QStringLiteral("resolve conflict:"));
    if (!plan.restsOnResolution && !resolved.isEmpty())
        return resolved.first();
    const QByteArray output = readFile(QStringLiteral("OutputXML/vek_output.xml"));
    const QString fault = firstFault(narrowed, output);
    return fault.isEmpty() ? firstFault(network.bytes, output) : fault;
}
