#include "verification/SchedulePieces.h"

#include "verification/TextScan.h"

#include <cctype>
#include <cstring>

namespace verification
{

bool SchedulePieces::Piece::hasLooseBracket() const
{
    const char* const end = begin + length;
    for (const char* place = begin; place + 1 < end; ++place) {
        if (*place == '<' && std::isspace(static_cast<unsigned char>(place[1])) != 0)
            return true;
    }
    return false;
}

SchedulePieces::SchedulePieces(const QByteArray& bytes)
    : m_bytes(bytes),
      m_frame(true, tinyxml2::PRESERVE_WHITESPACE),
      m_isUsual(takeApart())
{
}

// Comments, declarations and the like can hide what looks like an element, and a null character
// ends a document early. Inside of an instance they are left to whoever parses it.
bool SchedulePieces::takeApart()
{
    const char* place = std::strstr(m_bytes.constData(), "<flows");
    if (!place || !skipText(place, "<flows>"))
        return false;
    const char* begin = place;
    while (skipText(place, "<flow>")) {
        if (!takeFlow(place))
            return false;
    }
    const char* flowsEnd = place;
    if (!skipText(flowsEnd, "</flows>"))
        return false;
    const auto headLength = static_cast<int>(begin - m_bytes.constData());
    const auto tailBegin = static_cast<int>(place - m_bytes.constData());
    return parseFrame(m_bytes.left(headLength) + m_bytes.mid(tailBegin));
}

// What stands behind the flows is the end of the root and nothing else.
bool SchedulePieces::parseFrame(const QByteArray& frame)
{
    if (frame.mid(frame.indexOf("</flows>")).count('<') != 2 || frame.contains("<!") ||
        frame.contains("<?") || frame.contains('\0'))
        return false;
    const tinyxml2::XMLError error =
        m_frame.Parse(frame.constData(), static_cast<size_t>(frame.size()));
    const tinyxml2::XMLElement* root = m_frame.FirstChildElement();
    return error == tinyxml2::XML_SUCCESS && root && root->FirstChildElement("flows");
}

// An end with a blank ahead of its bracket is left to the tree: the piece would go on to the next
// end, and the XML library takes what stands behind the first one for nothing.
bool SchedulePieces::takeFlow(const char*& place)
{
    static const char instanceEnd[] = "</Instance";
    while (!skipText(place, "</flow>")) {
        const char* begin = place;
        if (!skipText(place, "<Instance>"))
            return false;
        // Not strstr(): where that is checked, it measures the rest of the document each time.
        const int end = m_bytes.indexOf(instanceEnd, static_cast<int>(place - m_bytes.constData()));
        if (end < 0)
            return false;
        place = m_bytes.constData() + end + std::strlen(instanceEnd);
        if (*place != '>')
            return false;
        ++place;
        m_instances.push_back({begin, static_cast<size_t>(place - begin)});
    }
    return true;
}

} // namespace verification
