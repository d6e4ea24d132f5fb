#include "planner/DocumentWriter.h"

#include <QDir>

#include <optional>

namespace planner
{

static std::FILE* openForWriting(const QString& folder, const QString& fileName)
{
    const QDir current(QDir::currentPath());
    if (!current.exists(folder))
        current.mkpath(folder);
    const QString path = current.absolutePath() + QLatin1Char('/') + folder + QLatin1Char('/');
    return std::fopen((path + fileName).toUtf8().constData(), "w");
}

DocumentWriter::DocumentWriter(const QString& folder, const QString& fileName)
    : m_file(openForWriting(folder, fileName)),
      m_printer(m_file.get())
{
}

void DocumentWriter::attribute(const char* name, const char* value)
{
    m_printer.PushAttribute(name, value);
}

void DocumentWriter::leaf(const char* name, qint32 value)
{
    const Element element(*this, name);
    m_printer.PushText(value);
}

void DocumentWriter::leaf(const char* name, quint32 value)
{
    const Element element(*this, name);
    m_printer.PushText(value);
}

void DocumentWriter::leaf(const char* name, quint64 value)
{
    const Element element(*this, name);
    m_printer.PushText(static_cast<uint64_t>(value));
}

void DocumentWriter::leaf(const char* name, const QString& text)
{
    const Element element(*this, name);
    m_printer.PushText(text.toUtf8().constData());
}

void writeFlows(DocumentWriter& writer, const std::list<TTStreamInstance>& instances,
                const std::function<void(const TTStreamInstance&)>& writeInstance)
{
    const DocumentWriter::Element flows(writer, "flows");
    std::optional<DocumentWriter::Element> flow;
    quint16 currentFlow = 0;
    for (const TTStreamInstance& instance : instances) {
        if (instance.flowID != currentFlow) {
            flow.reset();
            flow.emplace(writer, "flow");
            currentFlow = instance.flowID;
        }
        if (flow)
            writeInstance(instance);
    }
}

} // namespace planner
