#include "planner/documents/DocumentWriter.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>

#include <cerrno>
#include <optional>

namespace planner
{

static constexpr int pieceSize_bytes = 1 << 16;

// The paths are relative: one that names the current directory can lead elsewhere when that was
// moved, removed or has a name of odd bytes. A pipe is not waited for.
static std::FILE* openForWriting(const QString& folder, const QString& fileName)
{
    const QDir current;
    if (!current.exists(folder))
        current.mkpath(folder);
    const QByteArray path = QFile::encodeName(folder + QLatin1Char('/') + fileName);
    constexpr int flags = O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_CLOEXEC;
    const int file = open(path.constData(), flags, 0666);
    return file < 0 ? nullptr : fdopen(file, "w");
}

// A target that may not be written to is one thing, a disk that has no room for it another.
static bool diskIsFull()
{
    return errno == ENOSPC || errno == EDQUOT || errno == EIO;
}

DocumentWriter::DocumentWriter(const QString& folder, const QString& fileName)
    : m_inMemory(false),
      m_file(openForWriting(folder, fileName))
{
    m_isWhole = m_file || !diskIsFull();
}

DocumentWriter::DocumentWriter() : m_inMemory(true) {}

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
    const Element element(*this, name);
    m_printer.PushText(text.c_str());
}

void DocumentWriter::writeFullPiece()
{
    if (!m_inMemory && m_printer.CStrSize() > pieceSize_bytes)
        writePiece();
}

// The printer's buffer ends with a zero, and goes on as inside the document.
void DocumentWriter::writePiece()
{
    const auto size = static_cast<size_t>(m_printer.CStrSize()) - 1;
    if (m_file && std::fwrite(m_printer.CStr(), 1, size, m_file.get()) != size)
        m_isWhole = false;
    m_printer.ClearBuffer(false);
}

// The last bytes leave the library's buffer when the file is closed.
bool DocumentWriter::finish()
{
    writePiece();
    if (m_file && std::fclose(m_file.release()) != 0)
        m_isWhole = false;
    return m_isWhole;
}

void writeFlows(DocumentWriter& writer, const std::list<TTStreamInstance>& instances,
                const std::function<void(const TTStreamInstance&)>& writeInstance)
{
    const DocumentWriter::Element flows(writer, "flows");
    std::optional<DocumentWriter::Element> flow;
    quint16 currentFlow = 0;
    for (const TTStreamInstance& instance : instances) {
        if (instance.flowID != currentFlow) {
            flow.emplace(writer, "flow");
            currentFlow = instance.flowID;
        }
        if (flow)
            writeInstance(instance);
    }
}

} // namespace planner
