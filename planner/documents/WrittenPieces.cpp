#include "planner/documents/WrittenPieces.h"

#include <QRegularExpression>

namespace planner
{

static constexpr int pieceSize_bytes = 1 << 16;
static constexpr char instanceBegin[] = "            <Instance>\n";
static constexpr char instanceEnd[] = "            </Instance>\n";
static constexpr char flowChange[] = "        </flow>\n        <flow>\n";
static constexpr char documentEnd[] = "        </flow>\n    </flows>\n</vek_hs>\n";

WrittenPieces::WrittenPieces(const QString& path) : m_file(path)
{
    m_file.open(QIODevice::ReadOnly);
}

bool WrittenPieces::next()
{
    if (m_isComplete || (m_head.isEmpty() && !takeHead()))
        return false;
    if (m_rest.size() < pieceSize_bytes)
        readOn();
    if (m_rest == documentEnd) { // and nothing behind it, which would have been read
        m_isComplete = true;
        return false;
    }
    const int end = enterFlow() ? endOfPiece() : 0;
    if (end == 0 || endsItsRoot(end))
        return false;
    m_document = m_head;
    m_document.append(m_rest.constData(), end).append(documentEnd);
    m_rest.remove(0, end);
    return true;
}

bool WrittenPieces::takeHead()
{
    static const QRegularExpression writtenHead(
        QStringLiteral("\\A<vek_hs xmlns=\"urn:ietf:params:xml:ns:yang:vek_hs\">\\n"
                       "    <slotLen>\\d+</slotLen>\\n"
                       "    <schedCycle>\\d+</schedCycle>\\n"
                       "    <flows>\\n"
                       "        <flow>\\n"));
    constexpr int longest = 400; // more than the longest numbers take
    readOn();
    const QString begin = QString::fromLatin1(m_rest.constData(), qMin(m_rest.size(), longest));
    const QRegularExpressionMatch head = writtenHead.match(begin);
    if (!head.hasMatch())
        return false;
    m_head = m_rest.left(head.capturedLength());
    m_rest.remove(0, m_head.size());
    return true;
}

// A piece begins with an instance, in the flow of the piece before it or in the next one.
bool WrittenPieces::enterFlow()
{
    if (m_rest.startsWith(flowChange))
        m_rest.remove(0, static_cast<int>(sizeof flowChange) - 1);
    return m_rest.startsWith(instanceBegin);
}

/// Behind the last instance that is there as a whole; 0 when none is, to the end of the file.
int WrittenPieces::endOfPiece()
{
    constexpr int length = static_cast<int>(sizeof instanceEnd) - 1;
    int searched = 0; // no end begins ahead of it, so that an endless instance is searched once
    do {
        const int unsearched = m_rest.size() - searched;
        const int end = QByteArray::fromRawData(m_rest.constData() + searched, unsearched)
                            .lastIndexOf(instanceEnd);
        if (end >= 0)
            return searched + end + length;
        searched = qMax(0, m_rest.size() - length + 1);
    } while (readOn());
    return 0;
}

/// The XML library passes over what stands behind the root's end and a further end, in any piece.
bool WrittenPieces::endsItsRoot(int length) const
{
    return QByteArray::fromRawData(m_rest.constData(), length).contains("vek_hs");
}

// A document ends at a zero byte, and the pieces behind it would not know.
bool WrittenPieces::readOn()
{
    const QByteArray read = m_file.read(pieceSize_bytes);
    if (read.contains('\0')) {
        m_rest.clear();
        m_file.close();
        return false;
    }
    m_rest.append(read);
    return !read.isEmpty();
}

} // namespace planner
