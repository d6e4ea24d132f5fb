#include "verification/PlanRecords.h"

#include "verification/NetworkDocument.h"
#include "verification/ScheduleDocument.h"

#include <tinyxml2.h>

#include <QFile>
#include <QFileInfo>

#include <functional>

namespace verification
{

namespace
{

using ReadElement = std::function<void(const tinyxml2::XMLElement&)>;
using ReadText = std::function<bool(const QByteArray&)>;

/// Hands the first element of a document to read; a document without one is damage.
void readRoot(const tinyxml2::XMLDocument& document, const QString& name,
              std::vector<Finding>& damage, const ReadElement& read)
{
    const tinyxml2::XMLElement* root = document.FirstChildElement();
    if (root)
        read(*root);
    else
        damage.push_back(damageOf(name + QStringLiteral(": there is no element")));
}

/// Loads each file and hands its first element to read, unless readText knows what to do with it.
void readFiles(const QStringList& paths, const QString& name, std::vector<Finding>& damage,
               const ReadText& readText, const ReadElement& read)
{
    if (paths.isEmpty())
        damage.push_back(damageOf(name + QStringLiteral(": there is no document")));
    for (const QString& path : paths) {
        QFile file(path);
        if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
            damage.push_back(damageOf(name + QStringLiteral(": it cannot be opened")));
            continue;
        }
        const QByteArray bytes = file.readAll();
        if (readText(bytes))
            continue;
        tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
        const tinyxml2::XMLError error =
            document.Parse(bytes.constData(), static_cast<size_t>(bytes.size()));
        if (error == tinyxml2::XML_SUCCESS)
            readRoot(document, name, damage, read);
        else
            damage.push_back(damageOf(
                name +
                QStringLiteral(": it does not load, error %1").arg(static_cast<int>(error))));
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

    PlanRecords read(const tinyxml2::XMLDocument& input, const tinyxml2::XMLDocument& output)
    {
        readRoot(input, inputName(), m_plan.damage, inputReader());
        readRoot(output, outputName(), m_plan.damage, outputReader());
        return finished();
    }

    PlanRecords read(const QStringList& inputPaths, const QStringList& outputPaths)
    {
        const auto never = [](const QByteArray&) { return false; };
        const auto byPieces = [this](const QByteArray& bytes) {
            return readScheduleByPieces(bytes, m_plan.schedule, m_plan.damage);
        };
        readFiles(inputPaths, inputName(), m_plan.damage, never, inputReader());
        readFiles(outputPaths, outputName(), m_plan.damage, byPieces, outputReader());
        return finished();
    }

private:
    ReadElement inputReader()
    {
        return [this](const tinyxml2::XMLElement& root) { m_network.read(root); };
    }
    ReadElement outputReader()
    {
        return [this](const tinyxml2::XMLElement& root) {
            readSchedule(root, m_plan.schedule, m_plan.damage);
        };
    }

    PlanRecords finished()
    {
        m_plan.network = m_network.network();
        return std::move(m_plan);
    }

    PlanRecords m_plan;
    NetworkDocument m_network;
};

} // namespace

PlanRecords readPlan(const tinyxml2::XMLDocument& input, const tinyxml2::XMLDocument& output)
{
    return PlanReading().read(input, output);
}

PlanRecords readPlan(const QStringList& inputPaths, const QStringList& outputPaths)
{
    return PlanReading().read(inputPaths, outputPaths);
}

} // namespace verification
