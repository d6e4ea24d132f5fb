#pragma once

#include "topology/FileRecords.h"
#include "traffic/FlowInfo.h"
#include "traffic/VLineInfo.h"

#include <QDataStream>
#include <QStringList>

// The records of a project file on a QDataStream of the library's default version, with a device
// that can seek.
//
// Texts keep apart what is null and what is empty. A list is a signed 32-bit count and as many
// records; lists inside records have the same form.

void writeRecord(QDataStream& stream, const QString& text);
void writeRecord(QDataStream& stream, const QStringList& path);
void writeRecord(QDataStream& stream, const FileArrowInfo& link);
void writeRecord(QDataStream& stream, const FileNodeInfo& node);
void writeRecord(QDataStream& stream, const FileVLineInfo& vLine);
void writeRecord(QDataStream& stream, const FlowInfo& flow);
void writeRecord(QDataStream& stream, const DstNodeInfo& listener);

void readRecord(QDataStream& stream, QString& text);
void readRecord(QDataStream& stream, QStringList& path);
void readRecord(QDataStream& stream, FileArrowInfo& link);
void readRecord(QDataStream& stream, FileNodeInfo& node);
void readRecord(QDataStream& stream, FileVLineInfo& vLine);
void readRecord(QDataStream& stream, FlowInfo& flow);
void readRecord(QDataStream& stream, DstNodeInfo& listener);

/// Fewest bytes that a record of this type takes: all texts null or empty, all lists empty.
template <typename Record>
constexpr qint64 smallestRecord_bytes = 0;
template <>
inline constexpr qint64 smallestRecord_bytes<QString> = 4;
template <>
inline constexpr qint64 smallestRecord_bytes<QStringList> = 4;
template <>
inline constexpr qint64 smallestRecord_bytes<FileArrowInfo> = 6 * 4;
template <>
inline constexpr qint64 smallestRecord_bytes<FileNodeInfo> = 4 + 2 * 8 + 6 * 4;
template <>
inline constexpr qint64 smallestRecord_bytes<FileVLineInfo> = 4 + 4;
template <>
inline constexpr qint64 smallestRecord_bytes<FlowInfo> = 8 * 4 + 4;
template <>
inline constexpr qint64 smallestRecord_bytes<DstNodeInfo> = 3 * 4;

/// Lets a list be read with a fresh status and gives back the bad one that was there before.
class StreamStatusKeeper
{
public:
    explicit StreamStatusKeeper(QDataStream& stream);
    ~StreamStatusKeeper();
    StreamStatusKeeper(const StreamStatusKeeper&) = delete;
    StreamStatusKeeper& operator=(const StreamStatusKeeper&) = delete;

private:
    QDataStream& m_stream;
    QDataStream::Status m_before = QDataStream::Ok;
};

/// Reads a count of records of at least this size.
///
/// A count that the rest of the device cannot hold is 0, and the stream has run dry then.
int readCount(QDataStream& stream, qint64 smallestRecord);

template <typename Record>
void writeList(QDataStream& stream, const QList<Record>& list)
{
    stream << qint32(list.size());
    for (const Record& record : list)
        writeRecord(stream, record);
}

/// Reads a list; it comes out empty when one of its records cannot be read.
template <typename Record>
void readList(QDataStream& stream, QList<Record>& list)
{
    static_assert(smallestRecord_bytes<Record> > 0);
    const StreamStatusKeeper keeper(stream);
    list.clear();
    const int count = readCount(stream, smallestRecord_bytes<Record>);
    list.reserve(count);
    for (int i = 0; i < count; ++i) {
        Record record;
        readRecord(stream, record);
        if (stream.status() != QDataStream::Ok) {
            list.clear();
            return;
        }
        list.append(record);
    }
}
