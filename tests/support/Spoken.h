#pragma once

#include <QtTest>

#include <array>
#include <string>
#include <vector>

// What a comparison that fails prints of types that the test library has no words for.

/// "{1, 2, 3}"; the caller deletes the array.
template <typename Numbers>
char* spokenNumbers(const Numbers& numbers)
{
    QByteArray text;
    for (const auto number : numbers)
        text += (text.isEmpty() ? "" : ", ") + QByteArray::number(static_cast<qlonglong>(number));
    return qstrdup(('{' + text + '}').constData());
}

namespace QTest
{

template <>
inline char* toString(const std::vector<int>& numbers)
{
    return spokenNumbers(numbers);
}

template <>
inline char* toString(const std::vector<qint64>& numbers)
{
    return spokenNumbers(numbers);
}

template <>
inline char* toString(const std::vector<std::size_t>& numbers)
{
    return spokenNumbers(numbers);
}

template <>
inline char* toString(const std::array<quint8, 6>& numbers)
{
    return spokenNumbers(numbers);
}

template <>
inline char* toString(const std::string& text)
{
    return qstrdup(text.c_str());
}

} // namespace QTest
