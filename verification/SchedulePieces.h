#pragma once

#include <QByteArray>

#include <tinyxml2.h>

#include <vector>

namespace verification
{

/// An output document taken apart: its frame without instances, and the text of each instance.
///
/// A tree of the whole document takes ten times its size in memory, and more time to let go than
/// all trees of the pieces. Only a document in just the form in which it is written can be taken
/// apart; any other one is read as a whole.
class SchedulePieces
{
public:
    /// bytes is the whole document and must outlive this.
    explicit SchedulePieces(const QByteArray& bytes);

    /// Whether the document could be taken apart; what follows has no meaning without.
    bool isUsual() const { return m_isUsual; }

    /// First element of the document, whose flows are empty.
    const tinyxml2::XMLElement* frame() const { return m_frame.FirstChildElement(); }

    struct Piece {
        const char* begin = nullptr;
        size_t length = 0;

        /// Whether a bracket with a blank behind it stands here: the XML library takes it for a tag
        /// all the same, so the instance may end earlier than it was found to end.
        bool hasLooseBracket() const;
    };
    /// Each element "Instance", in document order.
    const std::vector<Piece>& instances() const { return m_instances; }

private:
    bool takeApart();
    bool takeFlow(const char*& place);
    bool parseFrame(const QByteArray& frame);

    const QByteArray& m_bytes;
    tinyxml2::XMLDocument m_frame;
    std::vector<Piece> m_instances;
    const bool m_isUsual;
};

} // namespace verification
