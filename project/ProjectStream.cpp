#include "project/ProjectStream.h"

#include <QIODevice>

static_assert(QDataStream::Qt_DefaultCompiledVersion >= QDataStream::Qt_5_13,
              "strings, points and doubles have the form of Qt 5.14");

StreamStatusKeeper::StreamStatusKeeper(QDataStream& stream) : m_stream(stream)
{
    if (stream.device()->isTransactionStarted())
        return;
    m_before = stream.status();
    stream.resetStatus();
}

StreamStatusKeeper::~StreamStatusKeeper()
{
    if (m_before == QDataStream::Ok)
        return;
    m_stream.resetStatus();
    m_stream.setStatus(m_before);
}

// The rest is passed over, so that what follows a false count runs dry too, as it would have done
// after reading that many records.
int readCount(QDataStream& stream, qint64 smallestRecord)
{
    qint32 count = 0;
    stream >> count;
    if (count >= 0 && count <= stream.device()->bytesAvailable() / smallestRecord)
        return count;
    stream.device()->seek(stream.device()->size());
    stream.setStatus(QDataStream::ReadPastEnd);
    return 0;
}
