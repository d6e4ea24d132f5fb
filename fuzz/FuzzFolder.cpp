#include "fuzz/FuzzFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

static QString templateOfFolder()
{
    const QString memory = QStringLiteral("/dev/shm");
    const bool hasMemory = QFileInfo(memory).isDir() && QFileInfo(memory).isWritable();
    return (hasMemory ? memory : QDir::tempPath()) + QStringLiteral("/rotunda-fuzz-XXXXXX");
}

// A finding of the sanitizers names the line; the studio's own log would only be slow.
static void dropLine(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message)
{
    if (type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(message));
}

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    static const QTemporaryDir folder(templateOfFolder());
    qInstallMessageHandler(&dropLine);
    require(folder.isValid() && QDir::setCurrent(folder.path()), "there is a folder to work in");
    return 0;
}

QByteArray bytesOf(const std::uint8_t* data, std::size_t size)
{
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, size % 16 == 0);
    return QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<int>(size));
}

void putFile(const QString& folder, const QString& name, const QByteArray& bytes)
{
    const QString path = folder + QLatin1Char('/') + name;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        QDir().mkpath(folder);
        require(file.open(QIODevice::WriteOnly), "the folder can be written");
    }
    require(file.write(bytes) == bytes.size(), "the folder has room");
}

QByteArray takeFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void require(bool isKept, const char* promise)
{
    if (isKept)
        return;
    std::fprintf(stderr, "not kept: %s\n", promise);
    std::abort();
}
