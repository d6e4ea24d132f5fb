#include "verification/PlanRecords.h"

#include "verification/NetworkDocument.h"
#include "verification/ScheduleDocument.h"

#include <tinyxml2.h>

namespace verification
{

namespace
{

/// Hands the first element of a document to read; a document without one is damage.
template <typename Read>
void readRoot(const tinyxml2::XMLDocument& document, const QString& name,
              std::vector<Finding>& damage, Read read)
{
    const tinyxml2::XMLElement* root = document.FirstChildElement();
    if (root)
        read(*root);
    else
        damage.push_back(damageOf(name + QStringLiteral(": there is no element")));
}

/// Loads each file and hands its first element to read.
template <typename Read>
void readFiles(const QStringList& paths, const QString& name, std::vector<Finding>& damage,
               Read read)
{
    if (paths.isEmpty())
        damage.push_back(damageOf(name + QStringLiteral(": there is no document")));
    for (const QString& path : paths) {
        tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
        if (document.LoadFile(path.toUtf8().constData()) == tinyxml2::XML_SUCCESS)
            readRoot(document, name, damage, read);
        else
            damage.push_back(damageOf(name + QStringLiteral(": it does not load, error %1")
                                                 .arg(static_cast<int>(document.ErrorID()))));
    }
}

QString inputName()
{
    return QStringLiteral("vek_input.xml");
}

QString outputName()
{
    return QStringLiteral("vek_output.xml");
}

/// Both sides of a plan, and what reads them.
class PlanReading
{
public:
    PlanReading() : m_network(m_plan.damage) {}

    template <typename ReadAll>
    PlanRecords run(ReadAll readAll)
    {
        readAll([this](const tinyxml2::XMLElement& root) { m_network.read(root); },
                [this](const tinyxml2::XMLElement& root) {
                    readSchedule(root, m_plan.schedule, m_plan.damage);
                },
                m_plan.damage);
        m_plan.network = m_network.network();
        return std::move(m_plan);
    }

private:
    PlanRecords m_plan;
    NetworkDocument m_network;
};

} // namespace

PlanRecords readPlan(const tinyxml2::XMLDocument& input, const tinyxml2::XMLDocument& output)
{
    return PlanReading().run([&](auto readInput, auto readOutput, std::vector<Finding>& damage) {
        readRoot(input, inputName(), damage, readInput);
        readRoot(output, outputName(), damage, readOutput);
    });
}

PlanRecords readPlan(const QStringList& inputPaths, const QStringList& outputPaths)
{
    return PlanReading().run([&](auto readInput, auto readOutput, std::vector<Finding>& damage) {
        readFiles(inputPaths, inputName(), damage, readInput);
        readFiles(outputPaths, outputName(), damage, readOutput);
    });
}

} // namespace verification
