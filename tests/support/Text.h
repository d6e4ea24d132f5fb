#pragma once

#include <QStringList>

// Short literals for tests that hold many of them.

/// A text of the source, which is UTF-8.
inline QString u(const char* text)
{
    return QString::fromUtf8(text);
}

/// Names that are separated by blanks, such as those of a path.
inline QStringList words(const char* names)
{
    return u(names).split(QLatin1Char(' '));
}
