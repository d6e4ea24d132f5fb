#pragma once

#include <QByteArray>
#include <QFile>

namespace planner
{

/// Cuts a vek_hs.xml into documents of some instances each, so that no tree of the whole is needed.
///
/// Only the very form in which the document is written is cut: whatever stands between the pieces
/// is compared byte by byte. What is inside a piece may be anything; whoever parses it has to see
/// to it that it is one document with nothing behind its "flows".
class WrittenPieces
{
public:
    explicit WrittenPieces(const QString& path);

    /// Goes on to the next piece; false behind the last one, and where the form is another one.
    bool next();

    /// The present piece, a document of its own; lives until the next call.
    const QByteArray& document() const { return m_document; }

    /// Whether the document ended as it is written.
    bool isComplete() const { return m_isComplete; }

private:
    bool takeHead();
    bool enterFlow();
    int endOfPiece();
    bool endsItsRoot(int length) const;
    bool readOn();

    QFile m_file;
    QByteArray m_head;     ///< up to the first instance
    QByteArray m_rest;     ///< read and not handed out yet
    QByteArray m_document; ///< the present piece between head and end
    bool m_isComplete = false;
};

} // namespace planner
