#pragma once

#include <QStringList>

// Short literals for tests that hold many of them.

/// A text of the source, which is UTF-8.
inline QString u(const char* text)
{
    return QString::fromUtf8(text);
}

/// A window of whole slots of 200 us as the input document has it.
inline QString windowText(int firstSlot, int lastSlot)
{
    constexpr int slot_us = 200;
    return QStringLiteral("[%1,%2]").arg(firstSlot * slot_us).arg((lastSlot + 1) * slot_us);
}

/// Names that are separated by blanks, such as those of a path.
inline QStringList words(const char* names)
{
    return u(names).split(QLatin1Char(' '));
}
