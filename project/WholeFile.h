#pragma once

#include <QByteArray>
#include <QString>

/// Puts these bytes in place of a file once all of them are on the disk; false when that failed.
///
/// After a failure an old file is as it was, except where its folder allows no second file or the
/// path is no regular file: then the bytes are written straight to it. A pipe is refused. Links are
/// followed, and stay.
bool replaceWhole(const QString& path, const QByteArray& bytes);
