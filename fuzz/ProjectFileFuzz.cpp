#include "fuzz/FuzzFolder.h"

#include "project/ProjectFile.h"

#include <QBuffer>

// A project file of any bytes, from the stream to plain records and back.

static Project read(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return readProject(buffer);
}

static QByteArray written(const Project& project)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    writeProject(buffer, project);
    return bytes;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr int fourCounts = 16;
    const Project project = read(bytesOf(data, size));
    const QByteArray saved = written(project);
    require(saved.size() <= static_cast<int>(size) + fourCounts, "nothing is read twice");
    require(written(read(saved)) == saved, "what was saved loads and saves to the same bytes");
    return 0;
}
