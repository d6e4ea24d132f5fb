#pragma once

#include "project/RecordFields.h"

#include <QDataStream>

// The records of a project file on a QDataStream of the library's default version, with a device
// that can seek.
//
// Texts keep apart what is null and what is empty. A list is a signed 32-bit count and as many
// records; lists inside records have the same form. What a record holds stands in RecordFields.

template <typename Field>
constexpr qint64 smallestSize_bytes();

/// Fewest bytes that a record of this type takes: all texts null or empty, all lists empty.
template <typename Record>
constexpr qint64 smallestRecord_bytes = smallestSize_bytes<Record>();

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
void writeList(QDataStream& stream, const QList<Record>& list);

/// Reads a list; it comes out empty when one of its records cannot be read.
template <typename Record>
void readList(QDataStream& stream, QList<Record>& list);

/// Writes a record field by field, a list as told above, any other value as the stream has it.
template <typename Record>
void writeRecord(QDataStream& stream, const Record& record)
{
    if constexpr (hasFields<Record>)
        std::apply([&](auto... field) { (writeRecord(stream, record.*field), ...); },
                   fieldsOf<Record>);
    else if constexpr (isList<Record>)
        writeList(stream, record);
    else
        stream << record;
}

/// Reads what writeRecord() writes; the stream's status tells whether it was there.
template <typename Record>
void readRecord(QDataStream& stream, Record& record)
{
    if constexpr (hasFields<Record>)
        std::apply([&](auto... field) { (readRecord(stream, record.*field), ...); },
                   fieldsOf<Record>);
    else if constexpr (isList<Record>)
        readList(stream, record);
    else
        stream >> record;
}

template <typename Field>
constexpr qint64 smallestSize_bytes()
{
    if constexpr (hasFields<Field>) {
        return std::apply(
            [](auto... field) { return (smallestSize_bytes<FieldType<decltype(field)>>() + ...); },
            fieldsOf<Field>);
    } else if constexpr (isList<Field> || std::is_same_v<Field, QString>) {
        return 4; // a count, or a length
    } else if constexpr (std::is_same_v<Field, QPointF>) {
        return 2 * 8;
    } else {
        static_assert(std::is_same_v<Field, qint32>, "how small can this field be?");
        return 4;
    }
}

template <typename Record>
void writeList(QDataStream& stream, const QList<Record>& list)
{
    stream << qint32(list.size());
    for (const Record& record : list)
        writeRecord(stream, record);
}

template <typename Record>
void readList(QDataStream& stream, QList<Record>& list)
{
    const StreamStatusKeeper keeper(stream);
    list.clear();
    const int count = readCount(stream, smallestRecord_bytes<Record>);
    list.reserve(count);
    for (int i = 0; i < count; ++i) {
        Record record{};
        readRecord(stream, record);
        if (stream.status() != QDataStream::Ok) {
            list.clear();
            return;
        }
        list.append(record);
    }
}
