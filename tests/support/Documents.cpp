#include "tests/support/Documents.h"

#include "tests/support/Failure.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

void writeFile(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        failTest("cannot write " + path.toUtf8());
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
