#include "project/WholeFile.h"

#include <QFileInfo>
#include <QSaveFile>

#include <sys/stat.h>

// The new file stands beside the old one for a moment, under its name and a few letters more.
static constexpr int longestName = 255; // bytes
static constexpr int addedToName = 7;

static bool leavesRoomForASecondFile(const QFileInfo& file)
{
    const bool regular = file.isFile() || !file.exists();
    return regular && QFile::encodeName(file.fileName()).size() + addedToName <= longestName;
}

// Opening a pipe would wait until somebody reads it.
static bool isPipe(const QString& path)
{
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 && S_ISFIFO(status.st_mode);
}

static bool writeStraight(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return !isPipe(path) && file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() &&
           file.flush();
}

// Committing overlooks what fails when the last bytes leave the buffer, so they are sent before.
bool replaceWhole(const QString& path, const QByteArray& bytes)
{
    const QFileInfo info(path);
    const QString target = info.exists() ? info.canonicalFilePath() : path;
    if (!leavesRoomForASecondFile(QFileInfo(target)))
        return writeStraight(path, bytes);
    QSaveFile file(target);
    file.setDirectWriteFallback(true);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush() &&
           file.commit();
}
