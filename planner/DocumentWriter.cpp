#include "planner/DocumentWriter.h"

#include <QDir>

#include <optional>

namespace planner
{

static constexpr int pieceSize_bytes = 1 << 16;

static std::FILE* openForWriting(const QString& folder, const QString& fileName)
{
    const QDir current(QDir::currentPath());
    if (!current.exists(folder))
        current.mkpath(folder);
    const QString path = current.absolutePath() + QLatin1Char('/') + folder + QLatin1Char('/');
    return std::fopen((path + fileName).toUtf8().constData(), "w");
}

DocumentWriter::DocumentWriter(const QString& folder, const QString& fileName)
    : m_inMemory(false),
      m_file(openForWriting(folder, fileName))
{
}

DocumentWriter::DocumentWriter() : m_inMemory(true) {}

DocumentWriter::~DocumentWriter()
{
    writePiece();
}

QByteArray DocumentWriter::bytes() const
{
    return QByteArray(m_printer.CStr(), m_printer.CStrSize() - 1);
}

void DocumentWriter::attribute(const char* name, const char* value)
{
    m_printer.PushAttribute(name, value);
}

void DocumentWriter::leaf(const char* name, const std::string& text)
{
    leafOfText(name, text.c_str());
}

void DocumentWriter::leafOfText(const char* name, const char* text)
{
    const Element element(*this, name);
    m_printer.PushText(text);
}

void DocumentWriter::writeFullPiece()
{
    if (!m_inMemory && m_printer.CStrSize() > pieceSize_bytes)
        writePiece();
}

// The printer's buffer ends with a zero, and goes on as inside the document.
void DocumentWriter::writePiece()
{
    if (m_file)
        std::fwrite(m_printer.CStr(), 1, static_cast<size_t>(m_printer.CStrSize()) - 1,
                    m_file.get());
    m_printer.ClearBuffer(false);
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
